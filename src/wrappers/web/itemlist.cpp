#include "wrappers/web/itemlist.h"

#include "wrappers/web/objectfactory.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

struct ItemRecord
{
    QString name;
    QString reference;
    QString type;
};

QList<ItemRecord> parseItemList(const QString &text)
{
    QList<ItemRecord> records;
    ItemRecord record;
    QString part;
    for (const QChar c : text) {
        if (c == u'|') {
            record.name = std::exchange(part, {});
        } else if (c == u'~') {
            record.reference = std::exchange(part, {});
        } else if (c == u'#') {
            record.type = std::exchange(part, {});
            records.append(std::exchange(record, {}));
        } else {
            part += c;
        }
    }
    return records;
}

} // namespace

ObjectList objectsFromItemList(HTMLComponent *component, const QString &text)
{
    ObjectList objects;
    if (text == "[err]"_L1)
        return objects;
    for (const ItemRecord &record : parseItemList(text)) {
        objects.append(
            wrapObject(htmlObjectFromReferenceInfo(component, record.type, record.reference, record.name)));
    }
    return objects;
}

} // namespace Ostrel::WebWrapper
