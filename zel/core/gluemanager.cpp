// zel/core/gluemanager.cpp: the bridge's queue and the drain that runs it on the GUI thread.
#include "zel/core/gluemanager.h"

#include "zel/core/bridgestate.h"

#include "zel/content/timers.h"
#include "zel/core/windowcontroller.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QThread>

#include <algorithm>

std::atomic<GlueManager*> glue_manager{nullptr};
std::atomic<FORTRAN_QThread*> fortran_thread{nullptr};

QString latin1Text(const char* text, long length)
{
    if (!text) return {};
    if (static_cast<int>(length) == -1) return QString::fromLatin1(text);
    return QString::fromLatin1(text, static_cast<int>(std::max(0L, length)));
}

bool onProgramThread()
{
    return QThread::currentThread() ==
           reinterpret_cast<QThread*>(fortran_thread.load(std::memory_order_acquire));
}

bool onGuiThread()
{
    const QCoreApplication* app = QCoreApplication::instance();
    return app && QThread::currentThread() == app->thread();
}

glue::Bridge& glue::bridge()
{
    static Bridge* theBridge = new Bridge; // never destroyed: waiters may outlive static teardown
    return *theBridge;
}

using glue::Bridge;
using glue::bridge;
using glue::Command;

namespace {

// A batch of text is closed at this size so that one append never holds the GUI for long.
constexpr int batchBytes = 64 * 1024;
// While a program timer runs, the drain appends a batch in pieces of this size.
constexpr int timerPieceBytes = 4 * 1024;
// A writer waits while this much text is queued and goes on below the low mark.
constexpr std::size_t highWater = 8u << 20;
constexpr std::size_t lowWater = 2u << 20;
// A drain takes no further call after this long, or once a program timer is due, and continues on
// the next turn; before it gives the event loop back, the text windows lay out and show what it
// wrote, a few ms more.
constexpr qint64 drainBudgetMs = 8;

const QEvent::Type drainEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

bool hasControlCharacters(const char* text, long length)
{
    for (long i = 0; i < length; ++i)
        if (text[i] == '\b' || text[i] == '\a') return true;
    return false;
}

// Queues a command behind the earlier ones; on the GUI thread, runs it after them. With `flag`,
// sets the flag first, in the same step.
bool enqueue(Command command, GlueManager::Flag* flag = nullptr)
{
    Bridge& b = bridge();
    std::unique_lock<std::mutex> lock(b.mutex);
    if (b.gone) return false;
    if (flag) b.flag(*flag) = true;
    if (onGuiThread()) {
        GlueManager* manager = b.manager;
        lock.unlock();
        manager->drainAll();
        if (command.batch) {
            command.batch->run(*manager);
        } else if (command.emitter) {
            command.emitter(*manager);
        } else {
            emit manager->writeText(command.unit, QString::fromLatin1(command.text));
            emit manager->textWritesEnded();
        }
        return true;
    }
    if (command.isText()) {
        // Output waits only when the GUI is far behind, and then until it has caught up.
        if (b.queuedBytes >= highWater) {
            b.room.wait(lock, [&b] { return b.gone || b.queuedBytes < lowWater; });
            if (b.gone) return false;
        }
        b.queuedBytes += static_cast<std::size_t>(command.text.size());
        if (command.plainText && !b.queue.empty()) {
            Command& last = b.queue.back();
            if (last.isText() && last.plainText && last.unit == command.unit &&
                last.text.size() < batchBytes) {
                last.text.append(command.text);
                return true;
            }
        }
    }
    b.queue.push_back(std::move(command));
    if (!b.drainPosted) {
        b.drainPosted = true;
        QCoreApplication::postEvent(b.manager, new QEvent(drainEvent));
    }
    return true;
}

bool enqueueEmit(const std::function<void(GlueManager&)>& emitter, GlueManager::Flag* flag = nullptr)
{
    Command command;
    command.emitter = emitter;
    return enqueue(std::move(command), flag);
}

} // namespace

GlueManager::GlueManager(WindowController* controller) : QObject(nullptr), controller(controller)
{
    Bridge& b = bridge();
    std::lock_guard<std::mutex> lock(b.mutex);
    b.gone = false;
    b.manager = this;
    b.dropQueue();
    b.readPending = b.readCancelled = b.fileNamePending = b.dialogPending = false;
    b.alertPending = b.syncPending = b.queryPending = b.spreadsheetPending = false;
    b.readUnit = 0;

    connect(controller, &WindowController::finishRead, this, &GlueManager::finishRead);
    connect(controller, &WindowController::gotFileName, this, &GlueManager::gotFileName);
    connect(controller, &WindowController::finishReadSpreadsheet, this, &GlueManager::finishReadSpreadsheet);
}

GlueManager::~GlueManager()
{
    disconnect(this, nullptr, controller, nullptr);
    if (controller) disconnect(controller, nullptr, this, nullptr);
    controller = nullptr;
}

void GlueManager::shutDown()
{
    GlueManager* manager = glue_manager.exchange(nullptr, std::memory_order_acq_rel);
    Bridge& b = bridge();
    {
        std::lock_guard<std::mutex> lock(b.mutex);
        b.gone = true;
        b.manager = nullptr;
        b.dropQueue();
    }
    b.answered.notify_all();
    b.room.notify_all();
    delete manager;
}

bool GlueManager::event(QEvent* e)
{
    if (e->type() == drainEvent) {
        drain(true);
        return true;
    }
    return QObject::event(e);
}

void GlueManager::drainAll()
{
    drain(false);
}

