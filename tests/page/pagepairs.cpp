#include "page/pagepairs.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <iterator>

using namespace Qt::StringLiterals;

namespace Ostrel::Test {

namespace {

const QStringList groupMembers{u"page"_s, u"extensions"_s, u"variables"_s, u"setup"_s, u"cases"_s};

struct DemandName
{
    QString member;
    Demand demand;
};

const DemandName demandNames[] = {
    {u"expect"_s, Demand::Expect},
    {u"eventually"_s, Demand::Eventually},
    {u"throws"_s, Demand::Throws},
};

QString unknownMember(const QJsonObject &object, const QStringList &known)
{
    const QStringList members = object.keys();
    for (const QString &member : members) {
        if (!known.contains(member))
            return u"the member '%1' is not known"_s.arg(member);
    }
    return {};
}

QString readCase(const QJsonObject &object, PageCase &pageCase)
{
    pageCase.name = object.value("name"_L1).toString();
    pageCase.run = object.value("run"_L1).toString();
    if (pageCase.name.isEmpty() || pageCase.run.isEmpty())
        return u"a case needs a name and something to run"_s;

    QStringList known{u"name"_s, u"run"_s};
    int demands = 0;
    for (const DemandName &row : demandNames) {
        known.append(row.member);
        if (!object.contains(row.member))
            continue;
        ++demands;
        pageCase.demand = row.demand;
        pageCase.wanted = object.value(row.member);
    }
    if (demands != 1)
        return u"'%1' needs exactly one of expect, eventually and throws"_s.arg(pageCase.name);
    const QString unknown = unknownMember(object, known);
    return unknown.isEmpty() ? QString() : u"'%1': %2"_s.arg(pageCase.name, unknown);
}

QString readGroup(const QJsonObject &object, PageGroup &group)
{
    if (const QString unknown = unknownMember(object, groupMembers); !unknown.isEmpty())
        return unknown;
    group.page = object.value("page"_L1).toString(u"blank.html"_s);
    group.setup = object.value("setup"_L1).toString();
    const QJsonArray extensions = object.value("extensions"_L1).toArray();
    for (const QJsonValue &name : extensions)
        group.extensions.append(name.toString());
    const QJsonObject variables = object.value("variables"_L1).toObject();
    for (auto variable = variables.begin(); variable != variables.end(); ++variable)
        group.variables.append({variable.key(), variable.value()});

    const QJsonArray cases = object.value("cases"_L1).toArray();
    if (cases.isEmpty())
        return u"a group has no cases"_s;
    for (const QJsonValue &entry : cases) {
        PageCase pageCase;
        if (const QString error = readCase(entry.toObject(), pageCase); !error.isEmpty())
            return error;
        group.cases.append(pageCase);
    }
    return {};
}

} // namespace

PageFile readPageFile(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, file.errorString()};
    QJsonParseError parsed;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parsed);
    if (parsed.error != QJsonParseError::NoError)
        return {{}, u"%1 at character %2"_s.arg(parsed.errorString(), QString::number(parsed.offset))};

    const QJsonArray groups = document.isArray() ? document.array() : QJsonArray{document.object()};
    PageFile read;
    for (const QJsonValue &entry : groups) {
        PageGroup group;
        read.error = readGroup(entry.toObject(), group);
        if (!read.error.isEmpty())
            return read;
        read.groups.append(group);
    }
    return read;
}

} // namespace Ostrel::Test
