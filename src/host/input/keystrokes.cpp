#include "host/input/keystrokes.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <iterator>
#include <optional>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

struct NamedKey
{
    const char *name; ///< in a sequence
    const char *key; ///< in the page's event, which is its code, too
    int keyCode;
    const char *text;
};

constexpr NamedKey namedKeys[] = {
    {"Return", "Enter", 13, "\r"},
    {"Enter", "Enter", 13, "\r"},
    {"Tab", "Tab", 9, ""},
    {"Escape", "Escape", 27, ""},
    {"Esc", "Escape", 27, ""},
    {"Backspace", "Backspace", 8, ""},
    {"Delete", "Delete", 46, ""},
    {"Insert", "Insert", 45, ""},
    {"Home", "Home", 36, ""},
    {"End", "End", 35, ""},
    {"PageUp", "PageUp", 33, ""},
    {"PageDown", "PageDown", 34, ""},
    {"Left", "ArrowLeft", 37, ""},
    {"Up", "ArrowUp", 38, ""},
    {"Right", "ArrowRight", 39, ""},
    {"Down", "ArrowDown", 40, ""},
    {"F1", "F1", 112, ""},
    {"F2", "F2", 113, ""},
    {"F3", "F3", 114, ""},
    {"F4", "F4", 115, ""},
    {"F5", "F5", 116, ""},
    {"F6", "F6", 117, ""},
    {"F7", "F7", 118, ""},
    {"F8", "F8", 119, ""},
    {"F9", "F9", 120, ""},
    {"F10", "F10", 121, ""},
    {"F11", "F11", 122, ""},
    {"F12", "F12", 123, ""},
};

struct NamedModifier
{
    const char *name;
    KeyModifier modifier;
};

constexpr NamedModifier namedModifiers[] = {
    {"Ctrl", ControlModifier},
    {"Control", ControlModifier},
    {"Shift", ShiftModifier},
    {"Alt", AltModifier},
    {"Meta", MetaModifier},
};

/// The entry of that name, whatever its case; null when there is none.
template <typename Table>
auto named(const Table &table, QStringView name) -> decltype(std::begin(table))
{
    const auto found = std::find_if(std::begin(table), std::end(table), [name](const auto &entry) {
        return name.compare(QLatin1StringView(entry.name), Qt::CaseInsensitive) == 0;
    });
    return found == std::end(table) ? nullptr : found;
}

KeyStroke namedStroke(const NamedKey &key)
{
    const QString name = QString::fromLatin1(key.key);
    return {name, name, key.keyCode, QString::fromLatin1(key.text), 0};
}

/// The stroke that types one character, given as its one or two code units.
KeyStroke characterStroke(const QString &character)
{
    if (character == "\n"_L1)
        return namedStroke(*named(namedKeys, u"Return"));
    KeyStroke stroke{character, {}, 0, character, 0};
    const QChar unit = character.at(0);
    const char16_t upper = unit.toUpper().unicode();
    if (upper >= u'A' && upper <= u'Z') {
        stroke.code = u"Key"_s + QChar(upper);
        stroke.keyCode = upper;
        if (unit.unicode() == upper)
            stroke.modifiers = ShiftModifier;
    } else if (upper >= u'0' && upper <= u'9') {
        stroke.code = u"Digit"_s + QChar(upper);
        stroke.keyCode = upper;
    } else if (upper == u' ') {
        stroke.code = u"Space"_s;
        stroke.keyCode = upper;
    }
    return stroke;
}

/// The character that begins at `index`, of one or two code units.
QString characterAt(const QString &text, qsizetype index)
{
    const bool isPair = text.at(index).isHighSurrogate() && index + 1 < text.size();
    return text.mid(index, isPair ? 2 : 1);
}

/// The key of "Shift+End", without its brackets; nothing when it names no key.
std::optional<KeyStroke> bracketedStroke(const QString &text)
{
    QStringList parts = text.split(u'+');
    const QString keyName = parts.takeLast();
    int modifiers = 0;
    for (const QString &part : std::as_const(parts)) {
        const NamedModifier *modifier = named(namedModifiers, part);
        if (!modifier)
            return std::nullopt;
        modifiers |= modifier->modifier;
    }
    const NamedKey *key = named(namedKeys, keyName);
    if (!key && (modifiers == 0 || keyName.size() != 1))
        return std::nullopt;
    KeyStroke stroke = key ? namedStroke(*key) : characterStroke(keyName.toLower());
    stroke.modifiers = modifiers;
    // With a modifier other than Shift a key is a command and types nothing.
    if (modifiers & ~ShiftModifier)
        stroke.text.clear();
    return stroke;
}

} // namespace

QList<KeyStroke> textStrokes(const QString &text)
{
    QList<KeyStroke> strokes;
    for (qsizetype i = 0; i < text.size();) {
        const QString character = characterAt(text, i);
        i += character.size();
        if (character != "\r"_L1)
            strokes.append(characterStroke(character));
    }
    return strokes;
}

FunctionCallResult<QList<KeyStroke>> keyStrokes(const QString &sequence)
{
    static const QRegularExpression bracketed(u"<([A-Za-z0-9]+(?:\\+[A-Za-z0-9]+)*)>"_s);
    QList<KeyStroke> strokes;
    for (qsizetype i = 0; i < sequence.size();) {
        const QRegularExpressionMatch match = bracketed.match(
            sequence, i, QRegularExpression::NormalMatch, QRegularExpression::AnchorAtOffsetMatchOption);
        if (!match.hasMatch()) {
            const QString character = characterAt(sequence, i);
            strokes += textStrokes(character);
            i += character.size();
            continue;
        }
        const std::optional<KeyStroke> stroke = bracketedStroke(match.captured(1));
        if (!stroke)
            return Failure(u"There is no key '%1'."_s.arg(match.captured(0)));
        strokes.append(*stroke);
        i += match.capturedLength();
    }
    return strokes;
}

} // namespace Ostrel::Host
