// zel/core/windowcontroller.cpp: windows by unit, the text slots, idle and the two ends.
#include "zel/core/windowcontroller.h"

#include "runtime/io.h"
#include "zel/content/timers.h"
#include "zel/core/environment.h"
#include "zel/core/gluemanager.h"
#include "zel/core/mainwindow.h"
#include "zel/core/preferences.h"
#include "zel/core/subwindow.h"
#include "zel/core/textedit.h"
#include "zel/core/zel.h"

#include <QApplication>
#include <QFileInfo>
#include <QMdiArea>
#include <QMenu>
#include <QMessageBox>
#include <QScrollArea>
#include <QVariant>

#include <cstdlib>

void raiseStopSignal();

WindowController::WindowController(QApplication* application, void (*mainProgram)())
    : QObject(nullptr), mdiMode(_ZEL_getMdiMode())
{
    const QString programName = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    createWindowForUnit(-3, programName, QString());
    if (!_ZEL_showDefaultOutputWindow()) hideWindowForUnit(-3);

    auto* bridge = new GlueManager(this);
    glue_manager.store(bridge, std::memory_order_release);

    connect(this, &WindowController::endModalDialog, bridge, &GlueManager::endModalDialog);
    connect(this, &WindowController::endAlertDialog, bridge, &GlueManager::endAlertDialog);
    connect(this, &WindowController::endWindowSyncOperation, bridge, &GlueManager::endWindowSyncOperation);
    connect(application, &QApplication::lastWindowClosed, this, &WindowController::destroyFortranThread);

    connect(bridge, &GlueManager::writeText, this, &WindowController::writeTextToUnit);
    connect(bridge, &GlueManager::textWritesEnded, this, &WindowController::endTextOutput);
    connect(bridge, &GlueManager::createWindow, this, &WindowController::createWindowForUnit);
    connect(bridge, &GlueManager::closeWindow, this, &WindowController::closeWindowForUnit);
    connect(bridge, &GlueManager::moveWindow, this, &WindowController::moveWindowForUnit);
    connect(bridge, &GlueManager::activateZELWindow, this, &WindowController::activateWindowForUnit);
    connect(bridge, &GlueManager::tileZELWindows, this, &WindowController::tileWindows);
    connect(bridge, &GlueManager::cascadeZELWindows, this, &WindowController::cascadeWindows);
    connect(bridge, &GlueManager::startRead, this, &WindowController::startReadingInput);
    connect(bridge, &GlueManager::fortranRunIdle, this, &WindowController::runIdle);
    connect(bridge, &GlueManager::closeOnFortranStop, this, &WindowController::closeOnProgramStop);
    connect(bridge, &GlueManager::alertBox, this, &WindowController::showAlertBox);
    connect(bridge, &GlueManager::getFileNameFromWindow, this, &WindowController::getFileName);
    connect(bridge, &GlueManager::addMenu, this,
            QOverload<long, QString, QString, void*, QString>::of(&WindowController::addMenuItem));
    connect(bridge, &GlueManager::enableItem, this, &WindowController::enableMenuItem);
    connect(bridge, &GlueManager::checkmarkItem, this, &WindowController::setMenuItemCheckable);
    connect(bridge, &GlueManager::checkItem, this, &WindowController::setMenuItemChecked);
    connect(bridge, &GlueManager::saveWindowContents, this, &WindowController::saveWindowContentsForUnit);
    connect(bridge, &GlueManager::createXYPlot, this, &WindowController::createXYPlotForUnit);
    connect(bridge, &GlueManager::writeXYPlot, this, &WindowController::writeXYPlot);
    connect(bridge, &GlueManager::clearXYPlot, this, &WindowController::clearXYPlot);
    connect(bridge, &GlueManager::createSpreadsheet, this, &WindowController::createSpreadsheet);
    connect(bridge, &GlueManager::writeSpreadsheet, this, &WindowController::writeSpreadsheet);
    connect(bridge, &GlueManager::readSpreadsheet, this, &WindowController::readSpreadsheet);
    connect(bridge, &GlueManager::setHorizontalHeaderLabels, this, &WindowController::setHorizontalLabels);
    connect(bridge, &GlueManager::setVerticalHeaderLabels, this, &WindowController::setVerticalLabels);
    connect(bridge, &GlueManager::createTimerWindow, this, &WindowController::createTimer);
    connect(bridge, &GlueManager::destroyTimerWithId, this, &WindowController::destroyTimerWithId);

    programThread = std::make_unique<FORTRAN_QThread>(mainProgram);
    programThread->start(QThread::InheritPriority);
}

