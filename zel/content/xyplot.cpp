// zel/content/xyplot.cpp: the XY plot, its curves drawn at screen resolution, the controller's XY
// slots and the C functions of the XY plot.
#include "zel/content/xyplot.h"

#include "zel/content/conversion.h"
#include "zel/core/environment.h"
#include "zel/core/gluemanager.h"
#include "zel/core/mainwindow.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>

#include <qwt_clipper.h>
#include <qwt_legend.h>
#include <qwt_painter.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_scale_engine.h>
#include <qwt_scale_map.h>
#include <qwt_symbol.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

// Past this many points a curve is drawn from what reaches the device: per pixel column the
// first, lowest, highest and last point of a line whose x never decreases, and one symbol per
// pixel. Below it, or for a fitted curve, Qwt draws every point.
constexpr int reduceFrom = 4096;
// Symbols larger than this cover so much that Qwt draws them one by one.
constexpr int largeSymbol = 64;

// Premultiplied ARGB: `source` over `target`.
inline quint32 sourceOver(quint32 source, quint32 target)
{
    const quint32 keep = 255 - (source >> 24);
    quint32 rb = (target & 0xff00ff) * keep;
    rb = ((rb + ((rb >> 8) & 0xff00ff) + 0x800080) >> 8) & 0xff00ff;
    quint32 ag = ((target >> 8) & 0xff00ff) * keep;
    ag = (ag + ((ag >> 8) & 0xff00ff) + 0x800080) & 0xff00ff00;
    return source + (ag | rb);
}

class XYCurve : public QwtPlotCurve
{
public:
    bool xSorted = false;

protected:
    void drawLines(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                   const QRectF& canvasRect, int from, int to) const override;
    void drawSymbols(QPainter* painter, const QwtSymbol& symbol, const QwtScaleMap& xMap,
                     const QwtScaleMap& yMap, const QRectF& canvasRect, int from, int to) const override;

private:
    bool reducible(const QPainter* painter, int from, int to) const
    {
        return to - from + 1 >= reduceFrom && !testCurveAttribute(Fitted) &&
               painter->combinedTransform().type() <= QTransform::TxScale;
    }
};

void XYCurve::drawLines(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                        const QRectF& canvasRect, int from, int to) const
{
    if (!reducible(painter, from, to)) {
        QwtPlotCurve::drawLines(painter, xMap, yMap, canvasRect, from, to);
        return;
    }
    const QTransform device = painter->combinedTransform();
    const QwtSeriesData<QPointF>& samples = *data();
    QPolygonF line;
    line.reserve(4 * static_cast<int>(canvasRect.width() * std::max(1.0, device.m11())) + 16);
    // The points of the current column, by index order: first, extremes, last.
    int firstIndex = -1;
    double column = 0.0;
    QPointF first, low, high, last;
    int lowIndex = 0, highIndex = 0;
    auto flush = [&] {
        if (firstIndex < 0) return;
        line << first;
        if (lowIndex < highIndex) {
            if (low != first) line << low;
            if (high != low) line << high;
        } else {
            if (high != first) line << high;
            if (low != high) line << low;
        }
        if (last != line.last()) line << last;
    };
    for (int i = from; i <= to; ++i) {
        const QPointF s = samples.sample(static_cast<size_t>(i));
        const QPointF p(xMap.transform(s.x()), yMap.transform(s.y()));
        const double pixel = std::floor(p.x() * device.m11() + device.dx());
        if (!xSorted) {
            // No columns to rely on: only runs on one device pixel collapse.
            const double row = std::floor(p.y() * device.m22() + device.dy());
            if (firstIndex >= 0 && pixel == column &&
                row == std::floor(last.y() * device.m22() + device.dy())) {
                last = p;
                continue;
            }
            if (firstIndex >= 0 && last != line.last()) line << last;
            line << p;
            firstIndex = i;
            column = pixel;
            last = p;
            continue;
        }
        if (firstIndex >= 0 && pixel == column) {
            if (p.y() < low.y()) low = p, lowIndex = i;
            if (p.y() > high.y()) high = p, highIndex = i;
            last = p;
            continue;
        }
        flush();
        firstIndex = lowIndex = highIndex = i;
        column = pixel;
        first = low = high = last = p;
    }
    if (xSorted)
        flush();
    else if (firstIndex >= 0 && last != line.last())
        line << last;
    if (testPaintAttribute(ClipPolygons)) {
        const qreal margin = std::max(1.0, pen().widthF());
        line = QwtClipper::clipPolygonF(canvasRect.adjusted(-margin, -margin, margin, margin), line, false);
    }
    QwtPainter::drawPolyline(painter, line);
}

