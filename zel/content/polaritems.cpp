// zel/content/polaritems.cpp: the polar grid and scales, and the polar curve with its legend icon.
#include "zel/content/polaritems.h"

#include <QPainter>
#include <QPainterPath>

#include <qwt_graphic.h>
#include <qwt_painter.h>
#include <qwt_pixel_matrix.h>
#include <qwt_scale_engine.h>
#include <qwt_symbol.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double degree = M_PI / 180.0;
constexpr double majorTick = 8.0;
constexpr double minorTick = 4.0;
constexpr double farRadius = 1e4 * PolarFrame::radiusMax;

bool finite(const QwtPointPolar& p)
{
    return std::isfinite(p.azimuth()) && std::isfinite(p.radius());
}

} // namespace

PolarFrame PolarFrame::inCanvas(const QRectF& canvasRect)
{
    const double side = std::min(canvasRect.width(), canvasRect.height());
    PolarFrame frame;
    frame.centre = canvasRect.center();
    // The rim keeps room for the tick marks and a label of three digits round the disk.
    frame.pixelRadius = std::max(0.0, side / 2.0 - std::max(24.0, side * 0.08));
    return frame;
}

QPointF PolarFrame::toPixel(double azimuth, double radius) const
{
    const double r = pixelsFor(radius);
    const double a = azimuth * degree;
    return {centre.x() + r * std::sin(a), centre.y() - r * std::cos(a)};
}

PolarGrid::PolarGrid() : QwtPlotItem(QwtText(QStringLiteral("Grid")))
{
    QwtLinearScaleEngine engine;
    azimuthScale = engine.divideScale(PolarFrame::azimuthMin, PolarFrame::azimuthMax, 12, 2, 30.0);
    radiusScale = engine.divideScale(PolarFrame::radiusMin, PolarFrame::radiusMax, 8, 5, 0.0);
    setItemAttribute(QwtPlotItem::Legend, false);
    setZ(10.0);
}

void PolarGrid::setBackground(const QBrush& brush)
{
    backgroundBrush = brush;
    itemChanged();
}

void PolarGrid::draw(QPainter* painter, const QwtScaleMap&, const QwtScaleMap&,
                     const QRectF& canvasRect) const
{
    const PolarFrame frame = PolarFrame::inCanvas(canvasRect);
    if (frame.pixelRadius <= 0.0) return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->setPen(Qt::NoPen);
    painter->setBrush(backgroundBrush);
    painter->drawEllipse(frame.centre, frame.pixelRadius, frame.pixelRadius);
    painter->setBrush(Qt::NoBrush);
    drawGrid(painter, frame, QwtScaleDiv::MinorTick, minorPen);
    drawGrid(painter, frame, QwtScaleDiv::MajorTick, majorPen);
    drawRadialAxis(painter, frame, 90.0);
    drawRadialAxis(painter, frame, 0.0);
    drawAzimuthAxis(painter, frame);
    painter->restore();
}

void PolarGrid::drawGrid(QPainter* painter, const PolarFrame& frame, QwtScaleDiv::TickType type,
                         const QPen& pen) const
{
    painter->setPen(pen);
    for (double r : radiusScale.ticks(type)) {
        if (r <= PolarFrame::radiusMin || r >= PolarFrame::radiusMax)
            continue; // the centre and the rim need no circle
        const double pixels = frame.pixelsFor(r);
        painter->drawEllipse(frame.centre, pixels, pixels);
    }
    for (double a : azimuthScale.ticks(type)) {
        if (a >= PolarFrame::azimuthMax) continue; // the same spoke as 0
        painter->drawLine(QLineF(frame.centre, frame.toPixel(a, PolarFrame::radiusMax)));
    }
}

