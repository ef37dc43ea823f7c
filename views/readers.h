// views/readers.h: planes from a results file of the converter (either data form) or from a CSV
// file whose header names its columns.
#pragma once

#include "views/stereonet.h"
#include "views/uncertainty.h"

#include <string>
#include <string_view>
#include <vector>

namespace kestro::views {

struct PlaneRecord
{
    long id = 0; // number of the record in its file, refused ones counted; or a CSV's id
    Plane plane;
    bool measured = false; // `measurement` holds the angles the plane was converted from
    Measurement measurement;
    std::string comment;
};

struct ReadResult
{
    std::vector<PlaneRecord> planes;
    long headerLines = 0; // skipped
    long refused = 0;     // results lines without a strike and a dip, skipped
    // One message per line that could not be read, "FILE:LINE: what"; reading goes on behind it.
    // A file that cannot be opened gives one message and nothing else.
    std::vector<std::string> problems;
    bool ok() const { return problems.empty(); }
};

// Reads a results file or a CSV file, told apart by the first line: a CSV's names its columns.
ReadResult readPlanes(const std::string& fileName);
// The same on text already in memory; `name` stands in the messages.
ReadResult readPlanesText(std::string_view text, const std::string& name);

// Results lines: seven tab-separated columns dipa1, dipdir1, dipa2, dipdir2, strike, dip, comment.
// The measured angles are kept as printed, to one decimal; a column of stars leaves them unknown.
ReadResult readResultsText(std::string_view text, const std::string& name);
// CSV with a header naming `strike` (right-hand rule) or `dip_direction`, and `dip`; optional `id`
// and `comment`. Separated by commas; a field may stand in double quotes.
ReadResult readCsvText(std::string_view text, const std::string& name);

} // namespace kestro::views
