// zel/core/gluemanager.h: the bridge between the program thread and the GUI thread.
//
// The program thread never touches a widget. Each call it makes is queued, in the order made, and
// runs later on the GUI thread as a signal of GlueManager, connected to a slot of
// WindowController. A call that needs an answer sets its wait flag before it is queued and then
// waits on a condition variable until the answer slot has stored the result and cleared the flag.
// Consecutive text writes to one unit travel as one batch, and the batches a drain runs without
// another call between them end with one textWritesEnded().
//
// On the GUI thread (a menu or timer callback) a call runs at once, behind whatever the program
// thread had queued.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <atomic>
#include <functional>
#include <memory>

class WindowController;
class FORTRAN_QThread;
class GlueManager;

// The bridge; null once the environment is ending. Every C-callable function tests it first.
extern std::atomic<GlueManager*> glue_manager;
// The thread that runs the main program; set by that thread before the program starts.
extern std::atomic<FORTRAN_QThread*> fortran_thread;

// A text handed over by a C caller: `length` Latin-1 bytes, or up to the NUL when the length is -1
// (its low 32 bits: hidden lengths arrive as int or long); empty for a null pointer.
QString latin1Text(const char* text, long length);

bool onProgramThread();
bool onGuiThread();

// Calls of one kind travelling together: while a batch is the last call queued, later calls of its
// kind join it instead of queueing one call each. Used where a program makes many small calls.
class GlueBatch
{
public:
    virtual ~GlueBatch() = default;
    // Takes one more call; false when the batch is full. Runs under the bridge's lock: no waiting.
    virtual bool add(const void* call) = 0;
    // Makes the batch's calls, in the order added. GUI thread.
    virtual void run(GlueManager& g) = 0;
};

class GlueManager : public QObject
{
    Q_OBJECT

public:
    explicit GlueManager(WindowController* controller);
    ~GlueManager() override;

    enum class Flag { read, fileName, dialog, alert, sync, query, spreadsheet };
    enum class Wait { answered, bridgeGone, threadFinished };
    // What a caller on the GUI thread does while its flag is set.
    enum class GuiWait { sleepAndProcessEvents, processEvents, none };

    // Calls from any thread. Each returns false, doing nothing, when the bridge has gone.
    static bool writeTextToUnit(long unit, const char* text, long length);
    static bool createWindowForUnit(long unit, const QString& window_name, const QString& access_string);
    static bool readInput(long unit);
    static bool showAlertBox(const QString& title, const QString& text);
    static bool addMenuItem(long unit, const QString& menu, const QString& item, long (*callback)(),
                            const QString& shortcut);
    static bool menuItemEnable(long unit, const QString& menu, const QString& item, bool state);
    static bool setMenuItemCheckable(long unit, const QString& menu, const QString& item, bool state);
    static bool setMenuItemChecked(long unit, const QString& menu, const QString& item, bool state);
    static bool isMenuItemChecked(long unit, const QString& menu, const QString& item);
    static bool processFortranStop();

    // Canvases. Drawing needs no answer; the draw functions batch their calls (see canvas.cpp).
    static bool createCanvasWindow(long unit, const QMap<QString, QVariant>& properties);
    static bool clearCanvasWindow(long unit, const QMap<QString, QVariant>& properties);
    static bool createObjectOnCanvasWindow(long unit, long id, const QMap<QString, QVariant>& properties);

