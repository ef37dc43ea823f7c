// zel/content/canvasobjects.cpp: how each kind of canvas object draws itself, and how a property
// map becomes one.
#include "zel/content/canvasobjects.h"

#include <QPainter>

namespace {

// Angles reach QPainter in sixteenths of a degree, truncated.
int sixteenths(float degrees)
{
    return static_cast<int>(degrees * 16.0f);
}

QVector<QPointF> pointsOf(const QVariant& value)
{
    QVector<QPointF> points;
    const QVariantList list = value.toList();
    points.reserve(list.size());
    for (const QVariant& v : list)
        points.append(v.toPointF());
    return points;
}

QVector<QRectF> rectsOf(const QVariant& value)
{
    QVector<QRectF> rects;
    const QVariantList list = value.toList();
    rects.reserve(list.size());
    for (const QVariant& v : list)
        rects.append(v.toRectF());
    return rects;
}

} // namespace

void LineCanvasObject::renderObject(QPainter* painter)
{
    painter->setPen(pen);
    painter->drawLines(points.constData(), points.size() / 2);
}

void RectCanvasObject::renderObject(QPainter* painter)
{
    painter->setBrush(brush);
    painter->setPen(pen);
    painter->drawRects(rectangles.constData(), rectangles.size());
}

void RoundedRectCanvasObject::renderObject(QPainter* painter)
{
    painter->setBrush(brush);
    painter->setPen(pen);
    for (const QRectF& r : rectangles)
        painter->drawRoundedRect(r, xRadius, yRadius, Qt::AbsoluteSize);
}

void PolygonCanvasObject::renderObject(QPainter* painter)
{
    painter->setBrush(brush);
    painter->setPen(pen);
    painter->drawPolygon(points.constData(), points.size(), Qt::OddEvenFill);
}

void EllipseCanvasObject::renderObject(QPainter* painter)
{
    painter->setBrush(brush);
    painter->setPen(pen);
    painter->drawEllipse(rect);
}

void ArcCanvasObject::renderObject(QPainter* painter)
{
    painter->setBrush(Qt::NoBrush);
    painter->setPen(pen);
    painter->drawArc(rect, sixteenths(startAngle), sixteenths(spanAngle));
}

void ChordCanvasObject::renderObject(QPainter* painter)
{
    painter->setBrush(brush);
    painter->setPen(pen);
    painter->drawChord(rect, sixteenths(startAngle), sixteenths(spanAngle));
}

void PieCanvasObject::renderObject(QPainter* painter)
{
    painter->setBrush(brush);
    painter->setPen(pen);
    painter->drawPie(rect, sixteenths(startAngle), sixteenths(spanAngle));
}

void TextCanvasObject::renderObject(QPainter* painter)
{
    const QFont oldFont = painter->font();
    const QPen oldPen = painter->pen();
    painter->setFont(font);
    painter->setPen(colour);
    painter->drawText(rect, flags, text);
    painter->setFont(oldFont);
    painter->setPen(oldPen);
}

void PictureCanvasObject::renderObject(QPainter* painter)
{
    if (!pixmap.isNull()) painter->drawPixmap(rect, pixmap);
}

void applyPenStyleCode(QPen& pen, int code)
{
    static const Qt::PenStyle styles[] = {Qt::NoPen,   Qt::SolidLine,   Qt::DashLine,
                                          Qt::DotLine, Qt::DashDotLine, Qt::DashDotDotLine};
    if (code >= 0 && code < 6) pen.setStyle(styles[code]);
}

void applyCapStyleCode(QPen& pen, int code)
{
    static const Qt::PenCapStyle caps[] = {Qt::SquareCap, Qt::FlatCap, Qt::RoundCap};
    if (code >= 0 && code < 3) pen.setCapStyle(caps[code]);
}

void applyJoinStyleCode(QPen& pen, int code)
{
    static const Qt::PenJoinStyle joins[] = {Qt::BevelJoin, Qt::MiterJoin, Qt::RoundJoin};
    if (code >= 0 && code < 3) pen.setJoinStyle(joins[code]);
}

