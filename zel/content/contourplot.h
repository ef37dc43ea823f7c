// zel/content/contourplot.h: contour plot window of one unit: a scalar field z(x, y) from the
// program's data function, as a colour image, contour lines or both, with a colour bar.
//
// The data function is called long after the write that handed it in: whenever the plot is
// repainted, printed or exported, on the GUI thread and on several of Qwt's render threads at
// once. It must stay valid while the window lives and must be safe to call from many threads.
#pragma once

#include "zel/content/plotwindow.h"

#include <QMap>
#include <QString>
#include <QVariant>

class QwtPlotGrid;
class QwtPlotSpectrogram;
class SpectrogramData;

class ContourPlot : public ZEL_PlotWindow
{
    Q_OBJECT

public:
    using DataFunction = double (*)(double* x, double* y);

    explicit ContourPlot(long unit, QWidget* parent = nullptr);

    // Grid lines and the two display modes.
    void setChartSettings(const QMap<QString, QVariant>& properties);
    // Replaces the picture with one of `dataFunction` (a DataFunction). Returns the reason for the
    // user when the properties can't make a picture; the old picture then stays.
    QString setChartData(const QMap<QString, QVariant>& properties, void* dataFunction);
    // Drops the data; the colour bar stays. Harmless before the first write.
    void clearChartData();

    QwtPlotSpectrogram* spectrogram = nullptr; // attached, owned by the plot
    SpectrogramData* data = nullptr;           // owned by the spectrogram
    QwtPlotGrid* grid;                         // attached, owned by the plot
    bool showImageBlend = false;
    bool showContourLines = false;
};
