// zel/content/canvas.cpp: the canvas widget, its saving and printing, and the canvas functions of
// the C interface.
#include "zel/content/canvas.h"

#include "zel/content/canvasobjects.h"
#include "zel/content/canvasqueue.h"
#include "zel/core/environment.h"
#include "zel/core/gluemanager.h"
#include "zel/core/zel.h"

#include <QMessageBox>
#include <QPaintEvent>
#include <QPainter>
#include <QPixmap>
#include <QPrintDialog>
#include <QPrinter>

#include <cstring>

#ifdef __GLIBC__
#include <malloc.h>
#endif

Canvas::Canvas(long unit, const QString& title, QWidget* parent)
    : QWidget(parent), ZEL_ContentController(unit, title, QString()), title(title)
{
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

Canvas::~Canvas()
{
    qDeleteAll(objects);
}

void Canvas::setChartSettings(const QMap<QString, QVariant>& settings)
{
    title = settings.value(QStringLiteral("windowTitle")).toString();
    windowName = title;
    setWindowTitle(title);
    setGeometry(0, 0, settings.value(QStringLiteral("width")).toInt(),
                settings.value(QStringLiteral("height")).toInt());
    const auto colour = settings.constFind(QStringLiteral("backgroundColor"));
    background =
        colour == settings.constEnd() ? QColor(Qt::white) : QColor(static_cast<QRgb>(colour->toUInt()));
    QPalette palette = this->palette();
    palette.setBrush(QPalette::All, QPalette::Base, QBrush(background));
    setPalette(palette);
    forgetPainted();
}

void Canvas::createObject(long id, const QMap<QString, QVariant>& properties)
{
    const int key = static_cast<int>(id);
    removeCanvasObjectForId(key);
    CanvasObject* object = makeCanvasObject(key, properties);
    if (!object) return;
    if (auto* picture = qobject_cast<PictureCanvasObject*>(object); picture && picture->pixmap.isNull()) {
        QMessageBox box(QMessageBox::NoIcon, QString(),
                        "Could not display " + properties.value(QStringLiteral("fileName")).toString(),
                        QMessageBox::Ok, this);
        box.exec();
    }
    objects.append(object);
    byId.insert(key, object);
    update();
}

void Canvas::removeCanvasObjectForId(int id)
{
    CanvasObject* object = byId.take(id);
    if (!object) return;
    objects.removeOne(object);
    delete object;
    forgetPainted();
    update();
}

void Canvas::clear(const QMap<QString, QVariant>&)
{
    qDeleteAll(objects);
    objects.clear();
    byId.clear();
    forgetPainted();
    // Freed object memory goes back to the system, not only to the allocator.
#ifdef __GLIBC__
    malloc_trim(0);
#endif
    update();
}

void Canvas::setUpPainter(QPainter& painter) const
{
    painter.setBackground(QBrush(background));
    painter.setBackgroundMode(Qt::OpaqueMode);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setBrush(QBrush(Qt::black, Qt::SolidPattern));
}

void Canvas::forgetPainted()
{
    painted = QImage();
    paintedCount = 0;
}

void Canvas::paintEvent(QPaintEvent*)
{
    const qreal ratio = devicePixelRatioF();
    const QSize pixels = size() * ratio;
    if (painted.size() != pixels || paintedCount > objects.size()) {
        painted = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
        painted.setDevicePixelRatio(ratio);
        painted.fill(background);
        paintedCount = 0;
    }
    if (paintedCount < objects.size()) {
        QPainter onImage(&painted);
        setUpPainter(onImage);
        for (int i = paintedCount; i < objects.size(); ++i)
            objects.at(i)->renderObject(&onImage);
        paintedCount = objects.size();
    }
    QPainter painter(this);
    painter.drawImage(0, 0, painted);
}

void Canvas::renderPage(QPainter& painter)
{
    setUpPainter(painter);
    // The outline sits on whole pixels: drawn without antialiasing it is one crisp black pixel.
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBrush(QBrush(background));
    painter.setPen(QPen());
    painter.drawRect(0, 0, width() - 1, height() - 1);
    painter.restore();
    painter.setBrush(QBrush(Qt::black, Qt::SolidPattern));
    for (CanvasObject* object : qAsConst(objects))
        object->renderObject(&painter);
}

bool Canvas::exportImage(const QString& fileName)
{
    if (!mayWriteFile(fileName)) return false;
    QPixmap pixmap(size());
    pixmap.fill(background); // every pixel has a value before anything is drawn
    QPainter painter(&pixmap);
    renderPage(painter);
    painter.end();
    pixmap.save(fileName);
    return true;
}

bool Canvas::saveWithoutDialog(QString& fileName)
{
    fileName = imageFileName(fileName, ImageSuffixes::pixmap);
    return exportImage(fileName);
}

void Canvas::save(QString fileName)
{
    if (fileName.isEmpty()) fileName = title;
    exportImage(imageFileName(fileName, ImageSuffixes::pixmap));
}

bool Canvas::saveAs()
{
    const QString file = askSaveFileName(this, title, "Image File (*.png *.bmp)", title, "png");
    return !file.isEmpty() && exportImage(file);
}

bool Canvas::willClose()
{
    return contentWillClose(this);
}

void Canvas::print(QPrinter& printer)
{
    printer.setColorMode(QPrinter::Color);
    printer.setOutputFormat(QPrinter::NativeFormat);
    QPrintDialog dialog(&printer, this);
    dialog.setWindowTitle(tr("Print Document"));
    if (dialog.exec() != QDialog::Accepted) return;
    QPainter painter(&printer);
    renderPage(painter);
}

// C functions of the canvas.

namespace {

bool bridgeUp()
{
    return glue_manager.load(std::memory_order_acquire) != nullptr;
}

// The object id: -1 asks for a new one, written back before anything is queued.
long objectId(int* id)
{
    if (*id == -1) *id = static_cast<int>(currentInternalId++);
    return *id;
}

void takePen(CanvasDraw& d, float* width, int* style, int* cap, int* join, unsigned* colour, unsigned* brush)
{
    if (width) d.penWidth = *width, d.given |= CanvasDraw::penWidthGiven;
    if (style) d.penStyle = *style, d.given |= CanvasDraw::penStyleGiven;
    if (cap) d.capStyle = *cap, d.given |= CanvasDraw::capStyleGiven;
    if (join) d.joinStyle = *join, d.given |= CanvasDraw::joinStyleGiven;
    if (colour) d.penColor = *colour, d.given |= CanvasDraw::penColorGiven;
    if (brush) d.brushColor = *brush, d.given |= CanvasDraw::brushColorGiven;
}

// A draw with its shape in `d`: the common end of every draw function. -1 for a missing unit or
// id, 0 once the bridge has gone, else 1.
long queue(int* unit, int* id, CanvasDraw& d)
{
    if (!unit || !id) return -1;
    if (!bridgeUp()) return 0;
    d.unit = *unit;
    d.id = objectId(id);
    return queueCanvasDraw(d) ? 1 : 0;
}

// A list of `count` items of `size` floats. A negative or missing count, or a missing array for a
// count above 0, draws nothing.
long queueList(int* unit, int* id, CanvasDraw::Kind kind, const float* values, int* count, int size,
               CanvasDraw& d)
{
    if (!count || *count < 0 || (*count > 0 && !values)) return -1;
    d.kind = kind;
    d.values = values;
    d.valueCount = *count * size;
    return queue(unit, id, d);
}

// An object in a rectangle; a null rectangle draws nothing.
long queueInRect(int* unit, int* id, CanvasDraw::Kind kind, const float* rect, float* a, float* b,
                 CanvasDraw& d)
{
    if (!rect) return -1;
    d.kind = kind;
    std::memcpy(d.shape, rect, 4 * sizeof(float));
    d.shape[4] = a ? *a : 0.0f;
    d.shape[5] = b ? *b : 0.0f;
    return queue(unit, id, d);
}

} // namespace

extern "C" {

long ZEL_createCanvas(int* unit, char* title, int* width, int* height, int* maxWindowWidth,
                      int* maxWindowHeight, unsigned* backgroundColor, long titleLength)
{
    if (!unit) return -1;
    if (!bridgeUp()) return 0;
    *unit = static_cast<int>(currentInternalId++);
    QMap<QString, QVariant> p;
    p.insert(QStringLiteral("windowTitle"), latin1Text(title, titleLength));
    if (backgroundColor) p.insert(QStringLiteral("backgroundColor"), *backgroundColor);
    if (width && *width > 0) p.insert(QStringLiteral("width"), *width);
    if (height && *height > 0) p.insert(QStringLiteral("height"), *height);
    p.insert(QStringLiteral("maxWindowWidth"), maxWindowWidth ? *maxWindowWidth : -1);
    p.insert(QStringLiteral("maxWindowHeight"), maxWindowHeight ? *maxWindowHeight : -1);
    return GlueManager::createCanvasWindow(*unit, p) ? 1 : 0;
}

long ZEL_clearCanvas(int* unit)
{
    if (!unit) return -1;
    return GlueManager::clearCanvasWindow(*unit, {}) ? 1 : 0;
}

long ZEL_drawLines(int* unit, int* id, float* points, int* lineCount, float* penWidth, int* penStyle,
                   int* capStyle, int* joinStyle, unsigned* penColor)
{
    CanvasDraw d;
    takePen(d, penWidth, penStyle, capStyle, joinStyle, penColor, nullptr);
    return queueList(unit, id, CanvasDraw::line, points, lineCount, 4, d);
}

long ZEL_drawRectsWithBrush(int* unit, int* id, float* rects, int* rectCount, float* penWidth, int* penStyle,
                            int* capStyle, int* joinStyle, unsigned* penColor, unsigned* brushColor)
{
    CanvasDraw d;
    takePen(d, penWidth, penStyle, capStyle, joinStyle, penColor, brushColor);
    return queueList(unit, id, CanvasDraw::rect, rects, rectCount, 4, d);
}

long ZEL_drawRects(int* unit, int* id, float* rects, int* rectCount, float* penWidth, int* penStyle,
                   int* capStyle, int* joinStyle, unsigned* penColor)
{
    return ZEL_drawRectsWithBrush(unit, id, rects, rectCount, penWidth, penStyle, capStyle, joinStyle,
                                  penColor, nullptr);
}

long ZEL_drawRoundedRectsWithBrush(int* unit, int* id, float* rects, int* rectCount, float* xRadius,
                                   float* yRadius, float* penWidth, int* penStyle, int* capStyle,
                                   int* joinStyle, unsigned* penColor, unsigned* brushColor)
{
    CanvasDraw d;
    takePen(d, penWidth, penStyle, capStyle, joinStyle, penColor, brushColor);
    d.shape[4] = xRadius ? *xRadius : 0.0f;
    d.shape[5] = yRadius ? *yRadius : 0.0f;
    return queueList(unit, id, CanvasDraw::roundedRect, rects, rectCount, 4, d);
}

long ZEL_drawRoundedRects(int* unit, int* id, float* rects, int* rectCount, float* xRadius, float* yRadius,
                          float* penWidth, int* penStyle, int* capStyle, int* joinStyle, unsigned* penColor)
{
    return ZEL_drawRoundedRectsWithBrush(unit, id, rects, rectCount, xRadius, yRadius, penWidth, penStyle,
                                         capStyle, joinStyle, penColor, nullptr);
}

long ZEL_drawPolygonWithBrush(int* unit, int* id, float* points, int* pointCount, float* penWidth,
                              int* penStyle, int* capStyle, int* joinStyle, unsigned* penColor,
                              unsigned* brushColor)
{
    CanvasDraw d;
    takePen(d, penWidth, penStyle, capStyle, joinStyle, penColor, brushColor);
    return queueList(unit, id, CanvasDraw::polygon, points, pointCount, 2, d);
}

long ZEL_drawPolygon(int* unit, int* id, float* points, int* pointCount, float* penWidth, int* penStyle,
                     int* capStyle, int* joinStyle, unsigned* penColor)
{
    return ZEL_drawPolygonWithBrush(unit, id, points, pointCount, penWidth, penStyle, capStyle, joinStyle,
                                    penColor, nullptr);
}

long ZEL_drawEllipseWithBrush(int* unit, int* id, float* rect, float* penWidth, int* penStyle, int* capStyle,
                              int* joinStyle, unsigned* penColor, unsigned* brushColor)
{
    CanvasDraw d;
    takePen(d, penWidth, penStyle, capStyle, joinStyle, penColor, brushColor);
    return queueInRect(unit, id, CanvasDraw::ellipse, rect, nullptr, nullptr, d);
}

long ZEL_drawEllipse(int* unit, int* id, float* rect, float* penWidth, int* penStyle, int* capStyle,
                     int* joinStyle, unsigned* penColor)
{
    return ZEL_drawEllipseWithBrush(unit, id, rect, penWidth, penStyle, capStyle, joinStyle, penColor,
                                    nullptr);
}

long ZEL_drawArc(int* unit, int* id, float* rect, float* startAngle, float* spanAngle, float* penWidth,
                 int* penStyle, int* capStyle, int* joinStyle, unsigned* penColor)
{
    CanvasDraw d;
    takePen(d, penWidth, penStyle, capStyle, joinStyle, penColor, nullptr);
    return queueInRect(unit, id, CanvasDraw::arc, rect, startAngle, spanAngle, d);
}

long ZEL_drawChordWithBrush(int* unit, int* id, float* rect, float* startAngle, float* spanAngle,
                            float* penWidth, int* penStyle, int* capStyle, int* joinStyle, unsigned* penColor,
                            unsigned* brushColor)
{
    CanvasDraw d;
    takePen(d, penWidth, penStyle, capStyle, joinStyle, penColor, brushColor);
    return queueInRect(unit, id, CanvasDraw::chord, rect, startAngle, spanAngle, d);
}

long ZEL_drawChord(int* unit, int* id, float* rect, float* startAngle, float* spanAngle, float* penWidth,
                   int* penStyle, int* capStyle, int* joinStyle, unsigned* penColor)
{
    return ZEL_drawChordWithBrush(unit, id, rect, startAngle, spanAngle, penWidth, penStyle, capStyle,
                                  joinStyle, penColor, nullptr);
}

long ZEL_drawPieWithBrush(int* unit, int* id, float* rect, float* startAngle, float* spanAngle,
                          float* penWidth, int* penStyle, int* capStyle, int* joinStyle, unsigned* penColor,
                          unsigned* brushColor)
{
    CanvasDraw d;
    takePen(d, penWidth, penStyle, capStyle, joinStyle, penColor, brushColor);
    return queueInRect(unit, id, CanvasDraw::pie, rect, startAngle, spanAngle, d);
}

long ZEL_drawPie(int* unit, int* id, float* rect, float* startAngle, float* spanAngle, float* penWidth,
                 int* penStyle, int* capStyle, int* joinStyle, unsigned* penColor)
{
    return ZEL_drawPieWithBrush(unit, id, rect, startAngle, spanAngle, penWidth, penStyle, capStyle,
                                joinStyle, penColor, nullptr);
}

long ZEL_drawText(int* unit, int* id, float* rect, char* text, int* textFlags, char* fontFamilyName,
                  int* fontPointSize, int* fontWeight, bool* fontItalic, unsigned* textColor, long textLength,
                  long familyLength)
{
    CanvasDraw d;
    d.content = latin1Text(text, textLength);
    d.family = latin1Text(fontFamilyName, familyLength);
    d.textFlags = textFlags ? *textFlags : 0;
    d.pointSize = fontPointSize && *fontPointSize > 0 ? *fontPointSize : -1;
    d.weight = fontWeight ? *fontWeight : 1;
    // A 4-byte logical: any set bit of its first byte is true.
    d.italic = fontItalic && *reinterpret_cast<const unsigned char*>(fontItalic) != 0;
    if (textColor) d.textColor = *textColor, d.given |= CanvasDraw::textColorGiven;
    return queueInRect(unit, id, CanvasDraw::text, rect, nullptr, nullptr, d);
}

long ZEL_drawPicture(int* unit, int* id, float* rect, char* fileName, long nameLength)
{
    CanvasDraw d;
    d.content = latin1Text(fileName, nameLength);
    return queueInRect(unit, id, CanvasDraw::picture, rect, nullptr, nullptr, d);
}

} // extern "C"
