// desktop/kestrometry_main.cpp: kestrometry, the program in a window of its own.
#include "app/kestrometry.h"
#include "zel/core/environment.h"

int main(int argc, char** argv)
{
    ZEL_setMainProgram(kestro::app::kestrometry);
    TarnixWindowEnvironment(argc, argv);
    return 0;
}
