// support/runinfo.h: the run information record: which program ran, where and when.
#pragma once

#include "runtime/text.h"

#include <cstdint>
#include <string_view>

namespace kestro {

// Written by smaininfo2 at the start of the main program; afterwards only RUNCODE changes.
// The routine stack holds levels 1 to 3 at indices 0 to 2; the main program is level 1.
struct Runinfo3com
{
    std::int32_t ROUTLEVEL = 0;
    std::int32_t CMDNUM = 0;
    std::int32_t RUNCODE = 0; // 0 to 3: how much the banner and the program string show
    std::int32_t CLOCK0 = 0;  // system clock count at the start
    float CPU0 = 0.0f;        // CPU time at the start, seconds
    Text<20> ROUTNAME[3];
    Text<4> ROUTVERS[3];
    Text<10> ROUTDATE[3];
    Text<13> OSNAME;
    Text<30> CPUNAME;
    Text<35> HOSTTEXT;
    Text<10> USERTEXT;
    Text<10> DATE0;
    Text<8> TIME0;
};
extern Runinfo3com runinfo3com;

// Starts the record with the main program's identity: level 1, the announcement of swpinfo
// (code 0), the host facts, the start date and time, and last the CPU time and clock.
void smaininfo2(std::string_view name, std::string_view vers, std::string_view date);

// Sets the run information code according to `inter`:
//   0 check `code`, ask        1 check `code`, take it      2 ask, starting from RUNCODE
//   3 `code` = RUNCODE          4 ask, starting from 0       5 announce, code 0
// A code outside 0..3 (inter 0 and 1) is reset to 0 with a warning; any other `inter` warns and
// changes nothing.
void swpinfo(std::int32_t& code, std::int32_t inter);

// The system string (OSNAME and CPUNAME) and the program string (the routine stack, and the
// command number for codes 0 and 2), each cut to the caller's field with a warning panel.
void getruninfo0(TextRef sysinfo, TextRef proginfo);

} // namespace kestro
