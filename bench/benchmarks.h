// The benchmarks of the bridge, each in a file of its own. Each gives its rows of the table or says what
// failed.
#pragma once

#include "ostrelhook/functioncallresult.h"
#include "table.h"

#include <QList>

namespace Ostrel::Bench {

/// How much is done. Fewer of everything give a table, too, but one that proves nothing.
struct Effort
{
    int rounds = 9; ///< of property reads and of references
    int reads = 2000; ///< property reads in a round
    int elements = 50000; ///< elements that get a reference in a round
    int loads = 60; ///< how often a page is loaded
    int sessions = 5; ///< how often a browser is started and ended
    int dumps = 3; ///< rounds of dumps
    int dumpedElements = 10000; ///< on the page that is dumped; the large one has four times as many
    int screenshots = 200; ///< elements that get a picture
    int names = 200; ///< elements that are named in a round
    int typings = 9; ///< how often a text is typed
};

/// One property of one element, read again and again: through a wrapper and from a script, against a client
/// that sends the same text over the same connection and against another library's read of an element's
/// property.
FunctionCallResult<QList<Row>> measurePropertyReads(const Effort &effort);

/// References of many elements against references of few, as time per element.
FunctionCallResult<QList<Row>> measureReferenceStore(const Effort &effort);

/// The load of an empty page with all that is injected against the load of the page alone.
FunctionCallResult<QList<Row>> measureInjection(const Effort &effort);

/// A session from its start to its end against another library's.
FunctionCallResult<QList<Row>> measureSession(const Effort &effort);

/// Dumps of a large page against another library's return of the same values, of a page four times as large
/// against it, and dumps with a picture of each element against as many pictures of that library.
FunctionCallResult<QList<Row>> measureDumps(const Effort &effort);

/// Objects by name: lookups and all children of an element against another library, and how the cost of
/// names grows with the page against the growth of what the rules of naming force.
FunctionCallResult<QList<Row>> measureObjectNames(const Effort &effort);

/// A long text typed at full speed into a page that is being recorded against the same in a page that is not.
FunctionCallResult<QList<Row>> measureTyping(const Effort &effort);

} // namespace Ostrel::Bench
