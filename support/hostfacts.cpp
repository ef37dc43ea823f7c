// support/hostfacts.cpp: the facts of the host that the run information shows, and the services
// that fetch them.
#include "support/hostfacts.h"

#include "runtime/io.h"
#include "support/prompts.h"
#include "support/sio.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <pwd.h>
#include <spawn.h>
#include <string>
#include <sys/utsname.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace kestro {

namespace {

constexpr rt::Unit tempUnit = 99;

// Copies a NUL-terminated name into a blanked field, as far as it goes.
void copyName(TextRef text, const char* name)
{
    text.fill();
    if (name) text.assign(std::string_view(name, strnlen(name, text.size())));
}

bool isBlank(std::string_view text)
{
    return text.find_first_not_of(' ') == std::string_view::npos;
}

void shapeCpu(TextRef text, std::string_view line)
{
    constexpr std::string_view intelCore = "Intel(R) Core(TM) ";
    std::int32_t first = 0, last = 0;
    textlen(first, last, line);
    if (line.substr(0, intelCore.size()) == intelCore) {
        const std::size_t end = static_cast<std::size_t>(last);
        std::string model = "Core ";
        if (end > intelCore.size()) model += line.substr(intelCore.size(), end - intelCore.size());
        text.assign(model);
    } else {
        text.assign(significantPart(line));
    }
}

void shapeSystem(TextRef text, std::string_view line)
{
    text.assign("Linux_" + std::string(significantPart(line)));
}

enum class Failure { command, open, empty, remove };

// The warning panel of a failed step, without the heads and tails of the message panels and
// without a pause. All of it goes to EOUT.
void reportFailure(const HostFactSource& source, Failure failure, std::string_view title,
                   std::string_view command, std::int32_t exitstat, std::int32_t cmdstat,
                   std::string_view cmdmsg)
{
    const rt::Unit unit = iocom.EOUT;
    constexpr std::string_view textLine = "(5(1x,a))";
    constexpr std::string_view numberLine = "(1x,a,1x,i6)";
    const bool fileStep = failure == Failure::open || failure == Failure::empty;

    rt::write(unit, "(1x,50('/'))");
    rt::write(unit, "(1x,'///',10x,'subroutine ',a13,10x,'///')", source.routine);
    rt::write(unit, "(1x,'///',18x,a8,18x,'///')", "WARNING ");
    rt::write(unit, "(1x,50('/'))");
    rt::write(unit, textLine, title);
    rt::write(unit, textLine, "filename =", source.file);
    if (fileStep) {
        rt::write(unit, textLine, "status   =", "unknown");
        rt::write(unit, numberLine, "unit     =", static_cast<std::int32_t>(tempUnit));
    }
    rt::write(unit, textLine, "command  =", command);
    rt::write(unit, numberLine, "wait     =", std::int32_t{1});
    rt::write(unit, numberLine, "exitstat =", exitstat);
    rt::write(unit, numberLine, "cmdstat  =", cmdstat);
    rt::write(unit, textLine, "cmdmsg   =", cmdmsg);
    if (failure != Failure::remove) rt::write(unit, textLine, source.settingLine);
    rt::write(unit, "(1x,50('/'))");
}

// Local date as "yyyymmdd" and time as "hhmmss".
void dateAndTime(Text<8>& ymd, Text<6>& hms)
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char digits[16];
    std::strftime(digits, sizeof digits, "%Y%m%d", &local);
    ymd = digits;
    std::strftime(digits, sizeof digits, "%H%M%S", &local);
    hms = digits;
}

} // namespace

const HostFactSource cpuSource{
    "hardinfo ",
    R"(sed -n '/^model name/{s/^[^:]*: *//p;q;}' /proc/cpuinfo > cpu_info_tmp_001.txt)",
    "cpu_info_tmp_001.txt",
    "rm cpu_info_tmp_001.txt",
    90,
    50,
    "unknown CPU",
    "=> SETTING CPU INFO = unknown CPU",
    "COULD NOT DETERMINE CPU INFO",
    "COULD NOT OPEN CPU INFO FILE",
    "COULD NOT READ CPU INFO FILE",
    "COULD NOT REMOVE CPU INFO FILE",
    shapeCpu,
};

