#include "wrappers/web/webobjectdelegate.h"

#include "wrappers/web/liveobjects.h"

namespace Ostrel::WebWrapper {

void invalidatePageReferences(const HTMLComponent *component)
{
    if (component)
        LiveObjects::self().invalidate(component);
    else
        LiveObjects::self().invalidateAll();
}

} // namespace Ostrel::WebWrapper