WindowController::~WindowController()
{
    textEdits.clear();
    qDeleteAll(timers); // they have no parent
    timers.clear();
    destroyFortranThread();
    ZEL_cleanup(); // the bridge goes with its controller; waiters hear that it has gone
    // One still running is left to the end of the process rather than destroyed under it.
    if (programThread && !programThread->isFinished()) programThread.release();
}

MainWindow* WindowController::getMainWindow() const
{
    return mainWindow;
}

// Registries.

void WindowController::addTextEditForUnit(long unit, ZEL_TextEdit* textEdit)
{
    textEdits.insert(normalisedUnit(unit), textEdit);
}

ZEL_TextEdit* WindowController::getTextEditForUnit(long unit) const
{
    return textEdits.value(normalisedUnit(unit), nullptr);
}

void WindowController::addSpreadsheetForUnit(long unit, ZEL_Spreadsheet* spreadsheet)
{
    spreadsheets.insert(normalisedUnit(unit), spreadsheet);
}
ZEL_Spreadsheet* WindowController::getSpreadsheetForUnit(long unit) const
{
    return spreadsheets.value(normalisedUnit(unit), nullptr);
}
void WindowController::addXYPlotForUnit(long unit, XYPlot* plot)
{
    xyPlots.insert(normalisedUnit(unit), plot);
}
XYPlot* WindowController::getXYPlotForUnit(long unit) const
{
    return xyPlots.value(normalisedUnit(unit), nullptr);
}
void WindowController::addCanvasForUnit(long unit, Canvas* canvas)
{
    canvases.insert(normalisedUnit(unit), canvas);
}
Canvas* WindowController::getCanvasForUnit(long unit) const
{
    return canvases.value(normalisedUnit(unit), nullptr);
}
void WindowController::addBarchartForUnit(long unit, BarChart* chart)
{
    barCharts.insert(normalisedUnit(unit), chart);
}
BarChart* WindowController::getBarchartForUnit(long unit) const
{
    return barCharts.value(normalisedUnit(unit), nullptr);
}
void WindowController::addPieChartForUnit(long unit, PieChart* chart)
{
    pieCharts.insert(normalisedUnit(unit), chart);
}
PieChart* WindowController::getPieChartForUnit(long unit) const
{
    return pieCharts.value(normalisedUnit(unit), nullptr);
}
void WindowController::addPolarPlotForUnit(long unit, PolarPlot* plot)
{
    polarPlots.insert(normalisedUnit(unit), plot);
}
PolarPlot* WindowController::getPolarPlotForUnit(long unit) const
{
    return polarPlots.value(normalisedUnit(unit), nullptr);
}
void WindowController::addContourPlotForUnit(long unit, ContourPlot* plot)
{
    contourPlots.insert(normalisedUnit(unit), plot);
}
ContourPlot* WindowController::getContourPlotForUnit(long unit) const
{
    return contourPlots.value(normalisedUnit(unit), nullptr);
}

// The registries hold the window types by their own pointers, which need not be complete here; a
// window's pointer converted to `const void*` is the address of the whole object, the key under
// which showContentWindow has kept its widget and controller.
template <typename Window>
ZEL_ContentController* WindowController::shownController(const QHash<long, Window*>& registry, long key) const
{
    const Window* window = registry.value(key, nullptr);
    if (!window) return nullptr;
    const auto shown = shownContent.constFind(static_cast<const void*>(window));
    return shown == shownContent.constEnd() ? nullptr : shown->controller;
}

