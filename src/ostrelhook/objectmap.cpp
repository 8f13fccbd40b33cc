#include "ostrelhook/objectname.h"

#include <QFile>
#include <QSaveFile>

#include <algorithm>

namespace Ostrel {

using namespace Qt::StringLiterals;

namespace {

bool isComment(const QString &line)
{
    return line.startsWith(u'#');
}

/// Whether a names file could give the symbolic name back.
bool fitsInFile(const QString &symbolicName)
{
    const auto separates = [](QChar c) { return c == u'\t' || c == u'\n' || c == u'\r'; };
    return !symbolicName.trimmed().isEmpty() && !isComment(symbolicName)
        && std::none_of(symbolicName.begin(), symbolicName.end(), separates);
}

} // namespace

ObjectMap *ObjectMap::self()
{
    static ObjectMap instance;
    return &instance;
}

FunctionCallResult<void> ObjectMap::insert(const QString &symbolicName, const QString &realName)
{
    if (!fitsInFile(symbolicName) || symbolicName.startsWith(u'{'))
        return Failure(u"'%1' cannot be a symbolic name."_s.arg(symbolicName));
    if (m_realNames.contains(symbolicName))
        return Failure(u"The symbolic name '%1' is used twice."_s.arg(symbolicName));
    const FunctionCallResult<ObjectName> name = ObjectName::parse(realName);
    if (name.failed())
        return Failure(name.error);
    if (!name.value.isMultiProperty() || realName.contains(u'\n') || realName.contains(u'\r'))
        return Failure(u"'%1' is no name with properties on one line."_s.arg(realName));
    if (isOwnContainer(symbolicName, name.value))
        return Failure(u"The symbolic name '%1' is its own container."_s.arg(symbolicName));

    m_realNames.insert(symbolicName, realName);
    // of several symbolic names the first is the one to be written
    if (!m_symbolicNames.contains(realName))
        m_symbolicNames.insert(realName, symbolicName);
    m_order.append(symbolicName);
    return {};
}

/// Follows the containers outwards. The names that are known already have no circle among them.
bool ObjectMap::isOwnContainer(const QString &symbolicName, const ObjectName &realName) const
{
    const QString containerProperty = u"container"_s;
    ObjectName name = realName;
    while (name.hasProperty(containerProperty)) {
        const QString container = name.property(containerProperty).stringValue();
        if (container == symbolicName)
            return true;
        name = ObjectName(this->realName(container));
    }
    return false;
}

void ObjectMap::clear()
{
    m_realNames.clear();
    m_symbolicNames.clear();
    m_order.clear();
}

FunctionCallResult<void> ObjectMap::load(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return Failure(u"Cannot read the names file '%1': %2."_s.arg(fileName, file.errorString()));
    const QString text = QString::fromUtf8(file.readAll());

    ObjectMap extended = *this;
    int number = 0;
    for (const QStringView line : QStringView(text).split(u'\n')) {
        ++number;
        const FunctionCallResult<void> inserted = extended.insertLine(line.toString());
        if (inserted.failed())
            return Failure(u"%1:%2: %3"_s.arg(fileName, QString::number(number), inserted.error));
    }
    *this = extended;
    return {};
}

FunctionCallResult<void> ObjectMap::insertLine(const QString &line)
{
    const QString entry = line.endsWith(u'\r') ? line.chopped(1) : line;
    if (isComment(entry) || entry.trimmed().isEmpty())
        return {};
    const qsizetype tab = entry.indexOf(u'\t');
    if (tab < 0)
        return Failure(u"A symbolic name, a tab and a name with properties expected."_s);
    return insert(entry.left(tab), entry.mid(tab + 1));
}

FunctionCallResult<void> ObjectMap::save(const QString &fileName) const
{
    QSaveFile file(fileName);
    const auto failure = [&file, &fileName] {
        return Failure(u"Cannot write the names file '%1': %2."_s.arg(fileName, file.errorString()));
    };
    if (!file.open(QIODevice::WriteOnly))
        return failure();
    for (const QString &name : m_order)
        file.write(u"%1\t%2\n"_s.arg(name, m_realNames.value(name)).toUtf8());
    if (!file.commit())
        return failure();
    return {};
}

} // namespace Ostrel
