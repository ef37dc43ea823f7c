// runtime/errors.h: the one point where a failed statement is handled: its status and message,
// its branch, or the fatal report and the end of the process.
#pragma once

#include "runtime/io.h"

#include <string_view>

namespace kestro::rt {

// What a statement is, for its fatal report: "READ", "WRITE", "OPEN" ...
struct StatementName
{
    std::string_view verb;
    Unit unit = 0; // as the caller named it
    bool internal = false;
    bool unspecified = false;
};

// Decides how a failed statement leaves: stores the status and message as the control asks, and
// returns the outcome for a statement that handles it. A statement that handles nothing does not
// return: the fatal report is written, every unit closed, and the process exits with -1.
// Called with the I/O lock held; on the fatal path the lock is never left.
Iostat _ioerr(int code, const Control& control, const StatementName& name);

// End of file: a handled end returns `Outcome::end`; otherwise it is code 10013.
Iostat _ioend(const Control& control, const StatementName& name);

} // namespace kestro::rt
