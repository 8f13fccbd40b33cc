// Tests of the menus, tabs, date choosers and calendars that a page extension operates.
#include "wrappers/web/controls/menustabscalendars.h"
#include "wrappers/web/objectfactory.h"

#include "support/classcase.h"
#include "support/fakepage.h"
#include "support/operationcase.h"
#include "support/pagescript.h"
#include "support/printers.h"
#include "support/scriptcalls.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

const QString done = u"done"_s;
const QString menu = foundAnswer(u"menu_Acme"_s);
const QString menuItem = foundAnswer(u"menuitem_Acme"_s);
const QString tab = foundAnswer(u"tabitem_Acme"_s);
const QString tabWidget = foundAnswer(u"tabwidget_Acme"_s);
const QString event = foundAnswer(u"calendarevent_Acme"_s);
const QString plain = foundAnswer(u"DIV"_s);
const QString nothing = nothingAnswer();

DateTime moment()
{
    return DateTime(QDate(2026, 1, 9), QTime(8, 5));
}

class MenusTabsCalendars : public Operations
{
};

} // namespace

TEST_P(MenusTabsCalendars, SendsItsScriptAndReadsTheAnswer)
{
    sendsItsScriptAndReadsTheAnswer();
}

TEST_P(MenusTabsCalendars, SaysWhatFailed)
{
    saysWhatFailed();
}

INSTANTIATE_TEST_SUITE_P(Menus, MenusTabsCalendars,
    testing::ValuesIn(QList<OperationCase>{
        {"items", on<&HTML_Menu::numItems>(), u"AcmeExtension.getMenuItemCount( el);"_s, u"3"_s, u"3"_s,
            u"Error obtaining number of items: gone"_s},
        {"item at", on<&HTML_Menu::itemAt>(2), identifying(u"AcmeExtension.getMenuItemAt(el, 2);"_s),
            menuItem, u"HTML_MenuItem found"_s, u"Error obtaining menu item 2: gone"_s},
        {"item at a place that holds an element", on<&HTML_Menu::itemAt>(2),
            identifying(u"AcmeExtension.getMenuItemAt(el, 2);"_s), plain, u"nothing"_s,
            u"Error obtaining menu item 2: gone"_s},
        {"item by text", on<&HTML_Menu::findItemByText>(u"Save"_s),
            identifying(u"AcmeExtension.findMenuItemByText(el, 'Save');"_s), menuItem,
            u"HTML_MenuItem found"_s, u"Error obtaining menu item with text 'Save': gone"_s},
        {"no item by text", on<&HTML_Menu::findItemByText>(u"Save"_s),
            identifying(u"AcmeExtension.findMenuItemByText(el, 'Save');"_s), nothing, u"nothing"_s,
            u"Error obtaining menu item with text 'Save': gone"_s},
        {"item by icon", on<&HTML_Menu::findItemByIconUrl>(u"save.png"_s),
            identifying(u"AcmeExtension.findMenuItemByIconUrl(el, 'save.png');"_s), menuItem,
            u"HTML_MenuItem found"_s, u"Error obtaining menu item with icon 'save.png': gone"_s},
        {"visible menu", on<&HTML_Menu::visible>(), u"__ostrel__isVisible( el);"_s, u"true"_s, u"true"_s,
            u"Error determining visibility: gone"_s},
        {"visible item", on<&HTML_MenuItem::visible>(), u"__ostrel__isVisible( el);"_s, u"false"_s,
            u"false"_s, u"Error determining visibility: gone"_s},
        {"parent menu", on<&HTML_MenuItem::parentMenu>(), identifying(u"AcmeExtension.getParentMenu(el);"_s),
            menu, u"HTML_Menu found"_s, u"Error obtaining parent menu: gone"_s},
        {"no sub menu", on<&HTML_MenuItem::subMenu>(), identifying(u"AcmeExtension.getSubMenu(el);"_s),
            nothing, u"nothing"_s, u"Error obtaining sub menu: gone"_s},
        {"text", on<&HTML_MenuItem::text>(), u"Ostrel.cleanString( AcmeExtension.getMenuItemText(el) );"_s,
            u" Save\r\n all "_s, u"Save all"_s, u"Error fetching item text: gone"_s},
        {"no text", on<&HTML_MenuItem::text>(), u"Ostrel.cleanString( AcmeExtension.getMenuItemText(el) );"_s,
            u"undefined"_s, u""_s, u"Error fetching item text: gone"_s},
        {"set text", on<&HTML_MenuItem::setText>(u"Save"_s), u"AcmeExtension.setMenuItemText(el, 'Save');"_s,
            u"undefined"_s, done, u"Error setting item text 'Save': gone"_s},
        {"icon", on<&HTML_MenuItem::iconUrl>(), u"AcmeExtension.getMenuItemIconUrl(el);"_s, u" save.png\n"_s,
            u"save.png"_s, u"Error fetching icon url: gone"_s},
        {"no icon", on<&HTML_MenuItem::iconUrl>(), u"AcmeExtension.getMenuItemIconUrl(el);"_s, u"undefined"_s,
            u""_s, u"Error fetching icon url: gone"_s},
        {"set icon", on<&HTML_MenuItem::setIconUrl>(u"save.png"_s),
            u"AcmeExtension.setMenuItemIconUrl(el, 'save.png');"_s, u"undefined"_s, done,
            u"Error setting icon url 'save.png': gone"_s},
        {"enabled", on<&HTML_MenuItem::isEnabled>(), u"AcmeExtension.isMenuItemEnabled(el);"_s, u"true"_s,
            u"true"_s, u"Error fetching item enablement: gone"_s},
        {"set enabled", on<&HTML_MenuItem::setEnabled>(false),
            u"AcmeExtension.setMenuItemEnabled(el, false);"_s, u"undefined"_s, done,
            u"Error setting item enablement to false: gone"_s},
        {"checked", on<&HTML_MenuItem::isChecked>(), u"AcmeExtension.isMenuItemChecked(el);"_s, u"true"_s,
            u"true"_s, u"Error fetching item check state: gone"_s},
        {"set checked", on<&HTML_MenuItem::setChecked>(true),
            u"AcmeExtension.setMenuItemChecked(el, true);"_s, u"undefined"_s, done,
            u"Error setting item check state to true: gone"_s},
        {"separator", on<&HTML_MenuItem::isSeparator>(), u"AcmeExtension.isMenuItemSeparator(el);"_s,
            u"false"_s, u"false"_s, u"Error fetching item separator state: gone"_s},
        {"set separator", on<&HTML_MenuItem::setSeparator>(true),
            u"AcmeExtension.setMenuItemSeparator(el, true);"_s, u"undefined"_s, done,
            u"Error setting item separator state to true: gone"_s},
        {"menu of a button", on<&HTML_MenuButton::menu>(), identifying(u"AcmeExtension.getMenu(el);"_s), menu,
            u"HTML_Menu found"_s, u"Error obtaining menu from button: gone"_s},
    }),
    rowName<OperationCase>);

