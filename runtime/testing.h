// runtime/testing.h: hooks for tests to put the runtime back into its start-up state.
#pragma once

#include <string_view>

namespace kestro::rt::testing {

// Closes every unit without stopping, restores the default options and the console stubs, then
// reads the environment again as a fresh start-up would.
void resetRuntime();

} // namespace kestro::rt::testing
