// zel/content/barchart.cpp
#include "zel/content/barchart.h"

#include "zel/content/conversion.h"
#include "zel/core/environment.h"
#include "zel/core/gluemanager.h"
#include "zel/core/mainwindow.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QPalette>
#include <QVector>

#include <qwt_column_symbol.h>
#include <qwt_legend.h>
#include <qwt_plot_layout.h>
#include <qwt_plot_multi_barchart.h>
#include <qwt_scale_draw.h>
#include <qwt_text.h>

#include <cmath>

namespace {
// The chart item, with its symbols open to reading.
class BarChartItem final : public QwtPlotMultiBarChart
{
public:
    using QwtPlotMultiBarChart::QwtPlotMultiBarChart;
    using QwtPlotMultiBarChart::symbol;
};
} // namespace

BarChart::BarChart(QWidget* parent, long unit, const QString& name)
    : ZEL_PlotWindow(parent, unit, name), chart(new BarChartItem(QStringLiteral("Bar Chart ")))
{
    setAutoFillBackground(true);
    setContentsMargins(15, 15, 15, 15);
    setPalette(QPalette(Qt::white));
    chart->setLayoutPolicy(QwtPlotMultiBarChart::AutoAdjustSamples);
    chart->setSpacing(20);
    chart->setMargin(3);
    chart->attach(this);
    insertLegend(new QwtLegend(), QwtPlot::RightLegend, -1.0);
}

const QStringList& BarChart::defaultColourNames()
{
    // Qt's colour names ignore blanks, so the names stand as they are written here.
    static const QStringList names{"crimson", "steel blue", "lime green", "dark orange", "medium orchid"};
    return names;
}

void BarChart::setChartSettings(const QString& title, const QString& xAxisName, const QString& yAxisName,
                                const QColor& background)
{
    canvas()->setPalette(QPalette(background));
    setTitle(title);
    setAxisTitle(QwtPlot::xBottom, xAxisName);
    setAxisTitle(QwtPlot::yLeft, yAxisName);
}

void BarChart::setBarSettings(const QStringList& names, const QList<QColor>& colours)
{
    QList<QwtText> titles;
    titles.reserve(names.size());
    for (const QString& name : names)
        titles.append(QwtText(name));
    if (titles.isEmpty()) noNames = true;
    chart->setBarTitles(titles);
    chart->setLegendIconSize(QSize(10, 14));

    if (colours.isEmpty()) noColours = true;
    for (int i = 0; i < colours.size(); ++i)
        setBarColour(i, colours.at(i));
}

const QwtColumnSymbol* BarChart::barSymbol(int bar) const
{
    return static_cast<BarChartItem*>(chart)->symbol(bar);
}

void BarChart::setBarColour(int bar, const QColor& colour)
{
    // A column symbol draws nothing in its default style: it has to be a box.
    auto* symbol = new QwtColumnSymbol(QwtColumnSymbol::Box);
    symbol->setLineWidth(2);
    symbol->setFrameStyle(QwtColumnSymbol::Raised);
    symbol->setPalette(QPalette(colour));
    chart->setSymbol(bar, symbol);
}

void BarChart::setBarData(void* data, const QString& dataType, int rows, int columns)
{
    if (noColours) {
        // The table covers as many bars as there are rows, up to its size; bars beyond it are
        // drawn with the chart's own plain box.
        const QStringList& table = defaultColourNames();
        for (int i = 0; i < rows && i < table.size(); ++i) {
            QColor colour;
            colour.setNamedColor(table.at(i));
            setBarColour(i, colour);
        }
    }

    const QStringList strings = ZEL_DataConverter::convertDataToStringList(data, dataType, rows, columns);
    QVector<QVector<double>> samples;
    if (rows > 0 && columns > 0 && strings.size() / columns >= rows) {
        samples.reserve(rows);
        for (int r = 0; r < rows; ++r) {
            QVector<double> group(columns);
            for (int c = 0; c < columns; ++c) {
                const double value = strings.at(r * columns + c).toDouble();
                group[c] = std::isfinite(value) ? value : 0.0;
            }
            samples.append(group);
        }
    }
    chart->setSamples(samples);
    setOrientation(0);
    setAutoReplot(true);
}

