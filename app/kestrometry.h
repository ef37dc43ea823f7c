// app/kestrometry.h: the main program: dialogue, record loop and closing report.
#pragma once

#include "app/fracture.h"
#include "runtime/io.h"

namespace kestro::app {

// Where the records of a run come from and go to.
struct RecordLoop
{
    bool keyboard = false; // asks "End input and exit" and shows the reminder before each record
    DataForm form = DataForm::alphanumerical;
    rt::Unit input = 25;
    rt::Unit output = 26;
    bool bothInteractive = false;
};

// The record loop: reads, checks, solves and writes one record after the other until the input
// ends, the user ends it, or a record cannot be read. Counts the records read and converted.
void convertRecords(const RecordLoop& loop, std::int32_t& readCount, std::int32_t& convertedCount);

// Runs the whole program on the standard units. Returns when the run is over; the caller ends it
// through the runtime (rt::runMain does).
void kestrometry();

} // namespace kestro::app
