// ExtensionBacked: what all wrappers share whose page side is the object of a page extension.
//
// The extension object is the page global "<extension name>Extension"; the first argument of each of its
// functions is the element.
#pragma once

#include "wrappers/web/webobject.h"

#include <concepts>

namespace Ostrel::WebWrapper {

/// Adds the name of the page extension to a wrapper class, in the case that the page uses.
template <std::derived_from<HTML_Object> Base>
class PAGEPROBELIB_EXPORT ExtensionBacked : public Base
{
public:
    ExtensionBacked(
        const QString &name, const QString &reference, const QString &extension, HTMLComponent *component)
        : Base(name, reference, component), m_extension(extension)
    {
    }

protected:
    /// The extension name as a piece of script.
    Expr ext() const { return Expr{m_extension}; }

    const QString &extension() const { return m_extension; }

private:
    QString m_extension;
};

} // namespace Ostrel::WebWrapper
