#include "wrappers/web/liveobjects.h"

#include "wrappers/web/pagevalues.h"
#include "wrappers/web/webobject.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

template <typename Wrapper, typename Filter>
void invalidateIf(QSet<Wrapper *> &wrappers, Filter belongs)
{
    wrappers.removeIf([&belongs](Wrapper *wrapper) {
        if (!belongs(wrapper))
            return false;
        wrapper->invalidate();
        return true;
    });
}

template <typename Filter>
void invalidateKinds(LiveObjects &live, Filter belongs)
{
    invalidateIf(live.objects, belongs);
    invalidateIf(live.styles, belongs);
    invalidateIf(live.xpathResults, belongs);
}

} // namespace

LiveObjects &LiveObjects::self()
{
    // Never destroyed: script objects may let go of their wrappers as late as at process exit.
    static auto *const instance = new LiveObjects;
    return *instance;
}

void LiveObjects::invalidate(const HTMLComponent *component)
{
    invalidateKinds(*this, [component](const auto *wrapper) { return wrapper->component() == component; });
}

void LiveObjects::invalidateAll()
{
    invalidateKinds(*this, [](const auto *) { return true; });
}

QString nextPageVariable()
{
    static quint32 count = 0;
    return u"window.__ostrel__object__C%1"_s.arg(count++);
}

} // namespace Ostrel::WebWrapper
