// What scripts see of the menus, tabs, date choosers and calendars that a page extension operates.
#include "wrappers/web/controls/menustabscalendars.h"

#include "wrappers/web/reflection/tables.h"

namespace Ostrel::WebWrapper {

namespace {

constexpr PropertyRow menuProperties[] = {
    property<&HTML_Menu::numItems>("numItems"),
};

constexpr MethodRow menuMethods[] = {
    method<&HTML_Menu::findItemByText>("findItemByText", unnamed),
    method<&HTML_Menu::findItemByIconUrl>("findItemByIconUrl", unnamed),
    method<&HTML_Menu::itemAt>("itemAt", "idx"),
    method<&HTML_Menu::numItems>("numItems"),
};

constexpr PropertyRow menuItemProperties[] = {
    property<&HTML_MenuItem::text, &HTML_MenuItem::setText>("text"),
    property<&HTML_MenuItem::isSeparator, &HTML_MenuItem::setSeparator>("isSeparator"),
    property<&HTML_MenuItem::iconUrl, &HTML_MenuItem::setIconUrl>("iconUrl"),
    property<&HTML_MenuItem::isChecked, &HTML_MenuItem::setChecked>("isChecked"),
    property<&HTML_MenuItem::isEnabled, &HTML_MenuItem::setEnabled>("isEnabled"),
};

constexpr MethodRow menuItemMethods[] = {
    method<&HTML_MenuItem::parentMenu>("parentMenu"),
    method<&HTML_MenuItem::subMenu>("subMenu"),
    method<&HTML_MenuItem::text>("text"),
    method<&HTML_MenuItem::setText>("setText", unnamed),
    method<&HTML_MenuItem::iconUrl>("iconUrl"),
    method<&HTML_MenuItem::setIconUrl>("setIconUrl", unnamed),
    method<&HTML_MenuItem::isEnabled>("isEnabled"),
    method<&HTML_MenuItem::setEnabled>("setEnabled", unnamed),
    method<&HTML_MenuItem::isChecked>("isChecked"),
    method<&HTML_MenuItem::setChecked>("setChecked", unnamed),
    method<&HTML_MenuItem::isSeparator>("isSeparator"),
    method<&HTML_MenuItem::setSeparator>("setSeparator", unnamed),
};

constexpr MethodRow menuButtonMethods[] = {
    method<&HTML_MenuButton::menu>("menu"),
};

constexpr MethodRow tabWidgetMethods[] = {
    method<&HTML_TabWidget::currentTab>("currentTab"),
    method<&HTML_TabWidget::findTab>("findTab", "title"),
    method<&HTML_TabWidget::clickTab>("clickTab", "tab"),
};

constexpr PropertyRow tabProperties[] = {
    property<&HTML_Tab::title, &HTML_Tab::setTitle>("title"),
    property<&HTML_Tab::enabled, &HTML_Tab::setEnabled>("enabled"),
    property<&HTML_Tab::icon, &HTML_Tab::setIcon>("icon"),
};

constexpr MethodRow tabMethods[] = {
    method<&HTML_Tab::setTitle>("setTitle", "title"),
    method<&HTML_Tab::title>("title"),
    method<&HTML_Tab::setIcon>("setIcon", "icon"),
    method<&HTML_Tab::icon>("icon"),
    method<&HTML_Tab::setEnabled>("setEnabled", "enable"),
    method<&HTML_Tab::enabled>("enabled"),
    method<&HTML_Tab::getTabWidget>("getTabWidget"),
};

constexpr PropertyRow dateChooserProperties[] = {
    property<&HTML_DateChooser::date, &HTML_DateChooser::setDate>("date"),
};

constexpr MethodRow dateChooserMethods[] = {
    method<&HTML_DateChooser::setDate>("setDate", "date"),
    method<&HTML_DateChooser::date>("date"),
};

constexpr PropertyRow calendarViewProperties[] = {
    property<&HTML_CalendarView::date, &HTML_CalendarView::setDate>("date"),
};

constexpr MethodRow calendarViewMethods[] = {
    method<&HTML_CalendarView::date>("date"),
    method<&HTML_CalendarView::setDate>("setDate", "date"),
    method<&HTML_CalendarView::visibleEventAt>("visibleEventAt", "num"),
    method<&HTML_CalendarView::numVisibleEvents>("numVisibleEvents"),
};

constexpr PropertyRow calendarEventProperties[] = {
    property<&HTML_CalendarEvent::endDateTime, &HTML_CalendarEvent::setEndDateTime>("endDateTime"),
    property<&HTML_CalendarEvent::startDateTime, &HTML_CalendarEvent::setStartDateTime>("startDateTime"),
    property<&HTML_CalendarEvent::title, &HTML_CalendarEvent::setTitle>("title"),
    property<&HTML_CalendarEvent::description, &HTML_CalendarEvent::setDescription>("description"),
};

constexpr MethodRow calendarEventMethods[] = {
    method<&HTML_CalendarEvent::title>("title"),
    // Kept as is: the spelling of the parameter, which tools see.
    method<&HTML_CalendarEvent::setTitle>("setTitle", "tile"),
    method<&HTML_CalendarEvent::startDateTime>("startDateTime"),
    method<&HTML_CalendarEvent::setStartDateTime>("setStartDateTime", "date"),
    method<&HTML_CalendarEvent::endDateTime>("endDateTime"),
    method<&HTML_CalendarEvent::setEndDateTime>("setEndDateTime", "date"),
    method<&HTML_CalendarEvent::description>("description"),
    method<&HTML_CalendarEvent::setDescription>("setDescription", "description"),
};

} // namespace

constinit const ClassTable HTML_Menu_Class{"HTML_Menu", "HTML_Object", menuProperties, menuMethods};
constinit const ClassTable HTML_MenuItem_Class{
    "HTML_MenuItem", "HTML_Object", menuItemProperties, menuItemMethods};
constinit const ClassTable HTML_MenuButton_Class{
    "HTML_MenuButton", "HTML_CustomButtonBase", {}, menuButtonMethods};
constinit const ClassTable HTML_TabWidget_Class{"HTML_TabWidget", "HTML_Object", {}, tabWidgetMethods};
constinit const ClassTable HTML_Tab_Class{"HTML_Tab", "HTML_Object", tabProperties, tabMethods};
constinit const ClassTable HTML_DateChooser_Class{
    "HTML_DateChooser", "HTML_Object", dateChooserProperties, dateChooserMethods};
constinit const ClassTable HTML_CalendarView_Class{
    "HTML_CalendarView", "HTML_CustomItemView", calendarViewProperties, calendarViewMethods};
constinit const ClassTable HTML_CalendarEvent_Class{
    "HTML_CalendarEvent", "HTML_Object", calendarEventProperties, calendarEventMethods};

} // namespace Ostrel::WebWrapper
