// app/results.h: the output header and the tab-separated results line of each record.
#pragma once

#include "app/fracture.h"
#include "runtime/io.h"

namespace kestro::app {

// The two header lines of a results table: title, input file, run information, date and time;
// then the column titles.
void writeOutputHeader(rt::Unit out, const Text<40>& title, const Text<50>& inputName);

// The column titles alone, the second header line.
void writeColumnTitles(rt::Unit out);

// One results line. Without a conversion the strike and dip columns are blank. When input and
// output are both interactive each result brings its own column titles.
void writeResults(rt::Unit out, DataForm form, const Fracture& fracture, bool converted,
                  bool bothInteractive);

} // namespace kestro::app
