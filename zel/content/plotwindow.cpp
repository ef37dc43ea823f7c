// zel/content/plotwindow.cpp
#include "zel/content/plotwindow.h"

#include <QPrintDialog>
#include <QPrinter>

#include <qwt_plot_renderer.h>

ZEL_PlotWindow::ZEL_PlotWindow(QWidget* parent, long unit, const QString& name)
    : QwtPlot(parent), ZEL_ContentController(unit, name, QString())
{
}

bool ZEL_PlotWindow::willClose()
{
    return contentWillClose(this);
}

void ZEL_PlotWindow::save(QString fileName)
{
    if (fileName.isEmpty()) fileName = windowName;
    exportChart(imageFileName(fileName, ImageSuffixes::plot));
}

bool ZEL_PlotWindow::saveAs()
{
    const QString file =
        askSaveFileName(this, windowName, "Image File (*.png *.bmp *.pdf)", windowName, "png");
    if (file.isEmpty()) return false;
    return exportChart(imageFileName(file, ImageSuffixes::plot));
}

void ZEL_PlotWindow::print(QPrinter& printer)
{
    printer.setColorMode(QPrinter::Color);
    printer.setOutputFormat(QPrinter::NativeFormat);
    QPrintDialog dialog(&printer, this);
    dialog.setWindowTitle(tr("Print Document"));
    if (dialog.exec() != QDialog::Accepted) return;
    QwtPlotRenderer renderer;
    renderer.renderTo(this, printer);
}

bool ZEL_PlotWindow::saveWithoutDialog(QString& fileName)
{
    fileName = imageFileName(fileName, ImageSuffixes::plot);
    return exportChart(fileName);
}

bool ZEL_PlotWindow::exportChart(QString fileName)
{
    if (!mayWriteFile(fileName)) return false;
    QwtPlotRenderer renderer;
    const QString format = fileName.mid(fileName.lastIndexOf('.') + 1);
    renderer.renderDocument(this, fileName, format, QSizeF(exportWidthMm, exportHeightMm), exportDpi);
    return true;
}
