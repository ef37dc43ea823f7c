// support/tests/case_file.h: the cases of a test data file. A case is a "== field|field|..." line
// and the lines behind it up to the next "== " line; lines that begin with '#' are notes.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

namespace kestro::testdata {

struct Case
{
    std::vector<std::string> fields;
    std::vector<std::string> lines;
    std::int32_t number(std::size_t i) const { return std::stoi(fields.at(i)); }
};

inline std::vector<Case> casesIn(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::vector<Case> cases;
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("== ", 0) == 0) {
            cases.emplace_back();
            for (std::size_t start = 3, end; start <= line.size(); start = end + 1) {
                end = std::min(line.find('|', start), line.size());
                cases.back().fields.push_back(line.substr(start, end - start));
            }
        } else if (!cases.empty() && line.rfind('#', 0) != 0) {
            cases.back().lines.push_back(line);
        }
    }
    EXPECT_FALSE(cases.empty()) << path << " has no cases";
    return cases;
}

} // namespace kestro::testdata
