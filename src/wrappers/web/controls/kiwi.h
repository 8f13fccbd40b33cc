// The Kiwi family of controls.
#pragma once

#include "wrappers/web/formelements.h"

namespace Ostrel::WebWrapper {

class PAGEPROBELIB_EXPORT HTML_TreeBase : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_TreeBase";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_KiwiChoice : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiChoice";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_KiwiTree : public HTML_TreeBase
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiTree";

    using HTML_TreeBase::HTML_TreeBase;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_KiwiTable : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiTable";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_KiwiTreeTable : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiTreeTable";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_KiwiMoreMenu : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiMoreMenu";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_KiwiMoreMenuItem : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiMoreMenuItem";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_KiwiTableCell : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiTableCell";

    HTML_KiwiTableCell(const QString &name, const QString &reference, const QString &extension, HTMLComponent *component)
        : HTML_Object(name, reference, component)
        , m_extension(extension)
    {
    }
    const char *className() const override { return ScriptName; }

private:
    QString m_extension;
};

class PAGEPROBELIB_EXPORT HTML_KiwiTreeTableCell : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiTreeTableCell";

    HTML_KiwiTreeTableCell(const QString &name, const QString &reference, const QString &extension, HTMLComponent *component)
        : HTML_Object(name, reference, component)
        , m_extension(extension)
    {
    }
    const char *className() const override { return ScriptName; }

private:
    QString m_extension;
};

class PAGEPROBELIB_EXPORT HTML_KiwiMatrixTable : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiMatrixTable";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_KiwiMatrix : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiMatrix";

    HTML_KiwiMatrix(const QString &name, const QString &reference, const QString &extension, HTMLComponent *component)
        : HTML_Object(name, reference, component)
        , m_extension(extension)
    {
    }
    const char *className() const override { return ScriptName; }

private:
    QString m_extension;
};

class PAGEPROBELIB_EXPORT HTML_KiwiMatrixCell : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiMatrixCell";

    HTML_KiwiMatrixCell(const QString &name, const QString &reference, const QString &extension, HTMLComponent *component)
        : HTML_Object(name, reference, component)
        , m_extension(extension)
    {
    }
    const char *className() const override { return ScriptName; }

private:
    QString m_extension;
};

} // namespace Ostrel::WebWrapper