    // Form dialogs. showDialog sets the dialog flag; the answer is takeDialogResult().
    static bool createDialog(long dialog, const QMap<QString, QVariant>& properties);
    static bool callAddLabelToDialog(long dialog, int item, const QString& text);
    static bool callAddComboBoxToDialog(long dialog, int item, const QMap<QString, QVariant>& properties);
    static bool callAddRadioButtonsToDialog(long dialog, int item, const QMap<QString, QVariant>& properties);
    static bool callAddCheckBoxToDialog(long dialog, int item, const QString& text, bool checked);
    static bool callAddLineEditToDialog(long dialog, int item, const QString& label,
                                        const QString& placeholder, const QString& text);
    static bool callAddFileDialogToDialog(long dialog, int item, const QMap<QString, QVariant>& properties);
    static bool showDialog(long dialog);
    // Sets the sync flag; the caller waits for Flag::sync.
    static bool saveWindow(long unit, const QMap<QString, QVariant>& properties);
    static bool createBarchartWindow(long unit, const QMap<QString, QVariant>& properties);
    static bool createPieChartWindow(long unit, const QMap<QString, QVariant>& properties);
    // The window reads the caller's array: these set the sync flag, and the caller waits for it.
    static bool writeBarchartWindow(long unit, void* data, const QString& dataType, int elementSize, int rows,
                                    int columns);
    static bool writePiechartWindow(long unit, void* data, const QString& dataType, int elementSize, int rows,
                                    int columns);
    static bool createXYPlotWindow(long unit, const QMap<QString, QVariant>& properties);
    // Sets the sync flag: the GUI thread reads `data` while the caller waits for Flag::sync.
    static bool writeXYPlotWindow(long unit, void* data, const QString& dataType, int rows, int columns,
                                  const QMap<QString, QVariant>& properties);
    static bool clearXYPlotWindow(long unit);
    // Spreadsheets: a write copies the array and doesn't wait, and is dropped when the element
    // size disagrees with a known type; a read sets Flag::spreadsheet, and the GUI thread fills
    // the caller's array before it clears the flag.
    static bool createSpreadsheetWindow(long unit, const QString& title, int rows, int columns);
    static bool setHorizontalLabels(int unit, const QStringList& labels);
    static bool setVerticalLabels(int unit, const QStringList& labels);
    static bool writeSpreadsheetWindow(long unit, const void* data, const QString& dataType, int elementSize,
                                       int rows, int columns);
    static bool readSpreadsheetWindow(long unit, void* data, const QString& dataType, int rows, int columns);
    // Timers: the callback runs on the GUI thread.
    static bool createTimer(long id, const QMap<QString, QVariant>& properties, void* callback);
    static bool destroyTimerWindow(long id);
    // Polar and contour plots. A write sets the sync flag; the caller waits for Flag::sync.
    static bool createPolarPlotWindow(long unit, const QMap<QString, QVariant>& properties);
    static bool writePolarPlotWindow(long unit, void* data, const QString& dataType, int elementSize,
                                     int rows, int columns, const QMap<QString, QVariant>& properties);
    static bool clearPolarPlotWindow(long unit);
    static bool createContourPlotWindow(long unit, const QMap<QString, QVariant>& properties);
    static bool writeContourPlotWindow(long unit, const QMap<QString, QVariant>& properties,
                                       void* dataFunction);
    static bool clearContourPlotWindow(long unit);
    // Sets `flag` (when given) and queues `emitter`, which emits one signal on the GUI thread.
    static bool call(const std::function<void(GlueManager&)>& emitter);
    static bool callWaiting(Flag flag, const std::function<void(GlueManager&)>& emitter);
    // Adds `call` to the last queued batch of `kind` if nothing was queued behind it, else queues
    // a new batch from `make`. On the GUI thread the batch runs at once.
    static bool callBatched(const void* kind, std::unique_ptr<GlueBatch> (*make)(), const void* call);

    // Waits until the answer for `flag` has come, the bridge has gone or the thread has finished.
    static Wait waitFor(Flag flag, GuiWait onGui);
    // The same wait as the C functions report it: 1 answered, 0 the bridge has gone, -2 the
    // program thread is ending.
    static long waitCode(Flag flag, GuiWait onGui);

    // Results, valid after the flag has cleared.
    static QString takeReadText();
    static bool readWasCancelled();
    static QString takeFileNameResult();
    static QStringList takeDialogResult();
    static bool readIsPendingFor(long unit);

    // GUI thread: ends a waiting text read with "cancelled".
    void cancelRead();

