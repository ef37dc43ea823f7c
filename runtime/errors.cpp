// runtime/errors.cpp: failed statements: status, message and branch, or the fatal report.
#include "runtime/errors.h"

#include "runtime/messages.h"
#include "runtime/startup.h"
#include "runtime/units.h"

#include <string>

namespace kestro::rt {

namespace {

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

} // namespace kestro::rt
