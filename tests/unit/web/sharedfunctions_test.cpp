// Tests of the script functions clickLink, selectOption and scrollTo.
#include "wrappers/web/controls/customcontrols.h"
#include "wrappers/web/controls/kiwi.h"
#include "wrappers/web/formelements.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/sharedfunctions.h"
#include "wrappers/web/toolkits/backbase.h"

#include "ostrelhook/delegates.h"
#include "ostrelhook/globalclass.h"

#include "support/classcase.h"
#include "support/fakepage.h"
#include "support/hostiletexts.h"
#include "support/pagescript.h"
#include "support/scriptcalls.h"

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

/// The page of lookups by name: one element of the name "zurück".
class OnePage : public ObjectHierarchyDelegate
{
public:
    explicit OnePage(const SharedPtr<Object> &link) : ObjectHierarchyDelegate(u"OnePage"_s), m_link(link) { }
    SharedPtr<Object> objectByQualifiedName(SharedPtr<Object>, const ObjectName &name) const override
    {
        return name.qualifiedName() == u"zurück"_s ? m_link : nullptr;
    }
    QString name(SharedPtr<Object>) const override { return {}; }
    QString qualifiedName(SharedPtr<Object>) const override { return {}; }
    ObjectList children(SharedPtr<Object>) const override { return {}; }

private:
    SharedPtr<Object> m_link;
};

class SharedFunctions : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        createWebObjectClassesOnce();
        setupSharedObjectModelFunctions();
        setupSharedObjectModelFunctions();
        static Class onePage(u"OnePage"_s, Inspector::self()->globalNamespace(), false);
    }
    ~SharedFunctions() override
    {
        Inspector::self()->setNoteReceiver(nullptr);
        EXPECT_EQ(Inspector::self()->takeError(), QString());
    }

    /// An element as a script holds it.
    template <typename Wrapper, typename... Arguments>
    SharedPtr<Object> element(Arguments... arguments)
    {
        return wrapObject(new Wrapper(QString(), u"el"_s, arguments..., &page));
    }
    static ScriptAnswer call(const QString &name, const ObjectList &arguments)
    {
        SharedPtr<Object> value = Inspector::self()->globalClass()->callGlobal(name, arguments);
        return {std::move(value), Inspector::self()->takeError()};
    }
    static bool isVoid(const SharedPtr<Object> &value)
    {
        return value && value->objectClass() == Inspector::self()->primitiveClass(PrimitiveType::Void);
    }

    FakePage page;
};

using ClickLink = SharedFunctions;
using SelectOption = SharedFunctions;
using ScrollTo = SharedFunctions;

QString signatureOf(const GlobalMethod &method)
{
    QStringList parameters;
    for (const Argument &parameter : method.signature().arguments())
        parameters.append(parameter.typeName() + u' ' + parameter.name());
    return u"%1(%2) %3"_s.arg(method.name(), parameters.join(u", "_s), method.result().typeName());
}

TEST_F(SharedFunctions, AreSixOverloadsMadeOnce)
{
    QStringList signatures;
    for (const GlobalMethod *method : Inspector::self()->globalClass()->globalMethods())
        signatures.append(signatureOf(*method));

    EXPECT_EQ(signatures,
        (QStringList{u"clickLink(HTML_Object object) void"_s, u"clickLink(String object) void"_s,
            u"selectOption(HTML_Object object, String text) void"_s,
            u"selectOption(String object, String text) void"_s, u"scrollTo(HTML_Object object) void"_s,
            u"scrollTo(HTML_Object object, bool top) void"_s}));
}

TEST_F(SharedFunctions, TheAccessorsGiveThem)
{
    const QList<GlobalMethod *> all = Inspector::self()->globalClass()->globalMethods();

    EXPECT_EQ(sharedClickLinkByObjectFn(), all[0]);
    EXPECT_EQ(sharedClickLinkByNameFn(), all[0]);
    EXPECT_EQ(sharedSelectOptionByObjectFn(), all[2]);
    EXPECT_EQ(sharedSelectOptionByNameFn(), all[3]);
    EXPECT_EQ(sharedScrollToByObjectFn(), all[4]);
    EXPECT_EQ(sharedScrollToByObjectAndAlignmentFn(), all[5]);
}

