// desktop/kestrometry_main.cpp: kestrometry, the program in a window of its own, with a "Views"
// menu to look at results files while it runs.
#include "app/kestrometry.h"
#include "desktop/viewsmenu.h"
#include "zel/core/environment.h"

namespace {

void program()
{
    kestro::desktop::installViewsMenu();
    kestro::app::kestrometry();
}

} // namespace

int main(int argc, char** argv)
{
    ZEL_setMainProgram(program);
    TarnixWindowEnvironment(argc, argv);
    return 0;
}
