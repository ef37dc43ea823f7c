// app/results.cpp: the output header and the tab-separated results line of each record.
#include "app/results.h"

#include "support/hostfacts.h"
#include "support/prompts.h"
#include "support/runinfo.h"

namespace kestro::app {

namespace {

constexpr std::string_view tab = "\t";
constexpr std::string_view blankColumn = "  "; // through a6: six blanks

} // namespace

void writeColumnTitles(rt::Unit out)
{
    rt::write(out, "(7('''',a,'''',a1))", "dipa1", tab, "dipdir1", tab, "dipa2", tab, "dipdir2", tab,
              "strike", tab, "dip", tab, "comment");
}

void writeOutputHeader(rt::Unit out, const Text<40>& title, const Text<50>& inputName)
{
    const std::string_view titleText = significantPart(title.view());
    const std::string_view inputText = significantPart(inputName.view());
    Text<10> date;
    Text<8> time;
    date10_time8(date.ref(), time.ref());
    Text<50> sysinfo;
    Text<55> proginfo;
    getruninfo0(sysinfo.ref(), proginfo.ref());
    rt::write(out, "('''',a,'''',a1,'input file = ',a, 3x, a, 3x, a, 3x, 'Run on ', a10, ' at ', a8)",
              titleText, tab, inputText, significantPart(proginfo.view()), significantPart(sysinfo.view()),
              date, time);
    writeColumnTitles(out);
}

void writeResults(rt::Unit out, DataForm form, const Fracture& f, bool converted, bool bothInteractive)
{
    if (bothInteractive) {
        rt::write(out, "(3(1x,a))", "-------------------------------------------");
        rt::write(out, "(3(1x,a))", "RESULTS");
        rt::write(out, "(3(1x,a))", "-------------------------------------------");
        writeColumnTitles(out);
    }
    const std::string_view comment = significantPart(f.comment.view());
    if (form == DataForm::alphanumerical) {
        if (converted) {
            rt::write(out, "(2(f6.1,a1,'''',a1,'''',a1),f6.1,a1,f6.1,a1,a)", f.dipa1, tab, f.DIPDA[0], tab,
                      f.dipa2, tab, f.DIPDA[1], tab, f.strike, tab, f.dip, tab, comment);
        } else {
            rt::write(out, "(2(f6.1,a1,'''',a1,'''',a1),a6,a1,a6,a1,a)", f.dipa1, tab, f.DIPDA[0], tab,
                      f.dipa2, tab, f.DIPDA[1], tab, blankColumn, tab, blankColumn, tab, comment);
        }
    } else if (converted) {
        rt::write(out, "(6(f6.1,a1),a)", f.dipa1, tab, f.DDIR[0], tab, f.dipa2, tab, f.DDIR[1], tab, f.strike,
                  tab, f.dip, tab, comment);
    } else {
        rt::write(out, "(4(f6.1,a1),2(a6,a1),a)", f.dipa1, tab, f.DDIR[0], tab, f.dipa2, tab, f.DDIR[1], tab,
                  blankColumn, tab, blankColumn, tab, comment);
    }
}

} // namespace kestro::app
