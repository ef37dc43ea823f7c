// runtime/startup.h: the program's life in the runtime: start-up from the environment, the stop
// request of another thread, and the shutdown behind STOP, END and a fatal failure.
#pragma once

#include "runtime/options.h"

namespace kestro::rt {

// Reads the environment on the first statement of a program that did not call startRuntime.
// Called with the I/O lock held.
void startFromEnvironment();
inline void ensureStarted()
{
    if (!entry::started) startFromEnvironment();
}

// Closes every unit, leaves the lock, calls the stop hook and exits with `status`.
[[noreturn]] void _rt_shutdown(int status);

// Ends the program through _rt_shutdown when another thread has asked it to stop. Called with
// the I/O lock held, where a statement begins and where a hook gives a read back.
inline void endIfStopRequested()
{
    if (entry::stopAsked.load(std::memory_order_relaxed)) _rt_shutdown(0);
}

} // namespace kestro::rt
