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
    QTimer* timer = nullptr; // no parent: owned here
};
