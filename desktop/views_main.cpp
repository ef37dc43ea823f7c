// desktop/views_main.cpp: kestrometry-views, the converted planes on a stereonet, a rose diagram and
// a table, and their exports.
#include "desktop/viewscommand.h"
#include "desktop/viewswindows.h"
#include "zel/core/environment.h"

#include <QThread>

#include <cstdio>
#include <cstdlib>
#include <iostream>

namespace {

kestro::desktop::ViewsCommand command;
std::vector<kestro::views::PlaneRecord> records;

// The program thread of the environment: the three windows, then the user has control.
void showViews()
{
    const std::string name = command.files.size() == 1 ? command.files.front() : std::string("results");
    kestro::desktop::openStereonetWindow(records, "Stereonet - " + name);
    kestro::desktop::openRoseWindow(records, "Rose diagram - " + name);
    kestro::desktop::openTableWindow(records, command.uncertainty, "Table - " + name);
    if (command.exitAfterMs > 0) {
        QThread::msleep(static_cast<unsigned long>(command.exitAfterMs));
        std::fflush(nullptr);
        std::_Exit(0);
    }
    ZEL_startEvents();
}

} // namespace

int main(int argc, char** argv)
{
    std::string error;
    kestro::desktop::ViewsCommand parsed;
    if (!kestro::desktop::parseViewsCommand(argc, argv, parsed, error) || parsed.help || parsed.version ||
        !parsed.showsWindows())
        return kestro::desktop::viewsMain(argc, argv, std::cout, std::cerr);
    command = parsed;
    kestro::desktop::runViewsCommand(command, std::cout, std::cerr, &records);
    char* arguments[] = {argv[0], nullptr};
    ZEL_setMainProgram(showViews);
    return TarnixWindowEnvironment(1, arguments);
}
