// runtime/conversion.h: input conversion: fields of a formatted record and free-form values into
// the caller's variables.
#pragma once

#include "runtime/edits.h"
#include "runtime/format.h"
#include "runtime/text.h"

#include <cstdint>
#include <string_view>

namespace kestro::rt {

// Input edits on one field of a record. Return 0 or an error code.
int readIntegerField(std::string_view field, const FormatToken&, const EditModes&, std::int64_t& value);
int readRealField(std::string_view field, const FormatToken&, const EditModes&, bool single, double& value);
int readLogicalField(std::string_view field, bool& value);
void readTextField(std::string_view field, const FormatToken&, TextRef value);

// Checks and converts a free-form number (`_numcheck`): an optional sign and digits for an
// integer; for a real also a point and an exponent. Return 0 or code 10016.
int numberToInteger(std::string_view token, std::int64_t& value);
int numberToReal(std::string_view token, bool single, bool decimalComma, double& value);

} // namespace kestro::rt