int fontWeightForCode(int code)
{
    switch (code) {
    case 1:
        return QFont::Normal;
    case 2:
        return QFont::DemiBold;
    case 3:
        return QFont::Bold;
    case 4:
        return QFont::Black;
    default:
        return QFont::Light;
    }
}

CanvasObject* makeCanvasObject(int id, const QMap<QString, QVariant>& p)
{
    const QString type = p.value(QStringLiteral("type")).toString();
    const QRectF rect = p.value(QStringLiteral("rect")).toRectF();
    const float start = p.value(QStringLiteral("startAngle")).toFloat();
    const float span = p.value(QStringLiteral("spanAngle")).toFloat();
    CanvasObject* object = nullptr;
    if (type == QLatin1String("Line")) {
        object = new LineCanvasObject(id, pointsOf(p.value(QStringLiteral("pointList"))));
    } else if (type == QLatin1String("Rect")) {
        object = new RectCanvasObject(id, rectsOf(p.value(QStringLiteral("rectList"))));
    } else if (type == QLatin1String("RoundedRect")) {
        object = new RoundedRectCanvasObject(id, rectsOf(p.value(QStringLiteral("rectList"))),
                                             p.value(QStringLiteral("xRadius")).toFloat(),
                                             p.value(QStringLiteral("yRadius")).toFloat());
    } else if (type == QLatin1String("Polygon")) {
        object = new PolygonCanvasObject(id, pointsOf(p.value(QStringLiteral("pointsList"))));
    } else if (type == QLatin1String("Ellipse")) {
        object = new EllipseCanvasObject(id, rect);
    } else if (type == QLatin1String("Arc")) {
        object = new ArcCanvasObject(id, rect, start, span);
    } else if (type == QLatin1String("Chord")) {
        object = new ChordCanvasObject(id, rect, start, span);
    } else if (type == QLatin1String("Pie")) {
        object = new PieCanvasObject(id, rect, start, span);
    } else if (type == QLatin1String("Text")) {
        const QFont font(p.value(QStringLiteral("fontFamilyName")).toString(),
                         p.value(QStringLiteral("fontPointSize")).toInt(),
                         fontWeightForCode(p.value(QStringLiteral("fontWeight")).toInt()),
                         p.value(QStringLiteral("fontItalic")).toBool());
        const QColor colour = QColor(static_cast<QRgb>(p.value(QStringLiteral("textColor")).toUInt()));
        object = new TextCanvasObject(id, rect, p.value(QStringLiteral("text")).toString(),
                                      p.value(QStringLiteral("textFlags")).toInt(), font, colour);
    } else if (type == QLatin1String("Picture")) {
        object = new PictureCanvasObject(id, rect.toRect(),
                                         QPixmap(p.value(QStringLiteral("fileName")).toString()));
    }
    if (!object) return nullptr;

    const auto brushColor = p.constFind(QStringLiteral("brushColor"));
    if (brushColor != p.constEnd()) object->brush = QBrush(QColor(static_cast<QRgb>(brushColor->toUInt())));
    QPen pen;
    const auto width = p.constFind(QStringLiteral("penWidth"));
    if (width != p.constEnd()) pen.setWidthF(width->toFloat());
    const auto style = p.constFind(QStringLiteral("penStyle"));
    if (style != p.constEnd()) applyPenStyleCode(pen, style->toInt());
    const auto cap = p.constFind(QStringLiteral("capStyle"));
    if (cap != p.constEnd()) applyCapStyleCode(pen, cap->toInt());
    const auto join = p.constFind(QStringLiteral("joinStyle"));
    if (join != p.constEnd()) applyJoinStyleCode(pen, join->toInt());
    const auto colour = p.constFind(QStringLiteral("penColor"));
    if (colour != p.constEnd()) pen.setColor(QColor(static_cast<QRgb>(colour->toUInt())));
    object->pen = pen;
    return object;
}
