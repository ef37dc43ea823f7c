// zel/core/windowlayout.cpp: where the windows of units go, separate top-level windows or one
// multiple-document window, and the calls that create, move, raise and close them.
#include "zel/core/windowcontroller.h"

#include "zel/content/contentcontroller.h"
#include "zel/core/gluemanager.h"
#include "zel/core/mainwindow.h"
#include "zel/core/preferences.h"
#include "zel/core/subwindow.h"
#include "zel/core/textedit.h"
#include "zel/core/zel.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollArea>
#include <QVariant>

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
