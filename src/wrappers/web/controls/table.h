// HTML_Table: tables that a page extension describes.
#pragma once

#include "wrappers/web/webobject.h"

namespace Ostrel::WebWrapper {

class PAGEPROBELIB_EXPORT HTML_Table : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_Table";

    HTML_Table(const QString &name, const QString &reference, const QString &extension, HTMLComponent *component)
        : HTML_Object(name, reference, component)
        , m_extension(extension)
    {
    }
    const char *className() const override { return ScriptName; }

private:
    QString m_extension;
};

} // namespace Ostrel::WebWrapper
