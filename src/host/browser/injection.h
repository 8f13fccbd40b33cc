// Injection: the three texts that a page gets, in their order: namespace code, page variables, payload.
#pragma once

#include <QJsonValue>
#include <QList>
#include <QString>

namespace Ostrel::WebWrapper {
class WrapperConfig;
}

namespace Ostrel::Host {

/// A variable that the payload reads and the host sets, named as the page reads it: "window.__ostrel__port".
struct PageVariable
{
    QString name;
    QJsonValue value;
};

/// What is known of the browser and the channel when the variables are made.
struct PageFacts
{
    int browserMajorVersion = 0;
    QString channelPort; ///< goes into "window.__ostrel__port": the port and the session's secret
};

/// All page variables, from the configuration and the facts.
QList<PageVariable> pageVariables(const WebWrapper::WrapperConfig &config, const PageFacts &facts);

struct Injection
{
    QString namespaceCode;
    QList<PageVariable> variables;
    QString payload;
    QString companion{}; ///< script of the host that runs behind the payload; may be empty

    /// Sets a variable, or adds it when there is none of that name.
    void setVariable(const QString &name, const QJsonValue &value);

    /// The three texts one after the other, to be evaluated in the top window of a page that is already
    /// there.
    QString script() const;

    /// The same for Page.addScriptToEvaluateOnNewDocument, which runs in every frame: only a top window
    /// evaluates the texts, a frame merely steps over a string.
    QString newDocumentScript() const;

    /// A window that a page opens keeps its global object when its empty first document gives way to the real
    /// one, and the browser then does not run the script for new documents again. A tab that a link opens
    /// behind the others may show its document before the browser has it wait for us. True in such windows.
    static QString isMissingExpression();

    /// What such a window needs.
    QString repeatedScript() const;
};

/// The statement that sets one variable.
QString assignment(const PageVariable &variable);

} // namespace Ostrel::Host
