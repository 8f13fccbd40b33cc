// The way to the shared room is open, but the target does not link it.
#include "ostrelhook/class.h"
#include "shared/settings.h"
#include "wrappers/web/webobject.h"