INSTANTIATE_TEST_SUITE_P(Tabs, MenusTabsCalendars,
    testing::ValuesIn(QList<OperationCase>{
        {"click tab", on<&HTML_TabWidget::clickTab>(u"Billing"_s),
            u"AcmeExtension.clickTab(el, 'Billing');"_s, u"undefined"_s, done,
            u"Error while clicking tab 'Billing': gone"_s},
        {"current tab", on<&HTML_TabWidget::currentTab>(), identifying(u"AcmeExtension.getCurrentTab(el);"_s),
            tab, u"HTML_Tab found"_s, u"Error fetching current tab: gone"_s},
        {"find tab", on<&HTML_TabWidget::findTab>(u"Billing"_s),
            identifying(u"AcmeExtension.findTab(el, 'Billing');"_s), tab, u"HTML_Tab found"_s,
            u"Error finding tab 'Billing': gone"_s},
        {"find no tab", on<&HTML_TabWidget::findTab>(u"Billing"_s),
            identifying(u"AcmeExtension.findTab(el, 'Billing');"_s), nothing, u"nothing"_s,
            u"Error finding tab 'Billing': gone"_s},
        {"title", on<&HTML_Tab::title>(), u"AcmeExtension.getTitle( el );"_s, u" Bill\r\ning "_s,
            u"Billing"_s, u"Error while fetching title: gone"_s},
        {"no title", on<&HTML_Tab::title>(), u"AcmeExtension.getTitle( el );"_s, u"undefined"_s, u""_s,
            u"Error while fetching title: gone"_s},
        {"set title", on<&HTML_Tab::setTitle>(u"Billing"_s), u"AcmeExtension.setTitle( el, 'Billing' );"_s,
            u"undefined"_s, done, u"Error setting title 'Billing': gone"_s},
        {"icon", on<&HTML_Tab::icon>(), u"AcmeExtension.getIcon( el );"_s, u" bill.png "_s, u"bill.png"_s,
            u"Error while fetching icon: gone"_s},
        {"no icon", on<&HTML_Tab::icon>(), u"AcmeExtension.getIcon( el );"_s, u"undefined"_s, u""_s,
            u"Error while fetching icon: gone"_s},
        {"set icon", on<&HTML_Tab::setIcon>(u"bill.png"_s), u"AcmeExtension.setIcon( el, 'bill.png' );"_s,
            u"undefined"_s, done, u"Error setting icon 'bill.png': gone"_s},
        {"enabled", on<&HTML_Tab::enabled>(), u"AcmeExtension.isEnabled( el );"_s, u"true"_s, u"true"_s,
            u"Error while fetching enabled state: gone"_s},
        {"set enabled", on<&HTML_Tab::setEnabled>(false), u"AcmeExtension.setEnabled( el, false );"_s,
            u"undefined"_s, done, u"Error setting enablement to false: gone"_s},
        {"tab widget", on<&HTML_Tab::getTabWidget>(), identifying(u"AcmeExtension.getTabWidget(el);"_s),
            tabWidget, u"HTML_TabWidget found"_s, u"Error fetching tab widget: gone"_s},
    }),
    rowName<OperationCase>);