void XYCurve::drawSymbols(QPainter* painter, const QwtSymbol& symbol, const QwtScaleMap& xMap,
                          const QwtScaleMap& yMap, const QRectF& canvasRect, int from, int to) const
{
    if (!reducible(painter, from, to) || symbol.size().width() > largeSymbol ||
        symbol.size().height() > largeSymbol) {
        QwtPlotCurve::drawSymbols(painter, symbol, xMap, yMap, canvasRect, from, to);
        return;
    }
    const QTransform device = painter->combinedTransform();
    const QSizeF size = symbol.size();
    const QRectF area = canvasRect.adjusted(-size.width(), -size.height(), size.width(), size.height());
    const QRect pixels = device.mapRect(area).toAlignedRect();
    if (pixels.isEmpty()) return;
    // One symbol per device pixel it is centred on: a second one there would draw the same.
    const int width = pixels.width(), height = pixels.height();
    std::vector<unsigned char> taken(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const double sx = device.m11(), sy = device.m22(), dx = device.dx() - pixels.left(),
                 dy = device.dy() - pixels.top();
    const QwtSeriesData<QPointF>& samples = *data();
    QPolygonF points;
    std::vector<QPoint> spots; // in the layer below
    for (int i = from; i <= to; ++i) {
        const QPointF s = samples.sample(static_cast<size_t>(i));
        const QPointF p(xMap.transform(s.x()), yMap.transform(s.y()));
        if (!area.contains(p)) continue;
        const int px = qRound(p.x() * sx + dx), py = qRound(p.y() * sy + dy);
        if (px < 0 || py < 0 || px >= width || py >= height) continue;
        unsigned char& spot = taken[static_cast<std::size_t>(py) * static_cast<std::size_t>(width) +
                                    static_cast<std::size_t>(px)];
        if (spot) continue;
        spot = 1;
        points << p;
        spots.emplace_back(px, py);
    }
    if (painter->paintEngine()->type() != QPaintEngine::Raster || points.size() < reduceFrom) {
        symbol.drawSymbols(painter, points);
        return;
    }
    // Many symbols on pixels: the symbol is drawn once at the device's scale and stamped on.
    const QRect stampRect =
        device.mapRect(QRectF(symbol.boundingRect())).toAlignedRect().adjusted(-1, -1, 1, 1);
    QImage stamp(stampRect.size(), QImage::Format_ARGB32_Premultiplied);
    stamp.fill(Qt::transparent);
    {
        QPainter stampPainter(&stamp);
        stampPainter.setRenderHints(painter->renderHints());
        stampPainter.translate(-stampRect.topLeft());
        stampPainter.scale(sx, sy);
        symbol.drawSymbol(&stampPainter, QPointF(0.0, 0.0));
    }
    struct Dot
    {
        int x, y;
        quint32 argb;
    };
    std::vector<Dot> dots; // the stamp's covered pixels, relative to the symbol's centre
    for (int y = 0; y < stamp.height(); ++y) {
        const auto* line = reinterpret_cast<const quint32*>(stamp.constScanLine(y));
        for (int x = 0; x < stamp.width(); ++x)
            if (line[x]) dots.push_back({x + stampRect.left(), y + stampRect.top(), line[x]});
    }
    // Stamped into one layer over the pixels' area, source over, then laid on in one go: source
    // over is associative, so this is the picture of stamping each onto the device.
    QImage layer(pixels.size(), QImage::Format_ARGB32_Premultiplied);
    layer.fill(Qt::transparent);
    auto* bits = reinterpret_cast<quint32*>(layer.bits());
    const int stride = layer.bytesPerLine() / 4;
    for (const QPoint& spot : spots) {
        for (const Dot& d : dots) {
            const int x = spot.x() + d.x, y = spot.y() + d.y;
            if (x < 0 || y < 0 || x >= width || y >= height) continue;
            quint32& target = bits[y * stride + x];
            target = sourceOver(d.argb, target);
        }
    }
    painter->save();
    painter->setViewTransformEnabled(false);
    painter->setWorldTransform(QTransform());
    painter->drawImage(pixels.topLeft(), layer);
    painter->restore();
}

} // namespace

