// HTML_Style and HTML_XPathResult: helper objects that live in a page variable.
#pragma once

#include "ostrelhook/functioncallresult.h"
#include "wrappers/web/export.h"

#include <QString>

namespace Ostrel::WebWrapper {

class HTMLComponent;
class HTML_Object;

/// What both have: the page variable and the bridge, which is not owned.
class PAGEPROBELIB_EXPORT PageValue
{
public:
    HTMLComponent *component() const { return m_component; }
    bool hasValidReference() const { return !m_reference.isEmpty(); }
    /// Forgets the page variable; the page keeps it until it goes.
    void invalidate() { m_reference.clear(); }

protected:
    PageValue(QString reference, HTMLComponent *component)
        : m_reference(std::move(reference)), m_component(component)
    {
    }

    const QString &reference() const { return m_reference; }

private:
    QString m_reference;
    HTMLComponent *m_component;
};

/// The computed style of an element.
class PAGEPROBELIB_EXPORT HTML_Style : public PageValue
{
public:
    static constexpr char ScriptName[] = "HTML_Style";

    HTML_Style(const QString &reference, HTMLComponent *component);
    HTML_Style(const HTML_Style &) = default;
    HTML_Style &operator=(const HTML_Style &) = default;
    ~HTML_Style();

    /// A property by the name that the page's style object knows, such as "borderLeftWidth".
    FunctionCallResult<QString> value(const char *name) const;
};

/// What an XPath statement gave.
class PAGEPROBELIB_EXPORT HTML_XPathResult : public PageValue
{
public:
    static constexpr char ScriptName[] = "HTML_XPathResult";

    HTML_XPathResult(const QString &reference, HTMLComponent *component);
    HTML_XPathResult(const HTML_XPathResult &) = default;
    HTML_XPathResult &operator=(const HTML_XPathResult &) = default;
    ~HTML_XPathResult();

    FunctionCallResult<bool> booleanValue() const;
    FunctionCallResult<double> numberValue() const;
    FunctionCallResult<QString> stringValue() const;
    /// The number of nodes; -1 when the result is no node set.
    FunctionCallResult<int> snapshotLength() const;
    /// A new wrapper, owned by the caller; null and no error out of range.
    FunctionCallResult<HTML_Object *> snapshotItem(int index) const;
    FunctionCallResult<HTML_Object *> singleNodeValue() const;

private:
    FunctionCallResult<QString> read(const QString &script, QStringView error) const;
};

} // namespace Ostrel::WebWrapper
