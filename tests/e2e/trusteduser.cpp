#include "trusteduser.h"

#include "support/printers.h"
#include "support/waitfor.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QMap>

#include <memory>

using namespace Qt::StringLiterals;

namespace Ostrel::Test {

namespace {

const QString finders = uR"(
function q(selector, root) { return (root || document).querySelector(selector); }
function frameDocument(path) {
    return path.split("/").reduce(function (doc, id) { return q("#" + id, doc).contentDocument; }, document);
}
function inFrame(path, selector) { return q(selector, frameDocument(path)); }
function inShadow(host, selector) { return q(selector, q(host).shadowRoot); }
function withText(selector, text) {
    return Array.from(document.querySelectorAll(selector)).find(function (element) {
        return element.textContent.trim() === text && element.getClientRects().length > 0;
    });
}
)"_s;

struct Key
{
    int code;
    QString text;
};

Key keyNamed(const QString &name)
{
    static const QMap<QString, Key> keys{{u"Tab"_s, {9, {}}}, {u"Enter"_s, {13, u"\r"_s}},
        {u"Backspace"_s, {8, {}}}, {u"Escape"_s, {27, {}}}, {u"ArrowDown"_s, {40, {}}},
        {u"ArrowUp"_s, {38, {}}}, {u"ArrowLeft"_s, {37, {}}}, {u"ArrowRight"_s, {39, {}}},
        {u"Home"_s, {36, {}}}, {u"End"_s, {35, {}}}, {u"Delete"_s, {46, {}}}, {u"F2"_s, {113, {}}},
        {u"Shift"_s, {16, {}}}, {u"Control"_s, {17, {}}}, {u" "_s, {32, u" "_s}}};
    if (keys.contains(name))
        return keys.value(name);
    // The numbers of other characters are those of other keys.
    const QChar character = name.at(0).toUpper();
    return {character.isLetterOrNumber() ? character.unicode() : 0, name};
}

} // namespace

bool waitUntil(Host::BrowserPage *page, const QString &expression)
{
    return waitFor([&] {
        return page->isPageAvailable()
            && page->evaluateJavaScript(u"(function () {%1 return !!(%2);}())"_s.arg(finders, expression), 0)
                   .result
            == "true"_L1;
    });
}

TrustedUser::Place TrustedUser::placeOf(const QString &element, double x, double y)
{
    EXPECT_TRUE(waitUntil(m_page, u"document.readyState === 'complete' && %1"_s.arg(element)))
        << qPrintable(element);
    const auto answer = m_page->evaluateJavaScript(uR"((function () {%1
    var element = %2, left = 0, top = 0, frame, rect;
    element.scrollIntoView({ block: "center", behavior: "instant" });
    frame = element.ownerDocument.defaultView.frameElement;
    while (frame) {
        frame.scrollIntoView({ block: "center", behavior: "instant" });
        frame = frame.ownerDocument.defaultView.frameElement;
    }
    frame = element.ownerDocument.defaultView.frameElement;
    while (frame) {
        rect = frame.getBoundingClientRect();
        left += rect.left + frame.clientLeft;
        top += rect.top + frame.clientTop;
        frame = frame.ownerDocument.defaultView.frameElement;
    }
    rect = element.getBoundingClientRect();
    return [left + rect.left + rect.width * %3, top + rect.top + rect.height * %4].join(" ");
}()))"_s.arg(finders, element, QString::number(x), QString::number(y)),
        0);
    EXPECT_FALSE(answer.failed) << qPrintable(answer.result);
    return {answer.result.section(u' ', 0, 0).toDouble(), answer.result.section(u' ', 1).toDouble()};
}

void TrustedUser::send(const QString &method, const QJsonObject &parameters)
{
    ++m_waiting;
    m_page->connection()->send(
        m_page->sessionId(), method, parameters, [this](const Host::CommandResult &) { --m_waiting; });
}

// A dialog keeps the browser from answering until somebody answers the dialog.
void TrustedUser::waitUntilDone()
{
    ++m_actions;
    EXPECT_TRUE(waitFor([this] { return m_waiting == 0 || m_page->openDialog(); }));
}

void TrustedUser::mouse(const QString &type, Place place, const QString &button, int clicks, int modifiers)
{
    send(u"Input.dispatchMouseEvent"_s,
        {{u"type"_s, type}, {u"x"_s, place.x}, {u"y"_s, place.y}, {u"button"_s, button},
            {u"clickCount"_s, clicks}, {u"modifiers"_s, modifiers}});
}

void TrustedUser::press(Place place, const QString &button, int clicks, int modifiers)
{
    mouse(u"mousePressed"_s, place, button, clicks, modifiers);
    // No hand is so fast that the browser has not handled the press before it lets go.
    EXPECT_TRUE(waitFor([this] { return m_waiting == 0 || m_page->openDialog(); }));
    mouse(u"mouseReleased"_s, place, button, clicks, modifiers);
}

