// zel/content/contentcontroller.h: what every window of the environment offers the File and Edit
// menus: saving, printing, the clipboard commands and its font; and the file rules that the
// content windows share.
#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

#include <utility>

class QPrinter;
class QWidget;

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

    // The scripted save of the image windows; `fileName` may be extended by the file rule. True
    // when the file was handed to the writer. Windows that can't be saved by script keep this
    // default, which writes nothing.
    virtual bool saveWithoutDialog(QString& fileName)
    {
        (void)fileName;
        return false;
    }

    long unit;
    QString windowName;
    QString auxiliaryName;
    int contentFlag = 0;
};

// The suffixes an image window writes: the rendered plots also write PDF.
enum class ImageSuffixes { plot /* .png .bmp .pdf */, pixmap /* .png .bmp */ };

// `name` when it ends, case-sensitively, in an accepted suffix; otherwise `name` + ".png".
QString imageFileName(const QString& name, ImageSuffixes accepted);
// False when the file exists and can't be written; a missing file counts as writable.
bool mayWriteFile(const QString& fileName);
// The modal Save As dialog, titled "Save " + name + " As", in the current folder. The first
// selected file, or an empty string when the dialog was cancelled.
QString askSaveFileName(QWidget* parent, const QString& name, const QString& filter,
                        const QString& preselected, const QString& defaultSuffix);
// The close rule of the content windows: with prompt-on-exit the Save As dialog and its result,
// else an automatic save when that preference is set, and true. A close is never vetoed by it.
bool contentWillClose(ZEL_ContentController* cc);

// The texts of a caller's block of `count` fixed fields of `fieldWidth` bytes, Latin-1. Text i
// has lengths[i] bytes, -1 meaning up to its first NUL; no length reaches past its field. A null
// block or a count below 1 gives no texts; null lengths count as all -1.
QStringList fixedFieldTexts(const char* block, int count, const int* lengths, int fieldWidth = 128);
