// Goes up, and leaves the room out of a path.
#include "host/browser.h"
#include "object.h"
#include "probelog/tracepoint.h"
