// zel/content/canvasobjects.h: the drawable objects of a canvas, one class per kind, and the code
// tables that turn a program's small integers into pen and font settings.
#pragma once

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QMap>
#include <QObject>
#include <QPen>
#include <QPixmap>
#include <QRectF>
#include <QString>
#include <QVariant>
#include <QVector>

class QPainter;

// One drawable of a canvas. Pen and brush start as QPen() and QBrush(): black, width 1, no fill.
class CanvasObject : public QObject
{
    Q_OBJECT

public:
    explicit CanvasObject(int id) : id(id) {}
    // Draws with the painter's state as the canvas left it; a subclass may change pen and brush.
    virtual void renderObject(QPainter* painter) = 0;

    QPen pen;
    QBrush brush;
    int id;
};

class LineCanvasObject : public CanvasObject
{
    Q_OBJECT

public:
    LineCanvasObject(int id, QVector<QPointF> points) : CanvasObject(id), points(std::move(points)) {}
    // The points taken in pairs, one segment each; a last unpaired point is not drawn.
    void renderObject(QPainter* painter) override;

    QVector<QPointF> points;
};

class RectCanvasObject : public CanvasObject
{
    Q_OBJECT

public:
    RectCanvasObject(int id, QVector<QRectF> rectangles) : CanvasObject(id), rectangles(std::move(rectangles))
    {
    }
    void renderObject(QPainter* painter) override;

    QVector<QRectF> rectangles;
};

class RoundedRectCanvasObject : public CanvasObject
{
    Q_OBJECT

public:
    RoundedRectCanvasObject(int id, QVector<QRectF> rectangles, float xRadius, float yRadius)
        : CanvasObject(id), xRadius(xRadius), yRadius(yRadius), rectangles(std::move(rectangles))
    {
    }
    void renderObject(QPainter* painter) override;

    float xRadius;
    float yRadius;
    QVector<QRectF> rectangles;
};

class PolygonCanvasObject : public CanvasObject
{
    Q_OBJECT

public:
    PolygonCanvasObject(int id, QVector<QPointF> points) : CanvasObject(id), points(std::move(points)) {}
    // Closed, filled by the odd-even rule: where edges cross, the inner parts stay empty.
    void renderObject(QPainter* painter) override;

    QVector<QPointF> points;
};

class EllipseCanvasObject : public CanvasObject
{
    Q_OBJECT

public:
    EllipseCanvasObject(int id, const QRectF& rect) : CanvasObject(id), rect(rect) {}
    void renderObject(QPainter* painter) override;

    QRectF rect;
};

// Arcs, chords and pies: angles in float degrees, counter-clockwise from three o'clock.
class ArcCanvasObject : public CanvasObject
{
    Q_OBJECT

public:
    ArcCanvasObject(int id, const QRectF& rect, float startAngle, float spanAngle)
        : CanvasObject(id), rect(rect), startAngle(startAngle), spanAngle(spanAngle)
    {
    }
    // Never filled, whatever the brush.
    void renderObject(QPainter* painter) override;

    QRectF rect;
    float startAngle;
    float spanAngle;
};

class ChordCanvasObject : public ArcCanvasObject
{
    Q_OBJECT

public:
    using ArcCanvasObject::ArcCanvasObject;
    void renderObject(QPainter* painter) override;
};

class PieCanvasObject : public ArcCanvasObject
{
    Q_OBJECT

public:
    using ArcCanvasObject::ArcCanvasObject;
    void renderObject(QPainter* painter) override;
};

class TextCanvasObject : public CanvasObject
{
    Q_OBJECT

public:
    TextCanvasObject(int id, const QRectF& rect, QString text, int flags, const QFont& font,
                     const QColor& colour)
        : CanvasObject(id), rect(rect), text(std::move(text)), flags(flags), font(font), colour(colour)
    {
    }
    // In its own font and colour; the painter's font and pen are as before afterwards.
    void renderObject(QPainter* painter) override;

    QRectF rect;
    QString text;
    int flags;
    QFont font;
    QColor colour;
};

class PictureCanvasObject : public CanvasObject
{
    Q_OBJECT

public:
    PictureCanvasObject(int id, const QRect& rect, const QPixmap& pixmap)
        : CanvasObject(id), rect(rect), pixmap(pixmap)
    {
    }
    // The whole pixmap scaled into the rect; a null pixmap draws nothing.
    void renderObject(QPainter* painter) override;

    QRect rect;
    QPixmap pixmap;
};

// Code tables of the program's interface. A code outside a table leaves `pen` as it is.
void applyPenStyleCode(QPen& pen, int code);
void applyCapStyleCode(QPen& pen, int code);
void applyJoinStyleCode(QPen& pen, int code);
// 1 Normal, 2 DemiBold, 3 Bold, 4 Black; anything else Light.
int fontWeightForCode(int code);

// The object that a property map describes, pen and brush from the map's optional keys; null for
// an unknown "type". A "Picture" whose file does not load has a null pixmap.
CanvasObject* makeCanvasObject(int id, const QMap<QString, QVariant>& properties);
