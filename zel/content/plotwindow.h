// zel/content/plotwindow.h: the common base of the windows drawn by Qwt's plot renderer: their
// close rule, saving, Save As, printing and font.
#pragma once

#include "zel/content/contentcontroller.h"

#include <qwt_plot.h>

class ZEL_PlotWindow : public QwtPlot, public ZEL_ContentController
{
    Q_OBJECT

public:
    ZEL_PlotWindow(QWidget* parent, long unit, const QString& name);

    bool willClose() override;
    // An empty name stands for the window name; the file rule applies; a failure goes unreported.
    void save(QString fileName) override;
    bool saveAs() override;
    void print(QPrinter& printer) override;
    void cut() override {}
    void copy() override {}
    void paste() override {}
    void undo() override {}
    void redo() override {}
    void setFont(QFont& font) override { QWidget::setFont(font); }
    QFont font() override { return QWidget::font(); }

    bool saveWithoutDialog(QString& fileName) override;
    // The one writer: the image export page, 300 x 200 mm at 85 dpi whatever the window's size,
    // in the format of the suffix. False only when the file exists and is not writable.
    virtual bool exportChart(QString fileName);

    static constexpr double exportWidthMm = 300.0;
    static constexpr double exportHeightMm = 200.0;
    static constexpr int exportDpi = 85;
};
