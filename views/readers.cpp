// views/readers.cpp: results and CSV files line by line, numbers by from_chars.
#include "views/readers.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace kestro::views {

namespace {

std::string_view trimmed(std::string_view s)
{
    while (!s.empty() && (s.front() == ' ' || s.front() == '\r' || s.front() == '\t'))
        s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\r' || s.back() == '\t'))
        s.remove_suffix(1);
    return s;
}

bool number(std::string_view s, double& value)
{
    s = trimmed(s);
    if (!s.empty() && s.front() == '+') s.remove_prefix(1);
    if (s.empty()) return false;
    const auto [end, error] = std::from_chars(s.data(), s.data() + s.size(), value);
    return error == std::errc() && end == s.data() + s.size() && std::isfinite(value);
}

// Calls `each(lineNumber, line)` for every line, without its line end.
template <typename Each> void forEachLine(std::string_view text, Each each)
{
    long number = 0;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        ++number;
        each(number, text.substr(0, end));
        if (end == std::string_view::npos) break;
        text.remove_prefix(end + 1);
    }
}

std::string quoted(std::string_view line)
{
    line = trimmed(line);
    return "\"" + std::string(line.substr(0, 60)) + (line.size() > 60 ? "...\"" : "\"");
}

std::string place(const std::string& name, long line)
{
    return name + ":" + std::to_string(line) + ": ";
}

bool csvHeader(std::string_view firstLine);

// Splits on `separator`; with `quotes`, a field in double quotes may hold it, "" standing for ".
std::vector<std::string> split(std::string_view line, char separator, bool quotes)
{
    std::vector<std::string> fields(1);
    bool inQuotes = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quotes && c == '"') {
            if (inQuotes && i + 1 < line.size() && line[i + 1] == '"')
                fields.back() += '"', ++i;
            else
                inQuotes = !inQuotes;
        } else if (c == separator && !inQuotes) {
            fields.emplace_back();
        } else {
            fields.back() += c;
        }
    }
    return fields;
}

double letterDirection(char letter)
{
    switch (letter) {
    case 'N':
        return 0;
    case 'E':
        return 90;
    case 'S':
        return 180;
    case 'W':
        return 270;
    default:
        return NAN;
    }
}

} // namespace

ReadResult readResultsText(std::string_view text, const std::string& name)
{
    ReadResult result;
    long records = 0;
    std::vector<std::string_view> columns;
    result.planes.reserve(text.size() / 44 + 1); // a converted line has 44 characters or more
    forEachLine(text, [&](long lineNumber, std::string_view line) {
        const std::string_view content = trimmed(line);
        if (content.empty()) return;
        if (content.front() == '\'') {
            ++result.headerLines;
            return;
        }
        columns.clear();
        for (std::size_t from = 0;;) {
            const std::size_t tab = line.find('\t', from);
            columns.push_back(
                line.substr(from, tab == std::string_view::npos ? std::string_view::npos : tab - from));
            if (tab == std::string_view::npos) break;
            from = tab + 1;
        }
        if (columns.size() != 7) {
            result.problems.push_back(place(name, lineNumber) +
                                      "Not a results line of seven tab-separated columns: " + quoted(line));
            return;
        }
        ++records;
        const std::string_view comment = trimmed(columns[6]);
        if ((trimmed(columns[4]).empty() && trimmed(columns[5]).empty()) ||
            comment.substr(0, 7) == "error: ") {
            ++result.refused;
            return;
        }
        PlaneRecord r;
        r.id = records;
        if (!number(columns[4], r.plane.strike) || !number(columns[5], r.plane.dip) || r.plane.dip < 0 ||
            r.plane.dip > 90) {
            result.problems.push_back(place(name, lineNumber) +
                                      "No strike and dip in the results line: " + quoted(line));
            return;
        }
        r.plane.strike = normalized360(r.plane.strike);
        r.comment = std::string(comment);
        // The angles as printed; stars for a value too wide leave them unknown.
        Measurement& m = r.measurement;
        const std::string_view second = trimmed(columns[1]), fourth = trimmed(columns[3]);
        const bool letters = second.size() == 3 && second.front() == '\'';
        if (letters) {
            m.strikeCase = fourth == "'A'";
            m.direction1 = letterDirection(second[1]);
            m.direction2 = fourth.size() == 3 ? letterDirection(fourth[1]) : NAN;
            r.measured =
                number(columns[0], m.dipa1) && number(columns[2], m.dipa2) && !std::isnan(m.direction1);
            if (m.strikeCase) m.direction2 = m.dipa2;
            r.measured = r.measured && !std::isnan(m.direction2);
        } else {
            r.measured = number(columns[0], m.dipa1) && number(columns[1], m.direction1) &&
                         number(columns[2], m.dipa2) && number(columns[3], m.direction2);
            m.strikeCase = std::fabs(m.dipa2) < 1e-4;
        }
        result.planes.push_back(std::move(r));
    });
    return result;
}

