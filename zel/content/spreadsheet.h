// zel/content/spreadsheet.h: the spreadsheet window of one unit, a grid of text cells that a
// program writes, the user edits and the program reads back in any data type of the converter.
#pragma once

#include "zel/content/contentcontroller.h"

#include <QTableWidget>

class ZEL_Spreadsheet : public QTableWidget, public ZEL_ContentController
{
    Q_OBJECT

public:
    ZEL_Spreadsheet(QWidget* parent, long unit, const QString& windowName,
                    const QString& auxiliaryName = QString());

    // The grid's size, fixed from here on: writing and reading never change it.
    void initRowsAndColumns(int rows, int columns);
    // Every cell gets a new item: element r x columns + c of the data where the data has one,
    // else an empty text. Data larger than the grid is cut; an unknown type blanks the grid.
    void writeData(const void* data, const QString& dataType, int rows, int columns);
    // Stores the cell texts into the caller's rows x columns array of the type, after committing
    // an edit in progress. Elements outside the grid, and every element of an unknown type, stay
    // untouched. A cell never written reads as an empty text.
    void getDataFromTable(void* data, const QString& dataType, int rows, int columns);
    // Each row as its quoted cells joined by ",", ending in "\n"; quotes inside are not doubled.
    QString toPlainText() const;

    bool willClose() override { return contentWillClose(this); }
    // An empty name stands for the window name + " output"; ".csv" is appended unless the name
    // ends in it (case-sensitively). A file that can't be opened is not written, silently.
    void save(QString fileName) override;
    bool saveAs() override;
    void print(QPrinter&) override {}
    void cut() override {}
    void copy() override {}
    void paste() override {}
    void undo() override {}
    void redo() override {}
    void setFont(QFont& font) override { QWidget::setFont(font); }
    QFont font() override { return QWidget::font(); }

    QString dataType; // of the last write
    int rows = 0;
    int columns = 0;

private:
    QString cellText(int row, int column) const;
    void commitEdit();
};
