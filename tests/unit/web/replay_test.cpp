// Tests of what scripts do to a page by other ways than an element's own methods.
#include "wrappers/web/formelements.h"
#include "wrappers/web/replay.h"

#include "support/fakepage.h"
#include "support/printers.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

const QString visibilityOfEl = u" try { __ostrel__isVisible(el); } catch( e ) { false;e.message; }"_s;

template <typename Wrapper>
class Element
{
public:
    explicit Element(const QString &tagName) : wrapper(QString(), u"el"_s, &page)
    {
        page.answerJson(u"\"%1\""_s.arg(tagName));
    }

    FakePage page;
    Wrapper wrapper;
};

TEST(IsObjectReady, NothingIsReady)
{
    const FunctionCallResult<bool> ready = isObjectReady(nullptr);

    EXPECT_EQ(ready.error, QString());
    EXPECT_TRUE(ready.value);
}

TEST(IsObjectReady, AnElementWithoutATagNameIsAFailure)
{
    FakePage page;
    HTML_Object element(QString(), u"el"_s, &page);
    page.fail(u"gone"_s);

    const FunctionCallResult<bool> ready = isObjectReady(&element);

    EXPECT_EQ(ready.error,
        u"Cannot determine readyness, failed to obtain tagname: Error retrieving tagName: gone"_s);
    EXPECT_FALSE(ready.value);
    EXPECT_EQ(page.scripts().size(), 1);
}

TEST(IsObjectReady, TheDocumentIsReadyWithoutALook)
{
    Element<HTML_Document> document(u"#document"_s);

    EXPECT_TRUE(isObjectReady(&document.wrapper).value);
    EXPECT_EQ(document.page.scripts().size(), 1);
}

TEST(IsObjectReady, TheRootElementIsReadyWithoutALook)
{
    Element<HTML_Object> root(u"HTML"_s);

    EXPECT_TRUE(isObjectReady(&root.wrapper).value);
    EXPECT_EQ(root.page.scripts().size(), 1);
}

TEST(IsObjectReady, AVisibleElementIsReady)
{
    Element<HTML_Object> element(u"DIV"_s);
    element.page.answer(u"true"_s);

    EXPECT_TRUE(isObjectReady(&element.wrapper).value);
    EXPECT_EQ(element.page.scripts().mid(1), QStringList{visibilityOfEl});
    EXPECT_EQ(element.page.calls().last().timeoutMs, 0u);
}

TEST(IsObjectReady, AMessageOfThePageIsNoVisibility)
{
    Element<HTML_Object> element(u"DIV"_s);
    element.page.answer(u"el is not defined"_s);

    const FunctionCallResult<bool> ready = isObjectReady(&element.wrapper);

    EXPECT_EQ(ready.error, QString());
    EXPECT_FALSE(ready.value);
}

TEST(IsObjectReady, AHiddenFieldIsNotAskedWhetherItIsDisabled)
{
    Element<HTML_Text> field(u"INPUT"_s);
    field.page.answer(u"false"_s);

    const FunctionCallResult<bool> ready = isObjectReady(&field.wrapper);

    EXPECT_EQ(ready.error, QString());
    EXPECT_FALSE(ready.value);
    EXPECT_EQ(field.page.scripts().mid(1), QStringList{visibilityOfEl});
}

TEST(IsObjectReady, AnElementThatThePageCannotJudgeIsReady)
{
    Element<HTML_Object> element(u"DIV"_s);
    element.page.fail(u"gone"_s);

    const FunctionCallResult<bool> ready = isObjectReady(&element.wrapper);

    EXPECT_EQ(ready.error, QString());
    EXPECT_TRUE(ready.value);
}

TEST(IsObjectReady, AFieldIsReadyWhenItIsNotDisabled)
{
    for (const bool disabled : {true, false}) {
        Element<HTML_Text> field(u"INPUT"_s);
        field.page.answer(u"true"_s);
        field.page.answer(disabled ? u"true"_s : u"false"_s);

        const FunctionCallResult<bool> ready = isObjectReady(&field.wrapper);

        EXPECT_EQ(ready.error, QString());
        EXPECT_EQ(ready.value, !disabled);
        EXPECT_EQ(field.page.scripts().mid(1),
            (QStringList{visibilityOfEl, u"window.top.__ostrel.getPropertyValue( el, 'disabled');"_s}));
    }
}

TEST(IsObjectReady, AFieldThatThePageCannotJudgeIsStillAskedWhetherItIsDisabled)
{
    Element<HTML_Text> field(u"INPUT"_s);
    field.page.fail(u"busy"_s);
    field.page.fail(u"gone"_s);

    const FunctionCallResult<bool> ready = isObjectReady(&field.wrapper);

    EXPECT_EQ(ready.error, u"Error while obtaining property 'disabled': gone"_s);
    EXPECT_FALSE(ready.value);
}

} // namespace
