#include "wrappers/web/customviewitempropertydelegate.h"

#include "wrappers/web/controls/customitemviews.h"
#include "wrappers/web/diagnostics.h"
#include "wrappers/web/itemlist.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/scripttext.h"

#include <memory>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

HTML_CustomItem *itemOf(const SharedPtr<Object> &object)
{
    return dynamic_cast<HTML_CustomItem *>(retrieveObject(object));
}

/// Whether a lookup found something. The wrapper that it made is not needed.
template <typename Wrapper>
FunctionCallResult<bool> found(const FunctionCallResult<Wrapper *> &result)
{
    const std::unique_ptr<Wrapper> owned(result.value);
    if (result.failed())
        return Failure(result.error);
    return owned != nullptr;
}

/// Whether the item lies in another item or in a view.
FunctionCallResult<bool> hasPlace(const HTML_CustomItem &item)
{
    const FunctionCallResult<bool> inItem = found(item.parentItem(-1));
    if (inItem.failed())
        return inItem;
    const FunctionCallResult<bool> inView = found(item.itemView());
    if (inView.failed())
        return inView;
    return inItem.value || inView.value;
}

} // namespace

CustomViewItemPropertyDelegate::CustomViewItemPropertyDelegate()
    : ObjectHierarchyDelegate(u"HTML_CustomItem"_s)
{
}

int CustomViewItemPropertyDelegate::numChildren(SharedPtr<Object> object) const
{
    return int(children(object).size());
}

SharedPtr<Object> CustomViewItemPropertyDelegate::child(SharedPtr<Object> object, int index) const
{
    const ObjectList all = children(object);
    return index >= 0 && index < all.size() ? all.at(index) : nullptr;
}

SharedPtr<Object> CustomViewItemPropertyDelegate::childByName(
    SharedPtr<Object> object, const QString &name) const
{
    for (const SharedPtr<Object> &candidate : children(object)) {
        if (nameOfObject(candidate) == name)
            return candidate;
    }
    return {};
}

QString CustomViewItemPropertyDelegate::name(SharedPtr<Object> object) const
{
    const HTML_CustomItem *item = itemOf(object);
    if (!item)
        return {};
    const FunctionCallResult<bool> placed = hasPlace(*item);
    if (placed.failed()) {
        reportToStandardError(placed.error);
        return {};
    }
    if (!placed.value)
        return {};
    const FunctionCallResult<QString> name = item->name();
    if (name.failed())
        reportToStandardError(name.error);
    return name.value;
}

QString CustomViewItemPropertyDelegate::qualifiedName(SharedPtr<Object>) const
{
    return u"__noimpl__"_s;
}

ObjectList CustomViewItemPropertyDelegate::children(SharedPtr<Object> object) const
{
    const HTML_CustomItem *item = itemOf(object);
    if (!item || !item->component() || !item->component()->isPageAvailable())
        return {};
    return fetchItems(item->component(),
        script(u"try{__ostrel__fetchItemChildren(%1, %2Extension );}catch(e){'[err]';}",
            Expr{item->jsReference()}, Expr{item->realType().value}));
}

ObjectHierarchyDelegate::WrapperType CustomViewItemPropertyDelegate::wrapperType() const
{
    return Web;
}

} // namespace Ostrel::WebWrapper