namespace {

std::string columnName(std::string_view field)
{
    field = trimmed(field);
    if (field.size() >= 2 && (field.front() == '"' || field.front() == '\'') && field.back() == field.front())
        field = trimmed(field.substr(1, field.size() - 2));
    std::string name(field);
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

struct CsvColumns
{
    int id = -1, strike = -1, dipDirection = -1, dip = -1, comment = -1;
};

CsvColumns csvColumns(const std::vector<std::string>& header)
{
    CsvColumns c;
    for (int i = 0; i < static_cast<int>(header.size()); ++i) {
        const std::string name = columnName(header[static_cast<std::size_t>(i)]);
        int* slot = nullptr;
        if (name == "id")
            slot = &c.id;
        else if (name == "strike" || name == "strike_rhr")
            slot = &c.strike;
        else if (name == "dip_direction" || name == "dipdirection" || name == "dip_dir" || name == "dipdir")
            slot = &c.dipDirection;
        else if (name == "dip")
            slot = &c.dip;
        else if (name == "comment")
            slot = &c.comment;
        if (slot && *slot < 0) *slot = i;
    }
    return c;
}

bool csvHeader(std::string_view firstLine)
{
    const CsvColumns c = csvColumns(split(firstLine, ',', true));
    return c.dip >= 0 && (c.strike >= 0 || c.dipDirection >= 0);
}

} // namespace

ReadResult readCsvText(std::string_view text, const std::string& name)
{
    ReadResult result;
    CsvColumns columns;
    long records = 0;
    forEachLine(text, [&](long lineNumber, std::string_view line) {
        if (lineNumber == 1) {
            ++result.headerLines;
            columns = csvColumns(split(line, ',', true));
            if (columns.dip < 0 || (columns.strike < 0 && columns.dipDirection < 0))
                result.problems.push_back(
                    place(name, 1) +
                    "The header names no strike or dip_direction column with a dip column: " + quoted(line));
            return;
        }
        if (trimmed(line).empty() || columns.dip < 0 || (columns.strike < 0 && columns.dipDirection < 0))
            return;
        ++records;
        const std::vector<std::string> fields = split(line, ',', true);
        auto field = [&](int i) {
            return i >= 0 && i < static_cast<int>(fields.size()) ? fields[static_cast<std::size_t>(i)]
                                                                 : std::string();
        };
        PlaneRecord r;
        r.id = records;
        double direction = 0, id = 0;
        const bool byStrike = columns.strike >= 0;
        if (!number(field(byStrike ? columns.strike : columns.dipDirection), direction) ||
            !number(field(columns.dip), r.plane.dip) || r.plane.dip < 0 || r.plane.dip > 90) {
            result.problems.push_back(place(name, lineNumber) +
                                      "No strike or dip direction and dip of 0 to 90: " + quoted(line));
            return;
        }
        r.plane.strike = normalized360(byStrike ? direction : direction - 90);
        if (columns.id >= 0 && number(field(columns.id), id) && id == std::floor(id))
            r.id = static_cast<long>(id);
        r.comment = std::string(trimmed(field(columns.comment)));
        result.planes.push_back(std::move(r));
    });
    return result;
}

ReadResult readPlanesText(std::string_view text, const std::string& name)
{
    const std::size_t end = text.find('\n');
    return csvHeader(text.substr(0, end)) ? readCsvText(text, name) : readResultsText(text, name);
}

ReadResult readPlanes(const std::string& fileName)
{
    ReadResult result;
    std::FILE* file = std::fopen(fileName.c_str(), "rb");
    std::string text;
    if (file) {
        // One read of the whole size where the size is known, then whatever follows.
        if (std::fseek(file, 0, SEEK_END) == 0) {
            const long size = std::ftell(file);
            std::rewind(file);
            if (size > 0) text.resize(static_cast<std::size_t>(size));
            text.resize(std::fread(text.data(), 1, text.size(), file));
        }
        char buffer[1 << 16];
        std::size_t got;
        while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0)
            text.append(buffer, got);
        const bool failed = std::ferror(file);
        std::fclose(file);
        if (!failed) return readPlanesText(text, fileName);
    }
    result.problems.push_back(fileName + ": Cannot read the file: " + std::strerror(errno));
    return result;
}

} // namespace kestro::views
