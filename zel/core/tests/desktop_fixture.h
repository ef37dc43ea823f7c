// zel/core/tests/desktop_fixture.h: an environment per test, in this process, with the program
// thread running a small test program and the test acting as the user on the GUI thread.
#pragma once

#include "runtime/testing.h"
#include "zel/core/environment.h"
#include "zel/core/gluemanager.h"
#include "zel/core/mainwindow.h"
#include "zel/core/textedit.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace zeltest {

// Runs the event loop until `done` holds or `ms` have passed; true if it holds.
inline bool waitUntil(const std::function<bool()>& done, int ms = 5000)
{
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > ms) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QTest::qSleep(1);
    }
    return true;
}

// Answers the next modal dialog that comes up with `answer`, from inside its own event loop.
class DialogAnswerer : public QObject
{
public:
    explicit DialogAnswerer(std::function<void(QWidget*)> answer) : answer(std::move(answer))
    {
        connect(&timer, &QTimer::timeout, this, [this] {
            QWidget* modal = QApplication::activeModalWidget();
            if (!modal || handled.contains(modal)) return;
            handled.append(modal);
            this->answer(modal);
        });
        timer.start(5);
    }

private:
    std::function<void(QWidget*)> answer;
    QList<QPointer<QWidget>> handled;
    QTimer timer;
};

// Text of a message box, and a press of its OK.
inline QString acceptMessageBox(QWidget* modal)
{
    auto* box = qobject_cast<QMessageBox*>(modal);
    if (!box) return {};
    const QString text = box->windowTitle() + "|" + box->text();
    box->accept();
    return text;
}

class Desktop : public ::testing::Test
{
protected:
    void SetUp() override
    {
        kestro::rt::testing::resetRuntime();
        end_thread = false;
        start_events_called = false;
    }

    void TearDown() override
    {
        if (!controller) return;
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* main = qobject_cast<MainWindow*>(w))
                if (auto* text = qobject_cast<ZEL_TextEdit*>(main->centralWidget()))
                    text->document()->setModified(false);
        controller->destroyFortranThread();
        for (QWidget* w : QApplication::topLevelWidgets())
            w->close();
        owner.reset();
        controller = nullptr;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        kestro::rt::testing::resetRuntime();
    }

    void start(void (*program)())
    {
        owner = std::make_unique<WindowController>(qApp, program);
        controller = owner.get();
    }

    ZEL_TextEdit* window(long unit = -2) const { return controller->getTextEditForUnit(unit); }

    bool waitForRead(long unit = -2, int ms = 5000)
    {
        return waitUntil([&] { return window(unit) && window(unit)->isReading(); }, ms);
    }

    // Types a line into a waiting read, as a user does.
    void type(const QString& text, long unit = -2)
    {
        ASSERT_TRUE(waitForRead(unit)) << "no read waiting for: " << text.toStdString();
        QTest::keyClicks(window(unit), text);
        QTest::keyClick(window(unit), Qt::Key_Return);
    }

    std::unique_ptr<WindowController> owner;
    WindowController* controller = nullptr;
};

} // namespace zeltest
