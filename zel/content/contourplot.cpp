// zel/content/contourplot.cpp: contour plot window of one unit.
#include "zel/content/contourplot.h"

#include "zel/core/environment.h"
#include "zel/core/gluemanager.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QColor>
#include <QPalette>

#include <qwt_color_map.h>
#include <qwt_interval.h>
#include <qwt_legend.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_layout.h>
#include <qwt_plot_spectrogram.h>
#include <qwt_raster_data.h>
#include <qwt_scale_widget.h>

#include <algorithm>
#include <cmath>
#include <limits>

// The raster of the spectrogram: every sample is a call of the program's function. Qwt calls
// value() from its render threads, so it touches nothing but its arguments' copies.
class SpectrogramData : public QwtRasterData
{
public:
    explicit SpectrogramData(ContourPlot::DataFunction function) : function(function) {}
    double value(double x, double y) const override
    {
        double xCopy = x, yCopy = y;
        return function(&xCopy, &yCopy);
    }

private:
    const ContourPlot::DataFunction function;
};

class ColorMap : public QwtLinearColorMap
{
public:
    ColorMap(const QColor& first, const QColor& last) : QwtLinearColorMap(first, last) {}
};

namespace {

// The colours with a stop at each inner threshold; the first and last thresholds are not used,
// nor is a threshold outside 0 to 1.
ColorMap* makeColorMap(const QVariantList& colors, const QVariantList& thresholds)
{
    auto* map = new ColorMap(QColor(colors.first().toUInt()), QColor(colors.last().toUInt()));
    for (int i = 1; i < colors.size() - 1 && i < thresholds.size(); ++i) {
        const double at = thresholds[i].toDouble();
        if (at >= 0.0 && at <= 1.0) map->addColorStop(at, QColor(colors[i].toUInt()));
    }
    return map;
}

} // namespace

ContourPlot::ContourPlot(long unit, QWidget* parent)
    : ZEL_PlotWindow(parent, unit, QString()), grid(new QwtPlotGrid)
{
    setAutoFillBackground(true);
    setContentsMargins(15, 15, 15, 15);
    setPalette(QPalette(Qt::white));
    setCanvasBackground(QBrush(Qt::white));
    insertLegend(new QwtLegend, QwtPlot::RightLegend, -1.0);
    grid->attach(this);
    setAutoReplot(true);
}

void ContourPlot::setChartSettings(const QMap<QString, QVariant>& properties)
{
    grid->enableY(properties.value(QStringLiteral("showHgridLines")).toInt() != 0);
    grid->enableX(properties.value(QStringLiteral("showVgridLines")).toInt() != 0);
    showImageBlend = properties.value(QStringLiteral("showImageBlend")).toInt() != 0;
    showContourLines = properties.value(QStringLiteral("showContourLines")).toInt() != 0;
}

QString ContourPlot::setChartData(const QMap<QString, QVariant>& properties, void* dataFunction)
{
    if (!dataFunction) return QStringLiteral("has no data function");
    const QVariantList colors = properties.value(QStringLiteral("colorList")).toList();
    if (colors.isEmpty()) return QStringLiteral("needs at least one colour");
    double bounds[6];
    const char* keys[6]{"xmin", "xmax", "ymin", "ymax", "zmin", "zmax"};
    for (int i = 0; i < 6; ++i) {
        bounds[i] = properties.value(QLatin1String(keys[i])).toDouble();
        if (!std::isfinite(bounds[i]))
            return QStringLiteral("has an axis bound \"%1\" that is not a finite number").arg(keys[i]);
    }
    const QVariantList thresholds = properties.value(QStringLiteral("threshList")).toList();

    if (spectrogram) {
        spectrogram->detach();
        delete spectrogram; // and with it the old data and colour map
    }
    spectrogram = new QwtPlotSpectrogram(QString());
    spectrogram->setRenderThreadCount(0);
    spectrogram->setColorMap(makeColorMap(colors, thresholds));
    spectrogram->setCachePolicy(QwtPlotRasterItem::PaintCache);

    data = new SpectrogramData(reinterpret_cast<DataFunction>(dataFunction));
    data->setInterval(Qt::XAxis, QwtInterval(bounds[0], bounds[1]).normalized());
    data->setInterval(Qt::YAxis, QwtInterval(bounds[2], bounds[3]).normalized());
    data->setInterval(Qt::ZAxis, QwtInterval(bounds[4], bounds[5]).normalized());
    spectrogram->setData(data);
    spectrogram->attach(this);

    // m values give m - 1 levels: the last one is not drawn.
    const QVariantList contours = properties.value(QStringLiteral("contourList")).toList();
    QList<double> levels;
    for (int i = 0; i + 1 < contours.size(); ++i) {
        const double level = contours[i].toDouble();
        if (std::isfinite(level)) levels.append(level);
    }
    spectrogram->setContourLevels(levels);
    spectrogram->setDisplayMode(QwtPlotSpectrogram::ContourMode, showContourLines);
    spectrogram->setDisplayMode(QwtPlotSpectrogram::ImageMode, showImageBlend);

    const QwtInterval zInterval = data->interval(Qt::ZAxis);
    QwtScaleWidget* colorBar = axisWidget(QwtPlot::yRight);
    colorBar->setTitle(properties.value(QStringLiteral("rightAxisName")).toString());
    colorBar->setColorBarEnabled(true);
    colorBar->setColorMap(zInterval, makeColorMap(colors, thresholds));
    setAxisScale(QwtPlot::yRight, zInterval.minValue(), zInterval.maxValue());
    enableAxis(QwtPlot::yRight, true);

    plotLayout()->setAlignCanvasToScales(true);
    replot();
    return QString();
}

