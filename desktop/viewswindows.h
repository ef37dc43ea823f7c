// desktop/viewswindows.h: the stereonet, the rose diagram and the table of planes in windows of the
// window environment, opened through its C functions alone. Call from the environment's program
// thread (or any thread but the GUI thread: the functions wait for the windows).
#pragma once

#include "views/readers.h"
#include "views/uncertainty.h"

#include <string>
#include <vector>

namespace kestro::desktop {

// Side of the stereonet and rose canvases, in canvas units.
constexpr int viewCanvasSide = 600;

// Each opens a new window; `title` is its title. The stereonet and the table return their unit.
int openStereonetWindow(const std::vector<views::PlaneRecord>& records, const std::string& title);
void openRoseWindow(const std::vector<views::PlaneRecord>& records, const std::string& title);
int openTableWindow(const std::vector<views::PlaneRecord>& records, const views::UncertaintyOptions& options,
                    const std::string& title);

} // namespace kestro::desktop
