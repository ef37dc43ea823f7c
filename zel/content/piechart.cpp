// zel/content/piechart.cpp
#include "zel/content/piechart.h"

#include "zel/content/conversion.h"
#include "zel/content/pieview.h"
#include "zel/core/environment.h"
#include "zel/core/gluemanager.h"
#include "zel/core/mainwindow.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QVBoxLayout>

#include <algorithm>

PieChart::PieChart(QWidget* parent, long unit, const QString& name)
    : QWidget(parent), ZEL_ContentController(unit, name, QString()),
      model(new QStandardItemModel(1, 2, this)), view(new PieView), selectionModel(nullptr), title(new QLabel)
{
    model->setHeaderData(0, Qt::Horizontal, tr("Label"), Qt::EditRole);
    model->setHeaderData(1, Qt::Horizontal, tr("Quantity"), Qt::EditRole);
    view->setModel(model);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    selectionModel = new QItemSelectionModel(model, this);
    view->setSelectionModel(selectionModel);

    title->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter | Qt::AlignBottom);
    QFont titleFont = title->font();
    titleFont.setPointSize(16);
    title->setFont(titleFont);

    auto* frame = new QFrame;
    auto* frameLayout = new QHBoxLayout(frame);
    frameLayout->addWidget(view);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 30, 0, 0);
    layout->addWidget(title);
    layout->addSpacing(5);
    layout->addWidget(frame);
}

const QStringList& PieChart::colourCycle()
{
    // Qt's colour names ignore blanks, so the names stand as they are written here.
    static const QStringList names{
        "tomato", "steel blue",         "lime green",  "gold",        "medium orchid",
        "khaki",  "medium aqua marine", "powder blue", "light pink",  "burly wood",
        "salmon", "corn silk",          "turquoise",   "chart reuse", "pale violet red"};
    return names;
}

namespace {
// New rows come in one insertion; their items are made when first written.
void addRowsUpTo(QStandardItemModel* model, int count)
{
    if (model->rowCount() < count) model->insertRows(model->rowCount(), count - model->rowCount());
}
} // namespace

void PieChart::setChartSettings(const QString& titleText, unsigned background, unsigned text,
                                const QList<QVariant>& names, const QList<QVariant>& colours)
{
    title->setText(titleText);
    windowName = titleText;
    QPalette palette = view->palette();
    palette.setColor(QPalette::Base, QColor(QRgb(background)));
    palette.setColor(QPalette::Text, QColor(QRgb(text)));
    view->setPalette(palette);
    view->setAutoFillBackground(true);

    addRowsUpTo(model, names.size());
    for (int i = 0; i < names.size(); ++i)
        model->setData(model->index(i, 0), names.at(i).toString(), Qt::EditRole);
    addRowsUpTo(model, colours.size());
    for (int i = 0; i < colours.size(); ++i)
        model->setData(model->index(i, 0), QColor(QRgb(colours.at(i).toUInt())), Qt::DecorationRole);
}

void PieChart::setChartData(void* data, const QString& dataType, int rows, int columns)
{
    const QStringList strings = ZEL_DataConverter::convertDataToStringList(data, dataType, rows, columns);
    addRowsUpTo(model, strings.size());
    if (strings.isEmpty()) return;
    {
        // One change for the view instead of three for each row.
        const QSignalBlocker quiet(model);
        const QStringList& cycle = colourCycle();
        for (int i = 0; i < strings.size(); ++i) {
            model->setData(model->index(i, 1), strings.at(i), Qt::EditRole);
            const QModelIndex label = model->index(i, 0);
            if (!label.data(Qt::DisplayRole).isValid())
                model->setData(label, QStringLiteral("Label %1").arg(i + 1), Qt::EditRole);
            if (!label.data(Qt::DecorationRole).isValid()) {
                QColor colour;
                colour.setNamedColor(cycle.at(i % cycle.size()));
                model->setData(label, colour, Qt::DecorationRole);
            }
        }
    }
    emit model->dataChanged(model->index(0, 0), model->index(strings.size() - 1, 1));
}

void PieChart::setFont(QFont& font)
{
    const int above = title->font().pointSize() - QWidget::font().pointSize();
    QWidget::setFont(font);
    // The label's own size would outlive the new font: it is worked out from the new one.
    QFont titleFont = font;
    if (font.pointSize() > 0) titleFont.setPointSize(std::max(1, font.pointSize() + above));
    title->setFont(titleFont);
}