void ContourPlot::clearChartData()
{
    if (spectrogram) spectrogram->setData(nullptr); // deletes the data
    data = nullptr;
    setAutoReplot(true);
    replot();
}

// The window controller's side of the contour plot.

void WindowController::createContourPlotForUnit(long unit, QMap<QString, QVariant> properties)
{
    auto* plot = new ContourPlot(unit);
    plot->windowName = properties.value("windowTitle").toString();
    plot->setChartSettings(properties);
    addContourPlotForUnit(unit, plot);
    showContentWindow(unit, plot, plot, plot->windowName, true, false, true);
}

void WindowController::writeContourPlot(long unit, QMap<QString, QVariant> properties, void* dataFunction)
{
    SyncRelease release(this);
    ContourPlot* plot = reportIfMissing(getContourPlotForUnit(unit), unit, "Contour Plot");
    if (!plot) return;
    const QString refused = plot->setChartData(properties, dataFunction);
    if (!refused.isEmpty())
        reportError("Contour Plot for unit number " + QString::number(unit) + " " + refused);
}

void WindowController::clearContourPlot(long unit)
{
    ContourPlot* plot = reportIfMissing(getContourPlotForUnit(unit), unit, "Contour Plot");
    if (!plot) return;
    plot->clearChartData();
}

// C functions of the contour plot. Create and clear return 1 with a bridge and 0 without; a write
// returns 1 once the window has been set up or has refused the write; a null unit gives -1.

namespace {
// `count` values of the caller's array; none for a missing array or a count below 1.
template <typename Value> QVariantList listOf(const Value* values, const int* count)
{
    QVariantList list;
    if (!values || !count) return list;
    for (int i = 0; i < *count; ++i)
        list.append(values[i]);
    return list;
}
} // namespace

extern "C" {

long ZEL_createContourPlot(int* unit, int* showHgridLines, int* showVgridLines, int* showImageBlend,
                           int* showContourLines, char* title, int titleLength)
{
    if (!unit) return -1;
    *unit = static_cast<int>(currentInternalId++);
    if (!glue_manager.load(std::memory_order_acquire)) return 0;
    const QMap<QString, QVariant> properties{{"windowTitle", latin1Text(title, titleLength)},
                                             {"showHgridLines", showHgridLines ? *showHgridLines : 0},
                                             {"showVgridLines", showVgridLines ? *showVgridLines : 0},
                                             {"showImageBlend", showImageBlend ? *showImageBlend : 0},
                                             {"showContourLines", showContourLines ? *showContourLines : 0}};
    return GlueManager::createContourPlotWindow(*unit, properties) ? 1 : 0;
}

// A missing bound counts as not a number, which the window refuses.
long ZEL_writeContourPlot(int* unit, char* rightAxisName, double* thresholds, unsigned* colors,
                          int* colorCount, double* contours, int* contourCount, double* xmin, double* xmax,
                          double* ymin, double* ymax, double* zmin, double* zmax,
                          double (*dataFunction)(double* x, double* y), int nameLength)
{
    if (!unit) return -1;
    if (!glue_manager.load(std::memory_order_acquire)) return 1;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    auto bound = [nan](const double* value) { return value ? *value : nan; };
    const QMap<QString, QVariant> properties{{"rightAxisName", latin1Text(rightAxisName, nameLength)},
                                             {"xmin", bound(xmin)},
                                             {"xmax", bound(xmax)},
                                             {"ymin", bound(ymin)},
                                             {"ymax", bound(ymax)},
                                             {"zmin", bound(zmin)},
                                             {"zmax", bound(zmax)},
                                             {"colorList", listOf(colors, colorCount)},
                                             {"threshList", listOf(thresholds, colorCount)},
                                             {"contourList", listOf(contours, contourCount)}};
    if (GlueManager::writeContourPlotWindow(*unit, properties, reinterpret_cast<void*>(dataFunction)))
        GlueManager::waitFor(GlueManager::Flag::sync, GlueManager::GuiWait::none);
    return 1;
}

long ZEL_clearContourPlot(int* unit)
{
    if (!unit) return -1;
    if (!glue_manager.load(std::memory_order_acquire)) return 0;
    return GlueManager::clearContourPlotWindow(*unit) ? 1 : 0;
}

} // extern "C"
