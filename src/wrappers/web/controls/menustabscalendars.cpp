#include "wrappers/web/controls/menustabscalendars.h"

#include "wrappers/web/controls/extensioncall.h"

#include <QStringList>

#include <array>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

/// The parts of a date as scripts and messages show them.
struct DateTexts
{
    explicit DateTexts(const DateTime &date)
        : year(QString::number(date.date().year())), month(QString::number(date.date().month())),
          day(QString::number(date.date().day())), hour(QString::number(date.time().hour())),
          minute(QString::number(date.time().minute()))
    {
    }

    /// The page's own date. It counts months from 0, and the script shows that instead of hiding it.
    Expr expression() const
    {
        return Expr{message(u"(new Date(%1,%2-1,%3,%4,%5))", year, month, day, hour, minute)};
    }

    QString year;
    QString month;
    QString day;
    QString hour;
    QString minute;
};

/// What a date that names no moment gives; the page would make some other date of it.
Failure noDate()
{
    return Failure(u"Cannot set a date that is not valid."_s);
}

/// The date behind the five numbers that the page answers with.
FunctionCallResult<DateTime> parsedDate(const FunctionCallResult<QString> &answer)
{
    constexpr std::array<QStringView, 5> errors{
        u"Could not parse year in date string '%1'.",
        u"Could not parse month in date string '%1'.",
        u"Could not parse day in date string '%1'.",
        u"Could not parse hour in date string '%1'.",
        u"Could not parse minute in date string '%1'.",
    };

    if (answer.failed())
        return Failure(answer.error);
    const QString &text = answer.value;
    const QStringList parts = text.split(u',');
    if (parts.size() < qsizetype(errors.size()))
        return Failure(message(u"Could not parse date string '%1'.", text));

    std::array<int, errors.size()> numbers{};
    for (std::size_t i = errors.size(); i-- > 0;) {
        bool ok = false;
        numbers[i] = parts[qsizetype(i)].toInt(&ok);
        if (!ok)
            return Failure(message(errors[i], text));
    }
    const auto [year, month, day, hour, minute] = numbers;
    const QDate date(year, month, day);
    const QTime time(hour, minute);
    if (!date.isValid() || !time.isValid())
        return Failure(message(u"Could not parse date string '%1'.", text));
    return DateTime(date, time);
}

} // namespace

// Menus

FunctionCallResult<bool> HTML_Menu::visible() const
{
    return isTrue(evaluate(script(u"__ostrel__isVisible( %1);", ref()), u"Error determining visibility: %1"));
}

FunctionCallResult<int> HTML_Menu::numItems() const
{
    return toNumber(evaluate(script(u"%1Extension.getMenuItemCount( %2);", ext(), ref()),
                        u"Error obtaining number of items: %1"),
        u"Cannot convert '%1' to number of items");
}

FunctionCallResult<HTML_MenuItem *> HTML_Menu::itemAt(int index) const
{
    return as<HTML_MenuItem>(objectFrom(script(u"%1Extension.getMenuItemAt(%2, %3);", ext(), ref(), index),
        u"Error obtaining menu item %1: %2", QString::number(index)));
}

FunctionCallResult<HTML_MenuItem *> HTML_Menu::findItemByText(const QString &text) const
{
    return as<HTML_MenuItem>(
        objectFrom(script(u"%1Extension.findMenuItemByText(%2, '%3');", ext(), ref(), Expr{text}),
            u"Error obtaining menu item with text '%1': %2", text));
}

FunctionCallResult<HTML_MenuItem *> HTML_Menu::findItemByIconUrl(const QString &url) const
{
    return as<HTML_MenuItem>(
        objectFrom(script(u"%1Extension.findMenuItemByIconUrl(%2, '%3');", ext(), ref(), Expr{url}),
            u"Error obtaining menu item with icon '%1': %2", url));
}

FunctionCallResult<bool> HTML_MenuItem::visible() const
{
    return isTrue(evaluate(script(u"__ostrel__isVisible( %1);", ref()), u"Error determining visibility: %1"));
}

FunctionCallResult<HTML_Menu *> HTML_MenuItem::parentMenu() const
{
    return as<HTML_Menu>(objectFrom(
        script(u"%1Extension.getParentMenu(%2);", ext(), ref()), u"Error obtaining parent menu: %1"));
}

FunctionCallResult<HTML_Menu *> HTML_MenuItem::subMenu() const
{
    return as<HTML_Menu>(
        objectFrom(script(u"%1Extension.getSubMenu(%2);", ext(), ref()), u"Error obtaining sub menu: %1"));
}

FunctionCallResult<QString> HTML_MenuItem::text() const
{
    return cleaned(evaluate(script(u"Ostrel.cleanString( %1Extension.getMenuItemText(%2) );", ext(), ref()),
        u"Error fetching item text: %1"));
}

