#include "host/browser/listfolding.h"

#include "wrappers/web/jsonenvelope.h"

#include <QStringList>
#include <QVarLengthArray>

#include <algorithm>
#include <vector>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

const QString numberName = u"__ostrel__number"_s;

// Entries are pairs: which function makes the element, and the number for it. It is called by its name alone,
// so that `this` is the page's window.
const QString foldedTemplate = uR"((function (makers, entries) {
    var list = [], i, make;
    for (i = 0; i < entries.length; i += 2) {
        make = makers[entries[i]];
        list[i / 2] = make(entries[i + 1]);
    }
    return list;
})([%1], [%2]))"_s;

const QString makerTemplate = u"function (%1) { return %2; }"_s;

/// More kinds of elements than there are classes of objects are no kinds.
constexpr std::size_t mostKinds = 256;

/// Numbers that a script holds exactly.
constexpr qsizetype mostDigits = 15;

bool isDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

bool isLineBreak(char16_t unit)
{
    return unit == u'\n' || unit == u'\r' || unit == 0x2028 || unit == 0x2029;
}

bool standsInName(QChar unit)
{
    return unit.isLetterOrNumber() || unit == u'.' || unit == u'_' || unit == u'$';
}

/// The digits of a number that begins the text, in the form that a script writes: none with leading zeros.
QStringView leadingNumber(QStringView text)
{
    qsizetype size = 0;
    while (size < text.size() && isDigit(text.utf16()[size]))
        ++size;
    const bool isWritten = size <= mostDigits && (size == 1 || !text.startsWith(u'0'));
    return isWritten ? text.left(size) : QStringView();
}

/// How many functions are called in "a.b( c( ", which is all that may stand there.
std::optional<int> countCalls(QStringView text)
{
    int calls = 0;
    while (!text.isEmpty()) {
        const auto nameEnd = std::find_if_not(text.begin(), text.end(), standsInName);
        if (nameEnd == text.begin() || nameEnd == text.end() || *nameEnd != u'(')
            return {};
        ++calls;
        const auto next = std::find_if(nameEnd + 1, text.end(), [](QChar unit) { return unit != u' '; });
        text = QStringView(next, text.end());
    }
    return calls > 0 ? std::optional(calls) : std::nullopt;
}

/// Whether the text ends that many calls: " ) )".
bool endsCalls(QStringView text, int calls)
{
    const auto isEnd = [](QChar unit) { return unit == u' ' || unit == u')'; };
    return text.count(u')') == calls && std::all_of(text.begin(), text.end(), isEnd);
}

/// What elements have in common: the text between the places of their number.
class Kind
{
public:
    /// The kind of an element in which `[number]` begins at those places.
    Kind(QStringView element, QStringView number, const QList<qsizetype> &places);

    struct Match
    {
        qsizetype size = 0;
        QStringView number;
    };
    /// An element of this kind that begins the text.
    std::optional<Match> matchStart(QStringView text) const;

    /// The text of an element with that number.
    QString elementOf(const QString &number) const { return m_pieces.join(number); }

private:
    QStringList m_pieces;
};

Kind::Kind(QStringView element, QStringView number, const QList<qsizetype> &places)
{
    qsizetype from = 0;
    for (const qsizetype place : places) {
        m_pieces.append(element.mid(from, place + 1 - from).toString());
        from = place + 1 + number.size();
    }
    m_pieces.append(element.mid(from).toString());
}

std::optional<Kind::Match> Kind::matchStart(QStringView text) const
{
    Match match;
    for (const QString &piece : m_pieces) {
        if (&piece != &m_pieces.front()) {
            const QStringView number = leadingNumber(text.mid(match.size));
            if (number.isEmpty() || (!match.number.isNull() && number != match.number))
                return {};
            match.number = number;
            match.size += number.size();
        }
        if (!text.mid(match.size).startsWith(piece))
            return {};
        match.size += piece.size();
    }
    return match;
}

/// Reads the elements of a list, which begin the text.
class ElementReader
{
public:
    explicit ElementReader(QStringView text) : m_text(text) { }

    /// Goes on behind the list's closing bracket. False for a list that is not understood.
    bool read();

    /// The list in its short form.
    QString folded() const;
    /// What follows the list.
    QStringView rest() const { return m_text.mid(m_at); }

private:
    bool readKnownKind();
    bool readNewKind();
    bool skipString();
    bool skipRegularExpression();
    char16_t unit() const { return m_at < m_text.size() ? m_text.utf16()[m_at] : u'\0'; }
    void addEntry(std::size_t kind, QStringView number);

    const QStringView m_text;
    qsizetype m_at = 0;
    std::vector<Kind> m_kinds;
    std::size_t m_lastKind = 0;
    QString m_entries;
};

bool ElementReader::read()
{
    for (;; ++m_at) {
        if (!readKnownKind() && !readNewKind())
            return false;
        if (unit() == u']') {
            ++m_at;
            return true;
        }
    }
}

