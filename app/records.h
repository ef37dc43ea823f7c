// app/records.h: reading fracture data records and checking them before the solver sees them.
#pragma once

#include "app/fracture.h"
#include "app/notices.h"
#include "runtime/io.h"

namespace kestro::app {

enum class ReadOutcome { record, endOfInput, failure };

// The two header records of a data file: the title, then a line of column titles that is
// skipped. The end of the input counts as a failure here.
ReadOutcome readHeader(rt::Unit unit, Text<40>& title);

// One data record, four free-form values in the given form.
ReadOutcome readRecord(rt::Unit unit, DataForm form, Fracture& fracture);

// The reminder of the record layout shown before each keyboard record.
void writeReminder(DataForm form);

// Runs the checks in their order and writes nothing: a refusal sets the comment and holds the
// lines of its error panel.
Verdict checkRecord(DataForm form, Fracture& fracture);

} // namespace kestro::app
