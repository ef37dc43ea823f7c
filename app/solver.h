// app/solver.h: the true strike and dip of a plane from two apparent dips, or from one and a strike.
#pragma once

#include "app/fracture.h"

namespace kestro::app {

// Solves one checked record: true with `strike` and `dip` set (a warning panel may have been
// shown), false with the comment set and the error panel left open. May change DDIR(2) by a
// strike reset.
bool solve(DataForm form, Fracture& fracture, std::int32_t readCount);

// Degrees of a direction letter, clockwise from north.
float letterAngle(const Text<1>& letter);

} // namespace kestro::app
