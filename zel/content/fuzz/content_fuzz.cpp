// zel/content/fuzz/content_fuzz.cpp: the data converter, the spreadsheet's write and read, the
// bridge's size check and the 16-byte real's text under arbitrary type strings, sizes and bytes.
//
// Input layout: the type string up to the first line feed; then one signed byte each for the
// data's rows and columns (at most 16 each), one for the element size the caller claims, and one
// for the grid (high nibble rows, low nibble columns); the rest is the array's bytes. Every array
// is exactly as large as its description, so a read or write past it is caught by the sanitizer.
#include "runtime/quad.h"
#include "zel/content/conversion.h"
#include "zel/content/spreadsheet.h"
#include "zel/core/gluemanager.h"

#include <QApplication>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

namespace {

QApplication& application()
{
    static int argc = 1;
    static char name[] = "content_fuzz";
    static char* argv[] = {name, nullptr};
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static QApplication app(argc, argv);
    return app;
}

// `bytes` repeated or cut to exactly n bytes.
std::vector<char> arrayOf(std::string_view bytes, std::size_t n)
{
    std::vector<char> v(n);
    for (std::size_t i = 0; i < n && !bytes.empty(); ++i)
        v[i] = bytes[i % bytes.size()];
    return v;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    application();
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = input.find('\n');
    const QString type = QString::fromLatin1(input.data(), static_cast<int>(std::min(end, input.size())));
    input = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
    int header[4] = {2, 2, 8, 0x33};
    for (int& h : header) {
        if (input.empty()) break;
        h = static_cast<signed char>(input.front());
        input.remove_prefix(1);
    }
    // At most 16 x 16 elements: larger arrays take no other path, and a 16-byte real's exact
    // digits cost a thousandfold under the fuzzer's instrumentation.
    const int rows = std::min(header[0], 16), columns = std::min(header[1], 16), claimed = header[2];
    const int gridRows = (header[3] >> 4) & 15, gridColumns = header[3] & 15;

    const int elementSize = ZEL_DataConverter::elementSize(type);
    const std::size_t count = rows > 0 && columns > 0 ? std::size_t(rows) * std::size_t(columns) : 0;
    std::vector<char> array = arrayOf(input, count * std::size_t(std::max(elementSize, 0)));
    const QStringList strings = ZEL_DataConverter::convertDataToStringList(array.data(), type, rows, columns);
    if (!strings.isEmpty() && std::size_t(strings.size()) != count) std::abort();

    // Without a bridge the write is refused after its size check, whatever the sizes.
    if (GlueManager::writeSpreadsheetWindow(1, array.data(), type, claimed, rows, columns)) std::abort();

    ZEL_Spreadsheet sheet(nullptr, 1, "fuzz");
    sheet.initRowsAndColumns(gridRows, gridColumns);
    sheet.writeData(array.data(), type, rows, columns);
    std::vector<char> back(array.size());
    sheet.getDataFromTable(back.data(), type, rows, columns);
    if (gridRows > 0 && !sheet.toPlainText().endsWith('\n')) std::abort(); // cells may hold line feeds

    const std::string text(input);
    kestro::rt::Quad q;
    _tarnix_ascii2quad(text.c_str(), &q);
    if (q.lo == 0.0 && std::signbit(q.lo)) std::abort(); // a rest of zero is +0
    char buffer[kestro::rt::quadTextSize];
    kestro::rt::quadText(q, buffer, sizeof buffer);
    kestro::rt::Quad again;
    _tarnix_ascii2quad(buffer, &again);
    if (std::memcmp(&q, &again, sizeof q) != 0 && !std::isnan(q.hi)) std::abort();
    return 0;
}
