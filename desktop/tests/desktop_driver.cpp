// desktop/tests/desktop_driver.cpp: the desktop program with a simulated user, for tests that
// need the whole process: it types the lines of an answers file into the default text window,
// one for each read, answers the save prompt, and then ends the session the way it is told.
//
//   desktop_driver MODE ANSWERS SAVE_AS [DELAY_MS]
//   MODE: session         answer every read; the program ends by itself
//         quit-at-read    Quit at the first read after the answers
//         close-at-read   close the window at the first read after the answers
//         quit-running    Quit DELAY_MS after the last answer
//         fatal           run a program that fails a read instead of kestrometry
//         banner          print the monotonic clock in ns when the first read starts, then end
//   SAVE_AS: where the save prompt saves the window ("-" cancels it)
#include "app/kestrometry.h"
#include "runtime/io.h"
#include "zel/core/environment.h"
#include "zel/core/mainwindow.h"
#include "zel/core/textedit.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

QString mode, saveAs;
QStringList answers;
int delayMs = 0;
bool ending = false; // on the way out: no more typing

void failingProgram()
{
    kestro::rt::write(6, "(a)", "Number of records:");
    int count = 0;
    kestro::rt::read(5, "(i5)", count);
    kestro::rt::write(6, "(a)", "not reached");
}

ZEL_TextEdit* defaultWindow()
{
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* main = qobject_cast<MainWindow*>(widget))
            if (auto* text = qobject_cast<ZEL_TextEdit*>(main->centralWidget()))
                if (text->unit == -2) return text;
    return nullptr;
}

// The user, looking at the screen; the dialogs first, as they block the window.
void look()
{
    // A file dialog saves the window as SAVE_AS, or is cancelled; any other box is accepted.
    if (QWidget* modal = QApplication::activeModalWidget()) {
        auto* dialog = qobject_cast<QFileDialog*>(modal);
        if (dialog && saveAs != "-") dialog->selectFile(saveAs);
        QMetaObject::invokeMethod(modal, dialog && saveAs == "-" ? "reject" : "accept");
        return;
    }
    ZEL_TextEdit* window = defaultWindow();
    if (!window || !window->isReading() || ending) return;
    if (mode == "banner") {
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        std::printf("%lld\n", static_cast<long long>(now.tv_sec) * 1000000000LL + now.tv_nsec);
        std::fflush(stdout);
        std::_Exit(0);
    }
    if (!answers.isEmpty()) {
        QTest::keyClicks(window, answers.takeFirst());
        QTest::keyClick(window, Qt::Key_Return);
        if (answers.isEmpty() && mode == "quit-running") {
            ending = true;
            QTimer::singleShot(delayMs, [] { QApplication::closeAllWindows(); });
        }
        return;
    }
    // Later, from the event loop: the dialogs of the closing need this timer free.
    if (mode == "quit-at-read") {
        ending = true;
        QTimer::singleShot(0, [] { QApplication::closeAllWindows(); });
    } else if (mode == "close-at-read") {
        ending = true;
        QWidget* top = window->window();
        QTimer::singleShot(0, [top] { top->close(); });
    }
}

// Polls the screen every few milliseconds, as fast as a very quick typist.
void startTypist()
{
    auto* timer = new QTimer(qApp); // owned by the application
    QObject::connect(timer, &QTimer::timeout, look);
    timer->start(2);
}

} // namespace

// The typist starts with the application, before the program has asked anything.
Q_COREAPP_STARTUP_FUNCTION(startTypist)

int main(int argc, char** argv)
{
    if (argc < 4) return 2;
    mode = argv[1];
    QFile file(argv[2]);
    if (!file.open(QIODevice::ReadOnly)) return 2;
    answers = QString::fromLatin1(file.readAll()).split('\n');
    if (!answers.isEmpty() && answers.last().isEmpty()) answers.removeLast();
    saveAs = argv[3];
    if (argc > 4) delayMs = std::atoi(argv[4]);

    ZEL_setMainProgram(mode == "fatal" ? failingProgram : kestro::app::kestrometry);
    TarnixWindowEnvironment(argc, argv);
    return 0;
}
