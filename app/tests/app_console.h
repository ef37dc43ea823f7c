// app/tests/app_console.h: the screen of the app tests, captured through the write hook, and
// records parsed as the program reads them.
#pragma once

#include "app/fracture.h"
#include "runtime/io.h"
#include "runtime/testing.h"
#include "support/math.h"
#include "support/sio.h"
#include "support/tests/case_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace kestro::app {
namespace {

std::string screenText;

long captureWrite(char* text, long* length, int /*descriptor*/, long* /*unit*/)
{
    screenText.append(text, static_cast<std::size_t>(*length));
    return *length;
}

// The screen since the last clear, each line closed by '|' so that trailing blanks show. Without
// `frames` the heads, tails and borders of panels are left out.
std::string screen(bool frames = true)
{
    rt::flush(6);
    std::string marked;
    for (std::size_t start = 0, end; start < screenText.size(); start = end + 1) {
        end = std::min(screenText.find('\n', start), screenText.size());
        const std::string line = screenText.substr(start, end - start);
        if (frames || (line.rfind(" ***", 0) != 0 && line.rfind(" ///", 0) != 0)) marked += line + "|\n";
    }
    screenText.clear();
    return marked;
}

// A record as the program reads it, free-form.
Fracture parsed(DataForm form, std::string_view record)
{
    Fracture f;
    if (form == DataForm::alphanumerical)
        rt::readListInternal(record, f.dipa1, f.DIPDA[0], f.dipa2, f.DIPDA[1]);
    else
        rt::readListInternal(record, f.dipa1, f.DDIR[0], f.dipa2, f.DDIR[1]);
    return f;
}

// A case of a data file: the '|'-separated fields of its "== " line (the first one a form A or N)
// and the lines behind it up to the next "== " line. Lines that begin with '#' are notes.
struct Case
{
    std::vector<std::string> fields;
    std::string body;
    DataForm form() const { return fields[0] == "N" ? DataForm::numerical : DataForm::alphanumerical; }
};

std::vector<Case> casesOf(const char* name)
{
    std::vector<Case> cases;
    for (const testdata::Case& c : testdata::casesIn(std::string(KESTRO_TEST_DATA "/") + name)) {
        cases.push_back({c.fields, {}});
        for (const std::string& line : c.lines)
            cases.back().body += line + "\n";
    }
    return cases;
}

// A fresh runtime whose screen is captured, panels that do not pause, angles set.
class AppConsole : public ::testing::Test
{
protected:
    void SetUp() override
    {
        rt::testing::resetRuntime();
        quor_f_init(nullptr, captureWrite, nullptr, nullptr, nullptr, nullptr, nullptr);
        iocom = Iocom{5, 6, 5, 6, 0, 0, false, false, false, {true, true, false}};
        trigoset();
        screen();
    }
    void TearDown() override
    {
        quor_f_init(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
        rt::testing::resetRuntime();
    }
};

} // namespace
} // namespace kestro::app