INSTANTIATE_TEST_SUITE_P(Dates, MenusTabsCalendars,
    testing::ValuesIn(QList<OperationCase>{
        {"date of a chooser", on<&HTML_DateChooser::date>(),
            u"__ostrel__convertJSDateToDateTimeString( AcmeExtension.getDate(el));"_s, u"2026,1,9,8,5"_s,
            u"2026-01-09 08:05"_s, u"Error obtaining date: gone"_s},
        {"date of a chooser with more than a minute", on<&HTML_DateChooser::date>(),
            u"__ostrel__convertJSDateToDateTimeString( AcmeExtension.getDate(el));"_s,
            u"2026,12,31,23,59,58"_s, u"2026-12-31 23:59"_s, u"Error obtaining date: gone"_s},
        {"set date of a chooser", on<&HTML_DateChooser::setDate>(moment()),
            u"AcmeExtension.setDate(el, (new Date(2026,1-1,9,8,5)));"_s, u"undefined"_s, done,
            u"Error setting date '1/9/2026 8:5': gone"_s},
        {"date of a calendar", on<&HTML_CalendarView::date>(),
            u"__ostrel__convertJSDateToDateTimeString( AcmeExtension.getDate(el));"_s, u"2026,1,9,0,0"_s,
            u"2026-01-09 00:00"_s, u"Error obtaining date: gone"_s},
        {"set date of a calendar", on<&HTML_CalendarView::setDate>(moment()),
            u"AcmeExtension.setDate(el, (new Date(2026,1-1,9,8,5)));"_s, u"undefined"_s, done,
            u"Error setting date: gone"_s},
        {"visible events", on<&HTML_CalendarView::numVisibleEvents>(),
            u"AcmeExtension.getVisibleEventCount(el);"_s, u"4"_s, u"4"_s,
            u"Error obtaining number of events: gone"_s},
        {"visible event at", on<&HTML_CalendarView::visibleEventAt>(2),
            identifying(u"AcmeExtension.getVisibleEventAt(el, 2);"_s), event, u"HTML_CalendarEvent found"_s,
            u"Error obtaining visible event 2: gone"_s},
        {"no visible event", on<&HTML_CalendarView::visibleEventAt>(9),
            identifying(u"AcmeExtension.getVisibleEventAt(el, 9);"_s), nothing, u"nothing"_s,
            u"Error obtaining visible event 9: gone"_s},
        {"title", on<&HTML_CalendarEvent::title>(), u"AcmeExtension.getTitle(el);"_s, u" Din\r\nner "_s,
            u"Dinner"_s, u"Error obtaining title: gone"_s},
        {"no title", on<&HTML_CalendarEvent::title>(), u"AcmeExtension.getTitle(el);"_s, u"undefined"_s,
            u""_s, u"Error obtaining title: gone"_s},
        {"set title", on<&HTML_CalendarEvent::setTitle>(u"Dinner"_s),
            u"AcmeExtension.setTitle(el, 'Dinner');"_s, u"undefined"_s, done,
            u"Error changing title to 'Dinner': gone"_s},
        {"description", on<&HTML_CalendarEvent::description>(), u"AcmeExtension.getDescription(el);"_s,
            u" At home "_s, u"At home"_s, u"Error obtaining description: gone"_s},
        {"no description", on<&HTML_CalendarEvent::description>(), u"AcmeExtension.getDescription(el);"_s,
            u"undefined"_s, u""_s, u"Error obtaining description: gone"_s},
        {"set description", on<&HTML_CalendarEvent::setDescription>(u"At home"_s),
            u"AcmeExtension.setDescription(el, 'At home');"_s, u"undefined"_s, done,
            u"Error changing description to 'At home': gone"_s},
        {"start", on<&HTML_CalendarEvent::startDateTime>(),
            u"__ostrel__convertJSDateToDateTimeString( AcmeExtension.getStartDateTime(el));"_s,
            u"2026,1,9,8,5"_s, u"2026-01-09 08:05"_s, u"Error obtaining date: gone"_s},
        {"set start", on<&HTML_CalendarEvent::setStartDateTime>(moment()),
            u"AcmeExtension.setStartDateTime(el, (new Date(2026,1-1,9,8,5)));"_s, u"undefined"_s, done,
            u"Error changing start datetime to '1/9/2026 8:5': gone"_s},
        {"end", on<&HTML_CalendarEvent::endDateTime>(),
            u"__ostrel__convertJSDateToDateTimeString( AcmeExtension.getEndDateTime(el));"_s,
            u"2026,1,9,8,5"_s, u"2026-01-09 08:05"_s, u"Error obtaining date: gone"_s},
        {"set end", on<&HTML_CalendarEvent::setEndDateTime>(moment()),
            u"AcmeExtension.setEndDateTime(el, (new Date(2026,1-1,9,8,5)));"_s, u"undefined"_s, done,
            u"Error changing end datetime to '1/9/2026 8:5': gone"_s},
    }),
    rowName<OperationCase>);