    // Runs everything queued so far; used where the GUI thread must see the program's calls now.
    void drainAll();

    // Ends the bridge: wakes every waiter with "gone" and deletes the GlueManager. GUI thread.
    static void shutDown();

signals:
    void writeText(long unit, QString text);
    // The text written since the last of these is all there: the windows may show it.
    void textWritesEnded();
    void createWindow(long unit, QString window_name, QString access_string);
    void closeWindow(long unit);
    void moveWindow(long unit, int x, int y);
    void activateZELWindow(long unit);
    void tileZELWindows();
    void cascadeZELWindows();
    void startRead(long unit);
    void fortranRunIdle();
    void closeOnFortranStop();
    void alertBox(QString title, QString text);
    void getFileNameFromWindow(long unit, bool newFile);
    void addMenu(long unit, QString menu_name, QString item_name, void* callback, QString item_shortcut);
    void enableItem(long unit, QString menu_name, QString item_name, bool state);
    void checkmarkItem(long unit, QString menu_name, QString item_name, bool state);
    void checkItem(long unit, QString menu_name, QString item_name, bool state);
    void createCanvas(long unit, QMap<QString, QVariant> properties);
    void clearCanvas(long unit, QMap<QString, QVariant> properties);
    void createObjectOnCanvas(long unit, long canvasUnitId, QMap<QString, QVariant> properties);
    void createDialogWindow(long unit, QMap<QString, QVariant> properties);
    void showDialogWindow(long unit);
    void addLabelToDialog(long unit, int labelId, QString text);
    void addComboBoxToDialog(long unit, int labelId, QMap<QString, QVariant> properties);
    void addCheckBoxToDialog(long unit, int labelId, QString title, bool checked);
    void addLineEditToDialog(long unit, int labelId, QString title, QString placeholder, QString text);
    void addFileDialogToDialog(long unit, int labelId, QMap<QString, QVariant> properties);
    void addRadioButtonsToDialog(long unit, int labelId, QMap<QString, QVariant> properties);
    void saveWindowContents(long unit, QMap<QString, QVariant> properties);
    void createBarchart(long unit, QMap<QString, QVariant> properties);
    void writeBarchart(long unit, void* data, QString datatype, int nrows, int ncols);
    void createPieChart(long unit, QMap<QString, QVariant> properties);
    void writePieChart(long unit, void* data, QString datatype, int nrows, int ncols);
    void createXYPlot(long unit, QMap<QString, QVariant> properties);
    void writeXYPlot(long unit, void* data, QString dataType, int rows, int columns,
                     QMap<QString, QVariant> properties);
    void clearXYPlot(long unit);
    void createSpreadsheet(long unit, QString title, int rows, int columns);
    void writeSpreadsheet(long unit, void* data, QString dataType, int rows, int columns);
    void readSpreadsheet(long unit, void* data, QString dataType, int rows, int columns);
    void setHorizontalHeaderLabels(int unit, QStringList labels);
    void setVerticalHeaderLabels(int unit, QStringList labels);
    void createTimerWindow(long id, QMap<QString, QVariant> properties, void* callback);
    void destroyTimerWithId(long id);
    void createPolarPlot(long unit, QMap<QString, QVariant> properties);
    void writePolarPlot(long unit, void* data, QString dataType, int rows, int columns,
                        QMap<QString, QVariant> properties);
    void clearPolarPlot(long unit);
    void createContourPlot(long unit, QMap<QString, QVariant> properties);
    void writeContourPlot(long unit, QMap<QString, QVariant> properties, void* dataFunction);
    void clearContourPlot(long unit);

public slots:
    void finishRead(QString text);
    void gotFileName(QString text);
    void endModalDialog(QStringList data);
    void endAlertDialog();
    void endWindowSyncOperation();
    void finishReadSpreadsheet(void* data);

protected:
    bool event(QEvent* event) override;

private:
    void drain(bool withBudget);
    void endTextWrites();

    WindowController* controller;
    bool textWritten = false; // writeText emitted, textWritesEnded not yet
};