ZEL_ContentController* WindowController::getControllerForUnit(long unit) const
{
    const long key = normalisedUnit(unit);
    if (ZEL_TextEdit* textEdit = textEdits.value(key, nullptr)) return textEdit;
    for (ZEL_ContentController* cc :
         {shownController(spreadsheets, key), shownController(barCharts, key), shownController(xyPlots, key),
          shownController(polarPlots, key), shownController(contourPlots, key),
          shownController(pieCharts, key), shownController(canvases, key)})
        if (cc) return cc;
    return nullptr;
}

QWidget* WindowController::getWidgetForUnit(long unit) const
{
    if (ZEL_TextEdit* textEdit = getTextEditForUnit(unit)) return textEdit;
    ZEL_ContentController* cc = getControllerForUnit(unit);
    if (!cc) return nullptr;
    return shownContent.value(dynamic_cast<const void*>(cc), ShownContent{nullptr, nullptr}).widget;
}

void WindowController::removeFromRegistries(long unit)
{
    const long key = normalisedUnit(unit);
    textEdits.remove(key);
    spreadsheets.remove(key);
    barCharts.remove(key);
    xyPlots.remove(key);
    pieCharts.remove(key);
    polarPlots.remove(key);
    contourPlots.remove(key);
    canvases.remove(key);
}

WindowController::SyncRelease::~SyncRelease()
{
    emit controller->endWindowSyncOperation();
}

// Layout.

MainWindow* WindowController::createMainWindow(const QString& title, int height, int width)
{
    auto* window = new MainWindow(nullptr, title, nullptr);
    connect(window, &MainWindow::willDestroy, this, &WindowController::willDestroy);
    window->resize(width, height);
    if (mainWindow) {
        window->move(mainWindow->pos() + QPoint(40, 40));
        window->setAttribute(Qt::WA_ShowWithoutActivating);
        window->show();
        window->stackUnder(mainWindow);
    } else {
        mainWindow = window;
        if (_ZEL_getShowMaximized()) {
            window->showMaximized();
        } else {
            window->resize(_ZEL_getMainWindowWidth(), _ZEL_getMainWindowHeight());
            window->move(40, 40);
        }
    }
    return window;
}

SubWindow* WindowController::createMDIWindow(const QString& title, int height, int width)
{
    if (!mdiArea) {
        mdiArea = new QMdiArea;
        connect(mdiArea, &QMdiArea::subWindowActivated, this, &WindowController::subWindowActivated);
    }
    auto* sub = new SubWindow;
    connect(sub, &SubWindow::willDestroy, this, &WindowController::willDestroy);
    mdiArea->addSubWindow(sub);
    sub->setWindowTitle(title);
    if (mainWindow) {
        const QMdiSubWindow* current = mdiArea->currentSubWindow();
        const QPoint from = current && current != sub ? current->pos() : mainWindow->pos();
        sub->move(from + QPoint(20, 20));
    } else {
        mainWindow = new MainWindow(nullptr, title, mdiArea);
        connect(mainWindow, &MainWindow::willDestroy, this, &WindowController::willDestroy);
        if (_ZEL_getShowMaximized())
            mainWindow->showMaximized();
        else
            mainWindow->resize(_ZEL_getMainWindowWidth(), _ZEL_getMainWindowHeight());
        mainWindow->setCentralWidget(mdiArea);
        mainWindow->show();
    }
    sub->resize(width, height);
    if (_ZEL_getShowMaximized())
        sub->showMaximized();
    else
        sub->show();
    return sub;
}

void WindowController::bringToFront(QWidget* widget)
{
    if (!widget) return;
    if (!mdiArea) {
        QWidget* top = widget->window();
        top->show();
        top->raise();
        top->activateWindow();
        return;
    }
    for (QMdiSubWindow* sub : mdiArea->subWindowList()) {
        if (sub->widget() == widget) {
            mdiArea->setActiveSubWindow(sub);
            return;
        }
    }
}

