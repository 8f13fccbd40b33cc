// Object tree dumps: a tree of objects with their properties, bounds and screenshots, written down as
// UIElements.
#pragma once

#include "ostrelhook/delegates.h"
#include "ostrelhook/export.h"
#include "ostrelhook/functioncallresult.h"
#include "ostrelhook/uielement.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace Ostrel {

/// Which properties of the objects of one class, and of classes below it, a dump holds.
class OSTRELHOOK_EXPORT DumpFilter
{
public:
    enum Mode {
        Only, ///< the named properties and no others
        AllBut, ///< all properties except the named ones
    };

    /// Properties in `identifying` are always part of the dump, as those that tell an object from others.
    DumpFilter(Mode mode, const QStringList &names, const QStringList &identifying = {});

    bool wants(const QString &property) const;
    bool identifies(const QString &property) const { return m_identifying.contains(property); }

private:
    Mode m_mode;
    QSet<QString> m_names;
    QSet<QString> m_identifying;
};

/// The filter of one object. Without a filter all properties are wanted and none identifies.
class OSTRELHOOK_EXPORT FilterObject
{
public:
    FilterObject() = default;
    /// The filter is not owned and may be null.
    explicit FilterObject(const DumpFilter *filter) : m_filter(filter) { }

    bool isMatchedProperty(const QString &name) const { return !m_filter || m_filter->wants(name); }
    bool isIdentifyingProperty(const QString &name) const { return m_filter && m_filter->identifies(name); }

private:
    const DumpFilter *m_filter = nullptr;
};

/// Filters by class name, as UTF-8. They are not owned.
using DumpFilters = DumpObjectTreeDelegate::Filters;

/// The filter of an object: that of its class or of the nearest base class that has one.
OSTRELHOOK_EXPORT FilterObject filterObjectForOstrelObject(
    const SharedPtr<Object> &object, const DumpFilters &filters);

/// Where a dump tells what went wrong without stopping it.
class OSTRELHOOK_EXPORT LogInterface
{
public:
    virtual ~LogInterface();

    /// Formats as printf() does, with texts in UTF-8. Level 1 is for what a user should see.
    void log(int level, const char *format, ...) Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);

protected:
    virtual void write(int level, const QString &text) = 0;
};

/// How a dump is made.
struct DumpOptions
{
    bool screenshots = true;
    /// Grabs a part of the desktop, for objects whose delegate takes no screenshots; may be empty.
    std::function<QImage(const Rect<2> &bounds)> grabDesktop;
    /// May be null. Not owned.
    LogInterface *log = nullptr;
};

/// Dumps an object and all below it. Fails when its delegate cannot prepare for the dump; what fails at
/// single objects goes to the log.
OSTRELHOOK_EXPORT FunctionCallResult<std::unique_ptr<UIAbstraction::UIElement>> dumpObjectTree(
    const SharedPtr<Object> &root, const DumpFilters &filters, const DumpOptions &options = {});

/// Makes the element of one object, with those below it if `recursive`; the caller owns it. Each item comes
/// from the dump delegate, or when that does not handle it from the object's class and its other delegates.
/// Null for a null object. This is what a delegate's dumpObject() builds upon.
OSTRELHOOK_EXPORT UIAbstraction::UIElement *dumpObjectTreeImpl(
    const SharedPtr<Object> &object, bool recursive, const DumpFilters &filters);

} // namespace Ostrel
