// zel/content/polarplot.h: polar plot window of one unit: curves over azimuth and radius.
//
// The polar plane is drawn by the items of polaritems.h on an ordinary QwtPlot whose Cartesian
// axes are hidden, so saving, printing and the legend are those of every other plot window.
#pragma once

#include "zel/content/plotwindow.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QVariant>

class PolarGrid;
class PolarCurve;

class PolarPlot : public ZEL_PlotWindow
{
    Q_OBJECT

public:
    explicit PolarPlot(long unit, QWidget* parent = nullptr);

    // "chartBackgroundColor" fills the polar disk; "windowTitle" is not drawn.
    void setChartSettings(const QMap<QString, QVariant>& properties);
    // One curve of (azimuth, radius) rows from the first two values of each row; further columns
    // are read and ignored, and with fewer than two columns the curve has no points.
    void setChartData(const QMap<QString, QVariant>& properties, void* data, const QString& dataType,
                      int rows, int columns);
    // Removes every curve; the grid stays.
    void clearChartData();

    PolarGrid* grid;           // owned by the plot once attached
    QList<PolarCurve*> curves; // attached, owned by the plot
};
