// zel/core/tests/windows_test.cpp: the main window's menus, saving, user menus with callbacks,
// alert boxes and file requests, each answered by the test.
#include "desktop_fixture.h"

#include "zel/core/subwindow.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFontDialog>
#include <QFontInfo>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QThread>

#include <cstring>

namespace zeltest {
namespace {

QAction* findAction(QMenu* menu, const QString& label)
{
    for (QAction* action : menu->actions())
        if (action->text() == label) return action;
    return nullptr;
}

QStringList labels(QMenu* menu)
{
    QStringList result;
    for (QAction* action : menu->actions())
        result << (action->isSeparator() ? "-" : action->text());
    return result;
}

TEST(MainWindowMenus, FileAndEditHoldTheirCommandsInOrderWithPrintAndEditingOff)
{
    MainWindow window(nullptr, "Plain", nullptr);
    EXPECT_EQ(window.windowTitle(), QString("Plain"));
    EXPECT_EQ(labels(window.fileMenu()),
              (QStringList{"&Save", "Save &As", "-", "P&rint Setup", "&Print", "&Quit"}));
    EXPECT_EQ(labels(window.editMenu()),
              (QStringList{"C&ut", "&Copy", "&Paste", "-", "&Undo", "&Redo", "-", "&Font"}));
    EXPECT_EQ(window.windowMenu(), nullptr);
    EXPECT_EQ(findAction(window.fileMenu(), "Save &As")->statusTip(),
              QString("Prompt for file name and saves output to file"));
    for (const char* off : {"&Print", "P&rint Setup"})
        EXPECT_FALSE(findAction(window.fileMenu(), off)->isEnabled());
    for (const char* off : {"C&ut", "&Copy", "&Paste", "&Undo", "&Redo"})
        EXPECT_FALSE(findAction(window.editMenu(), off)->isEnabled()) << off;
    window.setPrintable(true);
    EXPECT_TRUE(findAction(window.fileMenu(), "&Print")->isEnabled());
    window.hideEditMenu(true);
    EXPECT_FALSE(window.editMenu()->isEnabled());
}

TEST(MainWindowMenus, TheWindowMenuOfTheMultipleDocumentLayout)
{
    auto* area = new QMdiArea;
    MainWindow window(nullptr, "Frame", area);
    window.setCentralWidget(area);
    ASSERT_NE(window.windowMenu(), nullptr);
    EXPECT_EQ(labels(window.windowMenu()), (QStringList{"Cl&ose", "Close &All", "-", "&Tile", "&Cascade", "-",
                                                        "Ne&xt", "Pre&vious", "-"}));
    EXPECT_FALSE(window.windowMenu()->actions().last()->isVisible()); // no windows: separator hidden
    window.show();
    auto* sub = new SubWindow;
    area->addSubWindow(sub);
    sub->setWindowTitle("Results");
    sub->show();
    window.updateWindowMenu();
    EXPECT_EQ(window.windowMenu()->actions().last()->text(), QString("Results"));
    EXPECT_TRUE(window.windowMenu()->actions().last()->isCheckable());
}

class Windows : public Desktop
{
};

std::atomic<int> callbackRuns{0};
std::atomic<bool> callbackOnGuiThread{false};
std::atomic<long> checkedSeen{-1};
long countCallback()
{
    callbackOnGuiThread = QThread::currentThread() == qApp->thread();
    ++callbackRuns;
    return 0;
}

TEST_F(Windows, UserMenusAppearAtIdleAndRunTheirCallbackOnTheGuiThread)
{
    callbackRuns = 0;
    checkedSeen = -1;
    QStringList reports;
    DialogAnswerer answerer([&](QWidget* modal) { reports << acceptMessageBox(modal); });
    start([] {
        int unit = -3, missing = 5;
        bool on = true;
        ZEL_addMenu(&unit, const_cast<char*>("Tools"), const_cast<char*>("Count"), countCallback,
                    const_cast<char*>("Ctrl+K"), -1, -1, -1);
        ZEL_addMenu(&missing, const_cast<char*>("Tools"), const_cast<char*>("Lost"), countCallback,
                    const_cast<char*>(""), -1, -1, -1);
        ZEL_setMenuItemCheckable(&unit, const_cast<char*>("Tools"), const_cast<char*>("Count"), &on, -1, -1);
        ZEL_setMenuItemChecked(&unit, const_cast<char*>("Tools"), const_cast<char*>("Count"), &on, -1, -1);
        ZEL_menuItemEnable(&unit, const_cast<char*>("Tools"), const_cast<char*>("Nothing"), &on, -1, -1);
        checkedSeen =
            ZEL_isMenuItemChecked(&unit, const_cast<char*>("Tools"), const_cast<char*>("Count"), -1, -1);
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitUntil([] { return checkedSeen.load() != -1 && start_events_called.load(); }));
    ASSERT_TRUE(waitUntil([&] { return reports.size() == 2; }));
    EXPECT_EQ(checkedSeen.load(), 1);
    EXPECT_EQ(reports.at(0), QString("Error|Unit number 5 has not been opened yet.\nZEL_addMenu failed."));
    EXPECT_EQ(reports.at(1),
              QString("Error|Unit number -3 has not been opened yet.\nZEL_menuItemEnable failed."));

    ASSERT_EQ(controller->getUserMenus().size(), 1);
    QMenu* tools = controller->getUserMenus().first();
    ASSERT_TRUE(waitUntil([&] { return tools->menuAction()->isVisible(); }));
    EXPECT_EQ(tools->parentWidget()->parentWidget(), window()->window());
    QAction* count = findAction(tools, "Count");
    ASSERT_NE(count, nullptr);
    EXPECT_EQ(count->shortcut(), QKeySequence("Ctrl+K"));
    count->trigger();
    EXPECT_EQ(callbackRuns.load(), 1);
    EXPECT_TRUE(callbackOnGuiThread.load());
}

std::atomic<long> alertResult{0};

TEST_F(Windows, AnAlertHoldsTheProgramUntilOk)
{
    alertResult = 0;
    QString shown;
    bool heldWhileShown = false;
    DialogAnswerer answerer([&](QWidget* modal) {
        heldWhileShown = alertResult.load() == 0;
        shown = acceptMessageBox(modal);
    });
    start([] {
        alertResult = ZEL_alertBox(const_cast<char*>("Survey"), const_cast<char*>("Strike ready"), -1, 12);
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitUntil([] { return alertResult.load() != 0; }));
    EXPECT_EQ(alertResult.load(), 1);
    EXPECT_TRUE(heldWhileShown);
    EXPECT_EQ(shown, QString("Survey|Strike ready"));

    // From a callback on the GUI thread: shown, dismissed, then 1.
    EXPECT_EQ(ZEL_alertBox(const_cast<char*>("Again"), const_cast<char*>("From a menu"), -1, -1), 1);
    EXPECT_EQ(shown, QString("Again|From a menu"));
}

struct FileAnswer
{
    std::atomic<long> result{-9};
    char buffer[64];
};
FileAnswer fileAnswer;

TEST_F(Windows, AFileRequestGivesTheChosenNameCutToTheBuffer)
{
    fileAnswer.result = -9;
    std::memset(fileAnswer.buffer, '#', sizeof fileAnswer.buffer);
    QString title;
    bool forSaving = false;
    DialogAnswerer answerer([&](QWidget* modal) {
        auto* dialog = qobject_cast<QFileDialog*>(modal);
        ASSERT_NE(dialog, nullptr);
        title = dialog->windowTitle();
        forSaving = dialog->acceptMode() == QFileDialog::AcceptSave;
        dialog->selectFile(QDir::tempPath() + "/kestro_answer.txt");
        QMetaObject::invokeMethod(dialog, "accept");
    });
    start([] {
        long length = 5, unit = 26;
        bool fresh = true;
        fileAnswer.result = ZEL_getFileName(fileAnswer.buffer, &length, &unit, &fresh);
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitUntil([] { return fileAnswer.result.load() != -9; }));
    EXPECT_EQ(title, QString("Open New File"));
    EXPECT_TRUE(forSaving);
    EXPECT_EQ(fileAnswer.result.load(), 5);
    EXPECT_EQ(std::string(fileAnswer.buffer, 6), (QDir::tempPath() + "/kest").left(5).toStdString() + "#");

    long noLength = 0;
    EXPECT_EQ(ZEL_getFileName(fileAnswer.buffer, &noLength, nullptr, nullptr), -1);
}

TEST_F(Windows, SavingWritesTheWholeWindowOnceUnderTheTitle)
{
    QTemporaryDir folder;
    const QString previous = QDir::currentPath();
    QDir::setCurrent(folder.path());
    start([] {
        char text[] = "Enter data : ";
        long length = -1, unit = -3;
        ZEL_writeText(text, &length, 1, &unit);
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitUntil([&] { return window()->toPlainText() == "Enter data : "; }));
    const QString name = window()->windowName + " output";
    EXPECT_EQ(window()->window()->windowTitle(), window()->windowName);
    window()->save(QString());
    QFile saved(name);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll(), QByteArray("Enter data : "));
    saved.close();
    saved.remove();
    window()->save(QString()); // unchanged since: nothing written
    EXPECT_FALSE(QFile::exists(name));
    QDir::setCurrent(previous);
}

TEST_F(Windows, FontDialogStartsOnTheShownFaceSoOkChangesNothing)
{
    start([] { ZEL_startEvents(); });
    ASSERT_TRUE(waitUntil([&] { return window() != nullptr; }));
    const QFontInfo before(window()->font());
    QString offered;
    DialogAnswerer answerer([&](QWidget* modal) {
        auto* dialog = qobject_cast<QFontDialog*>(modal);
        ASSERT_NE(dialog, nullptr);
        offered = QFontInfo(dialog->currentFont()).family();
        dialog->accept();
    });
    findAction(controller->getMainWindow()->editMenu(), "&Font")->trigger();
    EXPECT_EQ(offered, before.family());
    const QFontInfo after(window()->font());
    EXPECT_EQ(after.family(), before.family());
    EXPECT_EQ(after.pointSize(), before.pointSize());
    EXPECT_TRUE(after.fixedPitch()); // the panels keep their columns
}

TEST_F(Windows, SavingWritesTypedTextInTheLocaleEncoding)
{
    QTemporaryDir folder;
    const QString previous = QDir::currentPath();
    QDir::setCurrent(folder.path());
    QTextCodec* const locale = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    static std::atomic<bool> done{false};
    done = false;
    start([] {
        char buffer[80];
        long unit = -2;
        ZEL_readText(buffer, sizeof buffer, &unit);
        done = true;
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForRead());
    QTest::keyClicks(window(), "caf");
    QTest::sendKeyEvent(QTest::Click, window(), Qt::Key_Eacute, QString::fromUtf8("\xc3\xa9"),
                        Qt::NoModifier);
    QTest::keyClick(window(), Qt::Key_Return);
    ASSERT_TRUE(waitUntil([] { return done.load(); }));
    window()->save("typed.txt");
    QFile saved("typed.txt");
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll(), QByteArray("caf\xc3\xa9\n"));
    QTextCodec::setCodecForLocale(locale);
    QDir::setCurrent(previous);
}

TEST_F(Windows, PasteIsOfferedOnlyWhileAReadWaits)
{
    static std::atomic<bool> done{false};
    done = false;
    start([] {
        char buffer[80];
        long unit = -2;
        ZEL_readText(buffer, sizeof buffer, &unit);
        done = true;
        ZEL_startEvents();
    });
    QAction* paste = findAction(controller->getMainWindow()->editMenu(), "&Paste");
    ASSERT_TRUE(waitForRead());
    EXPECT_TRUE(paste->isEnabled());
    type("x");
    ASSERT_TRUE(waitUntil([] { return done.load(); }));
    EXPECT_FALSE(paste->isEnabled());
}

std::atomic<long> cancelledRead{-9};

TEST_F(Windows, ClosingTheSubWindowThatAReadWaitsOnEndsTheRead)
{
    cancelledRead = -9;
    start([] {
        char buffer[80];
        long unit = -2;
        cancelledRead = ZEL_readText(buffer, sizeof buffer, &unit);
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForRead());
    QMdiArea area;
    auto* sub = new SubWindow;
    area.addSubWindow(sub);
    sub->controller = window();
    window()->document()->setModified(false);
    sub->close();
    ASSERT_TRUE(waitUntil([] { return cancelledRead.load() != -9; }));
    EXPECT_EQ(cancelledRead.load(), -1);
}

} // namespace
} // namespace zeltest
