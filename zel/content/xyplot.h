// zel/content/xyplot.h: the XY plot window: curves of (x, y) points with symbols on one Cartesian
// plot, added one per write and removed all at once by a clear.
#pragma once

#include "zel/content/plotwindow.h"

#include <QList>
#include <QMap>
#include <QVariant>

class QwtPlotCurve;
class QwtPlotGrid;

class XYPlot : public ZEL_PlotWindow
{
    Q_OBJECT

public:
    XYPlot(QWidget* parent, long unit, const QString& name);
    ~XYPlot() override;

    // Title, canvas colour, axis bounds and scale types, axis titles and grid lines; fixed from
    // creation on. A bound of exactly -1.0 leaves its axis on auto-scale.
    void setChartSettings(QMap<QString, QVariant> properties);
    // Adds one curve: row r of the array is the point (element (r, 0), element (r, 1)), each value
    // as the six-digit text of the data converter reads. Further columns are ignored; rows with
    // fewer than two columns, unknown types and rows holding NaN or an infinity give no point.
    void setChartData(QMap<QString, QVariant> properties, void* data, QString dataType, int rows,
                      int columns);
    // Removes and deletes every curve; axes, grid, title and legend area stay.
    void clearChartData();

    const QList<QwtPlotCurve*>& getCurves() const { return curves; }
    QwtPlotGrid* getGrid() const { return grid; }

private:
    QList<QwtPlotCurve*> curves;
    QwtPlotGrid* grid = nullptr;
};

// `value` as its six-significant-digit text reads back, QString::number(value, 'g', 6).toDouble(),
// bit for bit, from arithmetic alone. False, leaving `rounded` alone, where that can't be told
// cheaply: zero, NaN, infinities, magnitudes outside 1e-16..1e27, and values within 1e-7 units of
// the sixth digit from a rounding tie or a decade edge.
bool fastSixDigitValue(double value, double& rounded);

// The points of a plot write: one per row, from its first two values. Exposed for the tests.
QVector<QPointF> xyPoints(const void* data, const QString& dataType, int rows, int columns);
