// PageInput: the pointer and the keyboard of one tab, as trusted events of the browser, whether or not it has
// a window on a screen.
#pragma once

#include "host/input/keystrokes.h"
#include "ostrelhook/geometry.h"
#include "ostrelhook/hook.h"

#include <QPointF>

namespace Ostrel::Host {

class BrowserPage;

/// Positions are CSS pixels from the upper left corner of the tab's viewport. Each operation returns when the
/// page has dealt with the input; a tab that closes by it has dealt with it, too. The tab stays the caller's.
/// Lives on the browser's thread.
class PageInput
{
public:
    explicit PageInput(BrowserPage *page) : m_page(page) { }

    /// Where a position of the desktop lies in the viewport.
    FunctionCallResult<QPointF> fromScreen(int x, int y) const;

    FunctionCallResult<void> movePointer(const QPointF &position) const;
    /// Moves the pointer there, presses the button and lets it go.
    FunctionCallResult<void> click(const QPointF &position, MouseButton::Value button) const;
    /// Presses the keys, which go to the element that has the focus.
    FunctionCallResult<void> type(const QList<KeyStroke> &strokes) const;

private:
    struct Step;
    FunctionCallResult<void> carryOut(const QList<Step> &steps) const;

    BrowserPage *m_page;
};

} // namespace Ostrel::Host
