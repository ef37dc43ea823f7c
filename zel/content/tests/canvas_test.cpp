// zel/content/tests/canvas_test.cpp: what a canvas draws, probed in its exported image; its sizes
// in a window; and drawing from the program thread.
#include "content_fixture.h"

#include "zel/content/canvas.h"
#include "zel/content/canvasobjects.h"

#include <QFileInfo>
#include <QImage>
#include <QScrollArea>
#include <QTemporaryDir>

namespace zeltest {
namespace {

using Props = QMap<QString, QVariant>;

constexpr QRgb white = 0xFFFFFFFF, black = 0xFF000000, red = 0xFFFF0000, green = 0xFF00FF00,
               blue = 0xFF0000FF;

QVariantList rects(std::initializer_list<QRectF> list)
{
    QVariantList v;
    for (const QRectF& r : list)
        v.append(r);
    return v;
}

QVariantList points(std::initializer_list<QPointF> list)
{
    QVariantList v;
    for (const QPointF& p : list)
        v.append(p);
    return v;
}

class CanvasImage : public ::testing::Test
{
protected:
    void SetUp() override
    {
        canvas.setChartSettings(
            {{"windowTitle", "Sketch"}, {"width", 200}, {"height", 150}, {"backgroundColor", 0xFFFFFFu}});
    }

    QImage exported()
    {
        const QString name = dir.filePath("canvas.png");
        EXPECT_TRUE(canvas.exportImage(name));
        return QImage(name).convertToFormat(QImage::Format_ARGB32);
    }

