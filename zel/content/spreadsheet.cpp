// zel/content/spreadsheet.cpp: the spreadsheet window, its controller slots, its bridge calls and
// its C functions.
#include "zel/content/spreadsheet.h"

#include "runtime/quad.h"
#include "zel/content/conversion.h"
#include "zel/core/gluemanager.h"
#include "zel/core/mainwindow.h"
#include "zel/core/preferences.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QTextStream>

#include <algorithm>
#include <climits>
#include <cstring>
#include <limits>

ZEL_Spreadsheet::ZEL_Spreadsheet(QWidget* parent, long unit, const QString& windowName,
                                 const QString& auxiliaryName)
    : QTableWidget(parent), ZEL_ContentController(unit, windowName, auxiliaryName)
{
    char family[30];
    _ZEL_defaultFontFamily(family, sizeof family);
    QWidget::setFont(
        QFont(QString::fromLatin1(family, sizeof family).trimmed(), _ZEL_defaultFontSize(), -1, false));
    setSelectionMode(QAbstractItemView::NoSelection);
}

void ZEL_Spreadsheet::initRowsAndColumns(int rows, int columns)
{
    clearContents();
    this->rows = std::max(rows, 0);
    this->columns = std::max(columns, 0);
    setRowCount(this->rows);
    setColumnCount(this->columns);
}

void ZEL_Spreadsheet::writeData(const void* data, const QString& dataType, int rows, int columns)
{
    const QStringList strings = ZEL_DataConverter::convertDataToStringList(data, dataType, rows, columns);
    this->dataType = dataType;
    const bool filled = !strings.isEmpty();
    // One repaint for the whole grid instead of one per cell.
    setUpdatesEnabled(false);
    const bool blocked = model()->blockSignals(true);
    clearContents();
    const int gridRows = rowCount(), gridColumns = columnCount();
    for (int r = 0; r < gridRows; ++r) {
        for (int c = 0; c < gridColumns; ++c) {
            const bool inData = filled && r < rows && c < columns;
            setItem(r, c, new QTableWidgetItem(inData ? strings.at(r * columns + c) : QString()));
        }
    }
    model()->blockSignals(blocked);
    if (gridRows > 0 && gridColumns > 0)
        emit model()->dataChanged(model()->index(0, 0), model()->index(gridRows - 1, gridColumns - 1));
    setUpdatesEnabled(true);
}

QString ZEL_Spreadsheet::cellText(int row, int column) const
{
    const QTableWidgetItem* cell = item(row, column);
    return cell ? cell->text() : QString();
}

void ZEL_Spreadsheet::commitEdit()
{
    if (state() != QAbstractItemView::EditingState) return;
    QWidget* editor = indexWidget(currentIndex());
    if (!editor) {
        QWidget* focus = QApplication::focusWidget();
        if (focus && viewport()->isAncestorOf(focus)) editor = focus;
    }
    if (editor) commitData(editor);
}

namespace {

using kestro::rt::Quad;

template <typename T> void storeAt(char* element, T value)
{
    std::memcpy(element, &value, sizeof value);
}

Quad quadOf(const QString& text)
{
    const QByteArray latin = text.toLatin1(); // NUL-terminated
    Quad q;
    _tarnix_ascii2quad(latin.constData(), &q);
    return q;
}

QStringList complexParts(QString text)
{
    text.remove('(');
    text.remove(')');
    return text.split(',', Qt::SkipEmptyParts);
}

template <typename T> void storeComplex(char* element, const QString& text)
{
    const QStringList parts = complexParts(text);
    const auto part = [&parts](int i) -> T {
        if (i >= parts.size()) return T(0);
        if constexpr (sizeof(T) == 4)
            return parts.at(i).toFloat();
        else
            return parts.at(i).toDouble();
    };
    storeAt(element, part(0));
    storeAt(element + sizeof(T), part(1));
}

} // namespace

