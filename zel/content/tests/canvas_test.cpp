// zel/content/tests/canvas_test.cpp: what a canvas draws, probed in its exported image; its sizes
// in a window; and drawing from the program thread.
#include "content_fixture.h"

#include "zel/content/canvas.h"
#include "zel/content/canvasobjects.h"

#include <QImage>
#include <QScrollArea>

#include <algorithm>
#include <tuple>

namespace zeltest {
namespace {

constexpr QRgb white = 0xFFFFFFFF, black = 0xFF000000, red = 0xFFFF0000, green = 0xFF00FF00,
               blue = 0xFF0000FF;

template <typename T> QVariantList list(std::initializer_list<T> items)
{
    QVariantList v;
    for (const T& item : items)
        v.append(item);
    return v;
}

TEST(CanvasImage, ShapesTextAndPicturesLandWhereTheirKeysSayAndAClearTakesAll)
{
    QTemporaryDir dir;
    Canvas canvas{1000001, "Sketch"};
    canvas.setChartSettings(
        {{"windowTitle", "Sketch"}, {"width", 200}, {"height", 150}, {"backgroundColor", 0xFFFFFFu}});
    canvas.createObject(
        1, {{"type", "Rect"}, {"rectList", list<QRectF>({{10, 10, 40, 30}})}, {"brushColor", 0xFF0000u}});
    // An arc ignores the brush it is given.
    canvas.createObject(2, {{"type", "Arc"},
                            {"rect", QRectF(60, 10, 60, 60)},
                            {"startAngle", 0.0f},
                            {"spanAngle", 360.0f},
                            {"brushColor", 0x00FF00u},
                            {"penWidth", 3.0f}});
    // Two lines are two segments, not a polyline through four points.
    canvas.createObject(3, {{"type", "Line"},
                            {"pointList", list<QPointF>({{10, 100}, {40, 100}, {60, 100}, {90, 100}})},
                            {"penWidth", 4.0f}});
    // A five-pointed star drawn in one stroke: its centre is a hole under the odd-even rule.
    canvas.createObject(
        4, {{"type", "Polygon"},
            {"pointsList", list<QPointF>({{150, 80}, {168, 140}, {120, 102}, {180, 102}, {132, 140}})},
            {"brushColor", 0x0000FFu},
            {"penStyle", 0}});
    // No pen keys: a black one-pixel outline and no fill.
    canvas.createObject(5, {{"type", "Rect"}, {"rectList", list<QRectF>({{10, 120, 20, 20}})}});
    // A picture of four pixels, each scaled to a quarter of its 40 x 40 rect.
    QImage source(2, 2, QImage::Format_RGB32);
    const QRgb quarters[] = {red, green, blue, black};
    for (int i = 0; i < 4; ++i)
        source.setPixel(i % 2, i / 2, quarters[i]);
    ASSERT_TRUE(source.save(dir.filePath("quad.png")));
    canvas.createObject(
        6, {{"type", "Picture"}, {"rect", QRectF(100, 50, 40, 40)}, {"fileName", dir.filePath("quad.png")}});
    canvas.createObject(7, {{"type", "Text"},
                            {"rect", QRectF(35, 105, 80, 40)},
                            {"text", "WWW"},
                            {"textFlags", int(Qt::AlignCenter)},
                            {"fontPointSize", 20},
                            {"fontWeight", 4},
                            {"textColor", 0x0000FFu}});
    ASSERT_TRUE(canvas.exportImage(dir.filePath("canvas.png")));
    const QImage image = QImage(dir.filePath("canvas.png")).convertToFormat(QImage::Format_ARGB32);

    const std::tuple<int, int, QRgb, const char*> probes[] = {
        {0, 0, black, "outline, top left"},
        {199, 149, black, "outline, bottom right"},
        {1, 1, white, "background"},
        {30, 25, red, "rect fill"},
        {90, 40, white, "inside the arc"},
        {90, 10, black, "arc line"},
        {25, 100, black, "first segment"},
        {75, 100, black, "second segment"},
        {50, 100, white, "gap between segments"},
        {150, 112, white, "star centre"},
        {150, 88, blue, "star tip"},
        {20, 130, white, "unfilled rect"},
    };
    for (const auto& [x, y, colour, what] : probes)
        EXPECT_EQ(image.pixel(x, y), colour) << what;
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(image.pixel(105 + 30 * (i % 2), 55 + 30 * (i / 2)), quarters[i]) << "picture quarter " << i;
    EXPECT_LT(qRed(image.pixel(10, 130)), 160) << "unfilled rect's outline";
    // The text: blue, and its blends with the white background, only.
    int bluish = 0, other = 0;
    for (int y = 105; y < 145; ++y)
        for (int x = 35; x < 115; ++x)
            if (const QRgb c = image.pixel(x, y); c != white)
                ++(qBlue(c) > 200 && qRed(c) == qGreen(c) ? bluish : other);
    EXPECT_GT(bluish, 50);
    EXPECT_EQ(other, 0);

    // A picture that does not load is reported and kept, empty.
    QString seen;
    DialogAnswerer answerer([&](QWidget* modal) { seen = acceptMessageBox(modal); });
    canvas.createObject(8,
                        {{"type", "Picture"}, {"rect", QRectF(0, 0, 20, 20)}, {"fileName", "/no/such.png"}});
    EXPECT_EQ(seen, QString("|Could not display /no/such.png"));
    EXPECT_EQ(canvas.objectCount(), 8);
    canvas.createObject(9, {{"type", "Spline"}});
    EXPECT_EQ(canvas.objectCount(), 8) << "an unknown type adds nothing";
    canvas.clear();
    EXPECT_EQ(canvas.objectCount(), 0);
}

TEST(CanvasCodes, PenCapJoinAndWeightCodesMapByTheirTables)
{
    // Indexed by code + 1: codes -1 and 6 (3 for caps and joins) leave the pen's own.
    const Qt::PenStyle styles[] = {Qt::DotLine, Qt::NoPen,       Qt::SolidLine,      Qt::DashLine,
                                   Qt::DotLine, Qt::DashDotLine, Qt::DashDotDotLine, Qt::DotLine};
    const Qt::PenCapStyle caps[] = {Qt::RoundCap, Qt::SquareCap, Qt::FlatCap, Qt::RoundCap, Qt::RoundCap};
    const Qt::PenJoinStyle joins[] = {Qt::MiterJoin, Qt::BevelJoin, Qt::MiterJoin, Qt::RoundJoin,
                                      Qt::MiterJoin};
    for (int code = -1; code <= 6; ++code) {
        const int capCode = std::min(code, 3);
        QPen pen(Qt::black, 1, Qt::DotLine, Qt::RoundCap, Qt::MiterJoin);
        applyPenStyleCode(pen, code);
        applyCapStyleCode(pen, capCode);
        applyJoinStyleCode(pen, capCode);
        EXPECT_EQ(pen.style(), styles[code + 1]) << code;
        EXPECT_EQ(pen.capStyle(), caps[capCode + 1]) << code;
        EXPECT_EQ(pen.joinStyle(), joins[capCode + 1]) << code;
    }
    const int weights[][2] = {{1, 50}, {2, 63}, {3, 75}, {4, 87}, {0, 25}, {9, 25}};
    for (const auto& w : weights)
        EXPECT_EQ(fontWeightForCode(w[0]), w[1]);
}

// The program thread's canvas, published to the test.
std::atomic<int> programUnit{0}, firstId{-1}, secondId{-1};
std::atomic<long> accepted{-1}; // of the bad calls; set once the drawing is done

void drawingProgram()
{
    int unit = 0, width = 120, height = 80, noMax = -1, one = 1;
    unsigned background = 0xFFFFFF, fill = 0xFF0000;
    char title[] = "Program canvas";
    ZEL_createCanvas(&unit, title, &width, &height, &noMax, &noMax, &background, -1);
    programUnit = unit;
    int rectId = -1, lineId = -1, textId = -1;
    float rect[] = {10, 10, 30, 30}, line[] = {0, 70, 119, 70};
    ZEL_drawRectsWithBrush(&unit, &rectId, rect, &one, nullptr, nullptr, nullptr, nullptr, nullptr, &fill);
    firstId = rectId;
    ZEL_drawLines(&unit, &lineId, line, &one, nullptr, nullptr, nullptr, nullptr, nullptr);
    secondId = lineId;
    // The same id again: the rect is replaced, and comes on top of the line.
    ZEL_drawRectsWithBrush(&unit, &rectId, rect, &one, nullptr, nullptr, nullptr, nullptr, nullptr, &fill);
    char latin[] = "Z\xFCrich";
    ZEL_drawText(&unit, &textId, rect, latin, nullptr, latin, nullptr, nullptr, nullptr, nullptr, -1, -1);
    // Bad input: no crash, and nothing drawn.
    int negative = -4, unknown = 99, stray = -1;
    const long results[] = {
        ZEL_drawPolygon(&unit, &lineId, nullptr, &one, nullptr, nullptr, nullptr, nullptr, nullptr),
        ZEL_drawRects(&unit, &lineId, rect, &negative, nullptr, nullptr, nullptr, nullptr, nullptr),
        ZEL_drawLines(&unit, &lineId, line, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
        ZEL_drawEllipse(&unit, &lineId, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
        ZEL_drawText(&unit, nullptr, rect, title, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, -1,
                     -1),
        ZEL_drawPicture(nullptr, &lineId, rect, title, -1)};
    ZEL_drawArc(&unknown, &stray, rect, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    ZEL_clearCanvas(&unknown);
    ZEL_saveCanvas(&unit, const_cast<char*>("drawn.pdf"), -1);
    accepted = std::count(std::begin(results), std::end(results), 1);
    ZEL_startEvents();
}

class CanvasWindow : public ContentDesktop
{
protected:
    Canvas* made(const QMap<QString, QVariant>& properties)
    {
        controller->createCanvasForUnit(4242, properties);
        return controller->getCanvasForUnit(4242);
    }
};

TEST_F(CanvasWindow, ProgramDrawsByIdAndBadCallsDrawNothing)
{
    start(drawingProgram);
    ASSERT_TRUE(waitUntil([] { return accepted != -1; }));
    Canvas* canvas = nullptr;
    ASSERT_TRUE(waitUntil([&] {
        canvas = controller->getCanvasForUnit(programUnit);
        return canvas && canvas->objectCount() == 3;
    }));
    EXPECT_GE(firstId, 1000000);
    EXPECT_GT(secondId, firstId);
    EXPECT_EQ(canvas->objectList().at(0)->id, secondId) << "the rect drawn again went on top of the line";
    EXPECT_EQ(canvas->objectList().at(1)->id, firstId);
    EXPECT_EQ(canvas->size(), QSize(120, 80));
    EXPECT_EQ(accepted, 0);
    // A pdf name gets .png: a canvas saves images only.
    const QImage saved("drawn.pdf.png", "png");
    EXPECT_EQ(saved.size(), QSize(120, 80));
    EXPECT_EQ(saved.pixel(25, 37), red) << "the save came behind the drawing";
    auto* text = qobject_cast<TextCanvasObject*>(canvas->objectList().at(2));
    ASSERT_TRUE(text);
    EXPECT_EQ(text->text, QString::fromUtf8("Zürich"));
}

TEST_F(CanvasWindow, ASideLeftOutIsThreeQuartersOfTheMainWindowAndMaximaSizeTheWindow)
{
    start([] { ZEL_startEvents(); });
    ASSERT_TRUE(waitUntil([] { return start_events_called.load(); }));
    // 0.75 of the 340 x 700 main window.
    EXPECT_EQ(made({{"height", 300}, {"maxWindowWidth", -1}, {"maxWindowHeight", -1}})->size(),
              QSize(255, 300));
    EXPECT_EQ(made({{"width", 100}, {"maxWindowWidth", -1}, {"maxWindowHeight", -1}})->size(),
              QSize(100, 525));
    Canvas* open = made({{"width", 300}, {"height", 200}, {"maxWindowWidth", -1}, {"maxWindowHeight", -1}});
    EXPECT_EQ(open->window()->frameGeometry().size(), QSize(300, 200));
    EXPECT_EQ(open->window()->maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    EXPECT_TRUE(qobject_cast<QScrollArea*>(open->window()->findChild<QScrollArea*>()));
    Canvas* limited =
        made({{"width", 300}, {"height", 200}, {"maxWindowWidth", -1}, {"maxWindowHeight", 500}});
    EXPECT_EQ(limited->window()->maximumSize(), QSize(1024, 500));
}

} // namespace
} // namespace zeltest
