// The forms in which a dump is written down.
#pragma once

#include "host/dump/pagedump.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace Ostrel::Host {

enum class DumpFormat {
    Xml, ///< for tools that read XML
    Json, ///< for scripts
    Html, ///< for people: one file that a browser shows, with nothing to fetch
};

/// The format of that name, "xml", "json" or "html" in any case; nothing for another one.
std::optional<DumpFormat> dumpFormat(const QString &name);

/// The whole text in UTF-8. Characters that the format cannot hold, such as half of a surrogate pair, are
/// written as U+FFFD.
QByteArray writeDump(const PageDump &dump, DumpFormat format);

// One function a format.
QByteArray dumpAsXml(const PageDump &dump);
QByteArray dumpAsJson(const PageDump &dump);
QByteArray dumpAsHtml(const PageDump &dump);

/// The bytes of an image as text, in the format PNG; empty for a null image.
QString imageAsText(const QImage &image);

/// The text without halves of surrogate pairs, which no encoding of Unicode can hold.
QString wellFormed(const QString &text);

} // namespace Ostrel::Host
