// support/sio.h: the global record of the standard text units, output levels and pause switch.
#pragma once

#include <cstdint>

namespace kestro {

// Filled once by initsio2 before anything else writes; every other routine only reads it.
struct Iocom
{
    std::int32_t SIN = 0, SOUT = 0, EIN = 0, EOUT = 0, CMDUNIT = 0, CMDINDEX = 0;
    bool LPLOT = false, LCMD = false, LPAUSE = false;
    bool LWITO[3] = {false, false, false}; // output levels: minimum, more, maximum
};
extern Iocom iocom;

// Sets iocom (units 5/6, levels T T F, pause on) and announces itself on SOUT, leaving the
// sub-menu panel open; `inter` 0 adds the full report of writesio.
void initsio2(std::int32_t inter);

// Reports iocom: head and tail on SOUT, the lines between on `unit`.
void writesio(std::int32_t unit);

} // namespace kestro
