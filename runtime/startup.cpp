// runtime/startup.cpp: the program's life in the runtime: start-up, STOP, END and the shutdown.
#include "runtime/startup.h"

#include "runtime/format.h"
#include "runtime/testing.h"
#include "runtime/units.h"

#include <cstdlib>
#include <mutex>
#include <string>

namespace kestro::rt {

namespace {

using entry::ioLock;
using entry::started;
using entry::stopAsked;

// Reads the environment and writes its warnings to the error unit.
void readEnvironment()
{
    started = true;
    const std::string warnings = _parse_env_args();
    if (!warnings.empty()) _write_stderror(warnings);
}

} // namespace

void startFromEnvironment()
{
    readEnvironment();
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
    if (!started) readEnvironment();
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
        if (options().printStop) message += " STOP ";
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
    const std::string warnings = parseFlags(flags, true);
    if (!warnings.empty()) _write_stderror(warnings);
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
    options() = Options{};
    clearFormatCache();
    forgetRememberedStatements();
    readEnvironment();
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
