// Menus, tabs, date choosers and calendars that a page extension operates. Texts go into the script as they
// stand: a quote in one makes the page report an error.
#pragma once

#include "wrappers/web/controls/customcontrols.h"
#include "wrappers/web/controls/customitemviews.h"

namespace Ostrel::WebWrapper {

class HTML_MenuItem;
class HTML_Tab;
class HTML_CalendarEvent;

// Operations that give a wrapper give a new one, owned by the caller, or null and no error where there is
// none.

class PAGEPROBELIB_EXPORT HTML_Menu : public ExtensionBacked<HTML_Object>
{
public:
    static constexpr char ScriptName[] = "HTML_Menu";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }
    FunctionCallResult<bool> visible() const override;

    FunctionCallResult<int> numItems() const;
    FunctionCallResult<HTML_MenuItem *> itemAt(int index) const;
    FunctionCallResult<HTML_MenuItem *> findItemByText(const QString &text) const;
    FunctionCallResult<HTML_MenuItem *> findItemByIconUrl(const QString &url) const;
};

class PAGEPROBELIB_EXPORT HTML_MenuItem : public ExtensionBacked<HTML_Object>
{
public:
    static constexpr char ScriptName[] = "HTML_MenuItem";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }
    FunctionCallResult<bool> visible() const override;

    FunctionCallResult<HTML_Menu *> parentMenu() const;
    FunctionCallResult<HTML_Menu *> subMenu() const;

    FunctionCallResult<QString> text() const;
    FunctionCallResult<void> setText(const QString &text);
    FunctionCallResult<QString> iconUrl() const;
    FunctionCallResult<void> setIconUrl(const QString &url);
    FunctionCallResult<bool> isEnabled() const;
    FunctionCallResult<void> setEnabled(bool enabled);
    FunctionCallResult<bool> isChecked() const;
    FunctionCallResult<void> setChecked(bool checked);
    FunctionCallResult<bool> isSeparator() const;
    FunctionCallResult<void> setSeparator(bool separator);
};

class PAGEPROBELIB_EXPORT HTML_MenuButton : public HTML_CustomButtonBase
{
public:
    static constexpr char ScriptName[] = "HTML_MenuButton";

    using HTML_CustomButtonBase::HTML_CustomButtonBase;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<HTML_Menu *> menu() const;
};

class PAGEPROBELIB_EXPORT HTML_TabWidget : public ExtensionBacked<HTML_Object>
{
public:
    static constexpr char ScriptName[] = "HTML_TabWidget";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<void> clickTab(const QString &name);
    FunctionCallResult<HTML_Tab *> currentTab() const;
    FunctionCallResult<HTML_Tab *> findTab(const QString &title) const;
};

class PAGEPROBELIB_EXPORT HTML_Tab : public ExtensionBacked<HTML_Object>
{
public:
    static constexpr char ScriptName[] = "HTML_Tab";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<QString> title() const;
    FunctionCallResult<void> setTitle(const QString &title);
    FunctionCallResult<QString> icon() const;
    FunctionCallResult<void> setIcon(const QString &icon);
    FunctionCallResult<bool> enabled() const;
    FunctionCallResult<void> setEnabled(bool enabled);
    FunctionCallResult<HTML_TabWidget *> getTabWidget() const;
};

// Dates cross over to the minute, in the page's time. What is no date fails, in both directions.

class PAGEPROBELIB_EXPORT HTML_DateChooser : public ExtensionBacked<HTML_Object>
{
public:
    static constexpr char ScriptName[] = "HTML_DateChooser";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<DateTime> date() const;
    FunctionCallResult<void> setDate(const DateTime &date);
};

class PAGEPROBELIB_EXPORT HTML_CalendarView : public HTML_CustomItemView
{
public:
    static constexpr char ScriptName[] = "HTML_CalendarView";

    using HTML_CustomItemView::HTML_CustomItemView;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<DateTime> date() const;
    FunctionCallResult<void> setDate(const DateTime &date);
    FunctionCallResult<int> numVisibleEvents() const;
    FunctionCallResult<HTML_CalendarEvent *> visibleEventAt(int index) const;
};

class PAGEPROBELIB_EXPORT HTML_CalendarEvent : public ExtensionBacked<HTML_Object>
{
public:
    static constexpr char ScriptName[] = "HTML_CalendarEvent";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<QString> title() const;
    FunctionCallResult<void> setTitle(const QString &title);
    FunctionCallResult<QString> description() const;
    FunctionCallResult<void> setDescription(const QString &description);
    FunctionCallResult<DateTime> startDateTime() const;
    FunctionCallResult<void> setStartDateTime(const DateTime &date);
    FunctionCallResult<DateTime> endDateTime() const;
    FunctionCallResult<void> setEndDateTime(const DateTime &date);
};

} // namespace Ostrel::WebWrapper
