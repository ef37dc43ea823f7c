// runtime/messages.h: the three message tables of the runtime.
#pragma once

#include <string>
#include <string_view>

namespace kestro::rt {

// Text of an I/O error: the table row for 10000-10082, else the system's text for an errno.
std::string messageFor(int code);

// Row `index` (0-82) of the I/O error table; empty outside it.
std::string_view _ioerrmsg(int index);

// Row `index` (0-7) of the table of failures outside I/O statements; "Unknown Error" outside it.
std::string_view _runerrmsg(int index);

// The first line of a fatal report: 0 for a runtime code, 1 for a system error number.
std::string_view _msgheader(int index);

} // namespace kestro::rt
