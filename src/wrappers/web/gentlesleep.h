// gentleSleep: a wait that keeps events flowing.
#pragma once

namespace Ostrel::WebWrapper {

/// Waits in a nested event loop, so that the bridge goes on working; the page may change meanwhile. Cannot be
/// cut short.
void gentleSleep(int milliseconds);

} // namespace Ostrel::WebWrapper
