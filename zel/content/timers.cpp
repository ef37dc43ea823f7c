// zel/content/timers.cpp: timers, their controller slots, their bridge calls and C functions.
#include "zel/content/timers.h"

#include "zel/core/environment.h"
#include "zel/core/gluemanager.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QSet>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <climits>

namespace {
// The running timers, for anyDue(); GUI thread only.
QSet<ZEL_Timer*>& runningTimers()
{
    static QSet<ZEL_Timer*> running;
    return running;
}
qint64 steadyMs()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}
} // namespace

ZEL_Timer::ZEL_Timer(long id, void (*callback)(), QObject* parent)
    : QObject(parent), id(id), callback(callback)
{
}

ZEL_Timer::~ZEL_Timer()
{
    runningTimers().remove(this);
    delete timer;
}

bool ZEL_Timer::anyDue()
{
    if (runningTimers().isEmpty()) return false;
    const qint64 now = steadyMs();
    for (const ZEL_Timer* t : runningTimers())
        if (t->due != 0 && t->due <= now + 1) return true;
    return false;
}

bool ZEL_Timer::anyRunning()
{
    return !runningTimers().isEmpty();
}

void ZEL_Timer::scheduleNext()
{
    if (timer && timer->isActive()) {
        due = steadyMs() + interval;
        runningTimers().insert(this);
    } else {
        due = 0;
        runningTimers().remove(this);
    }
}

void ZEL_Timer::finalize()
{
    if (timer) return;
    timer = new QTimer;
    timer->setTimerType(Qt::PreciseTimer);
    timer->setInterval(static_cast<int>(std::min<unsigned int>(interval, INT_MAX)));
    timer->setSingleShot(singleShot);
    connect(timer, &QTimer::timeout, this, &ZEL_Timer::fired);
    timer->start();
    scheduleNext();
}

void ZEL_Timer::fired()
{
    scheduleNext();
    if (callback) callback();
    if (singleShot) emit destroyTimer(this);
}

void ZEL_Timer::start()
{
    if (timer) timer->start();
    scheduleNext();
}

void ZEL_Timer::stop()
{
    if (timer) timer->stop();
    scheduleNext();
}

// The controller's side. A timer may be destroyed from inside its own callback, so it is stopped
// at once and deleted when control is back in the event loop.

void WindowController::createTimer(long id, QMap<QString, QVariant> properties, void* callback)
{
    auto* timer = new ZEL_Timer(id, reinterpret_cast<void (*)()>(callback));
    connect(timer, &ZEL_Timer::destroyTimer, this, &WindowController::destroyTimer);
    timer->interval = properties["interval"].toUInt();
    timer->singleShot = properties["singleShot"].toBool();
    destroyTimerWithId(id); // a second timer on an id replaces the first
    timers.insert(id, timer);
    if (idleEntered) timer->finalize();
}

void WindowController::destroyTimer(ZEL_Timer* timer)
{
    if (!timer) return;
    if (timers.value(timer->id) == timer) timers.remove(timer->id);
    timer->stop();
    timer->deleteLater();
}

void WindowController::destroyTimerWithId(long id)
{
    if (ZEL_Timer* timer = timers.value(id, nullptr)) destroyTimer(timer);
}

// The bridge's side.

bool GlueManager::createTimer(long id, const QMap<QString, QVariant>& properties, void* callback)
{
    return call([=](GlueManager& g) { emit g.createTimerWindow(id, properties, callback); });
}

bool GlueManager::destroyTimerWindow(long id)
{
    return call([=](GlueManager& g) { emit g.destroyTimerWithId(id); });
}

extern "C" {

long ZEL_createTimer(int* id, unsigned* interval, bool* singleShot, void (*callback)())
{
    if (!id || !glue_manager.load(std::memory_order_acquire)) return 0;
    if (*id == -1) *id = static_cast<int>(currentInternalId++);
    QMap<QString, QVariant> properties;
    properties["interval"] = interval ? *interval : 0u;
    properties["singleShot"] = singleShot && *singleShot;
    GlueManager::createTimer(*id, properties, reinterpret_cast<void*>(callback));
    return 1;
}

long ZEL_destroyTimer(int* id)
{
    if (!id || !glue_manager.load(std::memory_order_acquire) || *id == -1) return 0;
    GlueManager::destroyTimerWindow(*id);
    *id = -1;
    return 1;
}

} // extern "C"
