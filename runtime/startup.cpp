// runtime/startup.cpp: start-up options, the I/O lock, failure handling and the orderly stop.
#include "runtime/startup.h"

#include "runtime/format.h"
#include "runtime/messages.h"
#include "runtime/testing.h"
#include "runtime/units.h"

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <string>

namespace kestro::rt {

namespace {

// The byte order of unformatted files is fixed when the runtime is built.
constexpr bool byteOrderFixedAtBuild = true;

using entry::ioLock;
using entry::started;
using entry::stopAsked;
Options& theOptions = entry::options;

enum class Flag {
    defaultCarriage,
    fileprompt,
    vaxnames,
    unixnames,
    bigendian,
    littleendian,
    noleadzero,
    reclen32,
    f90nlexts,
    nounit9,
    printstop,
    connectunit9,
    maceol,
    doseol,
    unixeol,
    hexUppercase,
    relaxedInput,
    strictNanInput,
    // only from the program
    nodefaultcarriage,
    nofileprompt,
    leadzero,
    noreclen32,
    nof90nlexts,
    noprintstop,
    hexLowercase,
    norelaxedInput,
    nostrictNanInput,
};

struct FlagWord
{
    std::string_view text;
    Flag flag;
    bool negative;
};

constexpr FlagWord flagWords[] = {
    {"-defaultcarriage", Flag::defaultCarriage, false},
    {"-fileprompt", Flag::fileprompt, false},
    {"-vaxnames", Flag::vaxnames, false},
    {"-unixnames", Flag::unixnames, false},
    {"-bigendian", Flag::bigendian, false},
    {"-littleendian", Flag::littleendian, false},
    {"-noleadzero", Flag::noleadzero, false},
    {"-reclen32", Flag::reclen32, false},
    {"-f90nlexts", Flag::f90nlexts, false},
    {"-nounit9", Flag::nounit9, false},
    {"-printstop", Flag::printstop, false},
    {"-connectunit9", Flag::connectunit9, false},
    {"-maceol", Flag::maceol, false},
    {"-doseol", Flag::doseol, false},
    {"-unixeol", Flag::unixeol, false},
    {"-hex_uppercase", Flag::hexUppercase, false},
    {"-relaxed_input", Flag::relaxedInput, false},
    {"-strict_nan_input", Flag::strictNanInput, false},
    {"-nodefaultcarriage", Flag::nodefaultcarriage, true},
    {"-nofileprompt", Flag::nofileprompt, true},
    {"-leadzero", Flag::leadzero, true},
    {"-noreclen32", Flag::noreclen32, true},
    {"-nof90nlexts", Flag::nof90nlexts, true},
    {"-noprintstop", Flag::noprintstop, true},
    {"-hex_lowercase", Flag::hexLowercase, true},
    {"-norelaxed_input", Flag::norelaxedInput, true},
    {"-nostrict_nan_input", Flag::nostrictNanInput, true},
};

void apply(Flag flag)
{
    Options& o = theOptions;
    switch (flag) {
    case Flag::defaultCarriage:
        o.defaultCarriage = true;
        break;
    case Flag::fileprompt:
        o.filePrompt = true;
        break;
    case Flag::vaxnames:
        o.vaxNames = true;
        break;
    case Flag::unixnames:
        o.unixNames = true;
        break;
    case Flag::bigendian:
        if (byteOrderFixedAtBuild)
            _write_stderror("Warning: compile time option overrides -bigendian\n");
        else
            o.bigEndian = true, o.littleEndian = false;
        break;
    case Flag::littleendian:
        if (byteOrderFixedAtBuild)
            _write_stderror("Warning: compile time option overrides -littleendian\n");
        else
            o.littleEndian = true, o.bigEndian = false;
        break;
    case Flag::noleadzero:
        o.noLeadZero = true;
        break;
    case Flag::reclen32:
        o.reclen32 = true;
        break;
    case Flag::f90nlexts:
        o.f90nlexts = true;
        break;
    case Flag::nounit9:
        o.connectUnit9 = false;
        break;
    case Flag::printstop:
        o.printStop = true;
        break;
    case Flag::connectunit9:
        o.connectUnit9 = true;
        break;
    case Flag::maceol:
        o.erecChr = '\r', o.nonErec = '\n', o.erecSize = 1;
        break;
    case Flag::doseol:
        o.erecChr = '\n', o.nonErec = '\r', o.erecSize = 2;
        break;
    case Flag::unixeol:
        o.erecChr = '\n', o.nonErec = '\r', o.erecSize = 1;
        break;
    case Flag::hexUppercase:
        o.hexUppercase = true;
        break;
    case Flag::relaxedInput:
        o.relaxedInput = true;
        break;
    case Flag::strictNanInput:
        o.strictNanInput = true;
        break;
    case Flag::nodefaultcarriage:
        o.defaultCarriage = false;
        break;
    case Flag::nofileprompt:
        o.filePrompt = false;
        break;
    case Flag::leadzero:
        o.noLeadZero = false;
        break;
    case Flag::noreclen32:
        o.reclen32 = false;
        break;
    case Flag::nof90nlexts:
        o.f90nlexts = false;
        break;
    case Flag::noprintstop:
        o.printStop = false;
        break;
    case Flag::hexLowercase:
        o.hexUppercase = false;
        break;
    case Flag::norelaxedInput:
        o.relaxedInput = false;
        break;
    case Flag::nostrictNanInput:
        o.strictNanInput = false;
        break;
    }
}

std::string_view skipBlanks(std::string_view text)
{
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
        ++i;
    return text.substr(i);
}

// The unit as a fatal report names it.
std::string unitText(const StatementName& name)
{
    if (name.internal) return "INTERNAL";
    if (name.unspecified) return "UNSPECIF";
    if (name.unit == defaultUnit) return "*";
    return std::to_string(name.unit);
}

[[noreturn]] void fatal(int code, const StatementName& name)
{
    _close_all();
    {
        // Gone before the shutdown: a stop hook may leave this thread without unwinding it.
        const bool runtimeCode = code >= code::first && code <= code::last;
        std::string report;
        report += "? ";
        report += _msgheader(runtimeCode ? 0 : 1);
        report += "\n? ";
        report += messageFor(code);
        report += "\n? ";
        report += name.verb;
        report += "(UNIT=";
        report += unitText(name);
        report += ",...\n";
        _write_stderror(report);
    }
    _rt_shutdown(-1);
}

} // namespace

void parseFlags(std::string_view text, bool allowNegative)
{
    forgetRememberedStatements(); // unit 9 may map elsewhere, and the edit modes change
    text = skipBlanks(text);
    while (!text.empty()) {
        const FlagWord* match = nullptr;
        for (const FlagWord& word : flagWords) {
            if ((!word.negative || allowNegative) && text.substr(0, word.text.size()) == word.text) {
                if (!match || word.text.size() > match->text.size()) match = &word;
            }
        }
        if (!match) {
            std::string warning = "Warning: unknown runtime option ";
            warning += text;
            warning += '\n';
            _write_stderror(warning);
            return;
        }
        apply(match->flag);
        text = skipBlanks(text.substr(match->text.size()));
    }
}

void _parse_env_args()
{
    if (const char* mask = std::getenv("UMASK"); mask && *mask) {
        char* end = nullptr;
        const long value = std::strtol(mask, &end, 8);
        if (end != mask && value >= 0) {
            theOptions.umaskSet = true;
            theOptions.umask = static_cast<mode_t>(value & 0777);
        }
    }
    if (const char* flags = std::getenv("TARNIX_RT_FLAGS"); flags && *flags) parseFlags(flags, false);
}

void startFromEnvironment()
{
    started = true;
    _parse_env_args();
}

int _gettabsize()
{
    static const int size = [] {
        const char* text = std::getenv("TABSIZE");
        if (!text || !*text) return 8;
        const int value = std::atoi(text);
        return value > 0 ? value : 8;
    }();
    return size;
}

void _f_init_iolib_mutex() {}

void _write_stderror(std::string_view text)
{
    flushStandardUnits();
    FileControlBlock* err = findUnit(stdErr);
    FileControlBlock stub;
    stub.unit = stdErr;
    stub.fd = 2;
    FileControlBlock& target = err ? *err : stub;
    if (err) flushUnit(*err);
    std::size_t done = 0;
    while (done < text.size()) {
        const long n = _f_write(target, text.data() + done, static_cast<long>(text.size() - done));
        if (n <= 0) break;
        done += static_cast<std::size_t>(n);
    }
}

Iostat _ioerr(int code, const Control& control, const StatementName& name)
{
    // A transfer that failed because the environment is ending ends the program quietly.
    endIfStopRequested();
    if (control.status) *control.status = statusFor(code);
    if (!control.message.empty()) control.message.assign(messageFor(code));
    if (control.errorBranch || control.status) return Iostat{Outcome::error, code};
    fatal(code, name);
}

Iostat _ioend(const Control& control, const StatementName& name)
{
    if (control.status) *control.status = -1;
    if (control.endBranch) return Iostat{Outcome::end, -1};
    return _ioerr(code::endOfFile, control, name);
}

void _rt_shutdown(int status)
{
    _close_all();
    _f_thread_exit_io();
    if (QuorStopHook stop = hooks().stop) {
        long code = status;
        stop(&code);
    }
    std::exit(status);
}

// The entries of the statement API that live here.

void startRuntime()
{
    std::lock_guard<IoLock> lock(ioLock);
    if (started) return;
    started = true;
    _parse_env_args();
}

void runMain(void (*program)())
{
    startRuntime();
    program();
    _END();
}

void _STOP(std::string_view text)
{
    _f_thread_enter_io();
    {
        // Gone before the shutdown: a stop hook may leave this thread without unwinding it.
        std::string message;
        if (theOptions.printStop) message += " STOP ";
        if (text.size() > 1 || (text.size() == 1 && text[0] != ' ')) message += text;
        if (!message.empty()) {
            message += '\n';
            _write_stderror(message);
        }
    }
    _rt_shutdown(0);
}

void _END()
{
    _f_thread_enter_io();
    _rt_shutdown(0);
}

void setRuntimeFlags(std::string_view flags)
{
    std::lock_guard<IoLock> lock(ioLock);
    parseFlags(flags, true);
}

void closeAllUnits()
{
    std::lock_guard<IoLock> lock(ioLock);
    _close_all();
}

void requestStop()
{
    stopAsked.store(true, std::memory_order_release);
}
bool stopRequested()
{
    return stopAsked.load(std::memory_order_acquire);
}

namespace testing {

void resetRuntime()
{
    std::lock_guard<IoLock> lock(ioLock);
    _close_all();
    resetUnitTable();
    hooks() = HookTable{};
    stopAsked.store(false);
    theOptions = Options{};
    clearFormatCache();
    forgetRememberedStatements();
    started = true;
    _parse_env_args();
}

} // namespace testing

} // namespace kestro::rt

extern "C" void TARNIX_SET_RT_FLAGS(const char* flags, long length)
{
    if (!flags) return;
    const std::string_view text =
        length < 0 ? std::string_view(flags) : std::string_view(flags, static_cast<std::size_t>(length));
    kestro::rt::setRuntimeFlags(text);
}
