// desktop/viewspainter.cpp: QPainter drawing of the views and their PNG and PDF pictures.
#include "desktop/viewspainter.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>
#include <QPageSize>
#include <QPainter>
#include <QPainterPath>
#include <QPdfWriter>
#include <QPolygonF>

#include <algorithm>
#include <cstdlib>
#include <functional>

namespace kestro::desktop {

namespace {

QPolygonF toPolygon(const NetFrame& f, const views::Polyline& line)
{
    QPolygonF polygon;
    polygon.reserve(static_cast<int>(line.size()));
    for (const views::NetPoint& p : line)
        polygon << QPointF(f.cx + p.x * f.radius, f.cy - p.y * f.radius);
    return polygon;
}

QPointF toPoint(const NetFrame& f, const views::NetPoint& p)
{
    return {f.cx + p.x * f.radius, f.cy - p.y * f.radius};
}

// Yellow for the lowest level through orange to deep red for the highest.
QColor levelColour(std::size_t index, std::size_t count)
{
    const double t = count > 1 ? double(index) / double(count - 1) : 0;
    return QColor::fromRgbF(1.0, 0.95 - 0.8 * t, 0.6 - 0.6 * t);
}

void drawNorth(QPainter& painter, const NetFrame& f)
{
    const double tick = f.radius * 0.04;
    painter.drawLine(QPointF(f.cx, f.cy - f.radius), QPointF(f.cx, f.cy - f.radius - tick));
    QFont font = painter.font();
    font.setPixelSize(std::max(8, int(f.radius * 0.06)));
    painter.setFont(font);
    painter.drawText(QRectF(f.cx - 2 * tick, f.cy - f.radius - 3.5 * tick, 4 * tick, 2.5 * tick),
                     Qt::AlignCenter, QStringLiteral("N"));
}

bool writePicture(const QString& fileName, bool pdf, int pixels, QString& error,
                  const std::function<void(QPainter&, const QRectF&)>& draw)
{
    const QFileInfo info(fileName);
    if (info.exists() && !info.isWritable()) {
        error = fileName + QStringLiteral(": The file cannot be written");
        return false;
    }
    if (!info.absoluteDir().exists()) {
        error = fileName + QStringLiteral(": No such folder");
        return false;
    }
    if (pdf) {
        QPdfWriter writer(fileName);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setResolution(300);
        writer.setTitle(info.completeBaseName());
        QPainter painter;
        if (!painter.begin(&writer)) {
            error = fileName + QStringLiteral(": The PDF file cannot be written");
            return false;
        }
        const QRect page = painter.viewport();
        const int side = std::min(page.width(), page.height());
        draw(painter, QRectF(page.x(), page.y(), side, side));
        painter.end();
        if (!QFileInfo(fileName).exists() || QFileInfo(fileName).size() == 0) {
            error = fileName + QStringLiteral(": The PDF file cannot be written");
            return false;
        }
        return true;
    }
    QImage image(pixels, pixels, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        draw(painter, QRectF(0, 0, pixels, pixels));
    }
    QImageWriter writer(fileName, "png");
    if (!writer.write(image)) {
        error = fileName + QStringLiteral(": ") + writer.errorString();
        return false;
    }
    return true;
}

} // namespace

NetFrame netFrame(const QRectF& area)
{
    const double side = std::min(area.width(), area.height());
    return {area.center().x(), area.center().y(), side * 0.44};
}

void paintStereonet(QPainter& painter, const QRectF& area, const views::StereonetScene& scene)
{
    const NetFrame f = netFrame(area);
    const double unit = f.radius / 400; // one pixel of an 800-pixel net
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);

