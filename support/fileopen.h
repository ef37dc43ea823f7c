// support/fileopen.h: opening the program's data files with announcement, dialogue and retry.
#pragma once

#include "runtime/text.h"

#include <cstdint>
#include <string_view>

namespace kestro {

// Opens `unit` on the file named in `filename` with the open status `status` ("old", "new").
// Mode 0 announces the file, asks for its name (Return keeps it) and asks again after a warning
// until a name opens; mode 7 is silent; any mode but 0 stops the program when the open fails.
// On success `filename` holds the base name of the file; the unit stays open.
void opef2(TextRef filename, std::string_view label, std::int32_t unit, std::string_view status,
           std::int32_t mode);

// The part of `path` behind its last "/" (a final "/" stays with the part before it) into
// `base`; `n` is its number of characters, 1 for a blank path.
void path2basename(std::int32_t& n, TextRef base, std::string_view path);

} // namespace kestro