TEST(MenusTabsCalendarsAnswers, ANumberThatIsNoneIsShown)
{
    FakePage page;
    page.answer(u"many"_s);
    page.answer(u"many"_s);

    EXPECT_EQ(acme<HTML_Menu>(page).numItems().error, u"Cannot convert 'many' to number of items"_s);
    EXPECT_EQ(acme<HTML_CalendarView>(page).numVisibleEvents().error,
        u"Could not convert number of events 'many' to number."_s);
}

// Dates that are none

namespace {

struct DateCase
{
    const char *name;
    QString answer;
    QString error;
};

void PrintTo(const DateCase &row, std::ostream *stream)
{
    *stream << row.name;
}

class UnreadableDate : public testing::TestWithParam<DateCase>
{
};

} // namespace

TEST_P(UnreadableDate, IsToldWithoutAnotherPrefix)
{
    for (const auto &read : {on<&HTML_DateChooser::date>(), on<&HTML_CalendarView::date>(),
             on<&HTML_CalendarEvent::startDateTime>(), on<&HTML_CalendarEvent::endDateTime>()}) {
        FakePage page;
        page.answer(GetParam().answer);

        EXPECT_EQ(read(page).error, GetParam().error);
    }
}

INSTANTIATE_TEST_SUITE_P(Answers, UnreadableDate,
    testing::ValuesIn(QList<DateCase>{
        {"no date", u"undefined"_s, u"Could not parse date string 'undefined'."_s},
        {"nothing", u""_s, u"Could not parse date string ''."_s},
        {"four parts", u"2026,1,9,8"_s, u"Could not parse date string '2026,1,9,8'."_s},
        {"year", u"x,1,9,8,5"_s, u"Could not parse year in date string 'x,1,9,8,5'."_s},
        {"month", u"2026,x,9,8,5"_s, u"Could not parse month in date string '2026,x,9,8,5'."_s},
        {"day", u"2026,1,,8,5"_s, u"Could not parse day in date string '2026,1,,8,5'."_s},
        {"hour", u"2026,1,9,x,5"_s, u"Could not parse hour in date string '2026,1,9,x,5'."_s},
        {"minute", u"2026,1,9,8,x"_s, u"Could not parse minute in date string '2026,1,9,8,x'."_s},
        {"page date without a moment", u"NaN,NaN,NaN,NaN,NaN"_s,
            u"Could not parse minute in date string 'NaN,NaN,NaN,NaN,NaN'."_s},
        {"day that no month has", u"2026,2,30,8,5"_s, u"Could not parse date string '2026,2,30,8,5'."_s},
        {"hour that no day has", u"2026,2,3,25,5"_s, u"Could not parse date string '2026,2,3,25,5'."_s},
    }),
    rowName<DateCase>);

