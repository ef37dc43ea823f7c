// zel/content/canvas.h: the canvas window of one unit, a retained list of drawable objects that
// the program adds by id and the widget repaints in order.
#pragma once

#include "zel/content/contentcontroller.h"

#include <QColor>
#include <QHash>
#include <QImage>
#include <QList>
#include <QMap>
#include <QString>
#include <QVariant>
#include <QWidget>

class CanvasObject;
class QPainter;

class Canvas : public QWidget, public ZEL_ContentController
{
    Q_OBJECT

public:
    Canvas(long unit, const QString& title, QWidget* parent = nullptr);
    ~Canvas() override;

    // "windowTitle", "backgroundColor" (white when absent), "width" and "height" (0 when absent).
    void setChartSettings(const QMap<QString, QVariant>& settings);
    // Adds the object that `properties` describes on top of the others; an object of the same id
    // goes first. A picture that does not load is reported in a box and kept as an empty object.
    void createObject(long id, const QMap<QString, QVariant>& properties);
    void removeCanvasObjectForId(int id);
    // Deletes every object. The map is not used.
    void clear(const QMap<QString, QVariant>& properties = {});

    // Writes the canvas at its size as an image, format from the suffix, over the background
    // with a one-pixel black outline. False when the file exists and can't be written.
    bool exportImage(const QString& fileName);
    // The scripted save: a name without ".png" or ".bmp" gets ".png", in the caller's string.
    bool saveWithoutDialog(QString& fileName) override;

    int objectCount() const { return objects.size(); }
    const QList<CanvasObject*>& objectList() const { return objects; }
    QColor backgroundColor() const { return background; }

    bool willClose() override;
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

protected:
    // Shows the objects from an image of the canvas that holds them painted in order. Objects
    // added since the last paint are painted onto it; a replacement, a removal or a new size
    // paints it anew. What shows is what painting the whole list each time would show.
    void paintEvent(QPaintEvent* event) override;

private:
    void setUpPainter(QPainter& painter) const;
    void forgetPainted();
    // The export and print picture: background, outline, then the objects.
    void renderPage(QPainter& painter);

    QColor background;
    QList<CanvasObject*> objects; // drawing order; owned
    QHash<int, CanvasObject*> byId;
    QString title;
    QImage painted; // the background and objects[0, paintedCount)
    int paintedCount = 0;
};
