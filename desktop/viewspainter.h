// desktop/viewspainter.h: the stereonet and the rose diagram drawn with QPainter, and their pictures
// as PNG or PDF files, with no display needed.
#pragma once

#include "views/scene.h"

#include <QColor>
#include <QRectF>
#include <QString>

class QPainter;

namespace kestro::desktop {

enum class ViewKind { stereonet, rose };

// Colours a reader of the pictures (and a test) can tell apart.
inline const QColor poleColour{0, 0, 160};
inline const QColor meanColour{200, 0, 0};

// The square of the net inside `area`: centre and radius of the primitive in the painter's units.
// A net point (x, y) is drawn at (centre.x + x * radius, centre.y - y * radius).
struct NetFrame
{
    double cx = 0, cy = 0, radius = 1;
};
NetFrame netFrame(const QRectF& area);

void paintStereonet(QPainter& painter, const QRectF& area, const views::StereonetScene& scene);
void paintRose(QPainter& painter, const QRectF& area, const views::RoseDiagram& rose);

// Writes the view to `fileName`, a PDF when `pdf`, else a PNG of `pixels` squared. False with
// `error` set (naming the file) when it cannot be written.
bool exportStereonet(const views::StereonetScene& scene, const QString& fileName, bool pdf, QString& error,
                     int pixels = 1000);
bool exportRose(const views::RoseDiagram& rose, const QString& fileName, bool pdf, QString& error,
                int pixels = 1000);

// Makes sure a QGuiApplication exists, on the offscreen platform when there is no display. For
// programs that draw pictures without windows; does nothing when an application exists.
void ensureGuiApplication();

} // namespace kestro::desktop
