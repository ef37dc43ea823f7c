// zel/content/pieview.h: the item view that draws a model's rows as the slices of a pie with a
// legend of their labels, and selects slices with a rubber band.
//
// Column 0 of a row holds the label (edit role) and the slice colour (decoration role), column 1
// the quantity as text. A row whose quantity is not a finite number above 0 has no slice and no
// legend line. The first slice starts at 3 o'clock; slices go counter-clockwise.
#pragma once

#include <QAbstractItemView>
#include <QPainterPath>
#include <QPoint>
#include <QPolygonF>
#include <QVector>

class QRubberBand;

class PieView : public QAbstractItemView
{
    Q_OBJECT

public:
    explicit PieView(QWidget* parent = nullptr);

    QRect visualRect(const QModelIndex& index) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    // Always invalid: a plain click selects nothing, the rubber band does.
    QModelIndex indexAt(const QPoint& point) const override;

    int pieDiameter() const { return pieSize; }
    int validItemCount() const;
    double totalQuantity() const;
    static constexpr int margin = 20;
    static constexpr int totalSize = 300;
    static constexpr int legendWidth = 100;
    // Up to this many slices are drawn antialiased; past it the slices are filled plainly and only
    // the rim is smooth, which keeps a repaint of a thousand slices quick.
    static constexpr int smoothSliceLimit = 100;

protected slots:
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                     const QVector<int>& roles = QVector<int>()) override;
    void rowsInserted(const QModelIndex& parent, int start, int end) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;

protected:
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    QModelIndex moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers) override;
    int horizontalOffset() const override;
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex& index) const override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    void updateGeometries() override;

    QRect itemRect(const QModelIndex& index) const;
    QRegion itemRegion(const QModelIndex& index) const;
    int rows(const QModelIndex& index = QModelIndex()) const;

private:
    // One row as drawn: its quantity, whether it has a slice, where the slice starts and how wide
    // it is (degrees), and its line in the legend.
    struct Slice
    {
        double value = 0.0;
        bool valid = false;
        double startAngle = 0.0;
        double angle = 0.0;
        int legendLine = -1;
    };
    // Rows as drawn, worked out once after each change of the model.
    const QVector<Slice>& slices() const;
    QPainterPath slicePath(const Slice& slice) const;
    // The slice as a fan from the centre of the pie, in the pie's own frame.
    QPolygonF slicePolygon(const Slice& slice) const;
    int pieExtent() const; // the square left of the legend

    int pieSize = 260; // diameter, follows the viewport at each paint
    QPoint origin;
    QRubberBand* rubberBand = nullptr;
    mutable QVector<Slice> layout;
    mutable bool layoutValid = false;
    mutable int validItems = 0;
    mutable double totalValue = 0.0;
};