QPixmap PieChart::picture()
{
    QPixmap pixmap(size());
    render(&pixmap, QPoint(), QRegion(), QWidget::DrawWindowBackground | QWidget::DrawChildren);
    return pixmap;
}

bool PieChart::writePicture(const QString& fileName)
{
    if (!mayWriteFile(fileName)) return false;
    const QString format = fileName.mid(fileName.lastIndexOf('.') + 1);
    picture().save(fileName, format.toLatin1().constData());
    return true;
}

bool PieChart::willClose()
{
    return contentWillClose(this);
}

void PieChart::save(QString fileName)
{
    if (fileName.isEmpty()) fileName = title->text();
    writePicture(imageFileName(fileName, ImageSuffixes::pixmap));
}

bool PieChart::saveWithoutDialog(QString& fileName)
{
    fileName = imageFileName(fileName, ImageSuffixes::pixmap);
    return writePicture(fileName);
}

bool PieChart::saveAs()
{
    const QString name = title->text();
    const QString file = askSaveFileName(this, name, "Image File (*.png *.bmp)", name, "png");
    if (file.isEmpty() || !mayWriteFile(file)) return false;
    save(file);
    return true;
}

void PieChart::print(QPrinter& printer)
{
    printer.setColorMode(QPrinter::Color);
    printer.setOutputFormat(QPrinter::NativeFormat);
    QPrintDialog dialog(&printer, this);
    dialog.setWindowTitle(tr("Print Document"));
    if (dialog.exec() != QDialog::Accepted) return;
    const QPixmap pixmap = picture();
    QPainter painter(&printer);
    painter.drawPixmap(0, 0, pixmap);
}

// The controller's side of the pie chart.

void WindowController::createPieChartForUnit(long unit, QMap<QString, QVariant> properties)
{
    const QString title = properties.value("windowTitle").toString();
    auto* chart = new PieChart(mainWindow, unit, title);
    chart->setChartSettings(title, properties.value("chartBackgroundColor", 0xffffffu).toUInt(),
                            properties.value("textColor", 0u).toUInt(), properties.value("names").toList(),
                            properties.value("colors").toList());
    addPieChartForUnit(unit, chart);
    showContentWindow(unit, chart, chart, title, true, false, true);
}

void WindowController::writePieChart(long unit, void* data, QString datatype, int nrows, int ncols)
{
    SyncRelease release(this);
    PieChart* chart = reportIfMissing(getPieChartForUnit(unit), unit, "Pie Chart");
    if (!chart) return;
    chart->setChartData(data, datatype, nrows, ncols);
}

// C functions of the pie chart; they return what those of the bar chart do.

extern "C" {

long ZEL_createPiechart(int* unit, char* title, unsigned* chartBackgroundColor, unsigned* textColor,
                        char* names, int* nameCount, int* nameLengths, unsigned* colors, int* colorCount,
                        int titleLength)
{
    if (!unit) return -1;
    *unit = static_cast<int>(currentInternalId++);
    if (!glue_manager.load(std::memory_order_acquire)) return 0;
    QVariantList labels;
    for (const QString& name : fixedFieldTexts(names, nameCount ? *nameCount : 0, nameLengths))
        labels.append(name);
    QVariantList colours;
    const int colourTotal = colors && colorCount ? *colorCount : 0;
    for (int i = 0; i < colourTotal; ++i)
        colours.append(colors[i]);
    const QMap<QString, QVariant> properties{
        {"windowTitle", latin1Text(title, titleLength)},
        {"chartBackgroundColor", chartBackgroundColor ? *chartBackgroundColor : 0xffffffu},
        {"textColor", textColor ? *textColor : 0u},
        {"names", labels},
        {"colors", colours}};
    return GlueManager::createPieChartWindow(*unit, properties) ? 1 : 0;
}

long ZEL_writePiechart(int* unit, void* data, char* dataType, int* elementSize, int* rows, int* columns,
                       int typeLength)
{
    if (!unit) return -1;
    if (!glue_manager.load(std::memory_order_acquire)) return 1;
    if (GlueManager::writePiechartWindow(*unit, data, latin1Text(dataType, typeLength),
                                         elementSize ? *elementSize : 0, rows ? *rows : 0,
                                         columns ? *columns : 0))
        GlueManager::waitFor(GlueManager::Flag::sync, GlueManager::GuiWait::none);
    return 1;
}

} // extern "C"