FunctionCallResult<void> HTML_MenuItem::setText(const QString &text)
{
    return run(script(u"%1Extension.setMenuItemText(%2, '%3');", ext(), ref(), Expr{text}),
        u"Error setting item text '%1': %2", text);
}

FunctionCallResult<QString> HTML_MenuItem::iconUrl() const
{
    return cleaned(evaluate(
        script(u"%1Extension.getMenuItemIconUrl(%2);", ext(), ref()), u"Error fetching icon url: %1"));
}

FunctionCallResult<void> HTML_MenuItem::setIconUrl(const QString &url)
{
    return run(script(u"%1Extension.setMenuItemIconUrl(%2, '%3');", ext(), ref(), Expr{url}),
        u"Error setting icon url '%1': %2", url);
}

FunctionCallResult<bool> HTML_MenuItem::isEnabled() const
{
    return isTrue(evaluate(
        script(u"%1Extension.isMenuItemEnabled(%2);", ext(), ref()), u"Error fetching item enablement: %1"));
}

FunctionCallResult<void> HTML_MenuItem::setEnabled(bool enabled)
{
    return run(script(u"%1Extension.setMenuItemEnabled(%2, %3);", ext(), ref(), enabled),
        u"Error setting item enablement to %1: %2", wordOf(enabled));
}

FunctionCallResult<bool> HTML_MenuItem::isChecked() const
{
    return isTrue(evaluate(
        script(u"%1Extension.isMenuItemChecked(%2);", ext(), ref()), u"Error fetching item check state: %1"));
}

FunctionCallResult<void> HTML_MenuItem::setChecked(bool checked)
{
    return run(script(u"%1Extension.setMenuItemChecked(%2, %3);", ext(), ref(), checked),
        u"Error setting item check state to %1: %2", wordOf(checked));
}

FunctionCallResult<bool> HTML_MenuItem::isSeparator() const
{
    return isTrue(evaluate(script(u"%1Extension.isMenuItemSeparator(%2);", ext(), ref()),
        u"Error fetching item separator state: %1"));
}

FunctionCallResult<void> HTML_MenuItem::setSeparator(bool separator)
{
    return run(script(u"%1Extension.setMenuItemSeparator(%2, %3);", ext(), ref(), separator),
        u"Error setting item separator state to %1: %2", wordOf(separator));
}

FunctionCallResult<HTML_Menu *> HTML_MenuButton::menu() const
{
    return as<HTML_Menu>(objectFrom(
        script(u"%1Extension.getMenu(%2);", ext(), ref()), u"Error obtaining menu from button: %1"));
}

// Tabs

FunctionCallResult<void> HTML_TabWidget::clickTab(const QString &name)
{
    return run(script(u"%1Extension.clickTab(%2, '%3');", ext(), ref(), Expr{name}),
        u"Error while clicking tab '%1': %2", name);
}

FunctionCallResult<HTML_Tab *> HTML_TabWidget::currentTab() const
{
    return as<HTML_Tab>(objectFrom(
        script(u"%1Extension.getCurrentTab(%2);", ext(), ref()), u"Error fetching current tab: %1"));
}

FunctionCallResult<HTML_Tab *> HTML_TabWidget::findTab(const QString &title) const
{
    return as<HTML_Tab>(objectFrom(script(u"%1Extension.findTab(%2, '%3');", ext(), ref(), Expr{title}),
        u"Error finding tab '%1': %2", title));
}

FunctionCallResult<QString> HTML_Tab::title() const
{
    return cleaned(
        evaluate(script(u"%1Extension.getTitle( %2 );", ext(), ref()), u"Error while fetching title: %1"));
}

FunctionCallResult<void> HTML_Tab::setTitle(const QString &title)
{
    return run(script(u"%1Extension.setTitle( %2, '%3' );", ext(), ref(), Expr{title}),
        u"Error setting title '%1': %2", title);
}

FunctionCallResult<QString> HTML_Tab::icon() const
{
    return cleaned(
        evaluate(script(u"%1Extension.getIcon( %2 );", ext(), ref()), u"Error while fetching icon: %1"));
}

FunctionCallResult<void> HTML_Tab::setIcon(const QString &icon)
{
    return run(script(u"%1Extension.setIcon( %2, '%3' );", ext(), ref(), Expr{icon}),
        u"Error setting icon '%1': %2", icon);
}

FunctionCallResult<bool> HTML_Tab::enabled() const
{
    return isTrue(evaluate(
        script(u"%1Extension.isEnabled( %2 );", ext(), ref()), u"Error while fetching enabled state: %1"));
}

FunctionCallResult<void> HTML_Tab::setEnabled(bool enabled)
{
    return run(script(u"%1Extension.setEnabled( %2, %3 );", ext(), ref(), enabled),
        u"Error setting enablement to %1: %2", wordOf(enabled));
}