TEST_F(SharedFunctions, OnlyClickLinkIsOfThePast)
{
    const QString advice
        = u"The clickLink function has been deprecated, please consider using mouseClick instead."_s;
    QStringList advices;
    for (const GlobalMethod *method : Inspector::self()->globalClass()->globalMethods())
        advices.append(method->deprecationAdvice());

    EXPECT_EQ(advices, (QStringList{advice, advice, {}, {}, {}, {}}));
}

TEST_F(ClickLink, ClicksALink)
{
    const ScriptAnswer answer = call(u"clickLink"_s, {element<HTML_Anchor>()});

    EXPECT_EQ(answer.error, QString());
    EXPECT_TRUE(isVoid(answer.value));
    EXPECT_EQ(page.scripts(), QStringList{u"setTimeout(function(e){__ostrel__clickLink(el);}, 100);"_s});
}

TEST_F(ClickLink, ByNameLooksTheLinkUp)
{
    const OnePage delegate(element<HTML_Anchor>());
    const SharedPtr<Object> toplevel
        = Inspector::self()->findClass(u"OnePage"_s)->wrap(&page, ObjectAttribute::Pointer());
    Inspector::self()->addToplevel(toplevel);

    EXPECT_EQ(call(u"clickLink"_s, {argument(u"zurück"_s)}).error, QString());
    EXPECT_EQ(call(u"clickLink"_s, {argument(u"away"_s)}).error, u"Invalid object name 'away'"_s);

    Inspector::self()->removeToplevel(toplevel);
    EXPECT_EQ(page.scripts(), QStringList{u"setTimeout(function(e){__ostrel__clickLink(el);}, 100);"_s});
}

TEST_F(ClickLink, AnAdviceIsShownAtEachUse)
{
    QStringList notes;
    Inspector::self()->setNoteReceiver([&notes](const QString &note) { notes.append(note); });
    const QString advice
        = u"The clickLink function has been deprecated, please consider using mouseClick instead."_s;

    call(u"clickLink"_s, {element<HTML_Anchor>()});
    call(u"clickLink"_s, {nullptr});
    call(u"clickLink"_s, {argument(u"nobody"_s)});

    EXPECT_EQ(notes, (QStringList{advice, advice, advice}));
}

TEST_F(ClickLink, NothingCannotBeClicked)
{
    EXPECT_EQ(call(u"clickLink"_s, {nullptr}).error, u"Cannot click null object."_s);
    EXPECT_EQ(call(u"clickLink"_s, {wrapObject(nullptr)}).error, u"Cannot click null object."_s);
}

