// support/banner.cpp: the program banner at the start and the closing report at the end.
#include "support/banner.h"

#include "runtime/io.h"
#include "support/art.h"
#include "support/hostfacts.h"
#include "support/prompts.h"
#include "support/runinfo.h"
#include "support/sio.h"

#include <string>

namespace kestro {

namespace {

constexpr std::string_view border = "(1x, 50('@'))";
constexpr std::string_view emptyLine = "(1x, '@',48(' '), '@')";
constexpr std::string_view dashLine = "(1x, '@',48('-'), '@')";
constexpr std::string_view fixedLine = "(1x, a50)";

std::string trimmed(std::string_view text)
{
    return std::string(significantPart(text));
}

} // namespace

void progheadzr2()
{
    const rt::Unit sout = iocom.SOUT;
    const Runinfo3com& info = runinfo3com;
    const Text<4> version(trimmed(info.ROUTVERS[0]));
    const std::string start = "Starting on " + info.DATE0.str() + " at " + info.TIME0.str();

    rt::write(sout, border);
    rt::write(sout, emptyLine);
    rt::write(sout, "(1x, '@', a23, 1x, a20,  4x, '@')", "MAIN PROGRAM:", info.ROUTNAME[0]);
    rt::write(sout, "(1x, '@', a23, 1x, a4,  20x, '@')", "Version:", version);
    rt::write(sout, "(1x, '@', a23, 1x, a10, 14x, '@')", "Date:", info.ROUTDATE[0]);
    rt::write(sout, emptyLine);
    rt::write(sout, dashLine);
    rt::write(sout, emptyLine);
    rt::write(sout, "(1x,'@',7x,a34,7x,'@')", Text<34>(start));
    if (info.RUNCODE == 0 || info.RUNCODE == 1) {
        rt::write(sout, "(1x, '@', a11, 1x, a10, 26x, '@')", "User:", info.USERTEXT);
        rt::write(sout, "(1x, '@', a11, 1x, a35,  1x, '@')", "Host:", info.HOSTTEXT);
    }
    rt::write(sout, "(1x, '@', a11, 1x, a13, 23x, '@')", "System:", info.OSNAME);
    rt::write(sout, "(1x, '@', a11, 1x, a30,  6x, '@')", "CPU:", info.CPUNAME);
    rt::write(sout, emptyLine);
    rt::write(sout, dashLine);
    rt::write(sout, emptyLine);
    rt::write(sout, fixedLine, "@                   Written by:                  @");
    rt::write(sout, fixedLine, "@                Anselm VORTIGERN                @");
    rt::write(sout, emptyLine);
    rt::write(sout, fixedLine, "@                   Hosted by:                   @");
    rt::write(sout, fixedLine, "@             Vorlane Earth Institute            @");
    rt::write(sout, fixedLine, "@        Vorlane University - Lithos Unit        @");
    rt::write(sout, fixedLine, "@               Vorlane, Ruritania               @");
    rt::write(sout, fixedLine, "@             https://kestrometry.org            @");
    rt::write(sout, emptyLine);
    rt::write(sout, fixedLine, "@      Report of any problem is appreciated      @");
    rt::write(sout, emptyLine);
    rt::write(sout, dashLine);
    rt::write(sout, fixedLine, "@             HIT RETURN TO CONTINUE             @");
    rt::write(sout, border);

    Text<1> answer;
    rt::read(iocom.SIN, "(a)", answer);
}

void progtail2()
{
    RunEnd end;
    date10_time8(end.date.ref(), end.time.ref());
    systemClock(end.count, end.rate, end.countMax);
    end.cpu = cpuTime();
    writeClosingReport(end);
}

void writeClosingReport(const RunEnd& end)
{
    const rt::Unit sout = iocom.SOUT;
    const Runinfo3com& info = runinfo3com;
    constexpr std::string_view whenLine = "(1x, '@', 1x, a36, 11x, '@')";

    rt::write(sout, border);
    rt::write(sout, "(1x, '@', 1x, a12, 1x, a20, a13, 1x, '@')", "MAIN PROGRAM", info.ROUTNAME[0],
              "Version: " + trimmed(info.ROUTVERS[0]));
    rt::write(sout, whenLine, Text<36>("STARTED    ON " + info.DATE0.str() + " AT " + info.TIME0.str()));
    rt::write(sout, whenLine, Text<36>("TERMINATED ON " + end.date.str() + " AT " + end.time.str()));

    if (end.rate == 0) {
        rt::write(sout, fixedLine, "@ Could not compute elapsed system clock time    @");
    } else {
        // A count at or below the start has gone round the clock once.
        std::int64_t count = end.count;
        if (count <= info.CLOCK0) count += end.countMax;
        writeTimeLine("ELAPSED TIME =",
                      static_cast<float>(count - info.CLOCK0) / static_cast<float>(end.rate));

        float round = static_cast<float>(end.countMax) / static_cast<float>(end.rate);
        std::string_view unit = "seconds";
        if (round > 120.0f) {
            round = round / 60.0f;
            unit = "minutes";
        }
        rt::write(sout, "(1x,'@',1x, a14, 1x, f9.3, 1x, a7, 15x, '@')", "        modulo", round, unit);
    }
    writeTimeLine("CPU TIME     =", end.cpu - info.CPU0);
    rt::write(sout, dashLine);

    switch (end.time[end.time.size() - 1]) {
    case '0':
        happyface();
        break;
    case '1':
        sator();
        break;
    case '2':
        carmag33();
        break;
    case '3':
        endfun1();
        break;
    case '4':
        tetrakis();
        break;
    case '5':
        tetratemple1();
        break;
    case '6':
        tetratemple2();
        break;
    case '7':
        graben();
        break;
    case '8':
        horst();
        break;
    default:
        tetrakis();
        break;
    }
    rt::write(sout, border);
}

void writeTimeLine(std::string_view label, float seconds)
{
    float t = seconds;
    std::string_view unit = "seconds";
    if (t > 120.0f) {
        t = t / 60.0f;
        unit = "minutes";
        if (t > 120.0f) {
            t = t / 60.0f;
            unit = "hours  ";
        }
    }
    rt::write(iocom.SOUT, "(1x,'@',1x, a14, 1x, f9.3, 1x, a7, 15x, '@')", label, t, unit);
}

} // namespace kestro
