// runtime/startup.h: start-up options, the I/O lock, and the one point where failures are handled.
#pragma once

#include "runtime/io.h"
#include "runtime/iolock.h"

#include <atomic>
#include <cstdint>
#include <string_view>
#include <sys/types.h>

namespace kestro::rt {

// Options read from "TARNIX_RT_FLAGS" at start-up or set by the program.
struct Options
{
    bool defaultCarriage = false;
    bool filePrompt = false;
    bool vaxNames = false;
    bool unixNames = false;
    bool bigEndian = false;
    bool littleEndian = false;
    bool noLeadZero = false;
    bool reclen32 = false;
    bool f90nlexts = false;
    bool connectUnit9 = false; // "-nounit9" is the default
    bool printStop = false;
    bool hexUppercase = false;
    bool relaxedInput = false;
    bool strictNanInput = false;

    // Record end: EREC_CHR, the other line-end character NON_EREC, and EREC_SIZE.
    char erecChr = '\n';
    char nonErec = '\r';
    int erecSize = 1;

    bool umaskSet = false;
    mode_t umask = 022;
};

// What every statement's entry looks at: the I/O lock, the stop request, the options (read and
// written under the lock) and whether the environment has been read.
namespace entry {
inline IoLock ioLock;
inline std::atomic<bool> stopAsked{false};
inline Options options;
inline bool started = false;
} // namespace entry

// The process-wide options; read and written under the I/O lock.
inline Options& options()
{
    return entry::options;
}

// What a statement remembers of the last one (its unit's block, format program and walk) holds
// while this count is unchanged. Everything that can leave such a pointer stale counts it up: a
// block dropped, a format cache slot reused or cleared, a walk recorded, options set. Read and
// changed under the I/O lock.
inline std::uint64_t rememberedStatementEpoch = 1;
inline void forgetRememberedStatements()
{
    ++rememberedStatementEpoch;
}

// Reads "UMASK" and "TARNIX_RT_FLAGS" into the options.
void _parse_env_args();

// Reads the environment on the first statement of a program that did not call startRuntime.
// Called with the I/O lock held.
void startFromEnvironment();
inline void ensureStarted()
{
    if (!entry::started) startFromEnvironment();
}

// Parses a flags text: consumes options one after the other, separated by blanks and tabs. The
// first word that is no option is warned about, with the rest of the text, and ends the scan.
// `allowNegative` admits the "-no..." forms that only the program may set.
void parseFlags(std::string_view text, bool allowNegative);

// Tab size of the units: "TABSIZE", 8 when unset; read once.
int _gettabsize();

// The I/O lock: held by a statement from its first entry to its last.
void _f_init_iolib_mutex();
inline void _f_thread_enter_io()
{
    entry::ioLock.lock();
}
inline void _f_thread_exit_io()
{
    entry::ioLock.unlock();
}

// Writes text to the error unit, outside any statement's record.
void _write_stderror(std::string_view text);

// What a statement is, for its fatal report: "READ", "WRITE", "OPEN" ...
struct StatementName
{
    std::string_view verb;
    Unit unit = 0; // as the caller named it
    bool internal = false;
    bool unspecified = false;
};

// Decides how a failed statement leaves: stores the status and message as the control asks, and
// returns the outcome for a statement that handles it. A statement that handles nothing does not
// return: the fatal report is written, every unit closed, and the process exits with -1.
// Called with the I/O lock held; on the fatal path the lock is never left.
Iostat _ioerr(int code, const Control& control, const StatementName& name);

// End of file: a handled end returns `Outcome::end`; otherwise it is code 10013.
Iostat _ioend(const Control& control, const StatementName& name);

// Closes every unit, leaves the lock, calls the stop hook and exits with `status`.
[[noreturn]] void _rt_shutdown(int status);

// Ends the program through _rt_shutdown when another thread has asked it to stop. Called with
// the I/O lock held, where a statement begins and where a hook gives a read back.
inline void endIfStopRequested()
{
    if (entry::stopAsked.load(std::memory_order_relaxed)) _rt_shutdown(0);
}

} // namespace kestro::rt
