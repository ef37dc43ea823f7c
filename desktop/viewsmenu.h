// desktop/viewsmenu.h: the "Views" menu of the desktop program's main window, there from the start,
// while the program runs (the environment's own user menus come only once a program is idle).
#pragma once

namespace kestro::desktop {

// Call from the program thread once the environment runs: the menu is added on the GUI thread as
// soon as the main window exists.
void installViewsMenu();

} // namespace kestro::desktop