// Window slots.

void WindowController::createWindowForUnit(long unit, QString window_name, QString access_string)
{
    int width = mdiMode ? _ZEL_getMdiTextWindowWidth() : _ZEL_getMainWindowWidth();
    int height = mdiMode ? _ZEL_getMdiTextWindowHeight() : _ZEL_getMainWindowHeight();
    const QStringList parts = access_string.split(',', Qt::SkipEmptyParts);
    if (parts.size() >= 2) width = parts.at(1).toInt(nullptr, 10);
    if (parts.size() >= 3) height = parts.at(2).toInt(nullptr, 10);

    auto* textEdit = new ZEL_TextEdit(nullptr, unit, window_name, access_string);
    connect(textEdit, &ZEL_TextEdit::endRead, this, &WindowController::endReadText);
    addTextEditForUnit(unit, textEdit);

    if (mdiMode) {
        SubWindow* sub = createMDIWindow(window_name, height, width);
        sub->setProperty("unit", QVariant::fromValue(unit));
        sub->setWidget(textEdit);
        sub->controller = textEdit;
        mainWindow->setTextEdit(textEdit);
    } else {
        MainWindow* window = createMainWindow(window_name, height, width);
        window->setTextEdit(textEdit);
        window->setCentralWidget(textEdit);
        bringToFront(textEdit);
    }
}

void WindowController::showContentWindow(long unit, QWidget* widget, ZEL_ContentController* cc,
                                         const QString& title, bool printable, bool hideEditMenu,
                                         bool asCentralWidget)
{
    if (!widget) return;
    shownContent.insert(dynamic_cast<const void*>(widget), ShownContent{widget, cc});
    const int width = static_cast<int>(0.75 * _ZEL_getMainWindowWidth());
    const int height = static_cast<int>(0.75 * _ZEL_getMainWindowHeight());
    QWidget* content = widget;
    if (!asCentralWidget) {
        auto* scroll = new QScrollArea;
        scroll->setWidget(widget);
        content = scroll;
    }
    MainWindow* frame = nullptr;
    if (mdiMode) {
        SubWindow* sub = createMDIWindow(title, height, width);
        sub->setProperty("unit", QVariant::fromValue(unit));
        sub->setWidget(content);
        sub->controller = cc;
        frame = mainWindow;
    } else {
        frame = createMainWindow(title, height, width);
        frame->setCentralWidget(content);
    }
    if (frame) {
        frame->setNonEditableContentController(cc);
        frame->setPrintable(printable);
        frame->hideEditMenu(hideEditMenu);
    }
    if (!mdiMode) bringToFront(content);
}

void WindowController::closeWindowForUnit(long unit)
{
    QWidget* widget = getWidgetForUnit(unit);
    if (!widget) return;
    if (mdiMode && mdiArea) {
        for (QMdiSubWindow* sub : mdiArea->subWindowList()) {
            if (sub->property("unit").toLongLong() == unit) {
                mdiArea->removeSubWindow(sub);
                sub->close();
                if (mainWindow) mainWindow->setTextEdit(nullptr);
                sub->deleteLater();
                break;
            }
        }
    } else {
        widget->window()->close();
    }
    removeFromRegistries(unit);
}

void WindowController::hideWindowForUnit(long unit)
{
    QWidget* widget = getWidgetForUnit(unit);
    if (!widget) return;
    if (mdiMode)
        closeWindowForUnit(unit);
    else
        widget->window()->hide();
}

void WindowController::moveWindowForUnit(long unit, int x, int y)
{
    if (unit == -2 || unit == -4) unit = -3;
    QWidget* widget = getWidgetForUnit(unit);
    if (!widget) return;
    if (!mdiMode || !mdiArea) {
        widget->window()->move(x, y);
        return;
    }
    for (QMdiSubWindow* sub : mdiArea->subWindowList()) {
        if (sub->property("unit").toLongLong() == unit) {
            sub->move(x, y);
            return;
        }
    }
}

