// PageToplevel: the browser above one page, in which lookups by name start.
#pragma once

#include "ostrelhook/class.h"
#include "ostrelhook/inspector.h"
#include "wrappers/web/htmlcomponent.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/webobject.h"
#include "wrappers/web/webobjectdelegate.h"
#include "wrappers/web/webtopleveldelegate.h"

namespace Ostrel::Test {

/// While it lives, Inspector::findObject() searches the page. To be made when the object model is registered.
class PageToplevel : public WebWrapper::WebToplevelDelegate
{
public:
    explicit PageToplevel(WebWrapper::HTMLComponent *page)
        : WebToplevelDelegate(QStringLiteral("Test_Page")), m_page(page)
    {
        static auto *const type
            = new Class(QStringLiteral("Test_Page"), Inspector::self()->globalNamespace(), false);
        m_object = type->wrap(page, ObjectAttribute::Pointer());
        Inspector::self()->addToplevel(m_object);
    }
    ~PageToplevel() override
    {
        Inspector::self()->removeToplevel(m_object);
        forget();
    }
    Q_DISABLE_COPY_MOVE(PageToplevel)

    WebWrapper::HTMLComponent *htmlComponentFor(SharedPtr<Object>) const override { return m_page; }
    bool keepsDocumentReference() const override { return false; }

    /// Forgets what is known of the document; for when it is another, or when searches start elsewhere.
    void forget() const
    {
        clearDocumentReference();
        WebWrapper::HTMLObjectHierarchyDelegate::registered()->clearChildCache();
    }

    /// The reference of what a name leads to; empty when it leads nowhere, or the error after "error: ".
    QString find(const QString &name) const
    {
        const FunctionCallResult<SharedPtr<Object>> found = Inspector::self()->findObject(name);
        const QString error = found.failed() ? found.error : Inspector::self()->takeError();
        if (!error.isEmpty())
            return QStringLiteral("error: ") + error;
        const WebWrapper::HTML_Object *wrapper = WebWrapper::retrieveObject(found.value);
        return wrapper ? wrapper->jsReference() : QString();
    }

private:
    WebWrapper::HTMLComponent *m_page;
    SharedPtr<Object> m_object;
};

} // namespace Ostrel::Test
