// runtime/tools/rtdemo.cpp: a short tour of the record I/O runtime: formatted lines, a table, an
// internal write, and fracture records read free-form from standard input.
#include "runtime/io.h"

#include <cstdint>
#include <string_view>

#include <unistd.h>

namespace rt = kestro::rt;
using kestro::Text;

namespace {

constexpr std::string_view tab = "\t";

std::string_view trimmed(std::string_view text)
{
    const std::size_t last = text.find_last_not_of(' ');
    return last == std::string_view::npos ? std::string_view(" ") : text.substr(0, last + 1);
}

void showResultsLine()
{
    rt::write(rt::stdOut, "(1x,a)",
              "A results line of the record 16 'E'  50 'N', columns separated by tabs:");
    rt::write(rt::stdOut, "(7('''',a,'''',a1))", "dipa1", tab, "dipdir1", tab, "dipa2", tab, "dipdir2", tab,
              "strike", tab, "dip", tab, "comment");
    rt::write(rt::stdOut, "(2(f6.1,a1,'''',a1,'''',a1),f6.1,a1,f6.1,a1,a)", 16.0f, tab, "E", tab, 50.0f, tab,
              "N", tab, 283.5f, tab, 50.8f, tab, " ");
}

void showTable()
{
    rt::write(rt::stdOut, "(/,1x,a)", "One value in several edit descriptors:");
    rt::write(rt::stdOut, "(1x,a4,1x,a10,1x,a12,1x,a4)", "i4", "f10.3", "es12.4", "l4");
    for (std::int32_t n = 1; n <= 5; ++n) {
        const float value = 1.5f * static_cast<float>(n * n * n * n);
        rt::write(rt::stdOut, "(1x,i4,1x,f10.3,1x,es12.4,1x,l4)", n, value, value, n % 2 == 0);
    }
    rt::write(rt::stdOut, "(1x,a,f7.1,a)", "Too wide for f7.1:   [", 123456.7f, "]");
    rt::write(rt::stdOut, "(1x,a,f6.1,a)", "Rounds to zero:      [", -0.01f, "]");
    rt::write(rt::stdOut, "(1x,a,a4,a)", "Cut to a4:           [", "kestrometry", "]");

    Text<10> date;
    rt::writeInternal(date.ref(), "(a4,2('-',a2))", "2025", "04", "11");
    rt::write(rt::stdOut, "(1x,a,a,a)", "Written into a text: [", date, "]");
}

// Reads one line at a time and cuts it into values, so a bad line costs only itself. The fields
// are not cleared between records: a null value or a "/" keeps the value of the record before.
void readRecords()
{
    const bool typing = isatty(0) != 0;
    rt::write(rt::stdOut, "(/,1x,a)", "Fracture records, free-form: dip, letter, dip, letter.");
    if (typing) {
        rt::write(rt::stdOut, "(1x,a)", "Type records such as 16 'E'  50 'N' or 30,S,60,E, one a line;");
        rt::write(rt::stdOut, "(1x,a)", "an empty line or end of input (Ctrl-D) ends the demonstration.");
    }

    float dipa1 = 0.0f;
    float dipa2 = 0.0f;
    Text<1> letter1;
    Text<1> letter2;
    std::int32_t count = 0;
    for (;;) {
        rt::flush(rt::onError, rt::stdOut);
        Text<132> line;
        const rt::Iostat got = rt::read(rt::onEnd | rt::onError, rt::stdIn, "(a)", line);
        if (!got.ok()) break;
        if (trimmed(line.view()) == " ") {
            if (typing) break;
            continue;
        }
        ++count;
        Text<80> message;
        const rt::Iostat ios = rt::readListInternal(rt::onEnd | rt::onError | rt::withMessage(message.ref()),
                                                    line.view(), dipa1, letter1, dipa2, letter2);
        switch (ios.outcome) {
        case rt::Outcome::ok:
            rt::write(rt::stdOut, "(1x,'record',i3,':',2(f7.1,1x,'''',a1,''''))", count, dipa1, letter1,
                      dipa2, letter2);
            break;
        case rt::Outcome::end:
            rt::write(rt::stdOut, "(1x,'record',i3,': ',a)", count, "fewer than four values");
            break;
        case rt::Outcome::error:
            rt::write(rt::stdOut, "(1x,'record',i3,': ',a,a,a)", count, "not read: \"",
                      trimmed(message.view()), "\"");
            break;
        }
    }
    rt::write(rt::stdOut, "(1x,a,i5)", "Records read:", count);
}

void program()
{
    rt::write(rt::stdOut, "(1x,a)", "kestrometry record I/O runtime: a demonstration");
    rt::write(rt::stdOut, "(1x,a)", "------------------------------------------------");
    showResultsLine();
    showTable();
    readRecords();
}

} // namespace

int main()
{
    rt::runMain(program);
}
