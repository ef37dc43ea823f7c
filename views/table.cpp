// views/table.cpp: table rows and their CSV and dip-direction files.
#include "views/table.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace kestro::views {

TableRow tableRow(const PlaneRecord& record, const UncertaintyOptions& options)
{
    TableRow row;
    row.id = record.id;
    row.strike = record.plane.strike;
    row.dipDirection = dipDirection(record.plane);
    row.dip = record.plane.dip;
    const Line p = pole(record.plane);
    row.poleTrend = p.trend;
    row.polePlunge = p.plunge;
    row.comment = record.comment;
    if (record.measured) {
        const Uncertainty u = propagate(record.measurement, options);
        row.hasUncertainty = u.known;
        row.sigmaStrike = u.sigmaStrike;
        row.sigmaDip = u.sigmaDip;
        row.cone95 = u.cone95;
        row.condition = u.poor ? "poor" : "good";
    }
    return row;
}

std::vector<TableRow> tableRows(const std::vector<PlaneRecord>& records, const UncertaintyOptions& options)
{
    std::vector<TableRow> rows;
    rows.reserve(records.size());
    for (const PlaneRecord& r : records)
        rows.push_back(tableRow(r, options));
    return rows;
}

std::string csvText(const std::vector<TableRow>& rows)
{
    std::string text = "id,strike_rhr,dip_direction,dip,pole_trend,pole_plunge,sigma_strike,sigma_dip,cone95,"
                       "condition,comment\n";
    char buffer[256];
    for (const TableRow& r : rows) {
        std::snprintf(buffer, sizeof buffer, "%ld,%.2f,%.2f,%.2f,%.2f,%.2f,", r.id, r.strike, r.dipDirection,
                      r.dip, r.poleTrend, r.polePlunge);
        text += buffer;
        if (r.hasUncertainty) {
            std::snprintf(buffer, sizeof buffer, "%.2f,%.2f,%.2f,", r.sigmaStrike, r.sigmaDip, r.cone95);
            text += buffer;
        } else {
            text += ",,,";
        }
        text += r.condition + ",\"";
        for (char c : r.comment)
            text += c == '"' ? std::string("\"\"") : std::string(1, c);
        text += "\"\n";
    }
    return text;
}

std::string dipDirectionText(const std::vector<TableRow>& rows)
{
    std::string text;
    char buffer[64];
    for (const TableRow& r : rows) {
        std::snprintf(buffer, sizeof buffer, "%.1f\t%.1f\n", r.dipDirection, r.dip);
        text += buffer;
    }
    return text;
}

bool writeTextFile(const std::string& fileName, const std::string& text, std::string& error)
{
    std::FILE* file = std::fopen(fileName.c_str(), "wb");
    if (!file) {
        error = fileName + ": Cannot write the file: " + std::strerror(errno);
        return false;
    }
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed) {
        error = fileName + ": Cannot write the file: " + std::strerror(errno);
        return false;
    }
    return true;
}

} // namespace kestro::views