TEST(InvalidDate, IsNotSent)
{
    FakePage page;
    const DateTime none;

    for (const auto &set : {on<&HTML_DateChooser::setDate>(none), on<&HTML_CalendarView::setDate>(none),
             on<&HTML_CalendarEvent::setStartDateTime>(none), on<&HTML_CalendarEvent::setEndDateTime>(none)})
        EXPECT_EQ(set(page).error, u"Cannot set a date that is not valid."_s);

    EXPECT_EQ(page.scripts(), QStringList());
}

// What a script engine makes of the composed script

TEST(DateChooser, ThePageGetsTheMomentWithItsOwnMonth)
{
    FakePage page;
    PageScript engine;
    engine.run(u"var got, AcmeExtension = { setDate: function(e, date) { got = date; } };"_s);

    for (const int month : {1, 12}) {
        (void)acme<HTML_DateChooser>(page).setDate(DateTime(QDate(2026, month, 31), QTime(23, 59)));
        engine.run(page.scripts().constLast());

        EXPECT_EQ(engine.run(u"got.getMonth()"_s).toInt(), month - 1);
        EXPECT_EQ(engine.run(u"[got.getFullYear(), got.getDate(), got.getHours(), got.getMinutes()].join()"_s)
                      .toString(),
            u"2026,31,23,59"_s);
    }
}

TEST(MenuItem, TextIsCleanedInThePageAndThenHere)
{
    FakePage page;
    PageScript engine;
    engine.run(u"var Ostrel = { cleanString: function(s) { return '<' + s + '>\\r\\n'; } },\n"
               "    AcmeExtension = { getMenuItemText: function() { return 'Save'; } };"_s);
    const auto entry = acme<HTML_MenuItem>(page);

    (void)entry.text();
    page.answer(engine.run(page.scripts().constLast()).toString());

    EXPECT_EQ(entry.text().value, u"<Save>"_s);
}

TEST(RawText, AQuoteBreaksTheScriptAndThePageReportsIt)
{
    const QString quote = u"it's"_s;
    FakePage page;
    PageScript engine;

    for (const auto &send : {on<&HTML_Menu::findItemByText>(quote), on<&HTML_Menu::findItemByIconUrl>(quote),
             on<&HTML_MenuItem::setText>(quote), on<&HTML_MenuItem::setIconUrl>(quote),
             on<&HTML_TabWidget::clickTab>(quote), on<&HTML_TabWidget::findTab>(quote),
             on<&HTML_Tab::setTitle>(quote), on<&HTML_Tab::setIcon>(quote),
             on<&HTML_CalendarEvent::setTitle>(quote), on<&HTML_CalendarEvent::setDescription>(quote)}) {
        send(page);
        const QString script = page.scripts().constLast();
        engine.run(script);

        EXPECT_TRUE(script.contains(u"(el, 'it's'"_s) || script.contains(u"( el, 'it's'"_s))
            << script.toStdString();
        EXPECT_TRUE(engine.error().startsWith(u"SyntaxError"_s)) << script.toStdString();
    }
}

// Base classes

TEST(MenuButton, IsAButtonOfTheExtension)
{
    FakePage page;
    auto button = acme<HTML_MenuButton>(page);

    (void)button.text();
    (void)button.click(0, 0, 0, 1);

    EXPECT_EQ(page.scripts(),
        (QStringList{
            u"AcmeExtension.getText(el);"_s, u"AcmeExtension.click(el, false, false, false, 0, 0, 1);"_s}));
}

