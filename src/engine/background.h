#pragma once

#include <functional>

namespace engine {

/// Runs `work` on a thread of the engine's own pool, and then `completion`, if there is one, on
/// the main loop of the moment of the call. For work on files, which may block. Main thread.
void runInBackground(std::function<void()> work, std::function<void()> completion = {});

/// Returns when nothing runs in the background any more. To be called before the main loop ends.
void waitForBackgroundWork();

}  // namespace engine
