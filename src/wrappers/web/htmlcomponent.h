// HTMLComponent: the abstract bridge to one page. A host derives from it; the library only talks to this.
#pragma once

#include "ostrelhook/functioncallresult.h"
#include "ostrelhook/geometry.h"
#include "wrappers/web/export.h"

#include <QImage>
#include <QString>

namespace Ostrel::WebWrapper {

class HTML_CustomText;
class HTML_Object;
class HTML_TextBase;
class WrapperConfig;

/// The bridge to one page. It outlives every wrapper that points to it, or its owner invalidates those first.
/// All operations are called on the one thread that drives the wrappers; no lock is held across them.
class PAGEPROBELIB_EXPORT HTMLComponent
{
public:
    /// What an evaluation gave: the value as text, or a message when one of the flags is set.
    struct EvalResult
    {
        QString result;
        bool failed = false; ///< the evaluation failed
        bool threw = false; ///< the second failure flag, set by the bridge; a few callers do not look at it
    };

    virtual ~HTMLComponent();

    /// Evaluates `script` in the top window and gives its value as text. `timeoutMs` is in milliseconds;
    /// 0 means the bridge's own limit.
    virtual EvalResult evaluateJavaScript(const QString &script, unsigned int timeoutMs) const = 0;

    /// The kind of browser. 2: single property reads get a limit of 5000 ms. 5: text fields are typed into.
    virtual int browserType() const = 0;

    /// Whether there is a page to talk to.
    virtual bool isPageAvailable() const = 0;

    /// The configuration in force for this page; stays owned by the bridge.
    virtual WrapperConfig *config() const = 0;

    /// The element's rectangle on the screen, in pixels; all four -1 on failure. With `makeVisible` the
    /// element is scrolled into view first.
    virtual FunctionCallResult<ScreenRectangle> getScreenRect(const HTML_Object *obj, bool makeVisible) const;

    virtual bool supportsPageScreenshot() const;

    /// A picture of the whole page; by default a null image and no error.
    virtual FunctionCallResult<QImage> grabPageScreenshot() const;

    virtual FunctionCallResult<double> zoomFactor() const;

    /// Puts a file path into a native file input.
    virtual FunctionCallResult<void> setFileInputValue(HTML_TextBase *field, const QString &path) = 0;

    /// The same for a text field of a page toolkit that says it is an upload field.
    virtual FunctionCallResult<void> setCustomFileInputValue(HTML_CustomText *field, const QString &path) = 0;

    /// evaluateJavaScript() with the bridge's own limit.
    EvalResult evaluateJavaScriptWithResult(const QString &script);

protected:
    HTMLComponent() = default;
    HTMLComponent(const HTMLComponent &) = default;
    HTMLComponent &operator=(const HTMLComponent &) = default;
};

} // namespace Ostrel::WebWrapper
