// zel/content/contentcontroller.cpp: the shared file rules and the scripted save of a window.
#include "zel/content/contentcontroller.h"

#include "zel/core/gluemanager.h"
#include "zel/core/preferences.h"
#include "zel/core/zel.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMap>
#include <QVariant>

#include <algorithm>
#include <cstddef>
#include <cstring>

QString imageFileName(const QString& name, ImageSuffixes accepted)
{
    const bool image = name.endsWith(".png") || name.endsWith(".bmp") ||
                       (accepted == ImageSuffixes::plot && name.endsWith(".pdf"));
    return image ? name : name + ".png";
}

bool mayWriteFile(const QString& fileName)
{
    const QFileInfo info(fileName);
    return !info.exists() || info.isWritable();
}

QString askSaveFileName(QWidget* parent, const QString& name, const QString& filter,
                        const QString& preselected, const QString& defaultSuffix)
{
    QFileDialog dialog(parent, "Save " + name + " As", QDir::currentPath(), filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(defaultSuffix);
    dialog.selectFile(preselected);
    if (dialog.exec() != QDialog::Accepted) return QString();
    const QStringList files = dialog.selectedFiles();
    return files.isEmpty() ? QString() : files.first();
}

bool contentWillClose(ZEL_ContentController* cc)
{
    if (!cc) return true;
    if (_ZEL_promptSaveOnExit()) return cc->saveAs();
    if (_ZEL_autoSave()) cc->save(QString());
    return true;
}

QStringList fixedFieldTexts(const char* block, int count, const int* lengths, int fieldWidth)
{
    QStringList texts;
    if (!block || count < 1 || fieldWidth < 1) return texts;
    texts.reserve(count);
    for (int i = 0; i < count; ++i) {
        const char* field = block + static_cast<std::ptrdiff_t>(i) * fieldWidth;
        const int given = lengths ? lengths[i] : -1;
        const int length =
            given == -1 ? static_cast<int>(strnlen(field, fieldWidth)) : std::clamp(given, 0, fieldWidth);
        texts.append(QString::fromLatin1(field, length));
    }
    return texts;
}

// C functions of the scripted save.

namespace {
long saveWindow(int* unit, char* fileName, int length)
{
    if (!unit || !glue_manager.load(std::memory_order_acquire)) return 1;
    QMap<QString, QVariant> properties;
    properties["saveFileName"] = latin1Text(fileName, length);
    if (GlueManager::saveWindow(*unit, properties))
        GlueManager::waitFor(GlueManager::Flag::sync, GlueManager::GuiWait::none);
    return 1;
}
} // namespace

extern "C" {

// Each returns 1, with or without a bridge; the program waits until the window has been written.
long ZEL_saveWindow(int* unit, char* fileName, int length)
{
    return saveWindow(unit, fileName, length);
}
long ZEL_saveBarchart(int* unit, char* fileName, int length)
{
    return saveWindow(unit, fileName, length);
}
long ZEL_saveXYPlot(int* unit, char* fileName, int length)
{
    return saveWindow(unit, fileName, length);
}
long ZEL_savePolarPlot(int* unit, char* fileName, int length)
{
    return saveWindow(unit, fileName, length);
}
long ZEL_saveContourPlot(int* unit, char* fileName, int length)
{
    return saveWindow(unit, fileName, length);
}
long ZEL_savePiechart(int* unit, char* fileName, int length)
{
    return saveWindow(unit, fileName, length);
}
long ZEL_saveCanvas(int* unit, char* fileName, int length)
{
    return saveWindow(unit, fileName, length);
}

} // extern "C"
