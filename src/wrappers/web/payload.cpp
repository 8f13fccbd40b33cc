#include "wrappers/web/payload.h"

#include "ostrelhook/inspector.h"
#include "wrappers/web/payloadtexts.h"
#include "wrappers/web/wrapperconfig.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cstdio>
#include <cstring>

using namespace Qt::StringLiterals;

namespace Ostrel::WebWrapper {

namespace {

QByteArray joinedSections()
{
    std::size_t length = 0;
    for (const char *const *section = payloadSections; *section; ++section)
        length += std::strlen(*section);

    QByteArray joined;
    joined.reserve(static_cast<qsizetype>(length));
    for (const char *const *section = payloadSections; *section; ++section)
        joined += *section;
    return joined;
}

/// The sections never change: they are joined once for the life of the process.
const QByteArray &baseText()
{
    static const QByteArray text = joinedSections();
    return text;
}

/// A file that cannot be read is reported and gives an empty text: it keeps its line in the joined text.
QString extensionScript(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "Failed to read JavaScript extension: %s\n", path.toLocal8Bit().constData());
        return {};
    }
    return QString::fromUtf8(file.readAll());
}

/// The toolkits' scripts of this installation; empty when it has none.
QString extensionScripts()
{
    // Kept as is: two kinds of separator. Windows takes both, and elsewhere they are the same.
    const QString path
        = qEnvironmentVariable("OSTREL_PREFIX") + QDir::separator() + "lib"_L1 + "/extensions/web"_L1;
    if (!QFileInfo::exists(path))
        return {};

    const QDir directory(QDir(path).absolutePath());
    QStringList texts;
    for (const QString &name : directory.entryList({u"*.js"_s}, QDir::Files, QDir::Name | QDir::IgnoreCase))
        texts += extensionScript(directory.path() + u'/' + name);
    return texts.join(u'\n');
}

} // namespace

QString getOstrelJsNamespaceInitCode()
{
    static const QString code = QString::fromUtf8(namespaceInitText);
    return code;
}

QString getJSCode(const WrapperConfig &config)
{
    QString code = QString::fromUtf8(baseText());
    code += u'\n' + extensionScripts() + u'\n';
    // Extensions use the sections' objects at their top level, and the XPath engine uses nobody's.
    code += u'\n' + Inspector::self()->extensionCode() + u'\n';
    code += u'\n' + QString::fromUtf8(xpathSupportText);
    code += u'\n' + QString::fromUtf8(xpathEngineText);
    code += u"\ntop.__ostrel__xpath__caseInSensitiveMatching = %1;"_s.arg(
        int{config.caseInsensitiveXPathNodeNameMatching()});
    return code;
}

} // namespace Ostrel::WebWrapper
