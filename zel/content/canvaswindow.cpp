// zel/content/canvaswindow.cpp: how the window controller makes a canvas window, sizes it in
// either layout, and hands it the program's drawing.
#include "zel/content/canvas.h"
#include "zel/core/mainwindow.h"
#include "zel/core/preferences.h"
#include "zel/core/subwindow.h"
#include "zel/core/windowcontroller.h"

#include <QMdiArea>
#include <QScrollArea>
#include <QStyle>

namespace {
// The limit that stands for a maximum the program left open (-1) while giving the other.
int maximumOr(int maximum, int open)
{
    return maximum < 0 ? open : maximum;
}
} // namespace

void WindowController::createCanvasForUnit(long unit, QMap<QString, QVariant> properties)
{
    const QSize main =
        mainWindow ? mainWindow->size() : QSize(_ZEL_getMainWindowWidth(), _ZEL_getMainWindowHeight());
    const int maxWidth = properties.value(QStringLiteral("maxWindowWidth"), -1).toInt();
    const int maxHeight = properties.value(QStringLiteral("maxWindowHeight"), -1).toInt();
    const QString title = properties.value(QStringLiteral("windowTitle")).toString();
    auto* canvas = new Canvas(unit, title, mainWindow);

    // A missing side is 0.75 of the main window's. With no side given the window takes that
    // size on both and the canvas fills it.
    const bool hasWidth = properties.contains(QStringLiteral("width"));
    const bool hasHeight = properties.contains(QStringLiteral("height"));
    const bool sized = hasWidth || hasHeight;
    if (hasWidth && !hasHeight)
        properties.insert(QStringLiteral("height"), static_cast<int>(0.75 * main.height()));
    if (hasHeight && !hasWidth)
        properties.insert(QStringLiteral("width"), static_cast<int>(0.75 * main.width()));
    canvas->setChartSettings(properties);
    addCanvasForUnit(unit, canvas);
    shownContent.insert(dynamic_cast<const void*>(canvas), ShownContent{canvas, canvas});
    const int width = sized ? canvas->width() : static_cast<int>(0.75 * main.width());
    const int height = sized ? canvas->height() : static_cast<int>(0.75 * main.height());
    const bool noMaximum = maxWidth < 0 && maxHeight < 0;

    auto* scroll = new QScrollArea;
    scroll->setGeometry(0, 0, static_cast<int>(0.75 * main.width()), static_cast<int>(0.75 * main.height()));
    scroll->setWidgetResizable(!sized);
    scroll->setWidget(canvas);

    if (mdiMode) {
        SubWindow* sub = createMDIWindow(title, height, width + 2);
        sub->setProperty("unit", QVariant::fromValue(unit));
        if (sized) {
            sub->setWidget(scroll);
        } else {
            scroll->takeWidget();
            delete scroll;
            sub->setWidget(canvas);
        }
        const int titleBar = sub->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, sub);
        const int frame = sub->style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, sub);
        const QSize border(2 * frame + 2, titleBar - 4 + 2 * frame + 2);
        sub->setGeometry(QRect(QPoint(0, 0), QSize(width, height) + border));
        if (!noMaximum)
            sub->setMaximumSize(border + QSize(maximumOr(maxWidth, 1024), maximumOr(maxHeight, 768)));
        sub->controller = canvas;
        mainWindow->setNonEditableContentController(canvas);
        mainWindow->setPrintable(true);
        mainWindow->hideEditMenu(true);
        return;
    }

    MainWindow* window = createMainWindow(title, 0, 0);
    window->setNonEditableContentController(canvas);
    window->setPrintable(true);
    window->setCentralWidget(scroll);
    window->show();
    const QSize frameExtra = window->frameGeometry().size() - window->size();
    if (noMaximum) {
        window->resize(QSize(width, height) - frameExtra);
    } else {
        const QSize maximum(maximumOr(maxWidth, 1024), maximumOr(maxHeight, 768));
        window->setMaximumSize(maximum);
        window->resize(maximum - frameExtra);
    }
    window->hideEditMenu(true);
    bringToFront(canvas);
}

void WindowController::clearCanvasForUnit(long unit, QMap<QString, QVariant> properties)
{
    if (Canvas* canvas = getCanvasForUnit(unit)) canvas->clear(properties);
}

void WindowController::createObjectOnCanvasUnit(long unit, long id, QMap<QString, QVariant> properties)
{
    if (Canvas* canvas = getCanvasForUnit(unit)) canvas->createObject(id, properties);
}
