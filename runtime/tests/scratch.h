// runtime/tests/scratch.h: what the runtime tests share: folders of their own, file contents and
// specifiers, and a keyboard typed ahead.
#pragma once

#include "runtime/io.h"
#include "runtime/testing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>

namespace rt = kestro::rt;
namespace fs = std::filesystem;
using kestro::Text;

namespace {

// A fresh folder /tmp/<prefix>_XXXXXX; empty when none could be made.
inline fs::path scratchFolder(const std::string& prefix)
{
    std::string pattern = "/tmp/" + prefix + "_XXXXXX";
    return mkdtemp(pattern.data()) ? fs::path(pattern) : fs::path();
}

inline std::string slurp(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

inline std::string trimmed(std::string_view text)
{
    return std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

inline rt::OpenSpec fileSpec(std::string_view file, std::string_view status = {})
{
    rt::OpenSpec specifiers;
    specifiers.file = file;
    specifiers.status = status;
    return specifiers;
}

// Text that the write hook `showText` was given, by unit; a length of -1 is a C string's.
std::map<long, std::string> shown;

inline long showText(char* text, long* length, int /*descriptor*/, long* unit)
{
    const long n = static_cast<std::int32_t>(*length) == -1 ? static_cast<long>(std::strlen(text)) : *length;
    shown[*unit].append(text, n);
    return *length;
}

// Standard input typed ahead; `typedLine` hands it out a line per call of the read hook.
std::string keyboard;
std::size_t keyboardAt = 0;

inline long typedLine(char* buffer, long size, long* /*unit*/)
{
    if (keyboardAt >= keyboard.size()) return 0;
    std::size_t end = keyboard.find('\n', keyboardAt);
    end = end == std::string::npos ? keyboard.size() : end + 1;
    const long n = std::min<long>(size, static_cast<long>(end - keyboardAt));
    std::memcpy(buffer, keyboard.data() + keyboardAt, n);
    keyboardAt += n;
    return n;
}

// A test in a folder of its own, named after its suite, which is also the current folder while it
// runs. Whatever the test leaves in it goes with it.
class InScratchFolder : public ::testing::Test
{
protected:
    void SetUp() override
    {
        home_ = fs::current_path();
        const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
        dir_ = scratchFolder(std::string("kestro_") + test->test_suite_name());
        ASSERT_FALSE(dir_.empty());
        fs::current_path(dir_);
    }
    void TearDown() override
    {
        fs::current_path(home_);
        fs::remove_all(dir_);
    }

    fs::path dir_, home_;
};

} // namespace