FunctionCallResult<HTML_TabWidget *> HTML_Tab::getTabWidget() const
{
    return as<HTML_TabWidget>(
        objectFrom(script(u"%1Extension.getTabWidget(%2);", ext(), ref()), u"Error fetching tab widget: %1"));
}

// Dates and calendars

FunctionCallResult<DateTime> HTML_DateChooser::date() const
{
    return parsedDate(
        evaluate(script(u"__ostrel__convertJSDateToDateTimeString( %1Extension.getDate(%2));", ext(), ref()),
            u"Error obtaining date: %1"));
}

FunctionCallResult<void> HTML_DateChooser::setDate(const DateTime &date)
{
    if (!date.isValid())
        return noDate();
    const DateTexts texts(date);
    return run(script(u"%1Extension.setDate(%2, %3);", ext(), ref(), texts.expression()),
        u"Error setting date '%1/%2/%3 %4:%5': %6", texts.month, texts.day, texts.year, texts.hour,
        texts.minute);
}

FunctionCallResult<DateTime> HTML_CalendarView::date() const
{
    return parsedDate(
        evaluate(script(u"__ostrel__convertJSDateToDateTimeString( %1Extension.getDate(%2));", ext(), ref()),
            u"Error obtaining date: %1"));
}

FunctionCallResult<void> HTML_CalendarView::setDate(const DateTime &date)
{
    if (!date.isValid())
        return noDate();
    return run(script(u"%1Extension.setDate(%2, %3);", ext(), ref(), DateTexts(date).expression()),
        u"Error setting date: %1");
}

FunctionCallResult<int> HTML_CalendarView::numVisibleEvents() const
{
    return toNumber(evaluate(script(u"%1Extension.getVisibleEventCount(%2);", ext(), ref()),
                        u"Error obtaining number of events: %1"),
        u"Could not convert number of events '%1' to number.");
}

FunctionCallResult<HTML_CalendarEvent *> HTML_CalendarView::visibleEventAt(int index) const
{
    return as<HTML_CalendarEvent>(
        objectFrom(script(u"%1Extension.getVisibleEventAt(%2, %3);", ext(), ref(), index),
            u"Error obtaining visible event %1: %2", QString::number(index)));
}

FunctionCallResult<QString> HTML_CalendarEvent::title() const
{
    return cleaned(
        evaluate(script(u"%1Extension.getTitle(%2);", ext(), ref()), u"Error obtaining title: %1"));
}

FunctionCallResult<void> HTML_CalendarEvent::setTitle(const QString &title)
{
    return run(script(u"%1Extension.setTitle(%2, '%3');", ext(), ref(), Expr{title}),
        u"Error changing title to '%1': %2", title);
}

FunctionCallResult<QString> HTML_CalendarEvent::description() const
{
    return cleaned(evaluate(
        script(u"%1Extension.getDescription(%2);", ext(), ref()), u"Error obtaining description: %1"));
}

FunctionCallResult<void> HTML_CalendarEvent::setDescription(const QString &description)
{
    return run(script(u"%1Extension.setDescription(%2, '%3');", ext(), ref(), Expr{description}),
        u"Error changing description to '%1': %2", description);
}

FunctionCallResult<DateTime> HTML_CalendarEvent::startDateTime() const
{
    return parsedDate(evaluate(
        script(u"__ostrel__convertJSDateToDateTimeString( %1Extension.getStartDateTime(%2));", ext(), ref()),
        u"Error obtaining date: %1"));
}

FunctionCallResult<void> HTML_CalendarEvent::setStartDateTime(const DateTime &date)
{
    if (!date.isValid())
        return noDate();
    const DateTexts texts(date);
    return run(script(u"%1Extension.setStartDateTime(%2, %3);", ext(), ref(), texts.expression()),
        u"Error changing start datetime to '%1/%2/%3 %4:%5': %6", texts.month, texts.day, texts.year,
        texts.hour, texts.minute);
}

FunctionCallResult<DateTime> HTML_CalendarEvent::endDateTime() const
{
    return parsedDate(evaluate(
        script(u"__ostrel__convertJSDateToDateTimeString( %1Extension.getEndDateTime(%2));", ext(), ref()),
        u"Error obtaining date: %1"));
}

FunctionCallResult<void> HTML_CalendarEvent::setEndDateTime(const DateTime &date)
{
    if (!date.isValid())
        return noDate();
    const DateTexts texts(date);
    return run(script(u"%1Extension.setEndDateTime(%2, %3);", ext(), ref(), texts.expression()),
        u"Error changing end datetime to '%1/%2/%3 %4:%5': %6", texts.month, texts.day, texts.year,
        texts.hour, texts.minute);
}

} // namespace Ostrel::WebWrapper