void PolarGrid::drawAzimuthAxis(QPainter* painter, const PolarFrame& frame) const
{
    painter->setPen(axisPen);
    painter->drawEllipse(frame.centre, frame.pixelRadius, frame.pixelRadius);
    const double rim = PolarFrame::radiusMax;
    const double tickScale = (rim - PolarFrame::radiusMin) / frame.pixelRadius;
    for (double a : azimuthScale.ticks(QwtScaleDiv::MinorTick))
        painter->drawLine(QLineF(frame.toPixel(a, rim), frame.toPixel(a, rim + minorTick * tickScale)));
    const QFontMetricsF metrics(painter->font(), painter->device());
    for (double a : azimuthScale.ticks(QwtScaleDiv::MajorTick)) {
        if (a >= PolarFrame::azimuthMax) continue;
        painter->drawLine(QLineF(frame.toPixel(a, rim), frame.toPixel(a, rim + majorTick * tickScale)));
        const QString label = QString::number(a);
        const QSizeF size = metrics.size(Qt::TextSingleLine, label);
        // The label's centre sits out along the spoke, far enough for its widest side.
        const double away = majorTick + 3.0 + 0.5 * std::hypot(size.width(), size.height());
        const QPointF at = frame.toPixel(a, rim + away * tickScale);
        painter->drawText(QRectF(at - QPointF(size.width() / 2, size.height() / 2), size),
                          Qt::AlignCenter | Qt::TextDontClip, label);
    }
}

void PolarGrid::drawRadialAxis(QPainter* painter, const PolarFrame& frame, double azimuth) const
{
    const bool right = azimuth == 90.0;
    painter->setPen(axisPen);
    painter->drawLine(QLineF(frame.centre, frame.toPixel(azimuth, PolarFrame::radiusMax)));
    const QFontMetricsF metrics(painter->font(), painter->device());
    for (double r : radiusScale.ticks(QwtScaleDiv::MajorTick)) {
        if (!right && r <= PolarFrame::radiusMin) continue; // one label for the centre
        const QPointF at = frame.toPixel(azimuth, r);
        const QPointF across = right ? QPointF(0.0, minorTick) : QPointF(-minorTick, 0.0);
        painter->setPen(axisPen);
        painter->drawLine(QLineF(at, at + across));
        const QString label = QString::number(r);
        const QSizeF size = metrics.size(Qt::TextSingleLine, label);
        QPointF corner = right ? at + QPointF(-size.width() / 2, minorTick + 1.0)
                               : at - QPointF(size.width() + minorTick + 2.0, size.height() / 2);
        if (r >= PolarFrame::radiusMax) // keep the rim's label on the disk
            corner += right ? QPointF(-size.width() / 2 - 2.0, 0.0) : QPointF(0.0, size.height() / 2 + 2.0);
        painter->setPen(majorPen); // readable on the background disk
        painter->drawText(QRectF(corner, size), Qt::AlignCenter | Qt::TextDontClip, label);
    }
}

QRectF Data::boundingRect() const
{
    if (d_boundingRect.width() >= 0.0) return d_boundingRect;
    double a0 = 0.0, a1 = -1.0, r0 = 0.0, r1 = -1.0;
    bool first = true;
    for (const QwtPointPolar& p : points) {
        if (!finite(p)) continue;
        if (first) {
            a0 = a1 = p.azimuth();
            r0 = r1 = p.radius();
            first = false;
            continue;
        }
        a0 = std::min(a0, p.azimuth());
        a1 = std::max(a1, p.azimuth());
        r0 = std::min(r0, p.radius());
        r1 = std::max(r1, p.radius());
    }
    d_boundingRect = QRectF(a0, r0, a1 - a0, r1 - r0);
    return d_boundingRect;
}

void Data::addPoint(const QwtPointPolar& point)
{
    points.append(point);
    count = points.size();
    d_boundingRect = QRectF(0.0, 0.0, -1.0, -1.0);
}

PolarCurve::PolarCurve(const QString& title) : QwtPlotItem(QwtText(title))
{
    setItemAttribute(QwtPlotItem::Legend, true);
    setZ(20.0);
}

