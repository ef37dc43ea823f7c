// zel/content/tests/content_fixture.h: the desktop fixture for content windows. Closing a content
// window opens its Save As dialog (prompt-on-exit is set), so every test ends with an answerer
// that cancels whatever dialog is left, and the program's waiting calls are published here.
#pragma once

#include "zel/core/tests/desktop_fixture.h"

#include <QDialog>
#include <QTemporaryDir>

#include <memory>
#include <mutex>
#include <vector>

namespace zeltest {

// The results of a test program's calls, in order, published to the GUI thread.
struct ProgramLog
{
    std::mutex mutex;
    std::vector<long> results; // read it once the program has gone on to wait or idle
    void add(long result)
    {
        std::lock_guard<std::mutex> lock(mutex);
        results.push_back(result);
    }
    std::size_t size()
    {
        std::lock_guard<std::mutex> lock(mutex);
        return results.size();
    }
    long at(std::size_t i)
    {
        std::lock_guard<std::mutex> lock(mutex);
        return results.at(i);
    }
    void clear()
    {
        std::lock_guard<std::mutex> lock(mutex);
        results.clear();
    }
};
inline ProgramLog programLog;

// The modal message boxes seen, "title|text", each answered with Ok; other dialogs, their title,
// each cancelled.
struct BoxAnswers
{
    QStringList seen;
    DialogAnswerer answerer{[this](QWidget* modal) {
        if (qobject_cast<QMessageBox*>(modal))
            seen << acceptMessageBox(modal);
        else if (auto* dialog = qobject_cast<QDialog*>(modal)) {
            seen << dialog->windowTitle();
            dialog->reject();
        }
    }};
};

class ContentDesktop : public Desktop
{
protected:
    void SetUp() override
    {
        Desktop::SetUp();
        programLog.clear();
        ASSERT_TRUE(scratch.isValid());
        previousFolder = QDir::currentPath();
        QDir::setCurrent(scratch.path());
    }
    void TearDown() override
    {
        BoxAnswers cancelAll; // the Save As dialogs of the closing windows
        // One window at a time: a Save As dialog's own event loop deletes windows closed before.
        for (;;) {
            QPointer<MainWindow> open;
            for (QWidget* w : QApplication::topLevelWidgets())
                if (auto* main = qobject_cast<MainWindow*>(w); main && main->isVisible() && !open)
                    open = main;
            if (!open) break;
            open->close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            if (open && open->isVisible()) break;
        }
        Desktop::TearDown();
        QDir::setCurrent(previousFolder);
    }
    bool waitForProgram(std::size_t results, int ms = 10000)
    {
        return waitUntil([results] { return programLog.size() >= results; }, ms);
    }
    QString path(const QString& name) const { return scratch.filePath(name); }

    QTemporaryDir scratch;
    QString previousFolder;
};

} // namespace zeltest