    QPainterPath inside;
    inside.addPolygon(toPolygon(f, scene.primitive));
    painter.setClipPath(inside);
    painter.setPen(Qt::NoPen);
    for (std::size_t i = 0; i < scene.density.size(); ++i) {
        QPainterPath region;
        region.setFillRule(Qt::OddEvenFill);
        for (const views::Polyline& ring : scene.density[i].rings)
            region.addPolygon(toPolygon(f, ring));
        painter.setBrush(levelColour(i, scene.density.size()));
        painter.drawPath(region);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(170, 170, 170), 0.8 * unit));
    for (const views::Polyline& line : scene.graticule)
        painter.drawPolyline(toPolygon(f, line));
    painter.setPen(QPen(QColor(60, 60, 60), 1.2 * unit));
    for (const views::Polyline& line : scene.greatCircles)
        painter.drawPolyline(toPolygon(f, line));
    if (scene.fisher.valid) {
        painter.setPen(QPen(meanColour, 2 * unit));
        painter.drawPolyline(toPolygon(f, scene.meanPlane));
        painter.setPen(QPen(meanColour, 1.5 * unit, Qt::DashLine));
        for (const views::Polyline& line : scene.meanCone)
            painter.drawPolyline(toPolygon(f, line));
    }
    painter.setClipping(false);

    painter.setPen(QPen(Qt::black, 2 * unit));
    painter.drawPolygon(toPolygon(f, scene.primitive));
    painter.drawLine(QPointF(f.cx - 6 * unit, f.cy), QPointF(f.cx + 6 * unit, f.cy));
    painter.drawLine(QPointF(f.cx, f.cy - 6 * unit), QPointF(f.cx, f.cy + 6 * unit));
    drawNorth(painter, f);

    if (scene.fisher.valid) {
        painter.setPen(QPen(meanColour, 2 * unit));
        painter.setBrush(Qt::NoBrush);
        const QPointF m = toPoint(f, scene.meanPole);
        painter.drawRect(QRectF(m.x() - 8 * unit, m.y() - 8 * unit, 16 * unit, 16 * unit));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(poleColour);
    for (const views::NetPoint& p : scene.poles)
        painter.drawEllipse(toPoint(f, p), 4 * unit, 4 * unit);
    painter.restore();
}

void paintRose(QPainter& painter, const QRectF& area, const views::RoseDiagram& rose)
{
    const NetFrame f = netFrame(area);
    const double unit = f.radius / 400;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(QPen(QColor(170, 170, 170), 0.8 * unit));
    painter.setBrush(Qt::NoBrush);
    for (int ring = 1; ring <= 4; ++ring)
        painter.drawEllipse(QPointF(f.cx, f.cy), f.radius * ring / 4, f.radius * ring / 4);
    painter.setPen(QPen(QColor(40, 40, 90), 1.2 * unit));
    painter.setBrush(QColor(120, 150, 220));
    for (const views::Polyline& petal : rose.petals)
        painter.drawPolygon(toPolygon(f, petal));
    if (rose.hasMean) {
        painter.setPen(QPen(meanColour, 2.5 * unit));
        painter.drawPolyline(toPolygon(f, rose.meanAxis));
    }
    painter.setPen(QPen(Qt::black, 2 * unit));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QPointF(f.cx, f.cy), f.radius, f.radius);
    drawNorth(painter, f);
    painter.restore();
}

bool exportStereonet(const views::StereonetScene& scene, const QString& fileName, bool pdf, QString& error,
                     int pixels)
{
    return writePicture(fileName, pdf, pixels, error,
                        [&](QPainter& p, const QRectF& area) { paintStereonet(p, area, scene); });
}

bool exportRose(const views::RoseDiagram& rose, const QString& fileName, bool pdf, QString& error, int pixels)
{
    return writePicture(fileName, pdf, pixels, error,
                        [&](QPainter& p, const QRectF& area) { paintRose(p, area, rose); });
}

void ensureGuiApplication()
{
    if (QCoreApplication::instance()) return;
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "kestrometry-views";
    static char* argv[] = {name, nullptr};
    static QGuiApplication* application = new QGuiApplication(argc, argv);
    (void)application;
}

} // namespace kestro::desktop