void WindowController::activateWindowForUnit(long unit)
{
    bringToFront(getWidgetForUnit(unit));
}

void WindowController::tileWindows()
{
    if (mdiArea) mdiArea->tileSubWindows();
}

void WindowController::cascadeWindows()
{
    if (mdiArea) mdiArea->cascadeSubWindows();
}

void WindowController::willDestroy(ZEL_ContentController* cc)
{
    if (!cc) return;
    const QByteArray title = cc->windowName.toLatin1();
    _ZEL_windowDidClose(title.constData(), title.size());
    removeFromRegistries(cc->unit);
    shownContent.remove(dynamic_cast<const void*>(cc));
    if (readingTextEdit && static_cast<ZEL_ContentController*>(readingTextEdit.data()) == cc)
        readingTextEdit = nullptr;
}

void WindowController::subWindowActivated(QMdiSubWindow* window)
{
    if (!mainWindow) return;
    if (!window || !window->isVisible()) {
        mainWindow->setTextEdit(nullptr);
        mainWindow->hideEditMenu(true);
        return;
    }
    const long key = normalisedUnit(window->property("unit").toLongLong());
    if (ZEL_TextEdit* textEdit = getTextEditForUnit(key)) {
        mainWindow->setTextEdit(textEdit);
        mainWindow->hideEditMenu(false);
        return;
    }
    if (ZEL_ContentController* cc = shownController(spreadsheets, key)) {
        mainWindow->setNonEditableContentController(cc);
        mainWindow->setPrintable(false);
        mainWindow->hideEditMenu(false);
        return;
    }
    ZEL_ContentController* cc = nullptr;
    for (ZEL_ContentController* found : {shownController(canvases, key), shownController(barCharts, key),
                                         shownController(xyPlots, key), shownController(polarPlots, key),
                                         shownController(pieCharts, key), shownController(contourPlots, key)})
        if (!cc) cc = found;
    mainWindow->setNonEditableContentController(cc);
    mainWindow->setPrintable(true);
    mainWindow->hideEditMenu(true);
}

void WindowController::saveWindowContentsForUnit(long unit, QMap<QString, QVariant> properties)
{
    SyncRelease release(this);
    QString fileName = properties["saveFileName"].toString();
    const long key = normalisedUnit(unit);
    ZEL_ContentController* cc = nullptr;
    for (ZEL_ContentController* found :
         {shownController(contourPlots, key), shownController(xyPlots, key), shownController(barCharts, key),
          shownController(polarPlots, key), shownController(pieCharts, key), shownController(canvases, key)})
        if (!cc) cc = found;
    if (!cc) {
        reportError("Window for unit number " + QString::number(unit) + " does not exist");
        return;
    }
    if (!cc->saveWithoutDialog(fileName)) reportError("Unable to write " + fileName);
}

// Text.

long WindowController::writeTextToUnit(long unit, QString text)
{
    ZEL_TextEdit* textEdit = getTextEditForUnit(unit);
    if (!textEdit) return -1;
    textEdit->writeProgramText(text);
    if (!writtenTextEdits.contains(textEdit)) writtenTextEdits.append(textEdit);
    return 1;
}

void WindowController::endTextOutput()
{
    QList<QPointer<ZEL_TextEdit>> written;
    written.swap(writtenTextEdits);
    for (const QPointer<ZEL_TextEdit>& textEdit : written)
        if (textEdit) textEdit->endOutput();
}

long WindowController::startReadingInput(long unit)
{
    ZEL_TextEdit* textEdit = getTextEditForUnit(unit);
    if (!textEdit) return -1;
    readingTextEdit = textEdit;
    textEdit->startRead();
    bringToFront(textEdit);
    if (mainWindow) mainWindow->startRead();
    return 0;
}

void WindowController::endReadText(const QString& text)
{
    if (mainWindow) mainWindow->endRead();
    readingTextEdit = nullptr;
    emit finishRead(text);
}

