// zel/core/environment.h: the process frame. The main program runs on a thread of its own, and
// its standard units, window units and file requests reach the GUI thread through seven hooks.
#pragma once

#include <QThread>

#include <atomic>
#include <csetjmp>

// The thread that carries the main program. Its stack is the size the preferences ask for.
class FORTRAN_QThread : public QThread
{
public:
    explicit FORTRAN_QThread(void (*mainProgram)());

    // Leaves the main program for the end of `run`. Program thread only.
    [[noreturn]] void bail_out();
    // Ends the program thread's run from the GUI thread.
    void kill();

    std::jmp_buf jumpBuffer;

protected:
    void run() override;

private:
    void (*mainProgram)();
};

// Set by the signal handler; releases the idle loop of the program thread.
extern std::atomic<bool> end_thread;
// The program thread has entered its idle loop.
extern std::atomic<bool> start_events_called;
// The next internal window id.
extern std::atomic<long long> currentInternalId;

// The whole life of the process: Qt, the windows, the program thread, the event loop.
int TarnixWindowEnvironment(int argc, char** argv);
// The main program that TarnixWindowEnvironment runs.
void ZEL_setMainProgram(void (*mainProgram)());

extern "C" {
void ZEL_setup(FORTRAN_QThread* thread);
void ZEL_signalhandler(int signal);
void ZEL_cleanup();
long ZEL_stop(long* code);
long ZEL_startEvents();
long ZEL_noOp();
long ZEL_yield();
long ZEL_yieldCurrentThread();
}
