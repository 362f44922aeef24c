#pragma once

#include <functional>

namespace Lumora {

// Runs `task` on the interface thread and returns when it has run. The filter
// engine's writers belong to that thread; OBS calls procedures (and later
// hotkeys) from whatever thread its caller is on. Without an application object
// (the headless hosts) there is only the caller's thread, and the task runs
// there.
void runOnInterfaceThread(const std::function<void()>& task);

} // namespace Lumora
