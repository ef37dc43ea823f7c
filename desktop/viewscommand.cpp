// desktop/viewscommand.cpp: options, reading, exports and the printed summary of kestrometry-views.
#include "desktop/viewscommand.h"

#include "desktop/viewspainter.h"

#include "app/fracture.h"
#include "views/readers.h"
#include "views/scene.h"
#include "views/table.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ostream>

namespace kestro::desktop {

namespace {

constexpr const char* program = "kestrometry-views";

const char* const usage =
    "Usage: kestrometry-views [OPTION]... FILE...\n"
    "Reads results files of kestrometry (either data form) or CSV files whose header names the\n"
    "columns strike (right-hand rule) or dip_direction, and dip; prints what they hold and exports it.\n"
    "\n"
    "  --csv FILE            the table of planes: id, strike_rhr, dip_direction, dip, pole_trend,\n"
    "                        pole_plunge, sigma_strike, sigma_dip, cone95, condition, comment\n"
    "  --dipdir FILE         two plain columns, dip direction and dip\n"
    "  --png [VIEW=]FILE     a picture of a view: VIEW is stereonet (the default) or rose;\n"
    "  --pdf [VIEW=]FILE     both options may be given more than once\n"
    "  --angle-error DEG     standard deviation of every measured angle (default 1)\n"
    "  --poor-factor F       poorly conditioned past this error amplification (default 5)\n"
    "  --exit-after MS       without exports: close the windows MS milliseconds after they open\n"
    "  --help, --version\n"
    "\n"
    "Without --csv, --dipdir, --png or --pdf the planes are shown in three windows: the\n"
    "stereonet, the rose diagram of strikes and the table.\n"
    "\n"
    "Exit status: 0 done, 1 a file could not be read in full (what could be read is still\n"
    "exported), 2 wrong arguments, 3 a picture could not be written.\n";

bool positiveNumber(const std::string& text, double& value)
{
    char* end = nullptr;
    value = std::strtod(text.c_str(), &end);
    return !text.empty() && end && *end == '\0' && std::isfinite(value) && value >= 0;
}

} // namespace

bool parseViewsCommand(int argc, const char* const* argv, ViewsCommand& command, std::string& error)
{
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&](std::string& into) {
            if (i + 1 >= argc) {
                error = "The option " + arg + " needs a value";
                return false;
            }
            into = argv[++i];
            return true;
        };
        std::string number;
        if (arg == "--help" || arg == "-h") {
            command.help = true;
        } else if (arg == "--version") {
            command.version = true;
        } else if (arg == "--csv") {
            if (!value(command.csv)) return false;
        } else if (arg == "--dipdir") {
            if (!value(command.dipDirection)) return false;
        } else if (arg == "--png" || arg == "--pdf") {
            std::string text;
            if (!value(text)) return false;
            ViewsCommand::Picture picture{"stereonet", text, arg == "--pdf"};
            const std::size_t equals = text.find('=');
            if (equals != std::string::npos) {
                picture.view = text.substr(0, equals);
                picture.file = text.substr(equals + 1);
            }
            if (picture.view != "stereonet" && picture.view != "rose") {
                error = "Not a view for " + arg + ": \"" + picture.view + "\" (stereonet or rose)";
                return false;
            }
            if (picture.file.empty()) {
                error = "The option " + arg + " needs a file name";
                return false;
            }
            command.pictures.push_back(picture);
        } else if (arg == "--exit-after") {
            double v = 0;
            if (!value(number)) return false;
            if (!positiveNumber(number, v) || v < 1 || v > 3.6e6) {
                error = "Not a number of milliseconds for " + arg + ": \"" + number + "\"";
                return false;
            }
            command.exitAfterMs = int(v);
        } else if (arg == "--angle-error" || arg == "--poor-factor") {
            double v = 0;
            if (!value(number)) return false;
            if (!positiveNumber(number, v)) {
                error = "Not a number of zero or more for " + arg + ": \"" + number + "\"";
                return false;
            }
            (arg == "--angle-error" ? command.uncertainty.angleError : command.uncertainty.poorFactor) = v;
        } else if (arg.size() > 1 && arg[0] == '-') {
            error = "Unknown option: \"" + arg + "\"";
            return false;
        } else {
            command.files.push_back(arg);
        }
    }
    if (command.files.empty() && !command.help && !command.version) {
        error = "No file to read";
        return false;
    }
    return true;
}

