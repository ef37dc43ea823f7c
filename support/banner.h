// support/banner.h: the program banner and the closing report, both on SOUT.
#pragma once

#include "runtime/text.h"

#include <cstdint>
#include <string_view>

namespace kestro {

// The banner from runinfo3com (user and host only with codes 0 and 1), then a pause for Return on
// SIN. End of input at the pause is a runtime error.
void progheadzr2();

// The closing report: program, start and end, elapsed and CPU time, and a picture chosen by the
// units digit of the end time's seconds. No pause.
void progtail2();

// What progtail2 measures at the end of the run.
struct RunEnd
{
    Text<10> date; // as date10_time8 gives it
    Text<8> time;
    std::int32_t count = 0, rate = 0, countMax = 0; // system clock
    float cpu = 0.0f;                               // CPU time, seconds
};

// The closing report for the measured end of a run.
void writeClosingReport(const RunEnd& end);

// One time line of the report: t seconds, in seconds up to 120, else in minutes up to 120, else
// in hours.
void writeTimeLine(std::string_view label, float seconds);

} // namespace kestro
