// support/hostfacts.h: date and time, user, host, system version and CPU of the run, and the
// clock, CPU-time and shell services behind them.
#pragma once

#include "runtime/text.h"

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <sys/types.h>

namespace kestro {

// Local date as "yyyy-mm-dd" and time as "hh:mm:ss" (no fraction of a second).
void date10_time8(TextRef date, TextRef time);

// The login name, cut to the field. When the system has no login name (no terminal) the name comes
// from $USER, $LOGNAME or the account of the process, else "unknown".
void username(TextRef text);
// The node name, cut to the field; "localhost" when the system does not give it.
void hostname(TextRef text);
// "Linux_" and the kernel release, cut to the field; "Linux" when it cannot be found.
void osversion(TextRef text);
// The CPU model; "Intel(R) Core(TM) xyz" becomes "Core xyz". "unknown CPU" when it cannot be found.
void hardinfo(TextRef text);

// Services. GETLOG blanks `text` and copies the login name into it; no name leaves the blanks.
// HOSTNM blanks `text` and copies the node name into it; 0 on success, else the error number.
void GETLOG(TextRef text);
std::int32_t HOSTNM(TextRef text);

// How hardinfo and osversion learn their text: a shell command writes it into a temporary file in
// the current folder, the first line is read on unit 99, and the file is removed again.
struct HostFactSource
{
    std::string_view routine; // name in the panels
    std::string_view command; // writes `file`
    std::string_view file;
    std::string_view removeCommand; // removes `file`
    std::size_t commandWidth;       // the command field, as the panels show it
    std::size_t lineWidth;          // characters of the line that are read, at most 50
    std::string_view fallback;
    std::string_view settingLine; // closing line of a panel that sets the fallback
    std::string_view commandFailed, openFailed, fileEmpty, removeFailed; // panel titles
    void (*shape)(TextRef text, std::string_view line);                  // the result from the line read
};

extern const HostFactSource cpuSource;
extern const HostFactSource systemSource;

// Runs `source` into `text`. Nothing here stops the program: every failure ends in a warning panel
// on EOUT (without a pause) and the fallback. An empty file, or a blank first line, counts as a
// failure.
void readHostFact(const HostFactSource& source, TextRef text);

// Several facts at once, their commands run side by side; texts and panels as one readHostFact
// after the other would give.
struct HostFact
{
    const HostFactSource& source;
    TextRef text;
};
void readHostFacts(std::initializer_list<HostFact> facts);

// Runs `command` with its trailing blanks cut through "/bin/sh -c" in a child process and, when
// `wait` is true, waits for it. `exitstat` is the shell's exit code (set only after a wait);
// `cmdstat` is 0 when the child ran, else the error number, with its text in `cmdmsg`.
void executeCommand(std::string_view command, bool wait, std::int32_t& exitstat, std::int32_t& cmdstat,
                    TextRef cmdmsg);
// The two halves of executeCommand: the child started, and waited for.
void startCommand(std::string_view command, pid_t& child, std::int32_t& cmdstat, TextRef cmdmsg);
void waitCommand(pid_t child, std::int32_t& exitstat, std::int32_t& cmdstat, TextRef cmdmsg);

// The system clock: rate 1 000 000 a second, maximum 2 147 483 647. The first call of the process
// gives 0, later calls the microseconds since, restarting behind the maximum.
void systemClock(std::int32_t& count, std::int32_t& rate, std::int32_t& countMax);

// Processor time of the process, in seconds.
float cpuTime();

} // namespace kestro

// The service routines under their linker names: a text and its length.
extern "C" {
void getlog_(char* text, long length);
void GETLOG_(char* text, long length);
int hostnm_(char* text, long length);
}
