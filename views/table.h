// views/table.h: one row per plane with its pole and uncertainty, and the files exported from it.
#pragma once

#include "views/readers.h"
#include "views/uncertainty.h"

#include <string>
#include <vector>

namespace kestro::views {

struct TableRow
{
    long id = 0;
    double strike = 0; // right-hand rule
    double dipDirection = 0;
    double dip = 0;
    double poleTrend = 0;
    double polePlunge = 0;
    bool hasUncertainty = false; // the sigma columns and the cone are known
    double sigmaStrike = 0, sigmaDip = 0, cone95 = 0;
    std::string condition; // "good", "poor", or empty without the measured angles
    std::string comment;
};

TableRow tableRow(const PlaneRecord& record, const UncertaintyOptions& options);
std::vector<TableRow> tableRows(const std::vector<PlaneRecord>& records, const UncertaintyOptions& options);

// The header "id,strike_rhr,dip_direction,dip,pole_trend,pole_plunge,sigma_strike,sigma_dip,cone95,
// condition,comment" and one line per row: angles with two decimals, unknown values empty, the
// comment in double quotes.
std::string csvText(const std::vector<TableRow>& rows);
// One line per row, "dip direction<TAB>dip" with one decimal, no header.
std::string dipDirectionText(const std::vector<TableRow>& rows);

// Writes `text` to a file; false with `error` set to one message naming the file.
bool writeTextFile(const std::string& fileName, const std::string& text, std::string& error);

} // namespace kestro::views
