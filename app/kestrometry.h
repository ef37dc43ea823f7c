// app/kestrometry.h: the main program: dialogue, record loop and closing report.
#pragma once

namespace kestro::app {

// Runs the whole program on the standard units. Returns when the run is over; the caller ends it
// through the runtime (rt::runMain does).
void kestrometry();

}  // namespace kestro::app
