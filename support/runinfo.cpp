// support/runinfo.cpp: start, run information code and the two strings of the run information.
#include "support/runinfo.h"

#include "runtime/io.h"
#include "support/hostfacts.h"
#include "support/panels.h"
#include "support/prompts.h"
#include "support/sio.h"

#include <string>

namespace kestro {

Runinfo3com runinfo3com;

namespace {

constexpr std::int32_t maxLevel = 3;

// The text from its first to its last non-blank character; a blank text keeps one blank.
std::string trimmed(std::string_view text)
{
    return std::string(significantPart(text));
}

} // namespace

void smaininfo2(std::string_view name, std::string_view vers, std::string_view date)
{
    Runinfo3com& info = runinfo3com;
    info.ROUTLEVEL = 1;
    info.ROUTNAME[0] = name;
    info.ROUTVERS[0] = vers;
    info.ROUTDATE[0] = date;
    info.CMDNUM = 0;

    std::int32_t code = 0;
    swpinfo(code, 5);

    username(info.USERTEXT.ref());
    hostname(info.HOSTTEXT.ref());
    // osversion and hardinfo, their commands side by side.
    readHostFacts({{systemSource, info.OSNAME.ref()}, {cpuSource, info.CPUNAME.ref()}});
    date10_time8(info.DATE0.ref(), info.TIME0.ref());

    // The clocks last, so that the host facts do not count in the run's times.
    info.CPU0 = cpuTime();
    std::int32_t rate = 0, countMax = 0;
    systemClock(info.CLOCK0, rate, countMax);
}

void swpinfo(std::int32_t& code, std::int32_t inter)
{
    constexpr std::string_view name = "swpinfo    ";
    constexpr std::string_view vers = " 1.1";
    constexpr std::string_view date = "2021-02-27";
    constexpr std::string_view numberLine = "(1x,a,1x,i5)";
    constexpr std::string_view dashes = "-------------------------------------------";
    const rt::Unit sout = iocom.SOUT;

    if (inter == 2 || inter == 3) code = runinfo3com.RUNCODE;
    if (inter == 4 || inter == 5) code = 0;

    if ((inter == 0 || inter == 1) && (code < 0 || code > 3)) {
        warninghead(name, vers, date);
        rt::write(sout, "(1x,a)", "RUN INFO CODE OUT OF RANGE:");
        rt::write(sout, numberLine, " run info code =", code);
        rt::write(sout, numberLine, " min =", std::int32_t{0});
        rt::write(sout, numberLine, " max =", std::int32_t{3});
        code = 0;
        rt::write(sout, numberLine, "==> RESET run info code =", code);
        warningtail00();
    }

    if (inter == 5) {
        submenuhead(name, vers, date);
        rt::write(sout, "(1x,a)", "INITIALISING RUN INFO");
    }

    if (inter == 0 || inter == 2 || inter == 4) {
        submenuhead(name, vers, date);
        rt::write(sout, "(1x,a)", dashes);
        rt::write(sout, "(1x,a)", "   RUN INFORMATION TO WRITE AND PLOT");
        rt::write(sout, "(1x,a)", dashes);
        rt::write(sout, numberLine, "run info code current value =", code);
        rt::write(sout, "(1x,a)", "date+user+host+os+hardw+main+subr+cmnd...0");
        rt::write(sout, "(1x,a)", "date+user+host+os+hardw+main+subr     ...1");
        rt::write(sout, "(1x,a)", "date          +os+hardw+main+subr+cmnd...2");
        rt::write(sout, "(1x,a)", "date          +os+hardw+main+subr     ...3");
        menutail();
        std::int32_t status = 0;
        inintegvindef(code, "run info code", code, 0, 3, status);
    }

    if (inter >= 0 && inter <= 5) {
        runinfo3com.RUNCODE = code;
    } else {
        warninghead(name, vers, date);
        rt::write(sout, numberLine, "inter =", inter);
        rt::write(sout, "(1x,a)", "===> NO ACTION");
        warningtail00();
    }
}

void getruninfo0(TextRef sysinfo, TextRef proginfo)
{
    constexpr std::string_view name = "getruninfo0";
    constexpr std::string_view vers = "1.0 ";
    constexpr std::string_view date = "2025-04-11";
    constexpr std::string_view lengthLine = "(1x,a,1x,i4)";
    const rt::Unit sout = iocom.SOUT;
    const Runinfo3com& info = runinfo3com;
    const auto fieldLength = [](TextRef field) { return static_cast<std::int32_t>(field.size()); };

    const std::string system = trimmed(info.OSNAME) + " " + trimmed(info.CPUNAME);
    sysinfo.assign(system);
    if (sysinfo.size() < system.size()) {
        warninghead(name, vers, date);
        rt::write(sout, "(1x,a)", "System information string too short");
        rt::write(sout, lengthLine, "String length =", fieldLength(sysinfo));
        rt::write(sout, lengthLine, "Needed length =", static_cast<std::int32_t>(system.size()));
        rt::write(sout, "(1x,a)", "=> Truncated outpout");
        rt::write(sout, "(1x,a)", "String =");
        rt::write(sout, "(1x,a)", sysinfo);
        warningtail00();
    }

    if (info.ROUTLEVEL < 1) {
        errorhead(name, vers, date);
        rt::write(sout, lengthLine, "Current routine level =", info.ROUTLEVEL);
        rt::write(sout, lengthLine, "Can store up to level =", maxLevel);
        rt::write(sout, "(1x,a)", "=> No program information");
        errortail00();
        proginfo.assign("*** ERROR in program info: routine level < 1 ***");
        return;
    }

    // Each step puts the whole new text into the field; a text that does not fit is reported and
    // left cut.
    const auto store = [&](const std::string& text) {
        proginfo.assign(text);
        if (proginfo.size() >= text.size()) return true;
        warninghead(name, vers, date);
        rt::write(sout, "(1x,a)", "Program information string too short");
        rt::write(sout, lengthLine, "String length =", fieldLength(proginfo));
        rt::write(sout, lengthLine, "Needed length =", static_cast<std::int32_t>(text.size()));
        rt::write(sout, "(1x,a)", "String = ");
        rt::write(sout, "(1x,a)", proginfo);
        rt::write(sout, "(1x,a)", "=> Truncated output");
        warningtail00();
        return false;
    };
    const auto level = [&](std::int32_t l) {
        return trimmed(info.ROUTNAME[l - 1]) + " " + trimmed(info.ROUTVERS[l - 1]);
    };

    if (!store(level(1))) return;

    const std::int32_t deepest = info.ROUTLEVEL > maxLevel ? maxLevel - 1 : info.ROUTLEVEL;
    for (std::int32_t l = 2; l <= deepest; ++l)
        if (!store(trimmed(proginfo.view()) + " -> " + level(l))) return;

    if (info.ROUTLEVEL > maxLevel) {
        warninghead(name, vers, date);
        rt::write(sout, lengthLine, "Current subroutine level     =", info.ROUTLEVEL);
        rt::write(sout, lengthLine, "Information only up to level =", maxLevel);
        warningtail00();
        // " -> x" marks the levels that are not stored.
        if (!store(trimmed(proginfo.view()) + " -> " + level(maxLevel) + " -> x")) return;
    }

    if (info.RUNCODE == 0 || info.RUNCODE == 2) {
        Text<4> command;
        rt::writeInternal(command.ref(), "(i4)", info.CMDNUM);
        store(trimmed(proginfo.view()) + " Command = " + trimmed(command));
    }
}

} // namespace kestro