PolarCurve::~PolarCurve() = default;

void PolarCurve::setPen(const QPen& pen)
{
    linePen = pen;
    legendChanged();
    itemChanged();
}

void PolarCurve::setSymbol(QwtSymbol* symbol)
{
    dotSymbol.reset(symbol);
    const int side = symbol ? std::max(8, symbol->size().height()) : 8;
    setLegendIconSize(QSize(std::max(16, side), side));
    legendChanged();
    itemChanged();
}

void PolarCurve::setData(Data* data)
{
    points.reset(data);
    itemChanged();
}

void PolarCurve::draw(QPainter* painter, const QwtScaleMap&, const QwtScaleMap&,
                      const QRectF& canvasRect) const
{
    const PolarFrame frame = PolarFrame::inCanvas(canvasRect);
    if (!points || points->size() == 0 || frame.pixelRadius <= 0.0) return;
    const bool dots = dotSymbol && dotSymbol->style() != QwtSymbol::NoSymbol;
    const bool line = linePen.style() != Qt::NoPen;
    const bool antialiased = testRenderHint(RenderAntialiased);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, antialiased);
    const QRectF bounds = points->boundingRect();
    if (bounds.bottom() > PolarFrame::radiusMax) {
        QPainterPath disk;
        disk.addEllipse(frame.centre, frame.pixelRadius, frame.pixelRadius);
        painter->setClipPath(disk, Qt::IntersectClip);
    }
    painter->setPen(linePen);
    painter->setBrush(Qt::NoBrush);

    // Without antialiasing a point on the same pixel as the one before adds nothing.
    auto samePixel = [antialiased](const QPointF& a, const QPointF& b) {
        return !antialiased && std::lround(a.x()) == std::lround(b.x()) &&
               std::lround(a.y()) == std::lround(b.y());
    };
    QPolygonF polyline;
    QPolygonF symbols;
    // A second symbol on a pixel that has one adds nothing, unless antialiased.
    QwtPixelMatrix covered(dots && !antialiased ? canvasRect.toAlignedRect() : QRect());
    const size_t n = points->size();
    polyline.reserve(static_cast<int>(std::min<size_t>(n, 1u << 20)));
    auto flush = [&]() {
        if (line && polyline.size() > 1) QwtPainter::drawPolyline(painter, polyline);
        polyline.clear();
    };
    for (size_t i = 0; i < n; ++i) {
        const QwtPointPolar p = points->sample(i);
        if (!finite(p) || p.radius() < PolarFrame::radiusMin) {
            flush();
            continue;
        }
        // Far beyond the rim a point only gives its line a direction; the painter's fixed-point
        // coordinates would overflow at the true distance.
        const QPointF at = frame.toPixel(p.azimuth(), std::min(p.radius(), farRadius));
        if (polyline.isEmpty() || !samePixel(polyline.last(), at)) polyline.append(at);
        if (dots && (antialiased || !covered.testAndSetPixel(std::lround(at.x()), std::lround(at.y()), true)))
            symbols.append(at);
    }
    flush();
    if (dots) dotSymbol->drawSymbols(painter, symbols);
    painter->restore();
}

QwtGraphic PolarCurve::legendIcon(int, const QSizeF& size) const
{
    QwtGraphic graphic;
    if (size.isEmpty()) return graphic;
    graphic.setDefaultSize(size);
    graphic.setRenderHint(QwtGraphic::RenderPensUnscaled, true);
    QPainter painter(&graphic);
    if (linePen.style() != Qt::NoPen) {
        painter.setPen(linePen);
        const double y = 0.5 * size.height();
        QwtPainter::drawLine(&painter, 0.0, y, size.width(), y);
    }
    if (dotSymbol && dotSymbol->style() != QwtSymbol::NoSymbol)
        dotSymbol->drawSymbol(&painter, QRectF(QPointF(0, 0), size));
    return graphic;
}
