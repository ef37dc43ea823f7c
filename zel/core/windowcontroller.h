// zel/core/windowcontroller.h: the GUI thread's owner of every window the program opens.
//
// Receives the bridge's calls as slots, keeps one registry per window type keyed by unit, and
// hides the choice between separate top-level windows and one multiple-document window.
#pragma once

#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

class QApplication;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QAction;
class QWidget;
class FORTRAN_QThread;
class MainWindow;
class SubWindow;
class ZEL_TextEdit;
class ZEL_ContentController;
class ZEL_Spreadsheet;
class XYPlot;
class Canvas;
class BarChart;
class PieChart;
class PolarPlot;
class ContourPlot;
class ZEL_Timer;
class ZEL_FormDialog;

class WindowController : public QObject
{
    Q_OBJECT

public:
    // Makes the default output window and the bridge, then starts `mainProgram` on its thread.
    WindowController(QApplication* application, void (*mainProgram)());
    ~WindowController() override;

    void addTextEditForUnit(long unit, ZEL_TextEdit* textEdit);
    ZEL_TextEdit* getTextEditForUnit(long unit) const;
    void addSpreadsheetForUnit(long unit, ZEL_Spreadsheet* spreadsheet);
    ZEL_Spreadsheet* getSpreadsheetForUnit(long unit) const;
    void addXYPlotForUnit(long unit, XYPlot* plot);
    XYPlot* getXYPlotForUnit(long unit) const;
    void addCanvasForUnit(long unit, Canvas* canvas);
    Canvas* getCanvasForUnit(long unit) const;
    void addBarchartForUnit(long unit, BarChart* chart);
    BarChart* getBarchartForUnit(long unit) const;
    void addPieChartForUnit(long unit, PieChart* chart);
    PieChart* getPieChartForUnit(long unit) const;
    void addPolarPlotForUnit(long unit, PolarPlot* plot);
    PolarPlot* getPolarPlotForUnit(long unit) const;
    void addContourPlotForUnit(long unit, ContourPlot* plot);
    ContourPlot* getContourPlotForUnit(long unit) const;
    // The window of a unit, whatever its type: text first, then the content types in the order
    // spreadsheet, bar chart, XY plot, polar plot, contour plot, pie chart, canvas. Null if none.
    QWidget* getWidgetForUnit(long unit) const;
    void addDialogForUnit(long unit, ZEL_FormDialog* dialog);
    ZEL_FormDialog* getDialogForUnit(long unit) const;
    // The controller of a shown content window of the unit (text windows included), or null.
    ZEL_ContentController* getControllerForUnit(long unit) const;

    // Shows a content window that its type's registry already holds: a sub-window of the
    // multiple-document layout, or a window of its own, at 0.75 of the main window's width and
    // height, with `cc` as the menus' controller. Without `asCentralWidget` the widget sits in a
    // scroll area that takes its place.
    void showContentWindow(long unit, QWidget* widget, ZEL_ContentController* cc, const QString& title,
                           bool printable, bool hideEditMenu, bool asCentralWidget);

    // Releases the waiting program thread when it goes out of scope: a slot that answers a waiting
    // call makes one first, so that no path of it, error reports included, leaves the caller held.
    class SyncRelease
    {
    public:
        explicit SyncRelease(WindowController* controller) : controller(controller) {}
        ~SyncRelease();
        SyncRelease(const SyncRelease&) = delete;
        SyncRelease& operator=(const SyncRelease&) = delete;

    private:
        WindowController* controller;
    };

    // The first main window, or the one that took its place; null when none is left.
    MainWindow* getMainWindow() const;
    FORTRAN_QThread* getProgramThread() const { return programThread.get(); }
    bool isMdiMode() const { return mdiMode; }

