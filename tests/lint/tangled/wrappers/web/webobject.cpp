// The way to the shared room is open, but the target does not link it.
#include "wrappers/web/webobject.h"
#include "ostrelhook/class.h"
#include "shared/settings.h"