    QTemporaryDir dir;
    Canvas canvas{1000001, "Sketch"};
};

TEST_F(CanvasImage, ShapesFillsAndOutlinesLandWhereTheirKeysSay)
{
    canvas.createObject(
        1, {{"type", "Rect"}, {"rectList", rects({{10, 10, 40, 30}})}, {"brushColor", 0xFF0000u}});
    // An arc ignores the brush it is given.
    canvas.createObject(2, {{"type", "Arc"},
                            {"rect", QRectF(60, 10, 60, 60)},
                            {"startAngle", 0.0f},
                            {"spanAngle", 360.0f},
                            {"brushColor", 0x00FF00u},
                            {"penWidth", 3.0f}});
    // Two lines are two segments, not a polyline through four points.
    canvas.createObject(3, {{"type", "Line"},
                            {"pointList", points({{10, 100}, {40, 100}, {60, 100}, {90, 100}})},
                            {"penWidth", 4.0f}});
    // A five-pointed star drawn in one stroke: its centre is a hole under the odd-even rule.
    canvas.createObject(4,
                        {{"type", "Polygon"},
                         {"pointsList", points({{150, 80}, {168, 140}, {120, 102}, {180, 102}, {132, 140}})},
                         {"brushColor", 0x0000FFu},
                         {"penStyle", 0}});
    // No pen keys: a black one-pixel outline and no fill.
    canvas.createObject(5, {{"type", "Rect"}, {"rectList", rects({{10, 120, 20, 20}})}});
    const QImage image = exported();

    const struct
    {
        int x, y;
        QRgb colour;
        const char* what;
    } probes[] = {
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
    for (const auto& p : probes)
        EXPECT_EQ(image.pixel(p.x, p.y), p.colour) << p.what;
    EXPECT_LT(qRed(image.pixel(10, 130)), 160) << "unfilled rect's outline";
}

TEST_F(CanvasImage, TextTakesItsColourAndAPictureIsScaledIntoItsRect)
{
    QImage source(2, 2, QImage::Format_RGB32);
    source.setPixel(0, 0, red);
    source.setPixel(1, 0, green);
    source.setPixel(0, 1, blue);
    source.setPixel(1, 1, black);
    ASSERT_TRUE(source.save(dir.filePath("quad.png")));
    canvas.createObject(
        1, {{"type", "Picture"}, {"rect", QRectF(100, 50, 40, 40)}, {"fileName", dir.filePath("quad.png")}});
    canvas.createObject(2, {{"type", "Text"},
                            {"rect", QRectF(10, 10, 80, 40)},
                            {"text", "WWW"},
                            {"textFlags", int(Qt::AlignCenter)},
                            {"fontPointSize", 20},
                            {"fontWeight", 4},
                            {"textColor", 0x0000FFu}});
    const QImage image = exported();

    EXPECT_EQ(image.pixel(105, 55), red);
    EXPECT_EQ(image.pixel(135, 55), green);
    EXPECT_EQ(image.pixel(105, 85), blue);
    EXPECT_EQ(image.pixel(135, 85), black);
    int bluish = 0, other = 0;
    for (int y = 10; y < 50; ++y)
        for (int x = 10; x < 90; ++x) {
            const QRgb c = image.pixel(x, y);
            if (c == white) continue;
            if (qBlue(c) > 200 && qRed(c) == qGreen(c))
                ++bluish;
            else
                ++other;
        }
    EXPECT_GT(bluish, 50);
    EXPECT_EQ(other, 0);
}

TEST_F(CanvasImage, AnIdDrawnAgainReplacesItsObjectAndComesToTheTop)
{
    canvas.createObject(
        7, {{"type", "Rect"}, {"rectList", rects({{10, 10, 50, 50}})}, {"brushColor", 0xFF0000u}});
    canvas.createObject(
        8, {{"type", "Rect"}, {"rectList", rects({{40, 40, 50, 50}})}, {"brushColor", 0x00FF00u}});
    canvas.createObject(7,
                        {{"type", "Ellipse"}, {"rect", QRectF(30, 30, 30, 30)}, {"brushColor", 0x0000FFu}});
    const QImage image = exported();
    EXPECT_EQ(canvas.objectCount(), 2);
    EXPECT_EQ(image.pixel(15, 15), white) << "the first rect 7 is gone";
    EXPECT_EQ(image.pixel(50, 50), blue) << "the new 7 lies over 8";
    canvas.clear();
    EXPECT_EQ(canvas.objectCount(), 0);
}

TEST_F(CanvasImage, APictureThatDoesNotLoadIsReportedAndKeptEmpty)
{
    QString seen;
    DialogAnswerer answerer([&](QWidget* modal) { seen = acceptMessageBox(modal); });
    canvas.createObject(3,
                        {{"type", "Picture"}, {"rect", QRectF(0, 0, 20, 20)}, {"fileName", "/no/such.png"}});
    EXPECT_EQ(seen, QString("|Could not display /no/such.png"));
    EXPECT_EQ(canvas.objectCount(), 1);
    canvas.createObject(4, {{"type", "Spline"}});
    EXPECT_EQ(canvas.objectCount(), 1) << "an unknown type adds nothing";
}

TEST_F(CanvasImage, SavingKeepsPngAndBmpAndGivesAnythingElsePng)
{
    const struct
    {
        const char* given;
        const char* written;
    } names[] = {{"a.png", "a.png"}, {"b.bmp", "b.bmp"}, {"c.pdf", "c.pdf.png"}, {"d.PNG", "d.PNG.png"}};
    for (const auto& n : names) {
        QString name = dir.filePath(n.given);
        EXPECT_TRUE(canvas.saveWithoutDialog(name));
        EXPECT_EQ(name, dir.filePath(n.written));
        EXPECT_FALSE(QImage(name).isNull()) << n.written;
    }
    EXPECT_EQ(QImage(dir.filePath("c.pdf.png")).size(), QSize(200, 150));
}

TEST(CanvasCodes, PenCapJoinAndWeightCodesMapByTheirTables)
{
    const Qt::PenStyle styles[] = {Qt::NoPen,   Qt::SolidLine,   Qt::DashLine,
                                   Qt::DotLine, Qt::DashDotLine, Qt::DashDotDotLine};
    for (int code = 0; code < 6; ++code) {
        QPen pen(Qt::DashLine);
        applyPenStyleCode(pen, code);
        EXPECT_EQ(pen.style(), styles[code]) << code;
    }
    const Qt::PenCapStyle caps[] = {Qt::SquareCap, Qt::FlatCap, Qt::RoundCap};
    const Qt::PenJoinStyle joins[] = {Qt::BevelJoin, Qt::MiterJoin, Qt::RoundJoin};
    for (int code = 0; code < 3; ++code) {
        QPen pen;
        applyCapStyleCode(pen, code);
        applyJoinStyleCode(pen, code);
        EXPECT_EQ(pen.capStyle(), caps[code]);
        EXPECT_EQ(pen.joinStyle(), joins[code]);
    }
    QPen pen(Qt::black, 1, Qt::DotLine, Qt::RoundCap, Qt::MiterJoin);
    applyPenStyleCode(pen, 6);
    applyCapStyleCode(pen, -1);
    applyJoinStyleCode(pen, 3);
    EXPECT_EQ(pen, QPen(Qt::black, 1, Qt::DotLine, Qt::RoundCap, Qt::MiterJoin))
        << "other codes leave the pen";
    const int weights[][2] = {{1, 50}, {2, 63}, {3, 75}, {4, 87}, {0, 25}, {9, 25}};
    for (const auto& w : weights)
        EXPECT_EQ(fontWeightForCode(w[0]), w[1]);
}

// The program thread's canvas, published to the test.
std::atomic<int> programUnit{0};
std::atomic<int> firstId{-1}, secondId{-1};
std::atomic<bool> drawn{false};
std::atomic<long> rejected{-1};

void drawingProgram()
{
    int unit = 0, width = 120, height = 80, noMax = -1, one = 1;
    unsigned background = 0xFFFFFF, fill = 0xFF0000;
    char title[] = "Program canvas";
    ZEL_createCanvas(&unit, title, &width, &height, &noMax, &noMax, &background, -1);
    programUnit = unit;
    int rectId = -1, lineId = -1, textId = -1;
    float rect[] = {10, 10, 30, 30};
    float line[] = {0, 70, 119, 70};
    ZEL_drawRectsWithBrush(&unit, &rectId, rect, &one, nullptr, nullptr, nullptr, nullptr, nullptr, &fill);
    firstId = rectId;
    ZEL_drawLines(&unit, &lineId, line, &one, nullptr, nullptr, nullptr, nullptr, nullptr);
    secondId = lineId;
    ZEL_drawRectsWithBrush(&unit, &rectId, rect, &one, nullptr, nullptr, nullptr, nullptr, nullptr, &fill);
    char latin[] = "Z\xFCrich";
    ZEL_drawText(&unit, &textId, rect, latin, nullptr, latin, nullptr, nullptr, nullptr, nullptr, -1, -1);
    // Bad input: no crash, and nothing drawn.
    int negative = -4, unknown = 99;
    long accepted = 0;
    accepted +=
        ZEL_drawPolygon(&unit, &lineId, nullptr, &one, nullptr, nullptr, nullptr, nullptr, nullptr) == 1;
    accepted +=
        ZEL_drawRects(&unit, &lineId, rect, &negative, nullptr, nullptr, nullptr, nullptr, nullptr) == 1;
    accepted +=
        ZEL_drawLines(&unit, &lineId, line, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr) == 1;
    accepted += ZEL_drawEllipse(&unit, &lineId, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr) == 1;
    accepted += ZEL_drawText(&unit, nullptr, rect, title, nullptr, nullptr, nullptr, nullptr, nullptr,
                             nullptr, -1, -1) == 1;
    accepted += ZEL_drawPicture(nullptr, &lineId, rect, title, -1) == 1;
    int stray = -1;
    ZEL_drawArc(&unknown, &stray, rect, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    ZEL_clearCanvas(&unknown);
    ZEL_saveCanvas(&unit, const_cast<char*>("drawn.pdf"), -1);
    rejected = accepted;
    drawn = true;
    ZEL_startEvents();
}

class CanvasWindow : public ContentDesktop
{
protected:
    void startIdle()
    {
        start([] { ZEL_startEvents(); });
        ASSERT_TRUE(waitUntil([] { return start_events_called.load(); }));
    }

    Canvas* made(Props properties)
    {
        controller->createCanvasForUnit(4242, properties);
        return controller->getCanvasForUnit(4242);
    }
};

TEST_F(CanvasWindow, ProgramDrawsByIdAndBadCallsDrawNothing)
{
    start(drawingProgram);
    ASSERT_TRUE(waitUntil([] { return drawn.load(); }));
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
    EXPECT_EQ(rejected, 0);
    const QImage saved("drawn.pdf.png", "png");
    EXPECT_EQ(saved.size(), QSize(120, 80));
    EXPECT_EQ(saved.pixel(25, 37), red) << "the save came behind the drawing";
    auto* text = qobject_cast<TextCanvasObject*>(canvas->objectList().at(2));
    ASSERT_TRUE(text);
    EXPECT_EQ(text->text, QString::fromUtf8("Zürich"));
}

TEST_F(CanvasWindow, ASideLeftOutIsThreeQuartersOfTheMainWindow)
{
    startIdle();
    // 0.75 of the 340 x 700 main window.
    EXPECT_EQ(made({{"height", 300}, {"maxWindowWidth", -1}, {"maxWindowHeight", -1}})->size(),
              QSize(255, 300));
    EXPECT_EQ(made({{"width", 100}, {"maxWindowWidth", -1}, {"maxWindowHeight", -1}})->size(),
              QSize(100, 525));
}

TEST_F(CanvasWindow, MaximaSizeTheSeparateWindow)
{
    startIdle();
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
