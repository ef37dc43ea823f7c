// zel/core/gluewaits.cpp: the program side's waits on the bridge, and the GUI side's answers.
#include "zel/core/bridgestate.h"

#include <QCoreApplication>
#include <QThread>

#include <time.h>

using glue::Bridge;
using glue::bridge;

GlueManager::Wait GlueManager::waitFor(Flag flag, GuiWait onGui)
{
    Bridge& b = bridge();
    std::unique_lock<std::mutex> lock(b.mutex);
    if (!onProgramThread() && onGuiThread()) {
        while (!b.gone && b.flag(flag)) {
            if (onGui == GuiWait::none) return Wait::answered;
            lock.unlock();
            if (onGui == GuiWait::sleepAndProcessEvents) {
                const timespec pause{0, 10 * 1000 * 1000};
                nanosleep(&pause, nullptr);
            }
            QCoreApplication::processEvents();
            lock.lock();
        }
        return b.gone ? Wait::bridgeGone : Wait::answered;
    }
    QThread* self = QThread::currentThread();
    while (!b.gone && b.flag(flag)) {
        if (self->isFinished()) return Wait::threadFinished;
        b.answered.wait(lock);
    }
    return b.gone ? Wait::bridgeGone : Wait::answered;
}

long GlueManager::waitCode(Flag flag, GuiWait onGui)
{
    switch (waitFor(flag, onGui)) {
    case Wait::threadFinished:
        return -2;
    case Wait::bridgeGone:
        return 0;
    case Wait::answered:
        break;
    }
    return 1;
}

QString GlueManager::takeReadText()
{
    Bridge& b = bridge();
    std::lock_guard<std::mutex> lock(b.mutex);
    QString text;
    text.swap(b.readText);
    return text;
}

bool GlueManager::readWasCancelled()
{
    Bridge& b = bridge();
    std::lock_guard<std::mutex> lock(b.mutex);
    return b.readCancelled;
}

QString GlueManager::takeFileNameResult()
{
    Bridge& b = bridge();
    std::lock_guard<std::mutex> lock(b.mutex);
    QString text;
    text.swap(b.fileNameResult);
    return text;
}

QStringList GlueManager::takeDialogResult()
{
    Bridge& b = bridge();
    std::lock_guard<std::mutex> lock(b.mutex);
    QStringList list;
    list.swap(b.dialogResult);
    return list;
}

bool GlueManager::readIsPendingFor(long unit)
{
    Bridge& b = bridge();
    std::lock_guard<std::mutex> lock(b.mutex);
    return !b.gone && b.readPending && b.readUnit == unit;
}

namespace {
// An answer: the result first, then the flag, under the lock; then the wake-up.
template <typename Store> void answer(Store store)
{
    Bridge& b = bridge();
    {
        std::lock_guard<std::mutex> lock(b.mutex);
        store(b);
    }
    b.answered.notify_all();
}
} // namespace

void GlueManager::cancelRead()
{
    answer([](Bridge& b) {
        b.readUnit = 0;
        b.readPending = false;
        b.readCancelled = true;
    });
}

void GlueManager::finishRead(QString text)
{
    answer([&](Bridge& b) {
        b.readText = std::move(text);
        b.readPending = false;
        b.readCancelled = false;
        b.readUnit = 0;
    });
}

void GlueManager::gotFileName(QString text)
{
    answer([&](Bridge& b) {
        b.fileNameResult = std::move(text);
        b.fileNamePending = false;
    });
}

void GlueManager::endModalDialog(QStringList data)
{
    answer([&](Bridge& b) {
        b.dialogResult = std::move(data);
        b.dialogPending = false;
    });
}

void GlueManager::endAlertDialog()
{
    answer([](Bridge& b) { b.alertPending = false; });
}

void GlueManager::endWindowSyncOperation()
{
    answer([](Bridge& b) { b.syncPending = false; });
}

void GlueManager::finishReadSpreadsheet(void*)
{
    answer([](Bridge& b) { b.spreadsheetPending = false; });
}
