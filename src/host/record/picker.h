// Picker: lets the user point at an element of a page and tells what it is.
#pragma once

#include "host/record/recordedscript.h"
#include "host/record/recordinglogger.h"
#include "host/script/testsession.h"
#include "ostrelhook/functioncallresult.h"

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QString>

namespace Ostrel::Host {

/// A property of a picked object as text.
struct PickedProperty
{
    QString name;
    QString value;
};

struct PickedObject
{
    QString className;
    QString realName;
    QString hierarchicalName;
    QList<PickedProperty> properties;

    /// What the command prints: names first, then a line for each property.
    QString text() const;
};

/// Picks in all pages of a session until it goes. It is the front end that picked objects are sent to, and
/// draws the highlight under the pointer with the browser's own overlay. One at a time.
class Picker : public QObject
{
    Q_OBJECT

public:
    explicit Picker(TestSession *session);
    ~Picker() override;

    /// Switches picking on; the page switches it off behind a pick.
    FunctionCallResult<void> start();

    /// Picks an object as a user would: the pointer goes there, rests until the highlight is drawn, and
    /// presses. An error where that comes to nothing within the limit.
    FunctionCallResult<void> pick(const QString &name, int limitMs);

    /// The visible part of the page that shows the highlight, as the user sees it.
    FunctionCallResult<QImage> picture() const;

    /// Reads what is known of a picked object.
    FunctionCallResult<PickedObject> describe(const QString &name) const;

Q_SIGNALS:
    void picked(const QString &name);
    void highlighted(const QRect &viewportRectangle, const QString &name);

private:
    void highlight(const ScreenRectangle &rectangle, const QString &name);

    TestSession *m_session;
    RecordedScript m_script; ///< stays empty: nothing is recorded
    RecordingLogger m_logger{&m_script};
    QPointer<BrowserPage> m_highlighted; ///< the page that shows a highlight
};

} // namespace Ostrel::Host
