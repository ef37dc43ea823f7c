// zel/content/barchart.h: the bar chart window: groups of bars from the rows and columns of an
// array, a category axis and a legend of bar names.
#pragma once

#include "zel/content/plotwindow.h"

#include <QColor>
#include <QList>
#include <QString>
#include <QStringList>

class QwtColumnSymbol;
class QwtPlotMultiBarChart;

class BarChart : public ZEL_PlotWindow
{
    Q_OBJECT

public:
    BarChart(QWidget* parent, long unit, const QString& name);

    void setChartSettings(const QString& title, const QString& xAxisName, const QString& yAxisName,
                          const QColor& background);
    // Bar titles and the colour of each bar of a group, in the order of the names. An empty colour
    // list leaves the colours to the default table at the first write.
    void setBarSettings(const QStringList& names, const QList<QColor>& colours);
    // Row r is the group at position r, column c its bar c. Replaces whatever was shown. Values that
    // are not finite count as 0.
    void setBarData(void* data, const QString& dataType, int rows, int columns);
    // 0: vertical bars on a category axis at the bottom; anything else: horizontal bars.
    void setOrientation(int orientation);
    // 0: bars of a group side by side; anything else: stacked.
    void setMode(int mode);

    QwtPlotMultiBarChart* chartItem() const { return chart; }
    bool hasNoColours() const { return noColours; }
    bool hasNoNames() const { return noNames; }
    // The symbol of bar `bar` of each group; null where the chart's plain box stands in.
    const QwtColumnSymbol* barSymbol(int bar) const;

    // The colours used when the creation gave none, one per bar of a group.
    static const QStringList& defaultColourNames();

private:
    void setBarColour(int bar, const QColor& colour);

    QwtPlotMultiBarChart* chart; // owned by the plot once attached
    bool noColours = false;
    bool noNames = false;
};
