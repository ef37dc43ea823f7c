// zel/content/polaritems.h: the polar layer of a QwtPlot: a grid with its scales and the curves.
//
// The items ignore the plot's Cartesian scale maps. Each maps azimuth and radius into the largest
// square of the canvas rectangle it is drawn into, so the widget, the printer and the image export
// place them alike. Azimuth is in degrees, 0 points up and angles grow clockwise (a compass);
// the radius runs from 0 at the centre to 10 on the rim.
#pragma once

#include <QBrush>
#include <QPen>
#include <QPointF>
#include <QRectF>
#include <QVector>

#include <qwt_plot_item.h>
#include <qwt_point_polar.h>
#include <qwt_scale_div.h>
#include <qwt_series_data.h>

#include <memory>

class QwtSymbol;

// Where the polar plane lies in a canvas rectangle.
struct PolarFrame
{
    static constexpr double radiusMin = 0.0;
    static constexpr double radiusMax = 10.0;
    static constexpr double azimuthMin = 0.0;
    static constexpr double azimuthMax = 360.0;

    // The disk fills the largest centred square less a rim for the azimuth labels.
    static PolarFrame inCanvas(const QRectF& canvasRect);

    QPointF toPixel(double azimuth, double radius) const;
    double pixelsFor(double radius) const
    {
        return pixelRadius * (radius - radiusMin) / (radiusMax - radiusMin);
    }

    QPointF centre;
    double pixelRadius = 0.0;
};

// The background disk, the grid circles and spokes, the azimuth scale round the rim and the radial
// scales along the spokes to the right and to the top.
class PolarGrid : public QwtPlotItem
{
public:
    PolarGrid();

    int rtti() const override { return QwtPlotItem::Rtti_PlotUserItem + 1; }
    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
              const QRectF& canvasRect) const override;

    void setBackground(const QBrush& brush);
    QBrush background() const { return backgroundBrush; }
    const QwtScaleDiv& azimuthDiv() const { return azimuthScale; }
    const QwtScaleDiv& radiusDiv() const { return radiusScale; }

private:
    void drawGrid(QPainter* painter, const PolarFrame& frame, QwtScaleDiv::TickType type,
                  const QPen& pen) const;
    void drawAzimuthAxis(QPainter* painter, const PolarFrame& frame) const;
    void drawRadialAxis(QPainter* painter, const PolarFrame& frame, double azimuth) const;

    QwtScaleDiv azimuthScale;
    QwtScaleDiv radiusScale;
    QBrush backgroundBrush{Qt::darkBlue, Qt::SolidPattern};
    QPen majorPen{Qt::white};
    QPen minorPen{Qt::gray, 0, Qt::DotLine};
    QPen axisPen{Qt::black};
};

// The points of one polar curve, in the order written.
class Data : public QwtSeriesData<QwtPointPolar>
{
public:
    size_t size() const override { return count; }
    QwtPointPolar sample(size_t i) const override { return points[static_cast<int>(i)]; }
    // Azimuth as x, radius as y; worked out once after the last change.
    QRectF boundingRect() const override;
    void addPoint(const QwtPointPolar& point);

    QwtInterval radialInterval{PolarFrame::radiusMin, PolarFrame::radiusMax};
    QwtInterval azimuthInterval{PolarFrame::azimuthMin, PolarFrame::azimuthMax};

private:
    long count = 0;
    QVector<QwtPointPolar> points;
};

// A polyline through the points with a symbol on each. Points with a non-finite value or a
// negative radius break the line; the rest is cut at the rim.
class PolarCurve : public QwtPlotItem
{
public:
    explicit PolarCurve(const QString& title);
    ~PolarCurve() override;

    int rtti() const override { return QwtPlotItem::Rtti_PlotUserItem + 2; }
    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
              const QRectF& canvasRect) const override;
    QwtGraphic legendIcon(int index, const QSizeF& size) const override;

    void setPen(const QPen& pen);
    QPen pen() const { return linePen; }
    // Takes the symbol; null draws none.
    void setSymbol(QwtSymbol* symbol);
    const QwtSymbol* symbol() const { return dotSymbol.get(); }
    // Takes the data.
    void setData(Data* data);
    const Data* data() const { return points.get(); }

private:
    QPen linePen;
    std::unique_ptr<QwtSymbol> dotSymbol;
    std::unique_ptr<Data> points;
};
