#include "host/record/recordednames.h"

#include "host/report/reportfile.h"

#include <QFile>
#include <QMap>
#include <QRegularExpression>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

QString textOf(const ObjectName &name, const QString &property)
{
    return name.property(property).stringValue().simplified();
}

/// What a person would call such an element.
QString kindOf(const ObjectName &name)
{
    static const QMap<QString, QString> byTag{{u"A"_s, u"link"_s}, {u"BUTTON"_s, u"button"_s},
        {u"SELECT"_s, u"choice"_s}, {u"IMG"_s, u"picture"_s}};
    static const QMap<QString, QString> byType{{u"submit"_s, u"button"_s}, {u"button"_s, u"button"_s},
        {u"reset"_s, u"button"_s}, {u"image"_s, u"button"_s}, {u"checkbox"_s, u"box"_s},
        {u"radio"_s, u"option"_s}, {u"file"_s, u"file"_s}};
    const QString tag = textOf(name, u"tagName"_s);
    if (tag == "INPUT"_L1)
        return byType.value(textOf(name, u"type"_s), u"field"_s);
    return tag == "TEXTAREA"_L1 ? u"field"_s : byTag.value(tag, tag.toLower());
}

/// What tells it from others of its kind: the first of these that it has. A name is shared by options, which
/// their values tell apart.
QString labelOf(const ObjectName &name)
{
    constexpr int longest = 40;
    QString label;
    for (const QString &property : {u"simplifiedInnerText"_s, u"id"_s, u"name"_s, u"title"_s, u"value"_s}) {
        label = textOf(name, property);
        if (label.isEmpty())
            continue;
        if (property == "name"_L1 && kindOf(name) == "option"_L1)
            label += u' ' + textOf(name, u"value"_s);
        break;
    }
    // At the beginning of a line these mean something else.
    static const QRegularExpression otherwiseRead(u"^[#{ ]+"_s);
    return label.remove(otherwiseRead).left(longest).trimmed();
}

} // namespace

FunctionCallResult<RecordedNames> RecordedNames::extending(const QString &fileName)
{
    RecordedNames names;
    names.m_fileName = fileName;
    QFile file(fileName);
    if (!file.exists())
        return names;
    if (const FunctionCallResult<void> loaded = names.m_names.load(fileName); loaded.failed())
        return Failure(loaded.error);
    if (!file.open(QIODevice::ReadOnly))
        return Failure(u"Cannot read the names file '%1': %2."_s.arg(fileName, file.errorString()));
    names.m_content = file.readAll();
    if (!names.m_content.isEmpty() && !names.m_content.endsWith('\n'))
        names.m_content += '\n';
    return names;
}

QString RecordedNames::nameFor(const QString &realName)
{
    const QString known = m_names.symbolicName(realName);
    const ObjectName name(realName);
    if (!known.isEmpty() || !name.isMultiProperty())
        return known.isEmpty() ? realName : known;

    const QString label = labelOf(name);
    const QString wanted = label.isEmpty() ? kindOf(name) : u"%1 (%2)"_s.arg(label, kindOf(name));
    QString symbolic = wanted;
    for (int number = 2; m_names.names().contains(symbolic); ++number)
        symbolic = u"%1 %2"_s.arg(wanted, QString::number(number));
    // A name that no file can hold stays as it is.
    if (m_names.insert(symbolic, realName).failed())
        return realName;
    m_added += u"%1\t%2\n"_s.arg(symbolic, realName).toUtf8();
    return symbolic;
}

FunctionCallResult<void> RecordedNames::save() const
{
    if (m_added.isEmpty())
        return {};
    if (const auto written = writeWhole(m_fileName, m_content + m_added); written.failed())
        return Failure(u"Cannot write the names file '%1': %2."_s.arg(m_fileName, written.error));
    return {};
}

} // namespace Ostrel::Host