    bool isMenuItemChecked(long unit, const QString& menu_name, const QString& item_name) const;
    QList<QPointer<QMenu>> getUserMenus() const { return userMenus; }

signals:
    void finishRead(QString text);
    void finishReadSpreadsheet(void* data);
    void gotFileName(QString text);
    void endModalDialog(QStringList data);
    void endAlertDialog();
    void endWindowSyncOperation();
    void kill();

public slots:
    long writeTextToUnit(long unit, QString text);
    // Closes the output edit of every text window written since the last call.
    void endTextOutput();
    void createWindowForUnit(long unit, QString window_name, QString access_string);
    void closeWindowForUnit(long unit);
    void hideWindowForUnit(long unit);
    void moveWindowForUnit(long unit, int x, int y);
    void activateWindowForUnit(long unit);
    void tileWindows();
    void cascadeWindows();
    long startReadingInput(long unit);
    void endReadText(const QString& text);
    void runIdle();
    void closeOnProgramStop();
    void destroyFortranThread();
    void subWindowActivated(QMdiSubWindow* window);
    void willDestroy(ZEL_ContentController* cc);
    void saveWindowContentsForUnit(long unit, QMap<QString, QVariant> properties);

    // Bar and pie charts; a write always releases the waiting program, after a report if the unit
    // has no chart of the type.
    void createBarchartForUnit(long unit, QMap<QString, QVariant> properties);
    void writeBarchart(long unit, void* data, QString datatype, int nrows, int ncols);
    void createPieChartForUnit(long unit, QMap<QString, QVariant> properties);
    void writePieChart(long unit, void* data, QString datatype, int nrows, int ncols);

    // XY plots.
    void createXYPlotForUnit(long unit, QMap<QString, QVariant> properties);
    void writeXYPlot(long unit, void* data, QString dataType, int rows, int columns,
                     QMap<QString, QVariant> properties);
    void clearXYPlot(long unit);
    // Spreadsheets (zel/content/spreadsheet.cpp). A write or read on a unit without a spreadsheet
    // shows an "Error" box; a read always ends with finishReadSpreadsheet.
    void createSpreadsheet(long unit, QString title, int rows, int columns);
    void writeSpreadsheet(long unit, void* data, QString dataType, int rows, int columns);
    void readSpreadsheet(long unit, void* data, QString dataType, int rows, int columns);
    void setHorizontalLabels(int unit, QStringList labels);
    void setVerticalLabels(int unit, QStringList labels);

    // Timers (zel/content/timers.cpp). A timer starts once the program has gone idle.
    void createTimer(long id, QMap<QString, QVariant> properties, void* callback);
    void destroyTimer(ZEL_Timer* timer);
    void destroyTimerWithId(long id);

    void createPolarPlotForUnit(long unit, QMap<QString, QVariant> properties);
    void writePolarPlot(long unit, void* data, QString dataType, int rows, int columns,
                        QMap<QString, QVariant> properties);
    void clearPolarPlot(long unit);
    void createContourPlotForUnit(long unit, QMap<QString, QVariant> properties);
    void writeContourPlot(long unit, QMap<QString, QVariant> properties, void* dataFunction);
    void clearContourPlot(long unit);

    void addMenuItem(long unit, QString menu_name, QString item_name, void* callback, QString item_shortcut);
    void addMenuItem(QString menu_name, QString item_name, void* callback, QString item_shortcut);
    void enableMenuItem(long unit, QString menu_name, QString item_name, bool state);
    void setMenuItemCheckable(long unit, QString menu_name, QString item_name, bool state);
    void setMenuItemChecked(long unit, QString menu_name, QString item_name, bool state);
    void menuItemActivated(QAction* action);
    void showAlertBox(QString title, QString text);
    void getFileName(long unit, bool newFile);

    // Canvases: sized from "width", "height", "maxWindowWidth" and "maxWindowHeight". Drawing on
    // or clearing a unit that has no canvas does nothing.
    void createCanvasForUnit(long unit, QMap<QString, QVariant> properties);
    void clearCanvasForUnit(long unit, QMap<QString, QVariant> properties);
    void createObjectOnCanvasUnit(long unit, long id, QMap<QString, QVariant> properties);

