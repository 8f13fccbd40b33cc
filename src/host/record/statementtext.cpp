#include "host/record/statementtext.h"

#include "host/browser/evaluation.h"
#include "host/script/vocabulary.h"
#include "ostrelhook/valueclasses.h"

#include <QStringList>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

QString argumentText(const SharedPtr<Object> &argument)
{
    if (std::holds_alternative<QString>(argument->primitive()))
        return scriptLiteral(argument->toQString());
    if (argument->isPrimitive())
        return argument->toQString();
    return scriptLiteral(unwrapDateTime(argument).date().toString(Qt::ISODate));
}

QString subjectText(Subject kind, const QString &subject, const QString &servedAt)
{
    if (kind != Subject::Address || servedAt.isEmpty() || !subject.startsWith(servedAt))
        return scriptLiteral(subject);
    return u"serverAddress() + %1"_s.arg(scriptLiteral(subject.mid(servedAt.size())));
}

} // namespace

QString statementText(
    const QString &method, const QString &subject, const ObjectList &arguments, const QString &servedAt)
{
    const Statement *statement = findStatement(method);
    Q_ASSERT_X(statement, "statementText", qPrintable(method));
    QStringList written;
    if (statement->subject != Subject::Nothing)
        written.append(subjectText(statement->subject, subject, servedAt));
    for (const SharedPtr<Object> &argument : arguments)
        written.append(argumentText(argument));
    return u"%1(%2);"_s.arg(method, written.join(u", "_s));
}

QString remarkText(const QString &text)
{
    return u"// %1"_s.arg(text.simplified());
}

} // namespace Ostrel::Host
