// desktop/viewscommand.h: the command line of kestrometry-views: files to read, what to export.
#pragma once

#include "views/readers.h"
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
    int exitAfterMs = 0; // windows: end this long after they have opened (for scripts); 0 waits
    // No export asked for: the views are shown in windows.
    bool showsWindows() const { return csv.empty() && dipDirection.empty() && pictures.empty(); }
};

// Exit statuses of the program.
enum ViewsStatus : int { viewsDone = 0, viewsReadProblems = 1, viewsUsage = 2, viewsPictureFailed = 3 };

// False with `error` set when the arguments cannot be understood.
bool parseViewsCommand(int argc, const char* const* argv, ViewsCommand& command, std::string& error);

// Reads every file and writes the exports asked for; messages go to `err`, the summary to `out`.
// What could be read is exported even when a file had problems.
// `read`, when given, receives the planes read.
int runViewsCommand(const ViewsCommand& command, std::ostream& out, std::ostream& err,
                    std::vector<views::PlaneRecord>* read = nullptr);

int viewsMain(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

} // namespace kestro::desktop
