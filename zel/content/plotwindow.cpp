// zel/content/plotwindow.cpp
#include "zel/content/plotwindow.h"

#include <QImage>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>

#include <qwt_plot_renderer.h>

namespace {
// QImage's quality for PNG picks the zlib level: 80 gives level 1.
constexpr int fastPngQuality = 80;
} // namespace

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
    const QSizeF sizeMm(exportWidthMm, exportHeightMm);
    const QString format = fileName.mid(fileName.lastIndexOf('.') + 1);
    if (format == "pdf") {
        renderer.renderDocument(this, fileName, format, sizeMm, exportDpi);
        return true;
    }
    // The renderer's own image page, with the PNG written at zlib's fast level: the default
    // level takes longer than the drawing of a million points, for a file a few percent smaller.
    const double dotsPerMm = exportDpi / 25.4;
    const QRect page = QRectF(0.0, 0.0, sizeMm.width() * dotsPerMm, sizeMm.height() * dotsPerMm).toRect();
    QImage image(page.size(), QImage::Format_ARGB32);
    image.setDotsPerMeterX(qRound(dotsPerMm * 1000.0));
    image.setDotsPerMeterY(qRound(dotsPerMm * 1000.0));
    image.fill(QColor(Qt::white).rgb());
    QPainter painter(&image);
    renderer.render(this, &painter, page);
    painter.end();
    image.save(fileName, format.toLatin1().constData(), format == "png" ? fastPngQuality : -1);
    return true;
}
