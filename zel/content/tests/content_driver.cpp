// zel/content/tests/content_driver.cpp: a small program that opens a spreadsheet and an XY plot
// with data and ends, in a process of its own. Its user answers each Save As dialog of the closing
// windows: "sheet" for the spreadsheet, "plot.png" for the plot; each title answered is printed on the error
// stream.
#include "zel/core/environment.h"
#include "zel/core/zel.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>

#include <cstdio>

namespace {

void program()
{
    int sheet = 10, rows = 2, columns = 2, size = 4;
    char title[] = "Samples", type[] = "REAL*4";
    ZEL_createSpreadsheet(&sheet, title, &rows, &columns, -1);
    float data[4] = {1.5f, -2.0f, 1e6f, 0.1f}, back[4];
    ZEL_writeSpreadsheet(&sheet, data, type, &size, &rows, &columns, -1);
    ZEL_readSpreadsheet(&sheet, back, type, &rows, &columns, -1);

    // The plot's scales and style are left to their defaults.
    int plot = 0, points = 3, pair = 2, eight = 8;
    double xy[6] = {1, 2, 3, 5, 8, 9};
    char plotTitle[] = "Wells", x[] = "Depth", y[] = "Dip", real8[] = "REAL*8", label[] = "well 1";
    ZEL_createXYPlot(&plot, plotTitle, x, y, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                     nullptr, nullptr, nullptr, nullptr, -1, -1, -1);
    ZEL_writeXYPlot(&plot, xy, real8, &eight, &points, &pair, nullptr, label, nullptr, nullptr, nullptr,
                    nullptr, nullptr, -1, -1);
}

void startUser()
{
    auto* timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, [] {
        if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
            std::fprintf(stderr, "answered: %s\n", dialog->windowTitle().toLatin1().constData());
            const QString name = dialog->windowTitle().contains("Samples") ? "sheet" : "plot.png";
            dialog->selectFile(name);
            // The dialog's folder model fills in later and may put the preselected name back:
            // the name edit itself is what accept() reads.
            if (auto* edit = dialog->findChild<QLineEdit*>("fileNameEdit")) edit->setText(name);
            QMetaObject::invokeMethod(dialog, "accept");
        }
    });
    timer->start(10);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(startUser)

int main(int argc, char** argv)
{
    ZEL_setMainProgram(program);
    TarnixWindowEnvironment(argc, argv);
    return 0;
}