void ZEL_Spreadsheet::getDataFromTable(void* data, const QString& dataType, int rows, int columns)
{
    commitEdit();
    const int size = ZEL_DataConverter::elementSize(dataType);
    if (!data || size < 0 || rows < 1 || columns < 1) return;
    using Store = void (*)(char*, const QString&, int);
    Store store = nullptr;
    if (dataType == QLatin1String("REAL*4"))
        store = [](char* e, const QString& t, int) { storeAt(e, t.toFloat()); };
    else if (dataType == QLatin1String("REAL*8"))
        store = [](char* e, const QString& t, int) { storeAt(e, t.toDouble()); };
    else if (dataType == QLatin1String("REAL*16"))
        store = [](char* e, const QString& t, int) { storeAt(e, quadOf(t)); };
    else if (dataType == QLatin1String("INTEGER*8"))
        store = [](char* e, const QString& t, int) { storeAt(e, t.toLongLong(nullptr, 10)); };
    else if (dataType == QLatin1String("INTEGER*4"))
        store = [](char* e, const QString& t, int) { storeAt(e, t.toInt(nullptr, 10)); };
    else if (dataType == QLatin1String("COMPLEX*4"))
        store = [](char* e, const QString& t, int) { storeComplex<float>(e, t); };
    else if (dataType == QLatin1String("COMPLEX*8"))
        store = [](char* e, const QString& t, int) { storeComplex<double>(e, t); };
    else if (dataType == QLatin1String("COMPLEX*16"))
        store = [](char* e, const QString& t, int) {
            const QStringList parts = complexParts(t);
            storeAt(e, parts.isEmpty() ? Quad{} : quadOf(parts.at(0)));
            if (parts.size() > 1) storeAt(e + sizeof(Quad), quadOf(parts.at(1)));
        };
    else // CHARACTER*n: blank-padded or cut to the field, never beyond it
        store = [](char* e, const QString& t, int n) {
            const QByteArray bytes = t.leftJustified(n, ' ', true).toLatin1();
            std::memcpy(e, bytes.constData(), static_cast<std::size_t>(std::min(n, int(bytes.size()))));
        };
    char* base = static_cast<char*>(data);
    const int lastRow = std::min(rows, rowCount()), lastColumn = std::min(columns, columnCount());
    for (int r = 0; r < lastRow; ++r)
        for (int c = 0; c < lastColumn; ++c)
            store(base + (qint64(r) * columns + c) * size, cellText(r, c), size);
}

QString ZEL_Spreadsheet::toPlainText() const
{
    QString text;
    text.reserve(rows * columns * 12);
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < columns; ++c) {
            if (c > 0) text += QLatin1Char(',');
            text += QLatin1Char('"');
            text += cellText(r, c);
            text += QLatin1Char('"');
        }
        text += QLatin1Char('\n');
    }
    return text;
}

void ZEL_Spreadsheet::save(QString fileName)
{
    if (fileName.isEmpty()) fileName = windowName + " output";
    if (!fileName.endsWith(QLatin1String(".csv"))) fileName += QLatin1String(".csv");
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) return;
    QTextStream out(&file);
    out << toPlainText();
}

bool ZEL_Spreadsheet::saveAs()
{
    const QString file = askSaveFileName(this, windowName, "All Files (*.*)", windowName + " output", "csv");
    if (file.isEmpty()) return false;
    save(file);
    return true;
}

// The controller's side, on the GUI thread.

void WindowController::createSpreadsheet(long unit, QString title, int rows, int columns)
{
    auto* sheet = new ZEL_Spreadsheet(nullptr, unit, title);
    sheet->initRowsAndColumns(rows, columns);
    addSpreadsheetForUnit(unit, sheet);
    showContentWindow(unit, sheet, sheet, title, false, false, true);
}

namespace {
void reportMissingSpreadsheet(QWidget* parent, long unit)
{
    QMessageBox box(QMessageBox::NoIcon, "Error",
                    "Spreadsheet for unit number " + QString::number(unit) + " does not exist",
                    QMessageBox::Ok, parent);
    box.exec();
}
} // namespace

void WindowController::writeSpreadsheet(long unit, void* data, QString dataType, int rows, int columns)
{
    ZEL_Spreadsheet* sheet = getSpreadsheetForUnit(unit);
    if (!sheet) {
        reportMissingSpreadsheet(getMainWindow(), unit);
        return;
    }
    sheet->writeData(data, dataType, rows, columns);
}

void WindowController::readSpreadsheet(long unit, void* data, QString dataType, int rows, int columns)
{
    ZEL_Spreadsheet* sheet = getSpreadsheetForUnit(unit);
    if (sheet) {
        sheet->getDataFromTable(data, dataType, rows, columns);
    } else if (getMainWindow()) {
        reportMissingSpreadsheet(getMainWindow(), unit);
    }
    emit finishReadSpreadsheet(data);
}

void WindowController::setHorizontalLabels(int unit, QStringList labels)
{
    if (ZEL_Spreadsheet* sheet = getSpreadsheetForUnit(unit)) sheet->setHorizontalHeaderLabels(labels);
}

void WindowController::setVerticalLabels(int unit, QStringList labels)
{
    if (ZEL_Spreadsheet* sheet = getSpreadsheetForUnit(unit)) sheet->setVerticalHeaderLabels(labels);
}

