// Replay: how the framework acts on elements by other ways than their own operations: recorded mouse events,
// file uploads through the browser's dialog, and the question whether an element can be acted on at all.
//
// A page's own script can do nearly everything. The devices of the desktop are used where it cannot: a
// browser opens no file dialog for a script, and hover effects follow the true pointer.
#pragma once

#include "ostrelhook/delegates.h"
#include "ostrelhook/functioncallresult.h"
#include "wrappers/web/export.h"

#include <QString>

namespace Ostrel::WebWrapper {

class HTML_CustomText;
class HTML_Object;
class HTML_TextBase;

/// Whether a user could act on the element: it is visible and, as a form field, not disabled. Null and the
/// document itself are ready, and so is what the page cannot tell the visibility of.
PAGEPROBELIB_EXPORT FunctionCallResult<bool> isObjectReady(HTML_Object *object);

/// Sends recorded mouse events to elements.
class PAGEPROBELIB_EXPORT ApplicationEventDelegate : public SendEventDelegate
{
public:
    ApplicationEventDelegate();
    ~ApplicationEventDelegate() override;

    /// `arguments` are x and y in CSS pixels from the element's top left corner. Of the events only
    /// "mousemove" and "mouseup" use the pointer of the desktop too. False without a word for an object that
    /// is no element.
    bool sendEvent(const Event *event, SharedPtr<Object> object, const ObjectList &arguments) const override;
};

/// Opens the file dialog of an upload field with the pointer of the desktop and types the path into it. Takes
/// more than six seconds, since foreign windows can only be waited for by time. An error tells why nothing
/// was clicked; whether the dialog took the path is not observed.
PAGEPROBELIB_EXPORT FunctionCallResult<void> selectFileToUpload(HTML_TextBase *object, const QString &path);
PAGEPROBELIB_EXPORT FunctionCallResult<void> selectFileToUpload(HTML_CustomText *object, const QString &path);

/// Types a path and Return into whatever has the focus, replacing what stands there. Never fails: the dialog
/// is not observed.
PAGEPROBELIB_EXPORT FunctionCallResult<void> automateFileDialog(const QString &path);

} // namespace Ostrel::WebWrapper