/// Reads an element up to what ends it, if it is like one before. That it ends there is known from its kind,
/// whose brackets and strings are complete.
bool ElementReader::readKnownKind()
{
    for (std::size_t i = 0; i < m_kinds.size(); ++i) {
        // Elements of a kind often come in a row.
        const std::size_t kind = (m_lastKind + i) % m_kinds.size();
        const std::optional<Kind::Match> match = m_kinds[kind].matchStart(m_text.mid(m_at));
        const qsizetype end = m_at + (match ? match->size : 0);
        if (!match || end >= m_text.size() || (m_text.at(end) != u',' && m_text.at(end) != u']'))
            continue;
        m_at = end;
        addEntry(kind, match->number);
        return true;
    }
    return false;
}

void ElementReader::addEntry(std::size_t kind, QStringView number)
{
    m_lastKind = kind;
    if (!m_entries.isEmpty())
        m_entries += u',';
    m_entries += QString::number(kind) + u',';
    m_entries += number.isNull() ? u"0"_s : number;
}

/// Reads an element up to what ends it, and makes a kind of it.
bool ElementReader::readNewKind()
{
    const qsizetype begin = m_at;
    QStringView number;
    QList<qsizetype> places;
    // The brackets that are to come.
    QVarLengthArray<char16_t, 32> awaited;
    for (; m_at < m_text.size(); ++m_at) {
        const char16_t next = unit();
        if (awaited.isEmpty() && (next == u',' || next == u']'))
            break;
        switch (next) {
        case u'"':
        case u'\'':
            if (!skipString())
                return false;
            break;
        case u'/':
            if (!skipRegularExpression())
                return false;
            break;
        case u'[': {
            const QStringView index = leadingNumber(m_text.mid(m_at + 1));
            const bool isNumber = !index.isEmpty() && m_text.mid(m_at + 1 + index.size()).startsWith(u']');
            if (isNumber && (number.isNull() || index == number)) {
                number = index;
                places.append(m_at - begin);
            }
            awaited.append(u']');
            break;
        }
        case u'{':
            awaited.append(u'}');
            break;
        case u'(':
            awaited.append(u')');
            break;
        case u')':
        case u']':
        case u'}':
            if (awaited.isEmpty() || awaited.last() != next)
                return false;
            awaited.removeLast();
            break;
        default:
            if (next == u'`' || isLineBreak(next))
                return false;
        }
    }
    const QStringView element = m_text.mid(begin, m_at - begin);
    if (m_at == m_text.size() || element.trimmed().isEmpty() || m_kinds.size() == mostKinds)
        return false;
    // What means something else in a function, or nothing.
    const QStringView changing[] = {u"...", u"arguments", u"eval", numberName};
    for (const QStringView name : changing) {
        if (element.contains(name))
            return false;
    }
    m_kinds.emplace_back(element, number, places);
    addEntry(m_kinds.size() - 1, number);
    return true;
}

/// Goes on to the quote that ends the string that begins here.
bool ElementReader::skipString()
{
    const char16_t quote = unit();
    for (++m_at; m_at < m_text.size() && unit() != quote; ++m_at) {
        if (unit() == u'\\')
            ++m_at;
    }
    return m_at < m_text.size();
}

/// Goes on to the slash that ends the regular expression that begins here. Only one that is an argument is
/// known from a division.
bool ElementReader::skipRegularExpression()
{
    const QStringView before = m_text.left(m_at).trimmed();
    const QStringView after = m_text.mid(m_at + 1);
    const bool isArgument = before.endsWith(u'(') || before.endsWith(u',');
    if (!isArgument || after.startsWith(u'*') || after.startsWith(u'/'))
        return false;
    bool inClass = false;
    for (++m_at; m_at < m_text.size() && (inClass || unit() != u'/'); ++m_at) {
        if (isLineBreak(unit()))
            return false;
        if (unit() == u'\\')
            ++m_at;
        else if (unit() == u'[' || unit() == u']')
            inClass = unit() == u'[';
    }
    return m_at < m_text.size();
}

QString ElementReader::folded() const
{
    QStringList makers;
    for (const Kind &kind : m_kinds)
        makers.append(makerTemplate.arg(numberName, kind.elementOf(numberName)));
    return foldedTemplate.arg(makers.join(u','), m_entries);
}

} // namespace

std::optional<QString> foldedList(const QString &script)
{
    const QStringView whole = script;
    const QStringView within = WebWrapper::expressionInEnvelope(whole);
    const QStringView call = within.isNull() ? whole : within;
    const qsizetype bracket = call.indexOf(u'[');
    const std::optional<int> calls = bracket > 0 ? countCalls(call.left(bracket)) : std::nullopt;
    if (!calls)
        return {};
    ElementReader elements(call.mid(bracket + 1));
    if (!elements.read() || !endsCalls(elements.rest(), *calls))
        return {};
    const QStringView before(whole.begin(), call.begin() + bracket);
    const QStringView after(elements.rest().begin(), whole.end());
    const QString folded = u"%1%2%3"_s.arg(before, elements.folded(), after);
    return folded.size() < script.size() ? std::optional(folded) : std::nullopt;
}

} // namespace Ostrel::Host
