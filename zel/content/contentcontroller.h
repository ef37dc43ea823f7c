// zel/content/contentcontroller.h: what every window of the environment offers the File and Edit
// menus: saving, printing, the clipboard commands and its font.
#pragma once

#include <QFont>
#include <QString>

#include <utility>

class QPrinter;

// The registry key of a unit: the three standard units share one window.
constexpr long normalisedUnit(long unit)
{
    return (unit == -4 || unit == -3) ? -2 : unit;
}

class ZEL_ContentController
{
public:
    ZEL_ContentController(long unit, QString windowName, QString auxiliaryName)
        : unit(normalisedUnit(unit)), windowName(std::move(windowName)),
          auxiliaryName(std::move(auxiliaryName))
    {
    }
    virtual ~ZEL_ContentController() = default;

    virtual bool willClose() = 0;
    virtual void save(QString fileName) = 0;
    virtual bool saveAs() = 0;
    virtual void print(QPrinter& printer) = 0;
    virtual void cut() = 0;
    virtual void copy() = 0;
    virtual void paste() = 0;
    virtual void undo() = 0;
    virtual void redo() = 0;
    virtual void setFont(QFont& font) = 0;
    virtual QFont font() = 0;

    long unit;
    QString windowName;
    QString auxiliaryName;
    int contentFlag = 0;
};
