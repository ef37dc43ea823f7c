// zel/content/timers.h: a program's routine called on the GUI thread after an interval, once or
// again and again.
#pragma once

#include <QObject>

class QTimer;

class ZEL_Timer : public QObject
{
    Q_OBJECT

public:
    ZEL_Timer(long id, void (*callback)(), QObject* parent = nullptr);
    ~ZEL_Timer() override;

    // Makes and starts the QTimer; a timer does nothing before. Once only.
    void finalize();
    bool isFinalized() const { return timer != nullptr; }
    // True when a running timer's next shot is due within a millisecond: work that holds the
    // event loop (the bridge's drain) gives way. GUI thread.
    static bool anyDue();
    static bool anyRunning();

    long id;
    void (*callback)();
    unsigned int interval = 0; // ms
    bool singleShot = false;

signals:
    // A single-shot timer asks to be destroyed after its shot.
    void destroyTimer(ZEL_Timer* timer);

public slots:
    void fired();
    void start();
    void stop();

private:
    void scheduleNext();
    QTimer* timer = nullptr; // no parent: owned here
    qint64 due = 0;          // of the next shot, ms of the steady clock; 0 when not running
};
