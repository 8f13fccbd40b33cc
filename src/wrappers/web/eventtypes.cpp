#include "wrappers/web/eventtypes.h"

#include <algorithm>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView textNames[] = {"text"_L1, "textarea"_L1, "email"_L1, "number"_L1, "url"_L1,
    "tel"_L1, "password"_L1, "search"_L1, "bb_spinner"_L1};
constexpr QLatin1StringView textPrefixes[] = {"custom_text_"_L1};

constexpr QLatin1StringView buttonNames[] = {"button"_L1, "checkbox"_L1, "submit"_L1, "image"_L1, "radio"_L1,
    "bb_button"_L1, "bb_toolbaritem"_L1, "bb_tabselector"_L1, "bb_sidebarselector"_L1, "bb_navpanelhead"_L1,
    "bb_navhead"_L1, "bb_treeleaf"_L1, "bb_tree"_L1, "bb_treehandle"_L1, "bb_accordeon"_L1, "bb_menucell"_L1,
    "bb_spinnerupbutton"_L1, "bb_spinnerdownbutton"_L1, "bb_card"_L1};
constexpr QLatin1StringView buttonPrefixes[]
    = {"custom_button_"_L1, "custom_checkbox_"_L1, "custom_radiobutton_"_L1, "menubutton_"_L1};

constexpr QLatin1StringView selectPrefixes[] = {"select"_L1, "custom_combobox_"_L1, "custom_selectlist_"_L1};
constexpr QLatin1StringView linkNames[] = {"A"_L1, "AREA"_L1};
constexpr QLatin1StringView menuItemPrefixes[] = {"menuitem_"_L1};
constexpr QLatin1StringView dateChooserPrefixes[] = {"datechooser_"_L1};

constexpr QLatin1StringView treeHandleNames[] = {"kiwi_treenode_handle"_L1, "dojo_treeNodeHandle"_L1};
constexpr QLatin1StringView treeHandlePrefixes[] = {"custom_itemhandle_"_L1};

constexpr QLatin1StringView itemNames[] = {"kiwi_treenode_label"_L1, "dojo_treeNodeLabel"_L1,
    "dojo_splitpaneItem"_L1, "bb_listview_item"_L1, "gwc_tableitem"_L1, "gwc_comboitem"_L1};
constexpr QLatin1StringView itemPrefixes[] = {"custom_item_"_L1};

constexpr QLatin1StringView tableItemNames[] = {"kiwi_table_item"_L1, "kiwi_treetable_item"_L1};
constexpr QLatin1StringView tabPrefixes[] = {"tabitem_"_L1};
constexpr QLatin1StringView sectionHeaderPrefixes[] = {"expandablesectionheader_"_L1};
constexpr QLatin1StringView filePrefixes[] = {"file"_L1};

} // namespace

bool TypeGroup::contains(QStringView type) const
{
    return std::any_of(names.begin(), names.end(), [type](QLatin1StringView name) { return type == name; })
        || std::any_of(prefixes.begin(), prefixes.end(),
            [type](QLatin1StringView prefix) { return type.startsWith(prefix); });
}

namespace TypeGroups {

const TypeGroup textLike{textNames, textPrefixes};
const TypeGroup buttonLike{buttonNames, buttonPrefixes};
const TypeGroup selectLike{{}, selectPrefixes};
const TypeGroup linkLike{linkNames, {}};
const TypeGroup menuItem{{}, menuItemPrefixes};
const TypeGroup dateChooser{{}, dateChooserPrefixes};
const TypeGroup treeHandle{treeHandleNames, treeHandlePrefixes};
const TypeGroup item{itemNames, itemPrefixes};
const TypeGroup tableItem{tableItemNames, {}};
const TypeGroup tab{{}, tabPrefixes};
const TypeGroup sectionHeader{{}, sectionHeaderPrefixes};
const TypeGroup file{{}, filePrefixes};

} // namespace TypeGroups

} // namespace Ostrel::WebWrapper