// The bridge's side.

bool GlueManager::createSpreadsheetWindow(long unit, const QString& title, int rows, int columns)
{
    return call([=](GlueManager& g) { emit g.createSpreadsheet(unit, title, rows, columns); });
}

bool GlueManager::setHorizontalLabels(int unit, const QStringList& labels)
{
    return call([=](GlueManager& g) { emit g.setHorizontalHeaderLabels(unit, labels); });
}

bool GlueManager::setVerticalLabels(int unit, const QStringList& labels)
{
    return call([=](GlueManager& g) { emit g.setVerticalHeaderLabels(unit, labels); });
}

bool GlueManager::writeSpreadsheetWindow(long unit, const void* data, const QString& dataType,
                                         int elementSize, int rows, int columns)
{
    // The program may change its array as soon as this returns: the window gets a private copy,
    // alive until the call has run. A copy whose size disagrees with the type is never made, so
    // the converter can't read past it.
    // An unknown type passes with no bytes: the converter makes nothing of it, the grid blanks.
    const int typeSize = ZEL_DataConverter::elementSize(dataType);
    if (typeSize >= 0 && elementSize != typeSize) return false;
    const qint64 elements = rows < 1 || columns < 1 ? 0 : qint64(rows) * columns;
    const qint64 bytes = typeSize < 0 ? 0 : elements * typeSize;
    if (elements > ZEL_DataConverter::maxElements || bytes > std::numeric_limits<int>::max() ||
        (bytes > 0 && !data))
        return false;
    const QByteArray copy(static_cast<const char*>(data), static_cast<int>(bytes));
    return call([=](GlueManager& g) {
        emit g.writeSpreadsheet(unit, const_cast<char*>(copy.constData()), dataType, rows, columns);
    });
}

bool GlueManager::readSpreadsheetWindow(long unit, void* data, const QString& dataType, int rows, int columns)
{
    return callWaiting(Flag::spreadsheet,
                       [=](GlueManager& g) { emit g.readSpreadsheet(unit, data, dataType, rows, columns); });
}

// C functions of the spreadsheet.

namespace {
QStringList fixedWidthLabels(const char* labels, const int* labelLength, const int* count)
{
    QStringList list;
    if (!labels || !labelLength || !count || *labelLength < 0) return list;
    for (int i = 0; i < *count; ++i)
        list << QString::fromLatin1(labels + qint64(i) * *labelLength, *labelLength);
    return list;
}
} // namespace

// With a bridge each returns 1; without one (or without its arguments) the neutral value: 0, and 1
// for the read, which waits.
extern "C" {

long ZEL_createSpreadsheet(int* unit, char* title, int* rows, int* columns, int titleLength)
{
    if (!unit || !rows || !columns || !glue_manager.load(std::memory_order_acquire)) return 0;
    GlueManager::createSpreadsheetWindow(*unit, latin1Text(title, titleLength), *rows, *columns);
    return 1;
}

long ZEL_setHorizontalHeaderLabels(int* unit, char* labels, int* labelLength, int* count)
{
    if (!unit || !glue_manager.load(std::memory_order_acquire)) return 0;
    GlueManager::setHorizontalLabels(*unit, fixedWidthLabels(labels, labelLength, count));
    return 1;
}

long ZEL_setVerticalHeaderLabels(int* unit, char* labels, int* labelLength, int* count)
{
    if (!unit || !glue_manager.load(std::memory_order_acquire)) return 0;
    GlueManager::setVerticalLabels(*unit, fixedWidthLabels(labels, labelLength, count));
    return 1;
}

long ZEL_writeSpreadsheet(int* unit, void* data, char* dataType, int* elementSize, int* rows, int* columns,
                          int typeLength)
{
    if (!unit || !elementSize || !rows || !columns || !glue_manager.load(std::memory_order_acquire)) return 0;
    GlueManager::writeSpreadsheetWindow(*unit, data, latin1Text(dataType, typeLength), *elementSize, *rows,
                                        *columns);
    return 1;
}

long ZEL_readSpreadsheet(int* unit, void* data, char* dataType, int* rows, int* columns, int typeLength)
{
    if (!unit || !data || !rows || !columns || !glue_manager.load(std::memory_order_acquire)) return 1;
    if (!GlueManager::readSpreadsheetWindow(*unit, data, latin1Text(dataType, typeLength), *rows, *columns))
        return 1;
    const auto wait =
        GlueManager::waitFor(GlueManager::Flag::spreadsheet, GlueManager::GuiWait::processEvents);
    return wait == GlueManager::Wait::threadFinished ? -2 : 1;
}

} // extern "C"