int runViewsCommand(const ViewsCommand& command, std::ostream& out, std::ostream& err,
                    std::vector<views::PlaneRecord>* planesRead)
{
    int status = viewsDone;
    std::vector<views::PlaneRecord> records;
    for (const std::string& file : command.files) {
        views::ReadResult read = views::readPlanes(file);
        constexpr std::size_t shown = 20;
        for (std::size_t i = 0; i < read.problems.size() && i < shown; ++i)
            err << program << ": " << read.problems[i] << '\n';
        if (read.problems.size() > shown)
            err << program << ": " << file << ": " << read.problems.size() - shown
                << " more lines not read\n";
        if (!read.ok()) status = viewsReadProblems;
        out << file << ": " << read.planes.size() << " planes read, " << read.headerLines
            << " header lines and " << read.refused << " refused records skipped\n";
        records.insert(records.end(), std::make_move_iterator(read.planes.begin()),
                       std::make_move_iterator(read.planes.end()));
    }
    std::vector<views::Plane> planes;
    planes.reserve(records.size());
    for (const views::PlaneRecord& r : records)
        planes.push_back(r.plane);
    const views::FisherMean mean = views::fisherMean([&] {
        std::vector<views::Vec3> poles;
        for (const views::Plane& p : planes)
            poles.push_back(views::poleVector(p));
        return poles;
    }());
    if (mean.valid) {
        char line[160];
        std::snprintf(
            line, sizeof line,
            "mean plane %05.1f/%04.1f (strike/dip), mean pole %05.1f/%04.1f (trend/plunge), 95%% cone %.1f\n",
            mean.meanPlane.strike, mean.meanPlane.dip, mean.meanPole.trend, mean.meanPole.plunge,
            mean.cone95);
        out << line;
    }

    if (!command.csv.empty() || !command.dipDirection.empty()) {
        const std::vector<views::TableRow> rows = views::tableRows(records, command.uncertainty);
        std::string error;
        if (!command.csv.empty() && !views::writeTextFile(command.csv, views::csvText(rows), error)) {
            err << program << ": " << error << '\n';
            status = viewsReadProblems;
        }
        if (!command.dipDirection.empty() &&
            !views::writeTextFile(command.dipDirection, views::dipDirectionText(rows), error)) {
            err << program << ": " << error << '\n';
            status = viewsReadProblems;
        }
    }
    if (!command.pictures.empty()) {
        ensureGuiApplication();
        const views::StereonetScene scene = views::stereonetScene(planes);
        const views::RoseDiagram rose = views::strikeRose(planes);
        for (const ViewsCommand::Picture& picture : command.pictures) {
            QString error;
            const QString file = QString::fromStdString(picture.file);
            const bool written = picture.view == "rose" ? exportRose(rose, file, picture.pdf, error)
                                                        : exportStereonet(scene, file, picture.pdf, error);
            if (!written) {
                err << program << ": " << error.toStdString() << '\n';
                if (status == viewsDone) status = viewsPictureFailed;
            }
        }
    }
    if (planesRead) *planesRead = std::move(records);
    return status;
}

int viewsMain(int argc, const char* const* argv, std::ostream& out, std::ostream& err)
{
    ViewsCommand command;
    std::string error;
    if (!parseViewsCommand(argc, argv, command, error)) {
        err << program << ": " << error << "\n" << usage;
        return viewsUsage;
    }
    if (command.help) {
        out << usage;
        return viewsDone;
    }
    if (command.version) {
        out << program << ' ' << app::programVersion << " (" << app::programDate << ")\n";
        return viewsDone;
    }
    return runViewsCommand(command, out, err);
}

} // namespace kestro::desktop
