// desktop/views_main.cpp: kestrometry-views, the converted planes on a stereonet, a rose diagram and
// a table, and their exports.
#include "desktop/viewscommand.h"

#include <iostream>

int main(int argc, char** argv)
{
    return kestro::desktop::viewsMain(argc, argv, std::cout, std::cerr);
}