bool fastSixDigitValue(double value, double& rounded)
{
    static constexpr double exact[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                       1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    const double a = std::fabs(value);
    if (!(a >= 1e-16 && a < 1e27)) return false; // zero, NaN, infinities and the far decades
    std::uint64_t bits;
    std::memcpy(&bits, &a, sizeof bits);
    const int binary = static_cast<int>((bits >> 52) & 0x7ff) - 1022; // a = m 2^binary, m in [0.5, 1)
    int x = static_cast<int>(std::floor((binary - 1) * 0.30102999566398120));
    // a 10^(5 - x): one rounding of exact operands, within 6e-11 of the true product.
    auto scale = [a](int x) { return 5 - x >= 0 ? a * exact[5 - x] : a / exact[x - 5]; };
    double scaled = scale(x);
    if (scaled >= 1e6) scaled = scale(++x);
    constexpr double tolerance = 1e-7;
    if (scaled < 1e5 + tolerance || scaled > 1e6 - tolerance) return false;
    const double whole = static_cast<double>(static_cast<std::int32_t>(scaled));
    const double fraction = scaled - whole;
    if (std::fabs(fraction - 0.5) < tolerance) return false; // a tie, or too near one to tell
    double digits = whole + (fraction > 0.5 ? 1.0 : 0.0);
    if (digits == 1e6) {
        digits = 1e5;
        ++x;
    }
    // Reading the text: digits 10^(x - 5) correctly rounded, again one operation on exact values.
    const double magnitude = x - 5 >= 0 ? digits * exact[x - 5] : digits / exact[5 - x];
    rounded = value < 0.0 ? -magnitude : magnitude;
    return true;
}

namespace {

double sixDigitValue(double value)
{
    double rounded;
    return fastSixDigitValue(value, rounded) ? rounded : ZEL_DataConverter::sixDigitValue(value);
}

template <typename T>
void readRows(const unsigned char* bytes, int rows, int columns, QVector<QPointF>& points)
{
    const std::size_t rowBytes = sizeof(T) * static_cast<std::size_t>(columns);
    for (int r = 0; r < rows; ++r) {
        T pair[2];
        std::memcpy(pair, bytes + rowBytes * static_cast<std::size_t>(r), sizeof pair);
        const double x = sixDigitValue(static_cast<double>(pair[0]));
        const double y = sixDigitValue(static_cast<double>(pair[1]));
        if (std::isfinite(x) && std::isfinite(y)) points.append(QPointF(x, y));
    }
}

} // namespace

QVector<QPointF> xyPoints(const void* data, const QString& dataType, int rows, int columns)
{
    QVector<QPointF> points;
    if (!data || rows < 1 || columns < 2) return points;
    if (static_cast<qint64>(rows) * columns > ZEL_DataConverter::maxElements) return points;
    points.reserve(rows);
    const auto* bytes = static_cast<const unsigned char*>(data);
    // The reals take the converter's six-digit values straight, without their text.
    if (dataType == QLatin1String("REAL*8")) {
        readRows<double>(bytes, rows, columns, points);
        return points;
    }
    if (dataType == QLatin1String("REAL*4")) {
        readRows<float>(bytes, rows, columns, points);
        return points;
    }
    const QStringList texts = ZEL_DataConverter::convertDataToStringList(data, dataType, rows, columns);
    if (texts.size() != rows * columns) return points;
    for (int r = 0; r < rows; ++r) {
        const double x = texts.at(r * columns).toDouble();
        const double y = texts.at(r * columns + 1).toDouble();
        if (std::isfinite(x) && std::isfinite(y)) points.append(QPointF(x, y));
    }
    return points;
}

XYPlot::XYPlot(QWidget* parent, long unit, const QString& name) : ZEL_PlotWindow(parent, unit, name)
{
    setAutoFillBackground(true);
    setContentsMargins(15, 15, 15, 15);
    setPalette(QPalette(Qt::white));
    canvas()->setPalette(QPalette(Qt::white));
    if (auto* plotCanvas = qobject_cast<QwtPlotCanvas*>(canvas())) plotCanvas->setBorderRadius(0);
    insertLegend(new QwtLegend, QwtPlot::RightLegend, -1.0);
    grid = new QwtPlotGrid;
    grid->attach(this);
    setAutoReplot(true);
}

XYPlot::~XYPlot()
{
    clearChartData();
}

void XYPlot::setChartSettings(QMap<QString, QVariant> properties)
{
    const QString title = properties["windowTitle"].toString();
    setTitle(title);
    setWindowTitle(title);
    windowName = title;
    canvas()->setPalette(QPalette(QColor(properties["chartBackgroundColor"].toUInt())));
    const struct
    {
        QwtPlot::Axis axis;
        const char* prefix;
    } axes[] = {{QwtPlot::xBottom, "x"}, {QwtPlot::yLeft, "y"}};
    for (const auto& a : axes) {
        const QString p = a.prefix;
        const double lower = properties[p + "ScaleLB"].toDouble();
        const double upper = properties[p + "ScaleUB"].toDouble();
        const double step = properties[p + "ScaleStep"].toDouble();
        if (lower != -1.0 && upper != -1.0) setAxisScale(a.axis, lower, upper, step == -1.0 ? 0.0 : step);
        if (properties[p + "ScaleType"].toInt() == 1) setAxisScaleEngine(a.axis, new QwtLogScaleEngine(10));
    }
    setAxisTitle(QwtPlot::xBottom, properties["xAxisName"].toString());
    setAxisTitle(QwtPlot::yLeft, properties["yAxisName"].toString());
    grid->enableY(properties["showHgridLines"].toInt() != 0);
    grid->enableX(properties["showVgridLines"].toInt() != 0);
}

void XYPlot::setChartData(QMap<QString, QVariant> properties, void* data, QString dataType, int rows,
                          int columns)
{
    QVector<QPointF> points = xyPoints(data, dataType, rows, columns);
    const QString label = properties["curveLabel"].toString();
    const bool labelled = std::any_of(label.begin(), label.end(), [](QChar c) { return c != QChar(' '); });

    auto* curve = new XYCurve;
    curve->setPen(QPen(QColor(properties["curveColor"].toUInt()),
                       std::max(0, properties["curveLineWidth"].toInt()), Qt::SolidLine));
    curve->setRenderHint(QwtPlotItem::RenderAntialiased, true);
    const int fitted = properties["fittedCurve"].toInt();
    if (fitted >= 1 && fitted <= 3) // Inverted, Fitted or both
        curve->setCurveAttribute(static_cast<QwtPlotCurve::CurveAttribute>(fitted), true);
    if (labelled) curve->setTitle(label);
    curve->setItemAttribute(QwtPlotItem::Legend, labelled);
    const QColor dotColor(properties["dotColor"].toUInt());
    const int dotSize = std::max(0, properties["dotSize"].toInt());
    const int style = properties["symbolStyle"].toInt();
    const bool knownStyle = style >= QwtSymbol::NoSymbol && style <= QwtSymbol::Hexagon;
    curve->setSymbol(new QwtSymbol(
        knownStyle ? static_cast<QwtSymbol::Style>(style) : QwtSymbol::NoSymbol, QBrush(dotColor),
        QPen(QBrush(dotColor), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin), QSize(dotSize, dotSize)));
    curve->xSorted = std::is_sorted(points.cbegin(), points.cend(),
                                    [](const QPointF& a, const QPointF& b) { return a.x() < b.x(); });
    curve->attach(this);
    curve->setSamples(points);
    curves.append(curve);
    setAutoReplot(true);
}

void XYPlot::clearChartData()
{
    // Detached curves are no longer the plot's: deleting them here is what keeps a long run of
    // writes and clears flat in memory.
    const QList<QwtPlotCurve*> gone = curves;
    curves.clear();
    for (QwtPlotCurve* curve : gone) {
        curve->detach();
        delete curve;
    }
    setAutoReplot(true);
}

// The controller's XY plot slots.

void WindowController::createXYPlotForUnit(long unit, QMap<QString, QVariant> properties)
{
    const QString title = properties["windowTitle"].toString();
    auto* plot = new XYPlot(nullptr, unit, title);
    plot->setChartSettings(properties);
    addXYPlotForUnit(unit, plot);
    showContentWindow(unit, plot, plot, title, true, false, true);
}

void WindowController::writeXYPlot(long unit, void* data, QString dataType, int rows, int columns,
                                   QMap<QString, QVariant> properties)
{
    SyncRelease release(this);
    XYPlot* plot = reportIfMissing(getXYPlotForUnit(unit), unit, "XY Plot");
    if (!plot) return;
    plot->setChartData(properties, data, dataType, rows, columns);
}

void WindowController::clearXYPlot(long unit)
{
    XYPlot* plot = reportIfMissing(getXYPlotForUnit(unit), unit, "XY Plot");
    if (!plot) return;
    plot->clearChartData();
}

// C functions of the XY plot; what they return stands in zel/core/zel.h.
//
// A null unit pointer gives -1 and does nothing. Null scalars read as their defaults: colour
// white, scale type linear, bounds and steps -1.0, no grid lines, line width and dot size 1,
// symbol style -1 (none), no fitting, black curve and dots.

namespace {

template <typename T> T valueOr(const T* pointer, T fallback)
{
    return pointer ? *pointer : fallback;
}

} // namespace

extern "C" {

long ZEL_createXYPlot(int* unit, char* title, char* xAxisName, char* yAxisName,
                      unsigned* chartBackgroundColor, int* xScaleType, double* xScaleLB, double* xScaleUB,
                      double* xScaleStep, int* yScaleType, double* yScaleLB, double* yScaleUB,
                      double* yScaleStep, int* showHgridLines, int* showVgridLines, int titleLength,
                      int xAxisNameLength, int yAxisNameLength)
{
    if (!unit) return -1;
    *unit = static_cast<int>(currentInternalId++);
    if (!glue_manager.load(std::memory_order_acquire)) return 0;
    QMap<QString, QVariant> properties;
    properties["windowTitle"] = latin1Text(title, titleLength);
    properties["chartBackgroundColor"] = valueOr(chartBackgroundColor, 0xFFFFFFu);
    properties["xAxisName"] = latin1Text(xAxisName, xAxisNameLength);
    properties["yAxisName"] = latin1Text(yAxisName, yAxisNameLength);
    properties["xScaleType"] = valueOr(xScaleType, 0);
    properties["xScaleLB"] = valueOr(xScaleLB, -1.0);
    properties["xScaleUB"] = valueOr(xScaleUB, -1.0);
    properties["xScaleStep"] = valueOr(xScaleStep, -1.0);
    properties["yScaleType"] = valueOr(yScaleType, 0);
    properties["yScaleLB"] = valueOr(yScaleLB, -1.0);
    properties["yScaleUB"] = valueOr(yScaleUB, -1.0);
    properties["yScaleStep"] = valueOr(yScaleStep, -1.0);
    properties["showHgridLines"] = valueOr(showHgridLines, 0);
    properties["showVgridLines"] = valueOr(showVgridLines, 0);
    return GlueManager::createXYPlotWindow(*unit, properties) ? 1 : 0;
}

long ZEL_writeXYPlot(int* unit, void* data, char* dataType, int* elementSize, int* rows, int* columns,
                     int* fittedCurve, char* curveLabel, unsigned* curveColor, int* curveLineWidth,
                     unsigned* dotColor, int* dotSize, int* symbolStyle, int dataTypeLength,
                     int curveLabelLength)
{
    (void)elementSize; // the type alone says how the array is read
    if (!unit) return -1;
    if (!glue_manager.load(std::memory_order_acquire)) return 1;
    QMap<QString, QVariant> properties;
    properties["curveLabel"] = latin1Text(curveLabel, curveLabelLength);
    properties["curveColor"] = valueOr(curveColor, 0u);
    properties["curveLineWidth"] = valueOr(curveLineWidth, 1);
    properties["fittedCurve"] = valueOr(fittedCurve, 0);
    properties["dotColor"] = valueOr(dotColor, 0u);
    properties["dotSize"] = valueOr(dotSize, 1);
    properties["symbolStyle"] = valueOr(symbolStyle, -1);
    const int nrows = valueOr(rows, 0);
    const int ncolumns = valueOr(columns, 0);
    if (GlueManager::writeXYPlotWindow(*unit, data, latin1Text(dataType, dataTypeLength), nrows, ncolumns,
                                       properties))
        GlueManager::waitFor(GlueManager::Flag::sync, GlueManager::GuiWait::none);
    return 1;
}

long ZEL_clearXYPlot(int* unit)
{
    if (!unit) return -1;
    if (!glue_manager.load(std::memory_order_acquire)) return 0;
    return GlueManager::clearXYPlotWindow(*unit) ? 1 : 0;
}

} // extern "C"
