// Inspector: the one place where classes, primitives, script errors and lookup notes meet.
#pragma once

#include "ostrelhook/export.h"
#include "ostrelhook/functioncallresult.h"
#include "ostrelhook/object.h"

#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>

namespace Ostrel {

class Class;
class GlobalClass;
class Namespace;
class ObjectName;

/// Numbers of the primitive types.
enum class PrimitiveType { Int = 1, Bool = 3, String = 4, Double = 5, Void = 7 };

/// The process-wide registry of the framework. Used from one thread.
class OSTRELHOOK_EXPORT Inspector
{
public:
    static Inspector *self();

    Namespace *globalNamespace() const;
    /// The class that holds global methods and events.
    GlobalClass *globalClass() const;

    /// The class of that name, or null.
    Class *findClass(const QString &name) const;
    Class *primitiveClass(PrimitiveType type) const;

    SharedPtr<Object> createPrimitive(int value) const;
    SharedPtr<Object> createPrimitive(bool value) const;
    SharedPtr<Object> createPrimitive(double value) const;
    SharedPtr<Object> createPrimitive(const QString &value) const;
    /// What a method without a result gives.
    SharedPtr<Object> createVoid() const;

    /// Makes the running script statement fail with exactly this text. The first error of a statement counts.
    void raiseError(const QString &message);
    bool hasError() const { return m_hasError; }
    /// The pending error text, which is then forgotten; empty when there is none.
    QString takeError();

    /// A remark to the user that stops nothing, such as the note of a deprecated function.
    void note(const QString &message);
    void setNoteReceiver(std::function<void(const QString &)> receiver)
    {
        m_noteReceiver = std::move(receiver);
    }

    /// Whether what the user does becomes statements: recording is switched on, and there is a recorder that
    /// writes them.
    bool isRecording() const { return m_recording && m_recorderAttached; }
    void setRecording(bool recording) { m_recording = recording; }
    void setRecorderAttached(bool attached) { m_recorderAttached = attached; }
    bool isPicking() const { return m_picking; }
    void setPicking(bool picking) { m_picking = picking; }

    /// Notes which properties of a name did not match, so that the error of a failed lookup can say so.
    void addUnmatchedProperty(const QString &name, const QString &property);
    void removeUnmatchedProperties(const QString &name);
    QStringList unmatchedProperties(const QString &name) const;

    /// Page script that extensions of the framework contribute to every page; possibly empty.
    QString extensionCode() const { return m_extensionCode; }
    void setExtensionCode(const QString &code) { m_extensionCode = code; }

    /// The objects above all others, in which lookups start; one for each application under test.
    void addToplevel(const SharedPtr<Object> &toplevel);
    void removeToplevel(const SharedPtr<Object> &toplevel);
    const ObjectList &toplevels() const { return m_toplevels; }

    /// The object of that name, or null. Toplevel objects are asked one after the other; a symbolic name
    /// stands for its real name. A plain name that is nobody's own is followed as a path of child names,
    /// which dots separate. What fails on the way is raised as a script error, unless the object is found all
    /// the same.
    SharedPtr<Object> findObject(const ObjectName &name);
    /// The same by the text of a name; a text that is no proper name is an error that tells why.
    FunctionCallResult<SharedPtr<Object>> findObject(const QString &name);

private:
    Inspector();
    ~Inspector();

    struct Registry;
    std::unique_ptr<Registry> m_registry;
    QString m_error;
    bool m_hasError = false;
    bool m_recording = false;
    bool m_recorderAttached = false;
    bool m_picking = false;
    std::function<void(const QString &)> m_noteReceiver;
    QMap<QString, QStringList> m_unmatched;
    QString m_extensionCode;
    ObjectList m_toplevels;
};

} // namespace Ostrel
