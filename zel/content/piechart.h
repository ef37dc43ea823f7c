// zel/content/piechart.h: the pie chart window: a title above a pie of the positive quantities of
// a list, with a legend of their labels. The rows live in an item model that the user may edit.
#pragma once

#include "zel/content/contentcontroller.h"

#include <QList>
#include <QPixmap>
#include <QStringList>
#include <QVariant>
#include <QWidget>

class QItemSelectionModel;
class QLabel;
class QStandardItemModel;
class PieView;

class PieChart : public QWidget, public ZEL_ContentController
{
    Q_OBJECT

public:
    PieChart(QWidget* parent, long unit, const QString& name);

    // Title, the view's Base and Text colours, and the first labels and colours of the rows
    // (colours as 0xRRGGBB). Rows are added as needed and never taken away.
    void setChartSettings(const QString& title, unsigned background, unsigned text,
                          const QList<QVariant>& names, const QList<QVariant>& colours);
    // The array, whatever its shape, is one list of quantities, row i of the model taking element
    // i. Rows beyond the data keep their quantities. Rows without a label or colour get
    // "Label " + (i + 1) and colour i of the cycle.
    void setChartData(void* data, const QString& dataType, int rows, int columns);

    bool willClose() override;
    // An empty name stands for the title; the file rule applies; a failure goes unreported.
    void save(QString fileName) override;
    bool saveAs() override;
    void print(QPrinter& printer) override;
    void cut() override {}
    void copy() override {}
    void paste() override {}
    void undo() override {}
    void redo() override {}
    // The title keeps its distance in points above the chart's font.
    void setFont(QFont& font) override;
    QFont font() override { return QWidget::font(); }
    bool saveWithoutDialog(QString& fileName) override;

    QStandardItemModel* itemModel() const { return model; }
    PieView* pieView() const { return view; }
    QLabel* titleLabel() const { return title; }

    // The colours of rows without one, in turn.
    static const QStringList& colourCycle();

private:
    QPixmap picture();
    // Writes the picture in the format of the suffix, unless the file can't be written.
    bool writePicture(const QString& fileName);

    QStandardItemModel* model;
    PieView* view;
    QItemSelectionModel* selectionModel;
    QLabel* title;
};