void BarChart::setOrientation(int orientation)
{
    const bool vertical = orientation == 0;
    chart->setOrientation(vertical ? Qt::Vertical : Qt::Horizontal);
    const int categoryAxis = vertical ? QwtPlot::xBottom : QwtPlot::yLeft;
    const int valueAxis = vertical ? QwtPlot::yLeft : QwtPlot::xBottom;

    // No data still gives an axis that runs upwards.
    const double last = std::max<double>(0.0, static_cast<double>(chart->dataSize()) - 1.0);
    setAxisScale(categoryAxis, 0.0, last, 1.0);
    setAxisAutoScale(valueAxis);

    QwtScaleDraw* categoryDraw = axisScaleDraw(categoryAxis);
    categoryDraw->enableComponent(QwtScaleDraw::Backbone, false);
    categoryDraw->enableComponent(QwtScaleDraw::Ticks, false);
    QwtScaleDraw* valueDraw = axisScaleDraw(valueAxis);
    valueDraw->enableComponent(QwtScaleDraw::Backbone, true);
    valueDraw->enableComponent(QwtScaleDraw::Ticks, true);

    plotLayout()->setAlignCanvasToScale(categoryAxis, true);
    plotLayout()->setAlignCanvasToScale(valueAxis, false);
    for (int axis = 0; axis < QwtPlot::axisCnt; ++axis)
        plotLayout()->setCanvasMargin(0, axis);
    updateCanvasMargins();
    replot();
}

void BarChart::setMode(int mode)
{
    chart->setStyle(mode == 0 ? QwtPlotMultiBarChart::Grouped : QwtPlotMultiBarChart::Stacked);
}

// The controller's side of the bar chart.

void WindowController::createBarchartForUnit(long unit, QMap<QString, QVariant> properties)
{
    const QString title = properties.value("windowTitle").toString();
    auto* chart = new BarChart(mainWindow, unit, title);
    chart->setChartSettings(title, properties.value("xAxisName").toString(),
                            properties.value("yAxisName").toString(),
                            QColor(QRgb(properties.value("chartBackgroundColor", 0xffffffu).toUInt())));
    QList<QColor> colours;
    for (const QVariant& colour : properties.value("legendColors").toList())
        colours.append(QColor(QRgb(colour.toUInt())));
    chart->setBarSettings(properties.value("legendNames").toStringList(), colours);
    addBarchartForUnit(unit, chart);
    showContentWindow(unit, chart, chart, title, true, false, true);
}

void WindowController::writeBarchart(long unit, void* data, QString datatype, int nrows, int ncols)
{
    SyncRelease release(this);
    BarChart* chart = reportIfMissing(getBarchartForUnit(unit), unit, "Bar Chart");
    if (!chart) return;
    chart->setBarData(data, datatype, nrows, ncols);
}

// C functions of the bar chart. Create: 1 with the unit assigned, 0 without a bridge (the unit
// assigned all the same). Write: 1 once the chart has read the array, or at once without a bridge.
// A null unit pointer gives -1 and does nothing; other null pointers read as nothing given.

extern "C" {

long ZEL_createBarchart(int* unit, char* title, char* xAxisName, char* yAxisName,
                        unsigned* chartBackgroundColor, char* legendNames, int* nameCount, int* nameLengths,
                        unsigned* legendColors, int* colorCount, int titleLength, int xAxisNameLength,
                        int yAxisNameLength)
{
    if (!unit) return -1;
    *unit = static_cast<int>(currentInternalId++);
    if (!glue_manager.load(std::memory_order_acquire)) return 0;
    QVariantList colours;
    const int colourTotal = legendColors && colorCount ? *colorCount : 0;
    for (int i = 0; i < colourTotal; ++i)
        colours.append(legendColors[i]);
    const QMap<QString, QVariant> properties{
        {"windowTitle", latin1Text(title, titleLength)},
        {"xAxisName", latin1Text(xAxisName, xAxisNameLength)},
        {"yAxisName", latin1Text(yAxisName, yAxisNameLength)},
        {"chartBackgroundColor", chartBackgroundColor ? *chartBackgroundColor : 0xffffffu},
        {"legendNames", fixedFieldTexts(legendNames, nameCount ? *nameCount : 0, nameLengths)},
        {"legendColors", colours}};
    return GlueManager::createBarchartWindow(*unit, properties) ? 1 : 0;
}

long ZEL_writeBarchart(int* unit, void* data, char* dataType, int* elementSize, int* rows, int* columns,
                       int typeLength)
{
    if (!unit) return -1;
    if (!glue_manager.load(std::memory_order_acquire)) return 1;
    if (GlueManager::writeBarchartWindow(*unit, data, latin1Text(dataType, typeLength),
                                         elementSize ? *elementSize : 0, rows ? *rows : 0,
                                         columns ? *columns : 0))
        GlueManager::waitFor(GlueManager::Flag::sync, GlueManager::GuiWait::none);
    return 1;
}

} // extern "C"
