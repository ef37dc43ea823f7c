// support/tests/support_console.h: a scripted keyboard and a captured screen for the support tests.
#pragma once

#include "runtime/io.h"
#include "runtime/testing.h"
#include "support/prompts.h"
#include "support/runinfo.h"
#include "support/sio.h"
#include "support/tests/case_file.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace kestro {
namespace {

// A script line of this text makes the read hook fail once (EIO) instead of giving a line.
constexpr std::string_view failingRead = "<read fails>";

struct ScriptedConsole
{
    std::string screen; // everything written to the standard units, error unit included
    std::string output; // the part that went to the output descriptor
    std::string errors; // the part that went to the error descriptor
    std::string input;  // lines still to be typed, each ending in a line feed
};
ScriptedConsole console;

long scriptedRead(char* buffer, long size, long* /*unit*/)
{
    if (console.input.empty()) return 0;
    std::size_t n = console.input.find('\n');
    n = n == std::string::npos ? console.input.size() : n + 1;
    if (console.input.compare(0, n, std::string(failingRead) + "\n") == 0) {
        console.input.erase(0, n);
        errno = EIO;
        return -1;
    }
    n = std::min(n, static_cast<std::size_t>(size));
    std::memcpy(buffer, console.input.data(), n);
    console.input.erase(0, n);
    return static_cast<long>(n);
}

long capturedWrite(char* text, long* length, int descriptor, long* /*unit*/)
{
    console.screen.append(text, static_cast<std::size_t>(*length));
    if (descriptor == 1) console.output.append(text, static_cast<std::size_t>(*length));
    if (descriptor == 2) console.errors.append(text, static_cast<std::size_t>(*length));
    return *length;
}

// Splits a captured text into its lines, each closed by '|' so that trailing blanks show.
std::vector<std::string> markedLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line + "|");
    return lines;
}

class SupportConsole : public ::testing::Test
{
protected:
    void SetUp() override
    {
        rt::testing::resetRuntime();
        console = ScriptedConsole{};
        quor_f_init(scriptedRead, capturedWrite, nullptr, nullptr, nullptr, nullptr, nullptr);
        iocom = Iocom{5, 6, 5, 6, 0, 0, false, false, true, {true, true, false}}; // as initsio2 leaves it
        forgetEndedInput(); // a test that ran out of input must not end the next one
    }

    void TearDown() override
    {
        quor_f_init(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
        rt::testing::resetRuntime();
    }

    // Lines the user types next, in order.
    static void type(std::initializer_list<std::string_view> lines)
    {
        for (std::string_view line : lines)
            console.input.append(line).append("\n");
    }

    // Output written so far, flushed, as marked lines.
    static std::vector<std::string> screen()
    {
        rt::flush(6);
        rt::flush(0);
        return markedLines(console.screen);
    }

    // For death tests: the real standard output and error, so that the child's error line
    // reaches the parent; answers still come from the script.
    static void useRealOutput()
    {
        quor_f_init(scriptedRead, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    }
};

// A SupportConsole in a fresh folder of its own. Apart from what the test lists in `made`, the
// folder must be empty at the end, so a test that leaves a temporary file behind fails.
class ScratchConsole : public SupportConsole
{
protected:
    void SetUp() override
    {
        SupportConsole::SetUp();
        std::string pattern = ::testing::TempDir() + "kestro_support_XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        previous = std::filesystem::current_path();
        std::filesystem::current_path(folder);
    }

    void TearDown() override
    {
        rt::closeAllUnits();
        for (const std::filesystem::path& path : made)
            std::filesystem::remove_all(path);
        std::filesystem::current_path(previous);
        EXPECT_TRUE(std::filesystem::is_empty(folder)) << "files left in " << folder;
        std::filesystem::remove_all(folder);
        SupportConsole::TearDown();
    }

    std::vector<std::filesystem::path> made;
    std::filesystem::path folder;
    std::filesystem::path previous;
};

// The run information of kestrometry 5.1, three routines deep, started on a known host; panels
// do not pause. smaininfo2 runs the host fact commands, whose temporary files live in the current
// folder.
class RunInfoConsole : public ScratchConsole
{
protected:
    void SetUp() override
    {
        ScratchConsole::SetUp();
        iocom.LPAUSE = false;
        Runinfo3com& info = runinfo3com = Runinfo3com{};
        info.ROUTLEVEL = 1;
        info.RUNCODE = 3;
        info.ROUTNAME[0] = "kestrometry";
        info.ROUTVERS[0] = "5.1";
        info.ROUTDATE[0] = "2025-04-11";
        info.ROUTNAME[1] = "opef2";
        info.ROUTVERS[1] = "5.3 ";
        info.ROUTNAME[2] = "inchardef  ";
        info.ROUTVERS[2] = " 1.5";
        info.DATE0 = "2025-04-11";
        info.TIME0 = "09:05:07";
        info.USERTEXT = "geologist";
        info.HOSTTEXT = "fieldstation.vorlane.example";
        info.OSNAME = "Linux_6.1.0-1";
        info.CPUNAME = "AMD EPYC 7B13";
        info.CPU0 = 1.0f;
    }
};

// `text` and blanks up to `width`.
inline std::string padded(std::string_view text, std::size_t width)
{
    return std::string(text) + std::string(width - text.size(), ' ');
}

// The lines of `shown` from `first` on, as many as `expected` has.
inline std::vector<std::string> linesFrom(const std::vector<std::string>& shown, std::size_t first,
                                          const std::vector<std::string>& expected)
{
    EXPECT_GE(shown.size(), first + expected.size());
    return {shown.begin() + std::min(first, shown.size()),
            shown.begin() + std::min(first + expected.size(), shown.size())};
}

// A case of a data file, its lines marked as screen() marks them.
using testdata::Case;

// The cases of data/`file` whose first field is `kind`.
inline std::vector<Case> casesOf(const std::string& file, std::string_view kind)
{
    std::vector<Case> cases;
    for (Case& c : testdata::casesIn(KESTRO_SUPPORT_TEST_DATA "/" + file))
        if (c.fields[0] == kind) cases.push_back(std::move(c));
    EXPECT_FALSE(cases.empty()) << file << " has no " << kind;
    return cases;
}

// An expected screen of data/screens.txt, named on its "== " line, or none for no name. Panels
// and dialogues stand there as the formats draw them.
inline std::vector<std::string> screenOf(std::string_view name)
{
    if (name.empty()) return {}; // none
    const std::vector<Case> cases = casesOf("screens.txt", name);
    return cases.empty() ? std::vector<std::string>{} : cases[0].lines;
}

} // namespace
} // namespace kestro
