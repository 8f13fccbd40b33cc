#include "host/run/scriptlist.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

const QString expressionMark = u"re:"_s;

QStringList scriptsIn(const QString &folder)
{
    QStringList scripts;
    const QFileInfoList files
        = QDir(folder).entryInfoList({u"*.js"_s}, QDir::Files | QDir::CaseSensitive, QDir::Name);
    for (const QFileInfo &file : files)
        scripts.append(file.filePath());
    return scripts;
}

QRegularExpression expressionFrom(const QString &pattern)
{
    if (pattern.startsWith(expressionMark))
        return QRegularExpression(pattern.mid(expressionMark.size()));
    return QRegularExpression(QRegularExpression::wildcardToRegularExpression(
        pattern, QRegularExpression::UnanchoredWildcardConversion));
}

} // namespace

FunctionCallResult<QStringList> listScripts(const QStringList &named)
{
    QStringList scripts;
    for (const QString &name : named) {
        const QFileInfo file(name);
        if (!file.exists())
            return Failure(u"there is no script '%1'."_s.arg(name));
        const QStringList found = file.isDir() ? scriptsIn(name) : QStringList{name};
        if (found.isEmpty())
            return Failure(u"there is no script in the folder '%1'."_s.arg(name));
        scripts += found;
    }
    return scripts;
}

FunctionCallResult<QStringList> filterScripts(const QStringList &scripts, const QString &pattern)
{
    const QRegularExpression expression = expressionFrom(pattern);
    if (!expression.isValid())
        return Failure(
            u"the filter '%1' is no regular expression: %2."_s.arg(pattern, expression.errorString()));
    const QStringList left = scripts.filter(expression);
    if (left.isEmpty())
        return Failure(u"no script matches the filter '%1'."_s.arg(pattern));
    return left;
}

} // namespace Ostrel::Host
