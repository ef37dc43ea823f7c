// zel/core/windowcontroller.cpp: the registries of windows by unit, the text slots, idle and the two ends.
#include "zel/core/windowcontroller.h"

#include "runtime/io.h"
#include "zel/content/canvas.h"
#include "zel/content/forms.h"
#include "zel/content/timers.h"
#include "zel/core/environment.h"
#include "zel/core/gluemanager.h"
#include "zel/core/mainwindow.h"
#include "zel/core/preferences.h"
#include "zel/core/textedit.h"
#include "zel/core/zel.h"

#include <QApplication>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
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
    connect(bridge, &GlueManager::createCanvas, this, &WindowController::createCanvasForUnit);
    connect(bridge, &GlueManager::clearCanvas, this, &WindowController::clearCanvasForUnit);
    connect(bridge, &GlueManager::createObjectOnCanvas, this, &WindowController::createObjectOnCanvasUnit);
    connect(bridge, &GlueManager::createDialogWindow, this, &WindowController::createDialog);
    connect(bridge, &GlueManager::showDialogWindow, this, &WindowController::showDialogForUnit);
    connect(bridge, &GlueManager::addLabelToDialog, this, &WindowController::addLabelToDialog);
    connect(bridge, &GlueManager::addComboBoxToDialog, this, &WindowController::addComboBoxToDialog);
    connect(bridge, &GlueManager::addCheckBoxToDialog, this, &WindowController::addCheckBoxToDialog);
    connect(bridge, &GlueManager::addLineEditToDialog, this, &WindowController::addLineEditToDialog);
    connect(bridge, &GlueManager::addFileDialogToDialog, this, &WindowController::addFileDialogToDialog);
    connect(bridge, &GlueManager::addRadioButtonsToDialog, this, &WindowController::addRadioButtonsToDialog);
    connect(bridge, &GlueManager::saveWindowContents, this, &WindowController::saveWindowContentsForUnit);
    connect(bridge, &GlueManager::createBarchart, this, &WindowController::createBarchartForUnit);
    connect(bridge, &GlueManager::writeBarchart, this, &WindowController::writeBarchart);
    connect(bridge, &GlueManager::createPieChart, this, &WindowController::createPieChartForUnit);
    connect(bridge, &GlueManager::writePieChart, this, &WindowController::writePieChart);
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
    connect(bridge, &GlueManager::createPolarPlot, this, &WindowController::createPolarPlotForUnit);
    connect(bridge, &GlueManager::writePolarPlot, this, &WindowController::writePolarPlot);
    connect(bridge, &GlueManager::clearPolarPlot, this, &WindowController::clearPolarPlot);
    connect(bridge, &GlueManager::createContourPlot, this, &WindowController::createContourPlotForUnit);
    connect(bridge, &GlueManager::writeContourPlot, this, &WindowController::writeContourPlot);
    connect(bridge, &GlueManager::clearContourPlot, this, &WindowController::clearContourPlot);

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

void WindowController::addDialogForUnit(long unit, ZEL_FormDialog* dialog)
{
    dialogs.insert(normalisedUnit(unit), dialog);
}

ZEL_FormDialog* WindowController::getDialogForUnit(long unit) const
{
    return dialogs.value(normalisedUnit(unit), nullptr);
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
