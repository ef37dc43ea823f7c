// zel/content/polarplot.cpp: polar plot window of one unit.
#include "zel/content/polarplot.h"

#include "zel/content/conversion.h"
#include "zel/content/polaritems.h"
#include "zel/core/environment.h"
#include "zel/core/gluemanager.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QPen>

#include <qwt_legend.h>
#include <qwt_symbol.h>

#include <algorithm>

PolarPlot::PolarPlot(long unit, QWidget* parent)
    : ZEL_PlotWindow(parent, unit, QString()), grid(new PolarGrid)
{
    setAutoReplot(false);
    for (int axis = 0; axis < QwtPlot::axisCnt; ++axis)
        enableAxis(axis, false);
    grid->attach(this);
    insertLegend(new QwtLegend, QwtPlot::BottomLegend, -1.0);
}

void PolarPlot::setChartSettings(const QMap<QString, QVariant>& properties)
{
    if (properties.contains(QStringLiteral("chartBackgroundColor")))
        grid->setBackground(QBrush(QColor(properties.value(QStringLiteral("chartBackgroundColor")).toUInt()),
                                   Qt::SolidPattern));
    replot();
}

void PolarPlot::setChartData(const QMap<QString, QVariant>& properties, void* data, const QString& dataType,
                             int rows, int columns)
{
    auto* curve = new PolarCurve(properties.value(QStringLiteral("curveLabel")).toString());
    const QColor curveColor(properties.value(QStringLiteral("curveColor")).toUInt());
    const int lineWidth = std::max(0, properties.value(QStringLiteral("curveLineWidth")).toInt());
    curve->setPen(QPen(QBrush(curveColor), lineWidth, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    const QColor dotColor(properties.value(QStringLiteral("dotColor")).toUInt());
    const int dotSize = std::max(0, properties.value(QStringLiteral("dotSize")).toInt());
    int style = properties.value(QStringLiteral("symbolStyle")).toInt();
    if (style < QwtSymbol::NoSymbol || style > QwtSymbol::Hexagon) style = QwtSymbol::NoSymbol;
    curve->setSymbol(new QwtSymbol(static_cast<QwtSymbol::Style>(style), QBrush(dotColor), QPen(dotColor),
                                   QSize(dotSize, dotSize)));

    auto* points = new Data;
    if (data && rows > 0 && columns >= 2) {
        const QStringList values = ZEL_DataConverter::convertDataToStringList(data, dataType, rows, columns);
        const long available = std::min<long>(values.size() / columns, rows);
        for (long r = 0; r < available; ++r) {
            const int at = static_cast<int>(r * columns);
            points->addPoint(QwtPointPolar(values[at].toDouble(), values[at + 1].toDouble()));
        }
    }
    curve->setData(points);
    curve->attach(this);
    curves.append(curve);
    replot();
}

void PolarPlot::clearChartData()
{
    for (PolarCurve* curve : curves) {
        curve->detach();
        delete curve;
    }
    curves.clear();
    replot();
}

// The window controller's side of the polar plot.

void WindowController::createPolarPlotForUnit(long unit, QMap<QString, QVariant> properties)
{
    auto* plot = new PolarPlot(unit);
    plot->windowName = properties.value("windowTitle").toString();
    plot->setChartSettings(properties);
    addPolarPlotForUnit(unit, plot);
    showContentWindow(unit, plot, plot, plot->windowName, true, false, true);
}

void WindowController::writePolarPlot(long unit, void* data, QString dataType, int rows, int columns,
                                      QMap<QString, QVariant> properties)
{
    SyncRelease release(this);
    PolarPlot* plot = reportIfMissing(getPolarPlotForUnit(unit), unit, "Polar Plot");
    if (!plot) return;
    plot->setChartData(properties, data, dataType, rows, columns);
}

void WindowController::clearPolarPlot(long unit)
{
    PolarPlot* plot = reportIfMissing(getPolarPlotForUnit(unit), unit, "Polar Plot");
    if (!plot) return;
    plot->clearChartData();
}

// C functions of the polar plot. Like those of the XY plot, create and clear return 1 with a
// bridge and 0 without; a write returns 1 once the window has read the array; a null unit gives -1.

extern "C" {

long ZEL_createPolarPlot(int* unit, char* title, unsigned* chartBackgroundColor, int titleLength)
{
    if (!unit) return -1;
    *unit = static_cast<int>(currentInternalId++);
    if (!glue_manager.load(std::memory_order_acquire)) return 0;
    QMap<QString, QVariant> properties{{"windowTitle", latin1Text(title, titleLength)}};
    if (chartBackgroundColor) properties["chartBackgroundColor"] = *chartBackgroundColor;
    return GlueManager::createPolarPlotWindow(*unit, properties) ? 1 : 0;
}

long ZEL_writePolarPlot(int* unit, void* data, char* dataType, int* elementSize, int* rows, int* columns,
                        char* curveLabel, unsigned* curveColor, int* curveLineWidth, unsigned* dotColor,
                        int* dotSize, int* symbolStyle, int typeLength, int labelLength)
{
    if (!unit) return -1;
    if (!glue_manager.load(std::memory_order_acquire)) return 1;
    const QMap<QString, QVariant> properties{{"curveLabel", latin1Text(curveLabel, labelLength)},
                                             {"curveColor", curveColor ? *curveColor : 0u},
                                             {"curveLineWidth", curveLineWidth ? *curveLineWidth : 1},
                                             {"dotColor", dotColor ? *dotColor : 0u},
                                             {"dotSize", dotSize ? *dotSize : 0},
                                             {"symbolStyle", symbolStyle ? *symbolStyle : -1}};
    if (GlueManager::writePolarPlotWindow(*unit, data, latin1Text(dataType, typeLength),
                                          elementSize ? *elementSize : 0, rows ? *rows : 0,
                                          columns ? *columns : 0, properties))
        GlueManager::waitFor(GlueManager::Flag::sync, GlueManager::GuiWait::none);
    return 1;
}

long ZEL_clearPolarPlot(int* unit)
{
    if (!unit) return -1;
    if (!glue_manager.load(std::memory_order_acquire)) return 0;
    return GlueManager::clearPolarPlotWindow(*unit) ? 1 : 0;
}

} // extern "C"
