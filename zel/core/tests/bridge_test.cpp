// zel/core/tests/bridge_test.cpp: calls from the program thread and from GUI-thread callbacks
// reach the text window in order, reads wait for the typed line, and everything returns its
// neutral value once the bridge is gone.
#include "desktop_fixture.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <QTextBlock>

#include <cstring>
#include <string>
#include <vector>

namespace zeltest {
namespace {

// The reads of a test program, published to the GUI thread: result and buffer.
struct Read
{
    long result;
    std::string text;
};
std::mutex seenMutex;
std::vector<Read> seenReads;

std::size_t readsSeen()
{
    std::lock_guard<std::mutex> lock(seenMutex);
    return seenReads.size();
}
Read seen(std::size_t i)
{
    std::lock_guard<std::mutex> lock(seenMutex);
    return seenReads.at(i);
}

void write(const std::string& text, long unit = -3)
{
    long length = static_cast<long>(text.size());
    ZEL_writeText(const_cast<char*>(text.data()), &length, 1, &unit);
}

void readInto(long size)
{
    std::string buffer(static_cast<std::size_t>(size) + 4, '#');
    long unit = -2;
    const long n = ZEL_readText(buffer.data(), size, &unit);
    std::lock_guard<std::mutex> lock(seenMutex);
    seenReads.push_back({n, buffer.substr(0, static_cast<std::size_t>(size))});
}

QString documentText(ZEL_TextEdit* w)
{
    return w->toPlainText();
}

class Bridge : public Desktop
{
protected:
    void SetUp() override
    {
        Desktop::SetUp();
        std::lock_guard<std::mutex> lock(seenMutex);
        seenReads.clear();
    }
};

TEST_F(Bridge, OutputWrittenBeforeAReadIsInTheWindowWhenTheReadStarts)
{
    start([] {
        for (int i = 0; i < 10000; ++i)
            write("line " + std::to_string(i) + "\n");
        write("Name? ");
        readInto(80);
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForRead());
    const QString text = documentText(window());
    EXPECT_EQ(window()->document()->blockCount(), 10001);
    EXPECT_TRUE(text.startsWith("line 0\nline 1\n"));
    EXPECT_TRUE(text.endsWith("line 9999\nName? "));

    type("hello");
    ASSERT_TRUE(waitUntil([] { return readsSeen() == 1; }));
    EXPECT_EQ(seen(0).result, 6);
    EXPECT_EQ(seen(0).text.substr(0, 6), "hello\n");
    EXPECT_EQ(seen(0).text[6], '\0'); // the bytes behind the line are cleared
    EXPECT_TRUE(documentText(window()).endsWith("Name? hello\n"));
}

TEST_F(Bridge, TheViewFollowsTheOutputWhereverTheCaretWas)
{
    start([] {
        for (int i = 0; i < 3000; ++i)
            write("line " + std::to_string(i) + "\n");
        ZEL_startEvents();
    });
    ASSERT_TRUE(
        waitUntil([&] { return start_events_called.load() && window()->document()->blockCount() == 3001; }));
    QScrollBar* bar = window()->verticalScrollBar();
    const auto atLastLine = [&] {
        return window()->textCursor().atEnd() && bar->maximum() > 0 && bar->value() == bar->maximum();
    };
    EXPECT_TRUE(atLastLine());

    // The user goes to the top; the next output, from a callback on the GUI thread, brings both back.
    QTextCursor top = window()->textCursor();
    top.movePosition(QTextCursor::Start);
    window()->setTextCursor(top);
    bar->setValue(0);
    write("one more\n");
    EXPECT_TRUE(atLastLine());
    const QPoint bottomLeft(0, window()->viewport()->height() - 1);
    EXPECT_EQ(window()->cursorForPosition(bottomLeft).blockNumber(), 3001);
    EXPECT_TRUE(documentText(window()).endsWith("line 2999\none more\n"));
}

TEST_F(Bridge, ReadsAgainstTheBufferSize)
{
    start([] {
        readInto(5);
        readInto(5);
        readInto(5);
        ZEL_startEvents();
    });
    type("abcde");
    type("abcdef");
    type("");
    ASSERT_TRUE(waitUntil([] { return readsSeen() == 3; }));
    EXPECT_EQ(seen(0).result, 5); // five characters fill the buffer; the newline is lost
    EXPECT_EQ(seen(0).text, "abcde");
    EXPECT_EQ(seen(1).result, -3); // six do not fit
    EXPECT_EQ(seen(2).result, 1);  // an empty line is its newline
    EXPECT_EQ(seen(2).text[0], '\n');
}

TEST_F(Bridge, TypedTextReachesTheProgramAsLatin1)
{
    start([] {
        readInto(20);
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForRead());
    for (const QString& key : {QString("caf"), QString(QChar(0xE9)), QString(QChar(0x20AC))}) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, key);
        QApplication::sendEvent(window(), &press);
    }
    QTest::keyClick(window(), Qt::Key_Return);
    ASSERT_TRUE(waitUntil([] { return readsSeen() == 1; }));
    EXPECT_EQ(seen(0).result, 6);
    EXPECT_EQ(seen(0).text.substr(0, 6), "caf\xE9?\n");
}

TEST_F(Bridge, BackspaceDeletesAndBellBeepsUnlessABackspaceFollows)
{
    start([] {
        write("ab\bc\n");   // two letters, a backspace, a third
        write("x\ay\n");    // the bell is not shown
        write("p\aq\br\n"); // a bell before a backspace stays as a character
        readInto(10);
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForRead());
    EXPECT_EQ(documentText(window()), QString("ac\nxy\np\ar\n"));
}

TEST_F(Bridge, PlainKeysAreRefusedUnlessAReadWaits)
{
    start([] {
        write("ready\n");
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitUntil([&] { return documentText(window()) == "ready\n"; }));
    QTest::keyClicks(window(), "xyz");
    QTest::keyClick(window(), Qt::Key_Return);
    QTest::keyClick(window(), Qt::Key_Backspace);
    EXPECT_EQ(documentText(window()), QString("ready\n"));
    QTest::keyClick(window(), 'Q', Qt::ShiftModifier); // a shifted letter goes through
    EXPECT_EQ(documentText(window()), QString("ready\nQ"));
}

TEST_F(Bridge, AReadFromAGuiThreadCallbackKeepsTheWindowAlive)
{
    start([] { ZEL_startEvents(); });
    ASSERT_TRUE(waitUntil([] { return start_events_called.load(); }));
    // A callback, as a menu item would run it: write, then read while events go on.
    QTimer typist;
    QObject::connect(&typist, &QTimer::timeout, [this] {
        if (window()->isReading()) {
            QTest::keyClicks(window(), "Ada");
            QTest::keyClick(window(), Qt::Key_Return);
        }
    });
    typist.start(5);
    write("Who? ");
    readInto(80);
    typist.stop();
    ASSERT_EQ(readsSeen(), 1u);
    EXPECT_EQ(seen(0).result, 4);
    EXPECT_EQ(seen(0).text.substr(0, 4), "Ada\n");
    EXPECT_EQ(documentText(window()), QString("Who? Ada\n"));
}

TEST_F(Bridge, AReadWaitingWhenTheBridgeGoesIsEndOfFile)
{
    start([] {
        readInto(80);
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForRead());
    controller->destroyFortranThread();
    ASSERT_EQ(readsSeen(), 1u);
    EXPECT_EQ(seen(0).result, 0);
    EXPECT_EQ(glue_manager.load(), nullptr);
    EXPECT_EQ(controller->getProgramThread(), nullptr);
}

TEST_F(Bridge, EveryFunctionIsNeutralOnceTheBridgeIsGone)
{
    start([] { ZEL_startEvents(); });
    ASSERT_TRUE(waitUntil([] { return start_events_called.load(); }));
    controller->destroyFortranThread();
    ASSERT_EQ(glue_manager.load(), nullptr);

    char text[] = "dropped\n";
    long length = 8, unit = -3;
    EXPECT_EQ(ZEL_writeText(text, &length, 1, &unit), -1);
    char buffer[16];
    EXPECT_EQ(ZEL_readText(buffer, sizeof buffer, &unit), -1);
    EXPECT_EQ(ZEL_alertBox(text, text, -1, -1), 1);
    bool fresh = true;
    EXPECT_EQ(ZEL_getFileName(buffer, &length, &unit, &fresh), 0);
    int first = 0, second = 0, width = 100, height = 100;
    EXPECT_EQ(ZEL_createTextWindow(&first, text, &width, &height, -1), 0);
    EXPECT_EQ(ZEL_createTextWindow(&second, text, &width, &height, -1), 0);
    EXPECT_EQ(second, first + 1); // ids are still handed out
    EXPECT_EQ(ZEL_closeWindow(&first), 1);
    EXPECT_EQ(ZEL_TileWindows(), 1);
    EXPECT_EQ(documentText(window()), QString());
}

TEST_F(Bridge, WindowsOpenedByTheProgramTakeTheirSizeAndTheirOwnOutput)
{
    static std::atomic<int> made{0};
    start([] {
        int unit = 0, width = 500, height = 300;
        ZEL_createTextWindow(&unit, const_cast<char*>("Log"), &width, &height, -1);
        made = unit;
        char line[] = "to the log";
        ZEL_writeTextWindow(&unit, line, -1);
        write("to the default\n", -4); // standard error shares the default window
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitUntil([] { return start_events_called.load(); }));
    ASSERT_TRUE(waitUntil([&] { return window(made) && window(made)->toPlainText() == "to the log\n"; }));
    EXPECT_GE(made.load(), 1000000);
    EXPECT_EQ(window(made)->window()->size(), QSize(500, 300));
    EXPECT_EQ(window(made)->window()->windowTitle(), QString("Log"));
    EXPECT_EQ(documentText(window()), QString("to the default\n"));
    // The first window keeps the main window's size.
    EXPECT_EQ(window()->window()->size(), QSize(340, 700));
}

} // namespace
} // namespace zeltest