TEST(CalendarView, IsAnItemViewOfTheExtension)
{
    FakePage page;
    page.answer(u"5"_s);
    const auto calendar = acme<HTML_CalendarView>(page);

    EXPECT_EQ(calendar.numColumns().value, 5);
    EXPECT_EQ(calendar.realType().value, u"Acme"_s);
    EXPECT_EQ(page.scripts(), QStringList{u"AcmeExtension.numColumns(el);"_s});
}

// What scripts see

TEST_P(EachWebClass, HasItsMembersInOrder)
{
    EXPECT_EQ(classText(QString::fromLatin1(GetParam().name)), QString::fromLatin1(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(Classes, EachWebClass,
    testing::ValuesIn(std::initializer_list<ClassCase>{
        {"HTML_Menu", R"(base HTML_Object
numItems int read-only
findItemByText(String) HTML_MenuItem
findItemByIconUrl(String) HTML_MenuItem
itemAt(int idx) HTML_MenuItem
numItems() int)"},
        {"HTML_MenuItem", R"(base HTML_Object
text String
isSeparator bool
iconUrl String
isChecked bool
isEnabled bool
parentMenu() HTML_Menu
subMenu() HTML_Menu
text() String
setText(String) void
iconUrl() String
setIconUrl(String) void
isEnabled() bool
setEnabled(bool) void
isChecked() bool
setChecked(bool) void
isSeparator() bool
setSeparator(bool) void)"},
        {"HTML_MenuButton", R"(base HTML_CustomButtonBase
menu() HTML_Menu)"},
        {"HTML_TabWidget", R"(base HTML_Object
currentTab() HTML_Tab
findTab(String title) HTML_Tab
clickTab(String tab) void)"},
        {"HTML_Tab", R"(base HTML_Object
title String
enabled bool
icon String
setTitle(String title) void
title() String
setIcon(String icon) void
icon() String
setEnabled(bool enable) void
enabled() bool
getTabWidget() HTML_TabWidget)"},
        {"HTML_DateChooser", R"(base HTML_Object
date DateTime
setDate(DateTime date) void
date() DateTime)"},
        {"HTML_CalendarView", R"(base HTML_CustomItemView
date DateTime
date() DateTime
setDate(DateTime date) void
visibleEventAt(int num) HTML_CalendarEvent
numVisibleEvents() int)"},
        {"HTML_CalendarEvent", R"(base HTML_Object
endDateTime DateTime
startDateTime DateTime
title String
description String
title() String
setTitle(String tile) void
startDateTime() DateTime
setStartDateTime(DateTime date) void
endDateTime() DateTime
setEndDateTime(DateTime date) void
description() String
setDescription(String description) void)"},
    }),
    className);

TEST(CalendarScript, DatesAreReadAndAssigned)
{
    createWebObjectClassesOnce();
    FakePage page;
    page.answer(u"2026,1,9,8,5"_s);
    const SharedPtr<Object> chooser = wrapObject(new HTML_DateChooser({}, u"el"_s, u"Acme"_s, &page));
    const Property *date = chooser->objectClass()->findProperty(u"date"_s);
    ASSERT_NE(date, nullptr);

    const ScriptAnswer read = readProperty(chooser, u"date"_s);
    const bool written = chooser->objectClass()->write(chooser, date, read.value);

    EXPECT_EQ(unwrapDateTime(read.value), moment());
    EXPECT_TRUE(written);
    EXPECT_EQ(page.scripts().constLast(), u"AcmeExtension.setDate(el, (new Date(2026,1-1,9,8,5)));"_s);
}

TEST(CalendarScript, AssigningWhatIsNoDateIsAScriptError)
{
    createWebObjectClassesOnce();
    FakePage page;
    const SharedPtr<Object> chooser = wrapObject(new HTML_DateChooser({}, u"el"_s, u"Acme"_s, &page));

    EXPECT_EQ(writeProperty(chooser, u"date"_s, u"tomorrow"_s), u"Cannot set a date that is not valid."_s);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(MenuScript, AMissingItemIsANullObject)
{
    createWebObjectClassesOnce();
    FakePage page;
    page.answer(nothing);
    const SharedPtr<Object> object = wrapObject(new HTML_Menu({}, u"el"_s, u"Acme"_s, &page));

    const ScriptAnswer answer = callMethod(object, u"findItemByText"_s, u"Save"_s);

    EXPECT_EQ(answer.error, QString());
    ASSERT_NE(answer.value, nullptr);
    EXPECT_TRUE(answer.value->isNull());
}
