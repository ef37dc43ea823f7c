// zel/content/tests/contourplot_test.cpp: the contour plot, probed in its exported image.
#include "zel/content/contourplot.h"

#include "content_fixture.h"
#include "zel/core/zel.h"

#include <QImage>
#include <QTemporaryDir>

#include <qwt_plot_spectrogram.h>
#include <qwt_scale_widget.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

template <int Eighths> double constant(double*, double*)
{
    return Eighths / 8.0;
}

double notANumber(double*, double*)
{
    return std::numeric_limits<double>::quiet_NaN();
}

double slope(double* x, double*)
{
    return *x;
}

QMap<QString, QVariant> ramp(QVariantList colors, QVariantList thresholds, QVariantList contours = {})
{
    return {{"rightAxisName", "z"},
            {"xmin", 0.0},
            {"xmax", 1.0},
            {"ymin", 0.0},
            {"ymax", 1.0},
            {"zmin", 0.0},
            {"zmax", 1.0},
            {"colorList", colors},
            {"threshList", thresholds},
            {"contourList", contours}};
}

const QVariantList redGreenBlue{0xff0000u, 0x00ff00u, 0x0000ffu};
const QVariantList quarter{0.0, 0.25, 1.0};

ContourPlot* imagePlot(int image = 1, int contours = 0)
{
    auto* plot = new ContourPlot(9);
    plot->setChartSettings({{"showImageBlend", image}, {"showContourLines", contours}});
    return plot;
}

// The middle of the exported page lies inside the canvas.
QRgb middleOfExport(ContourPlot& plot)
{
    QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("contour.png"));
    EXPECT_TRUE(plot.exportChart(name));
    const QImage image(name);
    return image.pixel(image.width() / 2, image.height() / 2);
}

void expectColor(QRgb actual, int red, int green, int blue, const char* what)
{
    EXPECT_NEAR(qRed(actual), red, 2) << what;
    EXPECT_NEAR(qGreen(actual), green, 2) << what;
    EXPECT_NEAR(qBlue(actual), blue, 2) << what;
}

} // namespace

TEST(ContourPlot, ThresholdsPlaceTheInnerColourStops)
{
    const struct
    {
        ContourPlot::DataFunction function;
        int red, green, blue;
        const char* what;
    } cases[]{
        {constant<2>, 0, 255, 0, "z 0.25 is the middle colour"},
        {constant<1>, 128, 128, 0, "z 0.125 halfway from the first to the middle"},
        {constant<5>, 0, 128, 128, "z 0.625 halfway from the middle to the last"},
        {constant<0>, 255, 0, 0, "z 0 is the first colour"},
    };
    std::unique_ptr<ContourPlot> plot(imagePlot());
    for (const auto& c : cases) {
        ASSERT_EQ(plot->setChartData(ramp(redGreenBlue, quarter), reinterpret_cast<void*>(c.function)), "");
        expectColor(middleOfExport(*plot), c.red, c.green, c.blue, c.what);
    }
    // Two colours make a plain ramp whatever the thresholds say.
    ASSERT_EQ(
        plot->setChartData(ramp({0xff0000u, 0x0000ffu}, {0.9, 0.1}), reinterpret_cast<void*>(constant<4>)),
        "");
    expectColor(middleOfExport(*plot), 128, 0, 128, "two colours");
}

TEST(ContourPlot, TheLastContourValueIsNoLevel)
{
    std::unique_ptr<ContourPlot> plot(imagePlot(0, 1));
    const QList<QVariantList> contours{{1.0, 2.0, 3.0}, {1.0}, {}};
    const QList<QList<double>> levels{{1.0, 2.0}, {}, {}};
    for (int i = 0; i < contours.size(); ++i) {
        ASSERT_EQ(
            plot->setChartData(ramp(redGreenBlue, quarter, contours[i]), reinterpret_cast<void*>(slope)), "");
        EXPECT_EQ(plot->spectrogram->contourLevels(), levels[i]) << i;
    }
}

TEST(ContourPlot, WithBothModesOffOnlyGridAndColourBarShow)
{
    std::unique_ptr<ContourPlot> plot(imagePlot(0, 0));
    ASSERT_EQ(
        plot->setChartData(ramp(redGreenBlue, quarter, {0.5, 1.0}), reinterpret_cast<void*>(constant<2>)),
        "");
    expectColor(middleOfExport(*plot), 255, 255, 255, "canvas");
    EXPECT_TRUE(plot->axisEnabled(QwtPlot::yRight));
    EXPECT_TRUE(plot->axisWidget(QwtPlot::yRight)->isColorBarEnabled());
}