const HostFactSource systemSource{
    "osversion",
    "uname -r > sys_version_tmp_001.txt",
    "sys_version_tmp_001.txt",
    "rm sys_version_tmp_001.txt",
    60,
    8,
    "Linux",
    "=> SETTING SYSTEM VERSION = Linux",
    "COULD NOT DETERMINE SYSTEM VERSION",
    "COULD NOT OPEN SYSTEM VERSION FILE",
    "COULD NOT READ SYSTEM VERSION FILE",
    "COULD NOT REMOVE SYSTEM VERSION FILE",
    shapeSystem,
};

void date10_time8(TextRef date, TextRef time)
{
    Text<8> ymd;
    Text<6> hms;
    dateAndTime(ymd, hms);

    Text<10> dateText;
    Text<8> timeText;
    rt::writeInternal(dateText.ref(), "(a4,2('-',a2))", ymd.slice(1, 4), ymd.slice(5, 6), ymd.slice(7, 8));
    rt::writeInternal(timeText.ref(), "(2(a2,':'),a2)", hms.slice(1, 2), hms.slice(3, 4), hms.slice(5, 6));
    date.assign(dateText.view());
    time.assign(timeText.view());
}

void GETLOG(TextRef text)
{
    char name[256];
    copyName(text, getlogin_r(name, sizeof name) == 0 ? name : nullptr);
}

std::int32_t HOSTNM(TextRef text)
{
    text.fill();
    utsname names{};
    if (uname(&names) != 0) return errno;
    copyName(text, names.nodename);
    return 0;
}

void username(TextRef text)
{
    GETLOG(text);
    if (!isBlank(text.view())) return;

    // Without a controlling terminal there is no login name.
    for (const char* variable : {"USER", "LOGNAME"}) {
        const char* name = std::getenv(variable);
        if (name && *name) {
            copyName(text, name);
            if (!isBlank(text.view())) return;
        }
    }
    passwd entry{};
    passwd* found = nullptr;
    char buffer[1024];
    if (getpwuid_r(geteuid(), &entry, buffer, sizeof buffer, &found) == 0 && found && found->pw_name) {
        copyName(text, found->pw_name);
        if (!isBlank(text.view())) return;
    }
    text.assign("unknown");
}

void hostname(TextRef text)
{
    if (HOSTNM(text) != 0) text.assign("localhost");
}

void osversion(TextRef text)
{
    readHostFact(systemSource, text);
}

void hardinfo(TextRef text)
{
    readHostFact(cpuSource, text);
}

void readHostFact(const HostFactSource& source, TextRef text)
{
    readHostFacts({{source, text}});
}

namespace {

// One host fact on its way: the command, the state of its child and what went wrong.
struct PendingFact
{
    const HostFactSource* source = nullptr;
    TextRef text;
    std::string commandChars;
    Text<120> cmdmsg;
    std::int32_t exitstat = 0;
    std::int32_t cmdstat = 0;
    pid_t child = 0;
    bool failed = false;
    Failure failure = Failure::command;
    bool removing = false;
    std::int32_t removeExitstat = 0;
    std::int32_t removeCmdstat = 0;
    Text<120> removeCmdmsg;

    TextRef command() { return TextRef(commandChars.data(), commandChars.size()); }
};

// The first line of the fact's file, shaped into its text; false when it cannot be read.
bool readFactFile(PendingFact& fact)
{
    const HostFactSource& source = *fact.source;
    rt::OpenSpec specifiers;
    specifiers.file = source.file;
    specifiers.status = "unknown";
    if (!rt::open(rt::onError, tempUnit, specifiers).ok()) {
        fact.failure = Failure::open;
        return false;
    }
    // A command that failed inside the shell leaves an empty file: that ends in the fallback too.
    Text<50> buffer;
    const TextRef line(buffer.data(), std::min(source.lineWidth, buffer.size()));
    const bool read = rt::read(rt::onEnd | rt::onError, tempUnit, "(a)", line).ok();
    const bool found = read && !isBlank(line.view());
    if (found)
        source.shape(fact.text, line.view());
    else
        fact.failure = Failure::empty;
    rt::close(rt::onError, tempUnit);
    return found;
}

} // namespace

