#include "host/dump/dumpwriter.h"

#include <QBuffer>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

std::optional<DumpFormat> dumpFormat(const QString &name)
{
    const QString wanted = name.toLower();
    if (wanted == "xml"_L1)
        return DumpFormat::Xml;
    if (wanted == "json"_L1)
        return DumpFormat::Json;
    if (wanted == "html"_L1)
        return DumpFormat::Html;
    return std::nullopt;
}

QByteArray writeDump(const PageDump &dump, DumpFormat format)
{
    switch (format) {
    case DumpFormat::Xml:
        return dumpAsXml(dump);
    case DumpFormat::Json:
        return dumpAsJson(dump);
    case DumpFormat::Html:
        return dumpAsHtml(dump);
    }
    return {};
}

QString imageAsText(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!image.isNull())
        image.save(&buffer, "PNG");
    return QString::fromLatin1(bytes.toBase64());
}

QString wellFormed(const QString &text)
{
    QString result = text;
    for (qsizetype i = 0; i < result.size(); ++i) {
        const QChar unit = result.at(i);
        if (!unit.isSurrogate())
            continue;
        if (unit.isHighSurrogate() && i + 1 < result.size() && result.at(i + 1).isLowSurrogate())
            ++i;
        else
            result[i] = QChar::ReplacementCharacter;
    }
    return result;
}

} // namespace Ostrel::Host
