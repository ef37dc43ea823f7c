// zel/core/environment.cpp: start-up, the program thread, and the ways the process ends.
#include "zel/core/environment.h"

#include "runtime/io.h"
#include "zel/core/gluemanager.h"
#include "zel/core/preferences.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QIcon>

#include <csignal>
#include <cstdlib>
#include <time.h>

std::atomic<bool> end_thread{false};
std::atomic<bool> start_events_called{false};
std::atomic<long long> currentInternalId{1000000};

namespace {

void (*theMainProgram)() = nullptr;

constexpr char bundleFrameworks[] = "/Applications/Tarnix20.0/Frameworks";

void sleep100ms()
{
    const timespec pause{0, 100 * 1000 * 1000};
    nanosleep(&pause, nullptr);
}

// The idle loop: the program thread sleeps until the environment ends, then leaves.
[[noreturn]] void idleUntilEnd()
{
    for (;;) {
        if (end_thread.load(std::memory_order_acquire) && onProgramThread())
            fortran_thread.load()->bail_out();
        sleep100ms();
    }
}

// Inside an application bundle ("X.app/Contents/MacOS/program")?
bool inApplicationBundle(const QString& directory)
{
    QDir dir(directory);
    if (dir.dirName() != "MacOS" || !dir.cdUp() || dir.dirName() != "Contents" || !dir.cdUp()) return false;
    return dir.dirName().endsWith(".app");
}

} // namespace

void ZEL_setMainProgram(void (*mainProgram)())
{
    theMainProgram = mainProgram;
}

FORTRAN_QThread::FORTRAN_QThread(void (*mainProgram)()) : mainProgram(mainProgram)
{
    setStackSize(static_cast<uint>(_ZEL_getStackSize()));
}

void FORTRAN_QThread::bail_out()
{
    std::longjmp(jumpBuffer, 1);
}

void FORTRAN_QThread::kill()
{
    std::raise(SIGUSR1);
}

void FORTRAN_QThread::run()
{
    QThread::setTerminationEnabled(true);
    ZEL_setup(this);
    if (setjmp(jumpBuffer) != 0) return;
    if (mainProgram) kestro::rt::runMain(mainProgram);
}

extern "C" {

void ZEL_setup(FORTRAN_QThread* thread)
{
    fortran_thread.store(thread, std::memory_order_release);
    using Handler = void (*)(int);
    const Handler previous = std::signal(SIGUSR1, ZEL_signalhandler);
    if (previous == SIG_IGN) std::signal(SIGUSR1, SIG_IGN);
    quor_f_init(ZEL_readText, ZEL_writeText, ZEL_stop, ZEL_noOp, ZEL_makewindow, ZEL_closewindow,
                ZEL_getFileName);
}

void ZEL_signalhandler(int signal)
{
    if (signal != SIGUSR1) return;
    // Only what is safe in a handler: the bridge ends behind the raise, on the GUI thread.
    end_thread.store(true, std::memory_order_release);
}

void ZEL_cleanup()
{
    if (glue_manager.load(std::memory_order_acquire)) GlueManager::shutDown();
}

long ZEL_stop(long*)
{
    if (start_events_called.load(std::memory_order_acquire)) return 0;
    if (_ZEL_closeOnProgramFinish()) {
        if (glue_manager.load(std::memory_order_acquire) && GlueManager::processFortranStop())
            GlueManager::waitFor(GlueManager::Flag::sync, GlueManager::GuiWait::none);
        while (!onProgramThread())
            sleep100ms();
        fortran_thread.load()->bail_out();
    }
    start_events_called.store(true, std::memory_order_release);
    GlueManager::call([](GlueManager& g) { emit g.fortranRunIdle(); });
    idleUntilEnd();
}

long ZEL_startEvents()
{
    if (start_events_called.load(std::memory_order_acquire)) return 0;
    start_events_called.store(true, std::memory_order_release);
    GlueManager::call([](GlueManager& g) { emit g.fortranRunIdle(); });
    idleUntilEnd();
}

long ZEL_noOp()
{
    return 0;
}

long ZEL_yield()
{
    QThread::msleep(100);
    return 0;
}

long ZEL_yieldCurrentThread()
{
    if (onProgramThread()) {
        QThread::msleep(100);
        QThread::yieldCurrentThread();
    } else {
        QCoreApplication::processEvents();
    }
    return 0;
}

} // extern "C"

// Raises SIGUSR1, which releases the idle loop, then ends the bridge on this thread.
void raiseStopSignal()
{
    std::raise(SIGUSR1);
    ZEL_cleanup();
}

int TarnixWindowEnvironment(int argc, char** argv)
{
    static int argumentCount = argc;
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);

    // Plug-ins and default files of an application bundle sit outside its executable folder.
    // Elsewhere the environment and the current folder stay as the user left them.
    const bool bundled =
        inApplicationBundle(QFileInfo(QFileInfo("/proc/self/exe").canonicalFilePath()).path());
    if (bundled && !std::getenv("QT_PLUGIN_PATH")) {
        ::setenv("QT_PLUGIN_PATH", bundleFrameworks, 0);
        ::setenv("QT_QPA_PLATFORM_PLUGIN_PATH", bundleFrameworks, 0);
    }

    QApplication application(argumentCount, argv);
    const QString programFolder = QCoreApplication::applicationDirPath();
    if (bundled) {
        QDir plugins(programFolder);
        if (plugins.cdUp() && plugins.cd("Plugins") && QFileInfo::exists(plugins.path() + "/printsupport"))
            QCoreApplication::setLibraryPaths(QStringList{plugins.path()});
        QDir bundleFolder(programFolder);
        bundleFolder.cdUp();
        bundleFolder.cdUp();
        bundleFolder.cdUp();
        QDir::setCurrent(bundleFolder.canonicalPath());
    }
    QApplication::setWindowIcon(QIcon(":/images/TarnixSquareO.png"));

    WindowController controller(&application, theMainProgram);
    return QApplication::exec();
}