void GlueManager::drain(bool withBudget)
{
    Bridge& b = bridge();
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        Command command;
        {
            std::lock_guard<std::mutex> lock(b.mutex);
            if (b.gone) {
                b.drainPosted = false;
                return; // the call that ended the bridge has deleted this object
            }
            if (b.queue.empty()) {
                b.drainPosted = false;
                break;
            }
            if (withBudget && (clock.elapsed() >= drainBudgetMs || ZEL_Timer::anyDue())) {
                QCoreApplication::postEvent(this, new QEvent(drainEvent)); // drainPosted stays set
                break;
            }
            command = std::move(b.queue.front());
            b.queue.pop_front();
            if (withBudget && command.isText() && command.plainText &&
                command.text.size() > timerPieceBytes && ZEL_Timer::anyRunning()) {
                // A program timer is running: one append must not hold its shot back for long.
                Command rest;
                rest.unit = command.unit;
                rest.plainText = true;
                rest.text = command.text.mid(timerPieceBytes);
                command.text.truncate(timerPieceBytes);
                b.queue.push_front(std::move(rest));
            }
            if (command.isText()) {
                const bool wasAbove = b.queuedBytes >= lowWater;
                b.queuedBytes -= static_cast<std::size_t>(command.text.size());
                if (wasAbove && b.queuedBytes < lowWater) b.room.notify_all();
            }
        }
        if (command.batch) {
            endTextWrites();
            command.batch->run(*this);
        } else if (command.emitter) {
            endTextWrites(); // the call sees the text written before it
            command.emitter(*this);
        } else {
            emit writeText(command.unit, QString::fromLatin1(command.text));
            textWritten = true;
        }
    }
    endTextWrites();
}

void GlueManager::endTextWrites()
{
    if (!textWritten) return;
    textWritten = false;
    emit textWritesEnded();
}

bool GlueManager::writeTextToUnit(long unit, const char* text, long length)
{
    Command command;
    command.unit = unit;
    command.text = QByteArray(text, static_cast<int>(length));
    command.plainText = !hasControlCharacters(text, length);
    return enqueue(std::move(command));
}

bool GlueManager::createWindowForUnit(long unit, const QString& window_name, const QString& access_string)
{
    return enqueueEmit([=](GlueManager& g) { emit g.createWindow(unit, window_name, access_string); });
}

bool GlueManager::readInput(long unit)
{
    {
        Bridge& b = bridge();
        std::lock_guard<std::mutex> lock(b.mutex);
        if (b.gone) return false;
        b.readCancelled = false;
        b.readUnit = unit;
    }
    Flag flag = Flag::read;
    Command command;
    command.emitter = [unit](GlueManager& g) { emit g.startRead(unit); };
    return enqueue(std::move(command), &flag);
}

bool GlueManager::showAlertBox(const QString& title, const QString& text)
{
    Flag flag = Flag::alert;
    return enqueueEmit([=](GlueManager& g) { emit g.alertBox(title, text); }, &flag);
}

bool GlueManager::addMenuItem(long unit, const QString& menu, const QString& item, long (*callback)(),
                              const QString& shortcut)
{
    void* pointer = reinterpret_cast<void*>(callback);
    return enqueueEmit([=](GlueManager& g) { emit g.addMenu(unit, menu, item, pointer, shortcut); });
}

bool GlueManager::menuItemEnable(long unit, const QString& menu, const QString& item, bool state)
{
    return enqueueEmit([=](GlueManager& g) { emit g.enableItem(unit, menu, item, state); });
}

bool GlueManager::setMenuItemCheckable(long unit, const QString& menu, const QString& item, bool state)
{
    return enqueueEmit([=](GlueManager& g) { emit g.checkmarkItem(unit, menu, item, state); });
}

bool GlueManager::setMenuItemChecked(long unit, const QString& menu, const QString& item, bool state)
{
    return enqueueEmit([=](GlueManager& g) { emit g.checkItem(unit, menu, item, state); });
}

bool GlueManager::isMenuItemChecked(long unit, const QString& menu, const QString& item)
{
    // The action lives on the GUI thread: ask there, behind the calls queued before.
    Flag flag = Flag::query;
    const bool queued = enqueueEmit(
        [=](GlueManager& g) {
            const bool checked = g.controller && g.controller->isMenuItemChecked(unit, menu, item);
            Bridge& b = bridge();
            {
                std::lock_guard<std::mutex> lock(b.mutex);
                b.queryResult = checked;
                b.queryPending = false;
            }
            b.answered.notify_all();
        },
        &flag);
    if (!queued || waitFor(Flag::query, GuiWait::none) != Wait::answered) return false;
    Bridge& b = bridge();
    std::lock_guard<std::mutex> lock(b.mutex);
    return b.queryResult;
}

bool GlueManager::processFortranStop()
{
    Flag flag = Flag::sync;
    return enqueueEmit([](GlueManager& g) { emit g.closeOnFortranStop(); }, &flag);
}

bool GlueManager::call(const std::function<void(GlueManager&)>& emitter)
{
    return enqueueEmit(emitter);
}

bool GlueManager::callWaiting(Flag flag, const std::function<void(GlueManager&)>& emitter)
{
    return enqueueEmit(emitter, &flag);
}

bool GlueManager::callBatched(const void* kind, std::unique_ptr<GlueBatch> (*make)(), const void* call)
{
    Bridge& b = bridge();
    if (!onGuiThread()) {
        std::lock_guard<std::mutex> lock(b.mutex);
        if (b.gone) return false;
        if (!b.queue.empty()) {
            Command& last = b.queue.back();
            if (last.batchKind == kind && last.batch->add(call)) return true;
        }
    }
    Command command;
    command.batchKind = kind;
    command.batch = make();
    command.batch->add(call);
    return enqueue(std::move(command));
}
