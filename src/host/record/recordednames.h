// RecordedNames: the symbolic names of a recording, and the names file that they are kept in.
#pragma once

#include "ostrelhook/functioncallresult.h"
#include "ostrelhook/objectname.h"

#include <QByteArray>
#include <QString>

namespace Ostrel::Host {

class RecordedNames
{
public:
    /// Takes over the names of a file, if it is there, and adds to it from then on. Used from one thread.
    static FunctionCallResult<RecordedNames> extending(const QString &fileName);

    /// The symbolic name of an object: a known one, or a new one that tells a person what the object is, such
    /// as "Add to cart (button)". Names without properties stay as they are.
    QString nameFor(const QString &realName);

    /// Writes the new names behind what the file held, in one step.
    FunctionCallResult<void> save() const;

private:
    QString m_fileName;
    QByteArray m_content; ///< of the file, as somebody wrote it
    QByteArray m_added;
    ObjectMap m_names;
};

} // namespace Ostrel::Host