TEST_F(ClickLink, AButtonIsNoLink)
{
    EXPECT_EQ(call(u"clickLink"_s, {element<HTML_Button>()}).error,
        u"Element of type 'HTML_Button' can't be clicked. Must be of type HTML_Anchor"_s);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST_F(ClickLink, AFailureIsTheScriptsError)
{
    page.fail(u"gone"_s);

    EXPECT_EQ(call(u"clickLink"_s, {element<HTML_Anchor>()}).error, u"Failed to click link: %"_s);
}

TEST_F(ClickLink, ALinkOfAPageThatWentIsAnError)
{
    const SharedPtr<Object> link = element<HTML_Anchor>();
    retrieveObject(link)->invalidate();

    EXPECT_EQ(call(u"clickLink"_s, {link}).error,
        u"Object reference deleted in browser already, please obtain a new reference using waitForObject or "
        "findObject"_s);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST_F(ScrollTo, TheTopIsTheDefault)
{
    EXPECT_TRUE(isVoid(call(u"scrollTo"_s, {element<HTML_Object>()}).value));
    EXPECT_TRUE(isVoid(call(u"scrollTo"_s, {element<HTML_Object>(), argument(true)}).value));
    EXPECT_TRUE(isVoid(call(u"scrollTo"_s, {element<HTML_Object>(), argument(false)}).value));

    EXPECT_EQ(page.scripts(),
        (QStringList{u"__ostrel__scrollToElement(el,1);"_s, u"__ostrel__scrollToElement(el,1);"_s,
            u"__ostrel__scrollToElement(el,0);"_s}));
}

TEST_F(ScrollTo, NothingCannotBeScrolledTo)
{
    EXPECT_EQ(call(u"scrollTo"_s, {nullptr}).error, u"Cannot scroll to null object."_s);
}

TEST_F(ScrollTo, AFailureIsTheScriptsError)
{
    page.fail(u"gone"_s);

    EXPECT_EQ(
        call(u"scrollTo"_s, {element<HTML_Object>()}).error, u"Error while scrolling to element: gone"_s);
}

QString existsIn(const QString &optionText)
{
    return u"var found = false;for( var i = 0; i < el.options.length; i++ ) {    if( el.options[i].text == '"_s
        + optionText + u"' ) {        found = true;    }}found;"_s;
}

TEST_F(SelectOption, IsCheckedFirstInASingleSelect)
{
    page.answer(u"true"_s);

    const ScriptAnswer answer
        = call(u"selectOption"_s, {element<HTML_Select>(false), argument(u"it's \\ here"_s)});

    EXPECT_EQ(answer.error, QString());
    EXPECT_TRUE(isVoid(answer.value));
    EXPECT_EQ(page.scripts(),
        (QStringList{existsIn(u"it\\'s \\\\ here"_s),
            u"setTimeout(function(e){__ostrel__selectSingleOption(el, 'it\\'s \\\\ here' );}, 100);"_s}));
}

TEST_F(SelectOption, ATextThatIsNoOptionLeavesTheSelectAlone)
{
    page.answer(u"false"_s);

    EXPECT_EQ(call(u"selectOption"_s, {element<HTML_Select>(false), argument(u"Mars"_s)}).error,
        u"Could not find item with text 'Mars'."_s);
    EXPECT_EQ(page.scripts(), QStringList{existsIn(u"Mars"_s)});
}

TEST_F(SelectOption, ACheckThatFailsIsAnError)
{
    page.fail(u"gone"_s);

    EXPECT_EQ(call(u"selectOption"_s, {element<HTML_Select>(false), argument(u"%2"_s)}).error,
        u"Error checking existence of option '%2': gone"_s);
}

TEST_F(SelectOption, AMultipleSelectIsNotChecked)
{
    EXPECT_EQ(call(u"selectOption"_s, {element<HTML_Select>(true), argument(u"Mars"_s)}).error, QString());
    EXPECT_EQ(page.scripts(),
        QStringList{u"setTimeout(function(e){__ostrel__selectMultiOption(el, 'Mars' );}, 100);"_s});
}

TEST_F(SelectOption, HostileTextsStayTexts)
{
    for (const HostileText &hostile : hostileTexts()) {
        if (hostile.hasLineBreak())
            continue;
        FakePage answering;
        answering.answer(u"true"_s);
        const SharedPtr<Object> select = wrapObject(new HTML_Select(QString(), u"el"_s, false, &answering));
        call(u"selectOption"_s, {select, argument(hostile.text)});

        PageScript script;
        script.run(u"el.options = [{ text: 'other' }]"_s);
        EXPECT_EQ(script.run(answering.scripts().first()).toString(), u"false"_s) << hostile.name;
        EXPECT_EQ(script.error(), QString()) << hostile.name;
    }
}

TEST_F(SelectOption, ToolkitsWithoutACheckAreAskedAtOnce)
{
    EXPECT_EQ(call(u"selectOption"_s, {element<HTML_KiwiChoice>(), argument(u"Mars"_s)}).error, QString());
    EXPECT_EQ(call(u"selectOption"_s, {element<HTML_BackBaseComboBox>(false), argument(u"Mars"_s)}).error,
        QString());
    EXPECT_EQ(page.scripts().size(), 2);
    EXPECT_TRUE(page.scripts()[0].contains("__ostrel__kiwi__choice__setSelectedOption"_L1));
    EXPECT_TRUE(page.scripts()[1].contains("__ostrel__backbase__selectComboBoxValue"_L1));
}

TEST_F(SelectOption, ACustomBoxIsAskedWhetherItHasTheOption)
{
    page.answer(u"true"_s);

    EXPECT_EQ(call(u"selectOption"_s, {element<HTML_CustomComboBox>(u"Acme"_s), argument(u"Mars"_s)}).error,
        QString());
    EXPECT_EQ(page.scripts(),
        (QStringList{
            u"AcmeExtension.hasOption(el,'Mars');"_s, u"AcmeExtension.setSelectedOption(el,'Mars');"_s}));
}

TEST_F(SelectOption, ACustomListIsAskedWhetherItHasTheOptions)
{
    page.answer(u"true"_s);

    EXPECT_EQ(call(u"selectOption"_s, {element<HTML_CustomSelectList>(u"Acme"_s), argument(u"Mars"_s)}).error,
        QString());
    EXPECT_EQ(page.scripts(),
        (QStringList{
            u"AcmeExtension.hasOptions(el,'Mars');"_s, u"AcmeExtension.setSelectedOptions(el,'Mars');"_s}));
}

TEST_F(SelectOption, ACustomControlWithoutTheOptionIsLeftAlone)
{
    page.answer(u"false"_s);
    page.answer(u"false"_s);

    EXPECT_EQ(call(u"selectOption"_s, {element<HTML_CustomComboBox>(u"Acme"_s), argument(u"Mars"_s)}).error,
        u"Could not find items 'Mars'."_s);
    EXPECT_EQ(call(u"selectOption"_s, {element<HTML_CustomSelectList>(u"Acme"_s), argument(u"Mars"_s)}).error,
        u"Could not find items 'Mars'."_s);
    EXPECT_EQ(page.scripts().size(), 2);
}

TEST_F(SelectOption, AFailureOfACustomControlIsTheScriptsError)
{
    page.fail(u"gone"_s);

    EXPECT_EQ(call(u"selectOption"_s, {element<HTML_CustomComboBox>(u"Acme"_s), argument(u"Mars"_s)}).error,
        u"Failed to check for options 'Mars': gone"_s);
}

TEST_F(SelectOption, NothingHasNoOptions)
{
    EXPECT_EQ(call(u"selectOption"_s, {nullptr, argument(u"Mars"_s)}).error,
        u"Cannot select option in null object."_s);
}

TEST_F(SelectOption, ALinkHasNoOptions)
{
    EXPECT_EQ(call(u"selectOption"_s, {element<HTML_Anchor>(), argument(u"Mars"_s)}).error,
        u"Element of type 'HTML_Anchor' can't be selected. Must be of type HTML_Select, HTML_KiwiChoice, "
        "HTML_CustomComboBox or HTML_BackBaseComboBox"_s);
}

TEST_F(SelectOption, ByNameLooksTheFieldUp)
{
    const OnePage delegate(element<HTML_KiwiChoice>());
    const SharedPtr<Object> toplevel
        = Inspector::self()->findClass(u"OnePage"_s)->wrap(&page, ObjectAttribute::Pointer());
    Inspector::self()->addToplevel(toplevel);

    EXPECT_EQ(call(u"selectOption"_s, {argument(u"zurück"_s), argument(u"Mars"_s)}).error, QString());

    Inspector::self()->removeToplevel(toplevel);
    ASSERT_EQ(page.scripts().size(), 1);
    EXPECT_TRUE(page.scripts().first().contains("__ostrel__kiwi__choice__setSelectedOption"_L1));
}

TEST_F(SelectOption, AnUnknownNameIsAnError)
{
    EXPECT_EQ(
        sharedSelectOptionByNameFn()->call({nullptr, argument(u"Mars"_s)}).error, u"Invalid object name ''"_s)
        << "a host that calls it has no overload to choose";
    EXPECT_EQ(call(u"selectOption"_s, {argument(u"nobody"_s), argument(u"Mars"_s)}).error,
        u"Invalid object name 'nobody'"_s);
}

/// Claims the class name of a select and is none.
class Pretender : public HTML_Object
{
public:
    using HTML_Object::HTML_Object;
    const char *className() const override { return "HTML_Select"; }
};

TEST_F(SelectOption, AnElementThatOnlyClaimsToBeASelectIsOfUnknownType)
{
    EXPECT_EQ(call(u"selectOption"_s, {element<Pretender>(), argument(u"Mars"_s)}).error,
        u"Unknown type of combobox: 'HTML_Select'"_s);
}

} // namespace