TEST(ContourPlot, ClearAndRewriteReplaceThePicture)
{
    std::unique_ptr<ContourPlot> plot(imagePlot(1, 1));
    plot->clearChartData(); // before any write
    ASSERT_EQ(plot->setChartData(ramp(redGreenBlue, quarter, {0.3, 0.6, 1}), reinterpret_cast<void*>(slope)),
              "");
    plot->clearChartData();
    expectColor(middleOfExport(*plot), 255, 255, 255, "cleared");
    ASSERT_EQ(plot->setChartData(ramp(redGreenBlue, quarter), reinterpret_cast<void*>(constant<0>)), "");
    ASSERT_EQ(plot->setChartData(ramp(redGreenBlue, quarter), reinterpret_cast<void*>(constant<2>)), "");
    expectColor(middleOfExport(*plot), 0, 255, 0, "second write");
}

TEST(ContourPlot, BadWritesAreRefusedAndKeepThePicture)
{
    std::unique_ptr<ContourPlot> plot(imagePlot());
    ASSERT_EQ(plot->setChartData(ramp(redGreenBlue, quarter), reinterpret_cast<void*>(constant<2>)), "");
    QMap<QString, QVariant> infinite = ramp(redGreenBlue, quarter);
    infinite["zmax"] = std::numeric_limits<double>::infinity();
    const QMap<QString, QVariant> refused[]{ramp({}, {}), infinite};
    for (const auto& properties : refused)
        EXPECT_NE(plot->setChartData(properties, reinterpret_cast<void*>(constant<0>)), "");
    EXPECT_NE(plot->setChartData(ramp(redGreenBlue, quarter), nullptr), "");
    expectColor(middleOfExport(*plot), 0, 255, 0, "kept");

    // One colour, thresholds missing or out of range, and NaN samples are drawable.
    const double nan = std::numeric_limits<double>::quiet_NaN();
    ASSERT_EQ(plot->setChartData(ramp({0x0000ffu}, {}), reinterpret_cast<void*>(constant<1>)), "");
    expectColor(middleOfExport(*plot), 0, 0, 255, "one colour");
    ASSERT_EQ(
        plot->setChartData(ramp(redGreenBlue, {nan, nan}, {nan, 0.5, 1}), reinterpret_cast<void*>(slope)),
        "");
    middleOfExport(*plot);
    ASSERT_EQ(plot->setChartData(ramp(redGreenBlue, quarter, {0.5, 1}), reinterpret_cast<void*>(notANumber)),
              "");
    middleOfExport(*plot);
}

namespace zeltest {
namespace {

class ContourPlotWindow : public ContentDesktop
{
};

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
        auto write = [&](int* target, int* colorCount, double (*function)(double*, double*)) {
            return ZEL_writeContourPlot(target, axis, thresholds, colors, colorCount, contours, &three, &low,
                                        &high, &low, &high, &low, &high, function, -1);
        };
        programLog.add(write(&unit, &three, slope));
        programLog.add(write(&missing, &three, slope));
        programLog.add(write(&unit, &none, slope));
        programLog.add(write(&unit, &three, nullptr));
        ZEL_clearContourPlot(&missing);
        programLog.add(ZEL_saveContourPlot(&unit, title, -1));
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(6));
    for (std::size_t i = 1; i < 6; ++i)
        EXPECT_EQ(programLog.at(i), 1) << i;
    ContourPlot* plot = controller->getContourPlotForUnit(programLog.at(0));
    ASSERT_NE(plot, nullptr);
    ASSERT_NE(plot->spectrogram, nullptr);
    EXPECT_EQ(plot->spectrogram->contourLevels(), (QList<double>{1, 2}));
    const QString unit = QString::number(programLog.at(0));
    EXPECT_EQ(boxes.seen,
              (QStringList{"Error|Contour Plot for unit number 4711 does not exist",
                           "Error|Contour Plot for unit number " + unit + " needs at least one colour",
                           "Error|Contour Plot for unit number " + unit + " has no data function",
                           "Error|Contour Plot for unit number 4711 does not exist"}));
    EXPECT_TRUE(QFile::exists(path("Heads.png")));
}

} // namespace
} // namespace zeltest
