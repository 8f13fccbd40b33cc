// Page pairs: the files of this folder, which say what expressions must yield in which page.
#pragma once

#include "host/browser/injection.h"

#include <QJsonValue>
#include <QList>
#include <QString>
#include <QStringList>

namespace Ostrel::Test {

/// What an expression must do.
enum class Demand {
    Expect, ///< yield the value
    Eventually, ///< yield the value within a few seconds
    Throws, ///< raise an exception whose text holds the wanted one
};

struct PageCase
{
    QString name; ///< says the behaviour in words
    QString run; ///< the expression
    Demand demand = Demand::Expect;
    QJsonValue wanted;
};

/// Cases that share one page, in their order.
struct PageGroup
{
    QString page; ///< below the folder, with query and fragment if it has any
    QStringList extensions; ///< files of lib/extensions/web that join the payload
    QList<Host::PageVariable> variables; ///< set before the payload, on top of the defaults
    QString setup; ///< statements that run once when the page has loaded
    QList<PageCase> cases;
};

struct PageFile
{
    QList<PageGroup> groups;
    QString error; ///< why the file is no good; empty when it is
};

/// Reads a file, which holds one group or an array of groups. A member that is not known is an error, so that
/// no case is skipped for a typing mistake.
PageFile readPageFile(const QString &fileName);

} // namespace Ostrel::Test
