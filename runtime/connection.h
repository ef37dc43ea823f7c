// runtime/connection.h: the statements on connections: OPEN, CLOSE, REWIND, BACKSPACE, ENDFILE,
// FLUSH and INQUIRE, each on the unit table under the I/O lock.
#pragma once

#include "runtime/io.h"

#include <string_view>

namespace kestro::rt {

// Each returns 0 or an error code.
int openUnit(long unit, const OpenSpec& specifiers);
int closeUnit(long unit, std::string_view status);
int rewindUnit(long unit);
int flushUnitNumber(long unit);
int endfileUnit(long unit);
int backspaceUnit(long unit);
int inquireUnit(long unit, UnitInquiry& answer);

} // namespace kestro::rt
