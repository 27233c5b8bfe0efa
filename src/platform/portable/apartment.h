// What the calls of activation ask of the thread they run in.
#pragma once

namespace platform {

// Whether the thread is in an apartment: its own, or the multithreaded one of other threads.
bool isComInitialized();

} // namespace platform
