// app/fracture.h: the record of one fracture and the program's identity.
#pragma once

#include "runtime/text.h"

#include <cstdint>
#include <string_view>

namespace kestro::app {

inline constexpr std::string_view programName = "kestrometry";
inline constexpr std::string_view programVersion = "5.1";
inline constexpr std::string_view programDate = "2025-04-11";

enum class DataForm : std::int32_t { alphanumerical = 1, numerical = 2 };

// Single-precision 1.0e-4, bit pattern 0x38D1B717: what counts as zero for a dip or a strike gap.
inline constexpr float tolerance = 1.0e-4f;

// One fracture. The fields live across records: a value the input leaves out keeps the last one.
struct Fracture
{
    float dipa1 = 0;
    float dipa2 = 0; // the strike in an alphanumerical strike record
    Text<1> DIPDA[2];
    float DDIR[2] = {0, 0};
    float strike = 0;
    float dip = 0;
    Text<55> comment;
};

} // namespace kestro::app