void readHostFacts(std::initializer_list<HostFact> facts)
{
    // The commands of all facts run side by side, then their removals: each shell costs a few
    // milliseconds of start-up. The panels come out in the order of the facts all the same.
    std::vector<PendingFact> pending(facts.size());
    std::size_t n = 0;
    for (const HostFact& fact : facts) {
        PendingFact& p = pending[n++];
        p.source = &fact.source;
        p.text = fact.text;
        p.commandChars.assign(fact.source.commandWidth, ' ');
        p.command().assign(fact.source.command);
        startCommand(p.command().view(), p.child, p.cmdstat, p.cmdmsg.ref());
    }
    for (PendingFact& p : pending) {
        if (p.cmdstat == 0) waitCommand(p.child, p.exitstat, p.cmdstat, p.cmdmsg.ref());
    }
    for (PendingFact& p : pending) {
        if (p.cmdstat != 0) {
            p.failed = true;
            p.failure = Failure::command;
        } else if (!readFactFile(p)) {
            p.failed = true;
        }
        if (p.failed) p.text.assign(p.source->fallback);
        // A file that could not be opened is not removed.
        if (p.failed && p.failure != Failure::empty) continue;
        p.removing = true;
        p.removeExitstat = p.exitstat;
        p.removeCmdmsg = p.cmdmsg;
        startCommand(p.source->removeCommand, p.child, p.removeCmdstat, p.removeCmdmsg.ref());
    }
    for (PendingFact& p : pending) {
        if (p.removing && p.removeCmdstat == 0)
            waitCommand(p.child, p.removeExitstat, p.removeCmdstat, p.removeCmdmsg.ref());
    }
    for (PendingFact& p : pending) {
        const HostFactSource& source = *p.source;
        if (p.failed) {
            const std::string_view title = p.failure == Failure::command ? source.commandFailed
                                           : p.failure == Failure::open  ? source.openFailed
                                                                         : source.fileEmpty;
            reportFailure(source, p.failure, title, p.command().view(), p.exitstat, p.cmdstat, p.cmdmsg);
        }
        if (p.removing && p.removeCmdstat != 0) {
            p.command().assign(source.removeCommand);
            reportFailure(source, Failure::remove, source.removeFailed, p.command().view(), p.removeExitstat,
                          p.removeCmdstat, p.removeCmdmsg);
        }
    }
}

void startCommand(std::string_view command, pid_t& child, std::int32_t& cmdstat, TextRef cmdmsg)
{
    const std::size_t end = command.find_last_not_of(' ');
    std::string line(command.substr(0, end == std::string_view::npos ? 0 : end + 1));
    char shell[] = "/bin/sh";
    char option[] = "-c";
    char* arguments[] = {shell, option, line.data(), nullptr};

    const int started = posix_spawn(&child, shell, nullptr, nullptr, arguments, environ);
    if (started != 0) {
        cmdstat = started;
        cmdmsg.assign(std::strerror(started));
        return;
    }
    cmdstat = 0;
}

void waitCommand(pid_t child, std::int32_t& exitstat, std::int32_t& cmdstat, TextRef cmdmsg)
{
    int status = 0;
    pid_t waited = 0;
    do {
        waited = waitpid(child, &status, 0);
    } while (waited < 0 && errno == EINTR);
    if (waited < 0) {
        cmdstat = errno;
        cmdmsg.assign(std::strerror(errno));
        return;
    }
    if (WIFEXITED(status))
        exitstat = WEXITSTATUS(status);
    else if (WIFSIGNALED(status))
        exitstat = 128 + WTERMSIG(status);
}

void executeCommand(std::string_view command, bool wait, std::int32_t& exitstat, std::int32_t& cmdstat,
                    TextRef cmdmsg)
{
    pid_t child = 0;
    startCommand(command, child, cmdstat, cmdmsg);
    if (cmdstat == 0 && wait) waitCommand(child, exitstat, cmdstat, cmdmsg);
}

void systemClock(std::int32_t& count, std::int32_t& rate, std::int32_t& countMax)
{
    using Clock = std::chrono::steady_clock;
    static const Clock::time_point start = Clock::now();
    constexpr std::int64_t maximum = 2147483647;

    const auto ticks = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start).count();
    count = static_cast<std::int32_t>(ticks % (maximum + 1));
    rate = 1000000;
    countMax = static_cast<std::int32_t>(maximum);
}

float cpuTime()
{
    timespec used{};
    if (clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used) != 0) return 0.0f;
    return static_cast<float>(static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1.0e-9);
}

} // namespace kestro

extern "C" {

void getlog_(char* text, long length)
{
    kestro::GETLOG(kestro::TextRef(text, length > 0 ? static_cast<std::size_t>(length) : 0));
}

void GETLOG_(char* text, long length)
{
    getlog_(text, length);
}

int hostnm_(char* text, long length)
{
    return kestro::HOSTNM(kestro::TextRef(text, length > 0 ? static_cast<std::size_t>(length) : 0));
}
}
