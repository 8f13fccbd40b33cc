// The types of elements that the recorder treats alike.
#pragma once

#include <QString>

#include <span>

namespace Ostrel::WebWrapper {

/// A type belongs to a group by its whole name or by how it begins.
struct TypeGroup
{
    std::span<const QLatin1StringView> names;
    std::span<const QLatin1StringView> prefixes;

    bool contains(QStringView type) const;
};

namespace TypeGroups {

extern const TypeGroup textLike;
extern const TypeGroup buttonLike;
extern const TypeGroup selectLike;
extern const TypeGroup linkLike;
extern const TypeGroup menuItem;
extern const TypeGroup dateChooser;
extern const TypeGroup treeHandle;
extern const TypeGroup item;
extern const TypeGroup tableItem; ///< items that are known by their text alone
extern const TypeGroup tab;
extern const TypeGroup sectionHeader;
extern const TypeGroup file;

} // namespace TypeGroups

} // namespace Ostrel::WebWrapper