    // Form dialogs. An item for a dialog that does not exist is dropped; showing one answers Cancel.
    void createDialog(long unit, QMap<QString, QVariant> properties);
    void addLabelToDialog(long unit, int labelId, QString text);
    void addComboBoxToDialog(long unit, int labelId, QMap<QString, QVariant> properties);
    void addRadioButtonsToDialog(long unit, int labelId, QMap<QString, QVariant> properties);
    void addCheckBoxToDialog(long unit, int labelId, QString title, bool checked);
    void addLineEditToDialog(long unit, int labelId, QString title, QString placeholder, QString text);
    void addFileDialogToDialog(long unit, int labelId, QMap<QString, QVariant> properties);
    void showDialogForUnit(long unit);

private:
    void bringToFront(QWidget* widget);
    SubWindow* createMDIWindow(const QString& title, int height, int width);
    MainWindow* createMainWindow(const QString& title, int height, int width);
    QAction* getUserAction(long unit, const QString& menu_name, const QString& item_name) const;
    // A modal box titled "Error" with `text` and an Ok button, over the main window.
    void reportError(const QString& text);
    void removeFromRegistries(long unit);
    template <typename Window>
    ZEL_ContentController* shownController(const QHash<long, Window*>& registry, long key) const;
    // `window`, the unit's window of a type; when it is null, an "Error" box first that says
    // "<kind> for unit number <unit> does not exist".
    template <typename Window> Window* reportIfMissing(Window* window, long unit, const char* kind);

    // A content window as shown: its widget and controller, keyed by the address of the whole
    // object, which is also what its type's registry holds.
    struct ShownContent
    {
        QWidget* widget;
        ZEL_ContentController* controller;
    };
    QHash<const void*, ShownContent> shownContent;

    QHash<long, ZEL_TextEdit*> textEdits;
    QHash<long, ZEL_Spreadsheet*> spreadsheets;
    QHash<long, XYPlot*> xyPlots;
    QHash<long, Canvas*> canvases;
    QHash<long, BarChart*> barCharts;
    QHash<long, PieChart*> pieCharts;
    QHash<long, PolarPlot*> polarPlots;
    QHash<long, ContourPlot*> contourPlots;
    QHash<long, ZEL_Timer*> timers;
    QHash<long, ZEL_FormDialog*> dialogs;
    QList<QPointer<ZEL_TextEdit>> writtenTextEdits; // output edit open
    std::unique_ptr<FORTRAN_QThread> programThread;
    QMdiArea* mdiArea = nullptr;
    bool mdiMode = false;
    QPointer<ZEL_TextEdit> readingTextEdit;
    QList<QPointer<QMenu>> userMenus;
    QPointer<MainWindow> mainWindow;
    QMap<QString, long (*)()> menuCallbacks;
    bool inMenuCallback = false;
    bool idleEntered = false;
    bool stopping = false;
};

// The registries hold the window types by their own pointers, which need not be complete here; a
// window's pointer converted to `const void*` is the address of the whole object, the key under
// which showContentWindow has kept its widget and controller.
template <typename Window>
inline ZEL_ContentController* WindowController::shownController(const QHash<long, Window*>& registry,
                                                                long key) const
{
    const Window* window = registry.value(key, nullptr);
    if (!window) return nullptr;
    const auto shown = shownContent.constFind(static_cast<const void*>(window));
    return shown == shownContent.constEnd() ? nullptr : shown->controller;
}

template <typename Window>
inline Window* WindowController::reportIfMissing(Window* window, long unit, const char* kind)
{
    if (!window)
        reportError(QString::fromLatin1(kind) + " for unit number " + QString::number(unit) +
                    " does not exist");
    return window;
}
