// desktop/viewscommand.h: the command line of kestrometry-views: files to read, what to export.
#pragma once

#include "views/uncertainty.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace kestro::desktop {

struct ViewsCommand
{
    std::vector<std::string> files;
    // A picture of one view: `--png FILE` or `--png VIEW=FILE`, VIEW stereonet (the default) or rose.
    struct Picture
    {
        std::string view, file;
        bool pdf = false;
    };
    std::string csv, dipDirection;
    std::vector<Picture> pictures;
    views::UncertaintyOptions uncertainty;
    bool help = false, version = false;
};

// Exit statuses of the program.
enum ViewsStatus : int { viewsDone = 0, viewsReadProblems = 1, viewsUsage = 2, viewsPictureFailed = 3 };

// False with `error` set when the arguments cannot be understood.
bool parseViewsCommand(int argc, const char* const* argv, ViewsCommand& command, std::string& error);

// Reads every file and writes the exports asked for; messages go to `err`, the summary to `out`.
// What could be read is exported even when a file had problems.
int runViewsCommand(const ViewsCommand& command, std::ostream& out, std::ostream& err);

int viewsMain(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

} // namespace kestro::desktop