// Idle and the two ends.

void WindowController::runIdle()
{
    for (const QPointer<QMenu>& menu : userMenus)
        if (menu) menu->menuAction()->setVisible(true);
    idleEntered = true;
    for (ZEL_Timer* timer : timers)
        timer->finalize();
}

void WindowController::closeOnProgramStop()
{
    stopping = true;
    for (long key : textEdits.keys())
        if (key != -2) closeWindowForUnit(key);
    // The content windows, type by type; each type's keys are taken before its first close.
    const QList<QList<long>> keysByType{spreadsheets.keys(), barCharts.keys(),    xyPlots.keys(),
                                        polarPlots.keys(),   contourPlots.keys(), pieCharts.keys(),
                                        canvases.keys()};
    for (const QList<long>& keys : keysByType)
        for (long key : keys)
            closeWindowForUnit(key);
    if (mainWindow) mainWindow->close();
    // Let the program thread leave before the process ends under it.
    emit endWindowSyncOperation();
    if (programThread) programThread->wait(2000);
    std::fflush(nullptr);
    std::exit(0);
}

void WindowController::destroyFortranThread()
{
    if (stopping || !programThread || programThread->isFinished()) return;
    // The program's next statement ends it, every unit closed; a read in progress ends as well.
    kestro::rt::requestStop();
    raiseStopSignal();
    programThread->wait(100);
    readingTextEdit = nullptr;
    if (!programThread->isFinished()) {
        // Still computing: it stops at its next statement. Its units are written out now, under
        // the I/O lock, so that no record is cut and nothing written is lost.
        kestro::rt::closeAllUnits();
        if (!programThread->wait(2000)) {
            // One that never reaches a statement again ends with the process, which has no
            // window left and nothing unwritten.
            std::fflush(nullptr);
            std::_Exit(0);
        }
    }
    programThread.reset();
}

void WindowController::reportError(const QString& text)
{
    QMessageBox box(QMessageBox::NoIcon, "Error", text, QMessageBox::Ok, mainWindow);
    box.exec();
}

// C functions of window handling.

namespace {
long emitClose(int* unit, long result)
{
    if (!unit || !glue_manager.load(std::memory_order_acquire)) return result;
    const long key = *unit;
    GlueManager::call([key](GlueManager& g) { emit g.closeWindow(key); });
    return result;
}
} // namespace

extern "C" {

long ZEL_closeWindow(int* unit)
{
    return emitClose(unit, 1);
}
long ZEL_closeSpreadsheet(int* unit)
{
    return emitClose(unit, 1);
}
long ZEL_closeBarchart(int* unit)
{
    return emitClose(unit, 1);
}
long ZEL_closeXYPlot(int* unit)
{
    return emitClose(unit, 1);
}
long ZEL_closePolarPlot(int* unit)
{
    return emitClose(unit, 1);
}
long ZEL_closeContourPlot(int* unit)
{
    return emitClose(unit, 1);
}
long ZEL_closePiechart(int* unit)
{
    return emitClose(unit, 1);
}
long ZEL_closeCanvas(int* unit)
{
    return emitClose(unit, 1);
}

long ZEL_moveWindow(int* unit, int* x, int* y)
{
    if (!unit || !x || !y) return 0;
    const long key = *unit;
    const int toX = *x, toY = *y;
    GlueManager::call([=](GlueManager& g) { emit g.moveWindow(key, toX, toY); });
    return 0;
}

long ZEL_activateWindow(int* unit)
{
    if (!unit) return 0;
    const long key = *unit;
    GlueManager::call([key](GlueManager& g) { emit g.activateZELWindow(key); });
    return 0;
}

long ZEL_TileWindows()
{
    GlueManager::call([](GlueManager& g) { emit g.tileZELWindows(); });
    return 1;
}

long ZEL_CascadeWindows()
{
    GlueManager::call([](GlueManager& g) { emit g.cascadeZELWindows(); });
    return 1;
}

} // extern "C"
