// app/console_main.cpp: kestrometry-console, the program on a plain standard input and output.
#include "app/fracture.h"
#include "app/kestrometry.h"
#include "runtime/io.h"

#include <cstdio>
#include <cstring>

namespace {

const char* const help =
    "Usage: kestrometry-console [--help | --version]\n"
    "Converts apparent dips into the strike (right-hand rule) and true dip of fracture planes. The\n"
    "program asks its questions on standard input: the banner, where the data come from (1 a file,\n"
    "2 the keyboard), the file name, the data form (1 alphanumerical, 2 numerical), where the results\n"
    "go (1 a file, 2 the screen) and the results file name; then Return at each warning or error\n"
    "panel. Answers can be piped in, one per line, for instance:\n"
    "  { echo; echo 1; echo kestro_in.txt; echo 1; echo 1; echo kestro_out.txt; yes ''; } |\n"
    "      kestrometry-console\n"
    "Files are read and written in the current folder; the results file must not exist yet.\n";

} // namespace

int main(int argc, char** argv)
{
    // These two answer and leave; any other argument is ignored, the dialogue reads no command line.
    if (argc > 1 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(help, stdout);
        return 0;
    }
    if (argc > 1 && std::strcmp(argv[1], "--version") == 0) {
        std::printf("kestrometry-console %.*s (%.*s)\n", static_cast<int>(kestro::app::programVersion.size()),
                    kestro::app::programVersion.data(), static_cast<int>(kestro::app::programDate.size()),
                    kestro::app::programDate.data());
        return 0;
    }
    kestro::rt::runMain(kestro::app::kestrometry);
}
