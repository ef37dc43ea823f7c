// zel/content/tests/contourplot_test.cpp: the contour plot, probed in its exported image.
#include "zel/content/contourplot.h"

#include "content_fixture.h"

#include <QImage>

#include <qwt_plot_spectrogram.h>
#include <qwt_scale_widget.h>

#include <cmath>
#include <memory>
#include <tuple>

using namespace zeltest;

namespace {

template <int Eighths> double constant(double*, double*)
{
    return Eighths / 8.0;
}

const QVariantList redGreenBlue{0xff0000u, 0x00ff00u, 0x0000ffu};
const QVariantList quarter{0.0, 0.25, 1.0};

// x, y and z all run from 0 to 1.
QMap<QString, QVariant> ramp(QVariantList colors = redGreenBlue, QVariantList thresholds = quarter,
                             QVariantList contours = {})
{
    QMap<QString, QVariant> properties{
        {"colorList", colors}, {"threshList", thresholds}, {"contourList", contours}};
    for (const char* key : {"xmin", "ymin", "zmin"})
        properties[key] = 0.0;
    for (const char* key : {"xmax", "ymax", "zmax"})
        properties[key] = 1.0;
    return properties;
}

std::unique_ptr<ContourPlot> plotShowing(int image, int contours)
{
    auto plot = std::make_unique<ContourPlot>(9);
    plot->setChartSettings({{"showImageBlend", image}, {"showContourLines", contours}});
    return plot;
}

QString write(ContourPlot& plot, ContourPlot::DataFunction f,
              const QMap<QString, QVariant>& properties = ramp())
{
    return plot.setChartData(properties, reinterpret_cast<void*>(f));
}

// The colour in the middle of the exported page, which lies inside the canvas.
void expectMiddle(ContourPlot& plot, QRgb expected, const char* what)
{
    QTemporaryDir dir;
    ASSERT_TRUE(plot.exportChart(dir.filePath("contour.png")));
    const QImage image(dir.filePath("contour.png"));
    const QRgb actual = image.pixel(image.width() / 2, image.height() / 2);
    EXPECT_NEAR(qRed(actual), qRed(expected), 2) << what;
    EXPECT_NEAR(qGreen(actual), qGreen(expected), 2) << what;
    EXPECT_NEAR(qBlue(actual), qBlue(expected), 2) << what;
}

} // namespace

// The inner colours stand at their thresholds; the first and last thresholds are not used, so two
// colours make a plain ramp and one colour fills the plot.
TEST(ContourPlot, ThresholdsPlaceTheInnerColourStops)
{
    const std::tuple<ContourPlot::DataFunction, QVariantList, QVariantList, QRgb, const char*> cases[]{
        {constant<2>, redGreenBlue, quarter, 0x00ff00, "z 0.25 is the middle colour"},
        {constant<1>, redGreenBlue, quarter, 0x808000, "z 0.125 halfway from the first to the middle"},
        {constant<5>, redGreenBlue, quarter, 0x008080, "z 0.625 halfway from the middle to the last"},
        {constant<0>, redGreenBlue, quarter, 0xff0000, "z 0 is the first colour"},
        {constant<4>, {0xff0000u, 0x0000ffu}, {0.9, 0.1}, 0x800080, "two colours: a plain ramp"},
        {constant<1>, {0x0000ffu}, {}, 0x0000ff, "one colour and no thresholds"},
    };
    auto plot = plotShowing(1, 0);
    for (const auto& [f, colors, thresholds, expected, what] : cases) {
        ASSERT_EQ(write(*plot, f, ramp(colors, thresholds)), "");
        expectMiddle(*plot, expected, what);
    }
}

TEST(ContourPlot, WithBothModesOffOnlyGridAndColourBarShow)
{
    auto plot = plotShowing(0, 0);
    ASSERT_EQ(write(*plot, constant<2>, ramp(redGreenBlue, quarter, {0.5, 1.0})), "");
    expectMiddle(*plot, 0xffffff, "canvas");
    EXPECT_TRUE(plot->axisEnabled(QwtPlot::yRight) && plot->axisWidget(QwtPlot::yRight)->isColorBarEnabled());
}

TEST(ContourPlot, ClearAndRewriteReplaceThePictureAndBadWritesKeepIt)
{
    auto plot = plotShowing(1, 1);
    plot->clearChartData(); // before any write
    ASSERT_EQ(write(*plot, constant<8>, ramp(redGreenBlue, quarter, {0.3, 0.6, 1})), "");
    plot->clearChartData();
    expectMiddle(*plot, 0xffffff, "cleared");
    ASSERT_EQ(write(*plot, constant<2>), "");
    expectMiddle(*plot, 0x00ff00, "written again");

    QMap<QString, QVariant> infinite = ramp();
    infinite["zmax"] = INFINITY;
    for (const auto& properties : {ramp({}, {}), infinite})
        EXPECT_NE(write(*plot, constant<0>, properties), "");
    EXPECT_NE(write(*plot, nullptr), "");
    expectMiddle(*plot, 0x00ff00, "kept");

    // Thresholds and samples that are not numbers draw no colour.
    const auto notANumber = [](double*, double*) { return double(NAN); };
    ASSERT_EQ(write(*plot, notANumber, ramp(redGreenBlue, {NAN, NAN}, {NAN, 0.5, 1})), "");
    expectMiddle(*plot, 0xffffff, "no colour for NaN");
}

using ContourPlotWindow = ContentDesktop;

// Contour values 1, 2, 3 make the levels 1 and 2: the last value is no level.
TEST_F(ContourPlotWindow, TheProgramWritesAndHearsOfRefusedWrites)
{
    BoxAnswers boxes;
    start([] {
        int unit = 0, missing = 4711, on = 1, three = 3, none = 0;
        char title[] = "Heads", axis[] = "head";
        ZEL_createContourPlot(&unit, &on, &on, &on, &on, title, -1);
        programLog.add(unit);
        double thresholds[]{0.0, 0.25, 1.0}, contours[]{1, 2, 3}, low = 0, high = 4;
        unsigned colors[]{0xff0000, 0x00ff00, 0x0000ff};
        auto write = [&](int* target, int* colorCount, double (*f)(double*, double*)) {
            return ZEL_writeContourPlot(target, axis, thresholds, colors, colorCount, contours, &three, &low,
                                        &high, &low, &high, &low, &high, f, -1);
        };
        programLog.add(write(&unit, &three, constant<0>) + write(&missing, &three, constant<0>) +
                       write(&unit, &none, constant<0>) + write(&unit, &three, nullptr));
        ZEL_clearContourPlot(&missing);
        programLog.add(ZEL_saveContourPlot(&unit, title, -1));
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(3));
    EXPECT_EQ(programLog.at(1), 4);
    ContourPlot* plot = controller->getContourPlotForUnit(programLog.at(0));
    ASSERT_NE(plot, nullptr);
    EXPECT_EQ(plot->spectrogram->contourLevels(), (QList<double>{1, 2}));
    const QString unit = "Error|Contour Plot for unit number " + QString::number(programLog.at(0));
    EXPECT_EQ(boxes.seen, (QStringList{"Error|Contour Plot for unit number 4711 does not exist",
                                       unit + " needs at least one colour", unit + " has no data function",
                                       "Error|Contour Plot for unit number 4711 does not exist"}));
    EXPECT_TRUE(QFile::exists(path("Heads.png")));
}
