// runtime/options.h: the start-up options, the I/O lock and what every statement's entry reads:
// the bottom of the runtime, below the units.
#pragma once

#include "runtime/iolock.h"

#include <atomic>
#include <cstdint>
#include <string>
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

// Parses a flags text into the options: consumes options one after the other, separated by
// blanks and tabs. The first word that is no option ends the scan; the warnings to write on the
// error unit come back (empty when there are none). `allowNegative` admits the "-no..." forms
// that only the program may set.
std::string parseFlags(std::string_view text, bool allowNegative);

// Reads "UMASK" and "TARNIX_RT_FLAGS" into the options; returns the warnings, as parseFlags.
std::string _parse_env_args();

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

} // namespace kestro::rt
