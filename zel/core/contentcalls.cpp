// zel/core/contentcalls.cpp: the bridge's calls for the content windows, made from any thread.
//
// Each queues one signal of GlueManager; a call that needs the GUI thread to finish first (a write
// that reads the caller's array, a save, a dialog) sets its flag, and the caller then waits on it.
#include "zel/core/gluemanager.h"

bool GlueManager::createCanvasWindow(long unit, const QMap<QString, QVariant>& properties)
{
    return call([=](GlueManager& g) { emit g.createCanvas(unit, properties); });
}

bool GlueManager::clearCanvasWindow(long unit, const QMap<QString, QVariant>& properties)
{
    return call([=](GlueManager& g) { emit g.clearCanvas(unit, properties); });
}

bool GlueManager::createObjectOnCanvasWindow(long unit, long id, const QMap<QString, QVariant>& properties)
{
    return call([=](GlueManager& g) { emit g.createObjectOnCanvas(unit, id, properties); });
}

bool GlueManager::createDialog(long dialog, const QMap<QString, QVariant>& properties)
{
    return call([=](GlueManager& g) { emit g.createDialogWindow(dialog, properties); });
}

bool GlueManager::callAddLabelToDialog(long dialog, int item, const QString& text)
{
    return call([=](GlueManager& g) { emit g.addLabelToDialog(dialog, item, text); });
}

bool GlueManager::callAddComboBoxToDialog(long dialog, int item, const QMap<QString, QVariant>& properties)
{
    return call([=](GlueManager& g) { emit g.addComboBoxToDialog(dialog, item, properties); });
}

bool GlueManager::callAddRadioButtonsToDialog(long dialog, int item,
                                              const QMap<QString, QVariant>& properties)
{
    return call([=](GlueManager& g) { emit g.addRadioButtonsToDialog(dialog, item, properties); });
}

bool GlueManager::callAddCheckBoxToDialog(long dialog, int item, const QString& text, bool checked)
{
    return call([=](GlueManager& g) { emit g.addCheckBoxToDialog(dialog, item, text, checked); });
}

bool GlueManager::callAddLineEditToDialog(long dialog, int item, const QString& label,
                                          const QString& placeholder, const QString& text)
{
    return call([=](GlueManager& g) { emit g.addLineEditToDialog(dialog, item, label, placeholder, text); });
}

bool GlueManager::callAddFileDialogToDialog(long dialog, int item, const QMap<QString, QVariant>& properties)
{
    return call([=](GlueManager& g) { emit g.addFileDialogToDialog(dialog, item, properties); });
}

bool GlueManager::showDialog(long dialog)
{
    Flag flag = Flag::dialog;
    return callWaiting(flag, [=](GlueManager& g) { emit g.showDialogWindow(dialog); });
}

bool GlueManager::saveWindow(long unit, const QMap<QString, QVariant>& properties)
{
    Flag flag = Flag::sync;
    return callWaiting(flag, [=](GlueManager& g) { emit g.saveWindowContents(unit, properties); });
}

bool GlueManager::createBarchartWindow(long unit, const QMap<QString, QVariant>& properties)
{
    return call([=](GlueManager& g) { emit g.createBarchart(unit, properties); });
}

bool GlueManager::writeBarchartWindow(long unit, void* data, const QString& dataType, int, int rows,
                                      int columns)
{
    Flag flag = Flag::sync;
    return callWaiting(flag,
                       [=](GlueManager& g) { emit g.writeBarchart(unit, data, dataType, rows, columns); });
}

bool GlueManager::createPieChartWindow(long unit, const QMap<QString, QVariant>& properties)
{
    return call([=](GlueManager& g) { emit g.createPieChart(unit, properties); });
}

bool GlueManager::writePiechartWindow(long unit, void* data, const QString& dataType, int, int rows,
                                      int columns)
{
    Flag flag = Flag::sync;
    return callWaiting(flag,
                       [=](GlueManager& g) { emit g.writePieChart(unit, data, dataType, rows, columns); });
}

bool GlueManager::createXYPlotWindow(long unit, const QMap<QString, QVariant>& properties)
{
    return call([=](GlueManager& g) { emit g.createXYPlot(unit, properties); });
}

bool GlueManager::writeXYPlotWindow(long unit, void* data, const QString& dataType, int rows, int columns,
                                    const QMap<QString, QVariant>& properties)
{
    Flag flag = Flag::sync;
    return callWaiting(
        flag, [=](GlueManager& g) { emit g.writeXYPlot(unit, data, dataType, rows, columns, properties); });
}

bool GlueManager::clearXYPlotWindow(long unit)
{
    return call([=](GlueManager& g) { emit g.clearXYPlot(unit); });
}

bool GlueManager::createPolarPlotWindow(long unit, const QMap<QString, QVariant>& properties)
{
    return call([=](GlueManager& g) { emit g.createPolarPlot(unit, properties); });
}

bool GlueManager::writePolarPlotWindow(long unit, void* data, const QString& dataType, int, int rows,
                                       int columns, const QMap<QString, QVariant>& properties)
{
    Flag flag = Flag::sync;
    return callWaiting(flag, [=](GlueManager& g) {
        emit g.writePolarPlot(unit, data, dataType, rows, columns, properties);
    });
}

bool GlueManager::clearPolarPlotWindow(long unit)
{
    return call([=](GlueManager& g) { emit g.clearPolarPlot(unit); });
}

bool GlueManager::createContourPlotWindow(long unit, const QMap<QString, QVariant>& properties)
{
    return call([=](GlueManager& g) { emit g.createContourPlot(unit, properties); });
}

bool GlueManager::writeContourPlotWindow(long unit, const QMap<QString, QVariant>& properties,
                                         void* dataFunction)
{
    Flag flag = Flag::sync;
    return callWaiting(flag,
                       [=](GlueManager& g) { emit g.writeContourPlot(unit, properties, dataFunction); });
}

bool GlueManager::clearContourPlotWindow(long unit)
{
    return call([=](GlueManager& g) { emit g.clearContourPlot(unit); });
}