void TrustedUser::click(const QString &element, int modifiers)
{
    const Place place = placeOf(element);
    mouse(u"mouseMoved"_s, place, u"none"_s, 0);
    press(place, u"left"_s, 1, modifiers);
    waitUntilDone();
}

void TrustedUser::clickAt(const QString &element, double x, double y)
{
    const Place place = placeOf(element, x, y);
    mouse(u"mouseMoved"_s, place, u"none"_s, 0);
    press(place, u"left"_s, 1);
    waitUntilDone();
}

void TrustedUser::rightClick(const QString &element)
{
    const Place place = placeOf(element);
    mouse(u"mouseMoved"_s, place, u"none"_s, 0);
    press(place, u"right"_s, 1);
    waitUntilDone();
}

void TrustedUser::middleClick(const QString &element)
{
    const Place place = placeOf(element);
    mouse(u"mouseMoved"_s, place, u"none"_s, 0);
    press(place, u"middle"_s, 1);
    waitUntilDone();
}

void TrustedUser::doubleClick(const QString &element)
{
    const Place place = placeOf(element);
    mouse(u"mouseMoved"_s, place, u"none"_s, 0);
    press(place, u"left"_s, 1);
    press(place, u"left"_s, 2);
    waitUntilDone();
}

void TrustedUser::hover(const QString &element)
{
    mouse(u"mouseMoved"_s, placeOf(element), u"none"_s, 0);
    waitUntilDone();
}

void TrustedUser::wheel(const QString &element, int pixels)
{
    const Place place = placeOf(element);
    send(u"Input.dispatchMouseEvent"_s,
        {{u"type"_s, u"mouseWheel"_s}, {u"x"_s, place.x}, {u"y"_s, place.y}, {u"deltaX"_s, 0},
            {u"deltaY"_s, pixels}});
    waitUntilDone();
}

void TrustedUser::drag(const QString &from, const QString &to)
{
    const Place start = placeOf(from);
    const Place end = placeOf(to);
    mouse(u"mouseMoved"_s, start, u"none"_s, 0);
    mouse(u"mousePressed"_s, start, u"left"_s, 1);
    for (const double part : {0.2, 0.6, 1.0}) {
        const Place place{start.x + (end.x - start.x) * part, start.y + (end.y - start.y) * part};
        mouse(u"mouseMoved"_s, place, u"left"_s, 0);
    }
    mouse(u"mouseReleased"_s, end, u"left"_s, 1);
    waitUntilDone();
}

void TrustedUser::stroke(const QString &name, int modifiers)
{
    const Key key = keyNamed(name);
    const bool writes = !key.text.isEmpty() && (modifiers & control) == 0;
    QJsonObject event{{u"type"_s, writes ? u"keyDown"_s : u"rawKeyDown"_s}, {u"key"_s, name},
        {u"windowsVirtualKeyCode"_s, key.code}, {u"modifiers"_s, modifiers}};
    if (writes)
        event.insert("text"_L1, key.text);
    if (name == "a"_L1 && modifiers == control)
        event.insert("commands"_L1, QJsonArray{u"selectAll"_s});
    send(u"Input.dispatchKeyEvent"_s, event);
    event.remove("text"_L1);
    event.remove("commands"_L1);
    event.insert("type"_L1, u"keyUp"_s);
    send(u"Input.dispatchKeyEvent"_s, event);
}

void TrustedUser::type(const QString &text)
{
    for (const QChar character : text)
        stroke(QString(character), character.isUpper() ? shift : 0);
    waitUntilDone();
}

void TrustedUser::key(const QString &name, int modifiers)
{
    stroke(name, modifiers);
    waitUntilDone();
}

void TrustedUser::open(const QString &address)
{
    send(u"Page.navigate"_s, {{u"url"_s, address}});
    waitUntilDone();
}

void TrustedUser::goInHistory(int entries)
{
    const Host::CommandResult history = m_page->call(u"Page.getNavigationHistory"_s);
    EXPECT_FALSE(history.failed()) << qPrintable(history.error);
    const int index = history.value.value("currentIndex"_L1).toInt() + entries;
    const QJsonObject entry = history.value.value("entries"_L1).toArray().at(index).toObject();
    send(u"Page.navigateToHistoryEntry"_s, {{u"entryId"_s, entry.value("id"_L1)}});
    waitUntilDone();
}

void TrustedUser::loadAgain()
{
    send(u"Page.reload"_s, {});
    waitUntilDone();
}

void TrustedUser::paste(const QString &text)
{
    send(u"Input.insertText"_s, {{u"text"_s, text}});
    waitUntilDone();
}

} // namespace Ostrel::Test
