#include "wrappers/web/itemlist.h"

#include "wrappers/web/composing.h"
#include "wrappers/web/diagnostics.h"
#include "wrappers/web/htmlcomponent.h"
#include "wrappers/web/objectfactory.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

/// The limit of listing items, in milliseconds.
constexpr unsigned int itemListLimit = 10000;

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

ObjectList fetchItems(HTMLComponent *component, const QString &script)
{
    const HTMLComponent::EvalResult answer = component->evaluateJavaScript(script, itemListLimit);
    if (answer.failed || answer.threw) {
        reportToStandardError(message(u"Error obtaining itemview children: %1", answer.result));
        return {};
    }
    return objectsFromItemList(component, answer.result);
}

} // namespace Ostrel::WebWrapper
