// app/solver.h: the true strike and dip of a plane from two apparent dips, or from one and a strike.
#pragma once

#include "app/fracture.h"
#include "app/notices.h"

namespace kestro::app {

// Solves one checked record and writes nothing: accepted with `strike`, `dip` and the comment set
// (with the warnings met on the way), or refused with the comment and the error panel's lines. May
// change DDIR(2) by a strike reset. Needs the angle constants (trigoset).
Verdict solve(DataForm form, Fracture& fracture);

// Degrees of a direction letter, clockwise from north.
float letterAngle(const Text<1>& letter);

} // namespace kestro::app
