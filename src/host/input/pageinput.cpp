#include "host/input/pageinput.h"

#include "host/browser/browserpage.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

/// Where the viewport is on the screen, and its size in CSS pixels.
const QString viewportQuery
    = u"(function() { var bounds = window.top.__ostrel.getViewportBounds(document, window), size = "
      "window.top.__ostrel.getViewPortSize(document, window); return JSON.stringify([bounds.x, bounds.y, "
      "bounds.width, bounds.height, size.x, size.y]); }());"_s;

struct Button
{
    const char *name;
    int bit; ///< among the buttons that are down
};

Button protocolButton(MouseButton::Value button)
{
    switch (button) {
    case MouseButton::Primary:
    case MouseButton::Left:
        return {"left", 1};
    case MouseButton::Right:
        return {"right", 2};
    case MouseButton::Middle:
        return {"middle", 4};
    }
    Q_UNREACHABLE();
}

} // namespace

/// One command of the protocol's input domain.
struct PageInput::Step
{
    QString method;
    QJsonObject parameters;

    static Step mouse(const QString &type, const QPointF &position)
    {
        return {u"Input.dispatchMouseEvent"_s,
            {{u"type"_s, type}, {u"x"_s, position.x()}, {u"y"_s, position.y()}}};
    }
    static Step mouse(const QString &type, const QPointF &position, const Button &button, int downButtons)
    {
        Step step = mouse(type, position);
        step.parameters.insert("button"_L1, QLatin1StringView(button.name));
        step.parameters.insert("buttons"_L1, downButtons);
        step.parameters.insert("clickCount"_L1, 1);
        return step;
    }
    static Step key(const QString &type, const KeyStroke &stroke)
    {
        QJsonObject parameters{{u"type"_s, type}, {u"key"_s, stroke.key}, {u"code"_s, stroke.code},
            {u"windowsVirtualKeyCode"_s, stroke.keyCode}, {u"modifiers"_s, stroke.modifiers}};
        if (type == "keyDown"_L1 && !stroke.text.isEmpty())
            parameters.insert("text"_L1, stroke.text);
        return {u"Input.dispatchKeyEvent"_s, parameters};
    }
};

FunctionCallResult<QPointF> PageInput::fromScreen(int x, int y) const
{
    const auto answer = m_page->evaluateJavaScript(viewportQuery, 0);
    if (answer.failed)
        return Failure(u"Cannot tell where the page is on the screen: %1"_s.arg(answer.result));
    const QJsonArray numbers = QJsonDocument::fromJson(answer.result.toUtf8()).array();
    const double width = numbers.at(2).toDouble();
    const double height = numbers.at(3).toDouble();
    if (numbers.size() != 6 || width <= 0 || height <= 0)
        return Failure(u"Cannot tell where the page is on the screen: '%1'"_s.arg(answer.result));
    return QPointF((x - numbers.at(0).toDouble()) * numbers.at(4).toDouble() / width,
        (y - numbers.at(1).toDouble()) * numbers.at(5).toDouble() / height);
}

FunctionCallResult<void> PageInput::movePointer(const QPointF &position) const
{
    return carryOut({Step::mouse(u"mouseMoved"_s, position)});
}

FunctionCallResult<void> PageInput::click(const QPointF &position, MouseButton::Value button) const
{
    const Button pressed = protocolButton(button);
    return carryOut({
        Step::mouse(u"mouseMoved"_s, position),
        Step::mouse(u"mousePressed"_s, position, pressed, pressed.bit),
        Step::mouse(u"mouseReleased"_s, position, pressed, 0),
    });
}

FunctionCallResult<void> PageInput::type(const QList<KeyStroke> &strokes) const
{
    QList<Step> steps;
    for (const KeyStroke &stroke : strokes) {
        steps.append(Step::key(u"keyDown"_s, stroke));
        steps.append(Step::key(u"keyUp"_s, stroke));
    }
    return carryOut(steps);
}

FunctionCallResult<void> PageInput::carryOut(const QList<Step> &steps) const
{
    if (steps.isEmpty())
        return {};
    // A tab in the background gets no input.
    const CommandResult shown = m_page->call(u"Page.bringToFront"_s);
    if (shown.failed())
        return Failure(shown.error);
    // Carried out in order, so that only the last one is waited for.
    for (qsizetype i = 0; i < steps.size() - 1; ++i)
        m_page->connection()->send(m_page->sessionId(), steps.at(i).method, steps.at(i).parameters);
    bool documentGone = false;
    const auto connection = QObject::connect(
        m_page, &BrowserPage::documentGone, m_page, [&documentGone] { documentGone = true; });
    const CommandResult done = m_page->call(steps.last().method, steps.last().parameters);
    QObject::disconnect(connection);
    if (done.failed() && !documentGone)
        return Failure(done.error);
    return {};
}

} // namespace Ostrel::Host
