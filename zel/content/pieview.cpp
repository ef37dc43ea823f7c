// zel/content/pieview.cpp
#include "zel/content/pieview.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QRubberBand>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace {
// The quantity of a row; anything but a finite number above 0 has no slice.
bool sliceValue(const QModelIndex& quantity, double& value)
{
    value = quantity.data(Qt::EditRole).toString().toDouble();
    return std::isfinite(value) && value > 0.0;
}
} // namespace

PieView::PieView(QWidget* parent) : QAbstractItemView(parent)
{
    horizontalScrollBar()->setRange(0, 0);
    verticalScrollBar()->setRange(0, 0);
}

int PieView::rows(const QModelIndex& index) const
{
    return model() ? model()->rowCount(model()->parent(index)) : 0;
}

const QVector<PieView::Slice>& PieView::slices() const
{
    if (layoutValid) return layout;
    layoutValid = true;
    const int count = model() ? model()->rowCount(rootIndex()) : 0;
    layout.resize(count);
    validItems = 0;
    totalValue = 0.0;
    for (int row = 0; row < count; ++row) {
        Slice& slice = layout[row];
        slice = Slice();
        slice.valid = sliceValue(model()->index(row, 1, rootIndex()), slice.value);
        if (slice.valid) {
            slice.legendLine = validItems++;
            totalValue += slice.value;
        }
    }
    // A sum of finite values may still overflow.
    if (!std::isfinite(totalValue)) {
        for (Slice& slice : layout)
            slice.valid = false;
        validItems = 0;
        totalValue = 0.0;
    }
    double startAngle = 0.0;
    for (Slice& slice : layout) {
        if (!slice.valid) continue;
        slice.startAngle = startAngle;
        slice.angle = slice.value * 360.0 / totalValue;
        startAngle += slice.angle;
    }
    return layout;
}

int PieView::validItemCount() const
{
    slices();
    return validItems;
}

double PieView::totalQuantity() const
{
    slices();
    return totalValue;
}

void PieView::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                          const QVector<int>& roles)
{
    QAbstractItemView::dataChanged(topLeft, bottomRight, roles);
    layoutValid = false;
    viewport()->update();
}

void PieView::rowsInserted(const QModelIndex& parent, int start, int end)
{
    layoutValid = false;
    QAbstractItemView::rowsInserted(parent, start, end);
}

void PieView::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end)
{
    layoutValid = false;
    QAbstractItemView::rowsAboutToBeRemoved(parent, start, end);
}

bool PieView::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event)
{
    if (index.column() == 0) return QAbstractItemView::edit(index, trigger, event);
    return false;
}

QModelIndex PieView::indexAt(const QPoint&) const
{
    return QModelIndex();
}

bool PieView::isIndexHidden(const QModelIndex&) const
{
    return false;
}

int PieView::pieExtent() const
{
    return std::min(viewport()->width() - legendWidth, viewport()->height());
}

QRect PieView::itemRect(const QModelIndex& index) const
{
    if (!index.isValid() || !model()) return QRect();
    const QVector<Slice>& all = slices();
    if (index.row() >= all.size() || !all.at(index.row()).valid) return QRect();
    switch (index.column()) {
    case 0: {
        const int height = QFontMetrics(viewOptions().font).height();
        const int line = all.at(index.row()).legendLine;
        return QRect(pieExtent() + margin, int(line * height + margin), legendWidth, height);
    }
    case 1:
        return viewport()->rect();
    default:
        return QRect();
    }
}

QPainterPath PieView::slicePath(const Slice& slice) const
{
    // The region follows the pie as it is painted, at any size of the viewport.
    const QRectF pie(margin, margin, pieSize, pieSize);
    QPainterPath path;
    path.moveTo(pie.center());
    path.arcTo(pie, slice.startAngle, slice.angle);
    path.closeSubpath();
    return path;
}

QPolygonF PieView::slicePolygon(const Slice& slice) const
{
    // About one point every 4 pixels of the rim, in the painter's frame of the pie.
    const double radius = pieSize / 2.0;
    const QPointF centre(radius, radius);
    const double span = slice.angle * M_PI / 180.0;
    const int steps = std::max(1, int(radius * span / 4.0));
    QPolygonF polygon;
    polygon.reserve(steps + 2);
    polygon << centre;
    const double start = slice.startAngle * M_PI / 180.0;
    for (int k = 0; k <= steps; ++k) {
        const double t = start + span * k / steps;
        polygon << centre + QPointF(radius * std::cos(t), -radius * std::sin(t));
    }
    return polygon;
}

QRegion PieView::itemRegion(const QModelIndex& index) const
{
    if (!index.isValid()) return QRegion();
    if (index.column() != 1) return QRegion(itemRect(index));
    const QVector<Slice>& all = slices();
    if (index.row() >= all.size() || !all.at(index.row()).valid) return QRegion();
    return QRegion(slicePath(all.at(index.row())).toFillPolygon().toPolygon());
}

QRect PieView::visualRect(const QModelIndex& index) const
{
    const QRect rect = itemRect(index);
    if (!rect.isValid()) return rect;
    return rect.translated(-horizontalOffset(), -verticalOffset());
}

QRegion PieView::visualRegionForSelection(const QItemSelection& selection) const
{
    QRegion region;
    for (const QItemSelectionRange& range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            for (int column = range.left(); column <= range.right(); ++column)
                region += visualRect(model()->index(row, column, rootIndex()));
    }
    return region;
}

void PieView::scrollTo(const QModelIndex&, ScrollHint) {}

int PieView::horizontalOffset() const
{
    return horizontalScrollBar()->value();
}

int PieView::verticalOffset() const
{
    return verticalScrollBar()->value();
}

void PieView::scrollContentsBy(int dx, int dy)
{
    viewport()->scroll(dx, dy);
}

void PieView::updateGeometries()
{
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setRange(0, std::max(0, 2 * totalSize - viewport()->width()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, std::max(0, totalSize - viewport()->height()));
}

void PieView::resizeEvent(QResizeEvent* event)
{
    QAbstractItemView::resizeEvent(event);
    pieSize = pieExtent() - 2 * margin;
    updateGeometries();
}

QModelIndex PieView::moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers)
{
    if (!model()) return QModelIndex();
    QModelIndex current = currentIndex();
    // Without a current row the keys start at the first slice.
    const int column = current.isValid() ? current.column() : 1;
    const int row = current.isValid() ? current.row() : -1;
    const int last = rows(current) - 1;
    switch (cursorAction) {
    case MoveLeft:
    case MoveUp:
        current = model()->index(std::max(0, row - 1), column, rootIndex());
        break;
    case MoveRight:
    case MoveDown:
        current = model()->index(std::min(last, row + 1), column, rootIndex());
        break;
    default:
        break;
    }
    viewport()->update();
    return current;
}

void PieView::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command)
{
    if (!model() || !selectionModel()) return;
    const QRect contentsRect = rect.translated(horizontalOffset(), verticalOffset()).normalized();
    const QVector<Slice>& all = slices();
    int firstRow = -1, lastRow = -1, firstColumn = -1, lastColumn = -1;
    auto take = [&](int row, int column) {
        firstRow = firstRow < 0 ? row : std::min(firstRow, row);
        lastRow = std::max(lastRow, row);
        firstColumn = firstColumn < 0 ? column : std::min(firstColumn, column);
        lastColumn = std::max(lastColumn, column);
    };
    const int columns = model()->columnCount(rootIndex());
    for (int row = 0; row < all.size(); ++row) {
        if (!all.at(row).valid) continue;
        for (int column = 0; column < columns; ++column) {
            const bool hit =
                column == 1 ? slicePath(all.at(row)).intersects(QRectF(contentsRect))
                            : itemRegion(model()->index(row, column, rootIndex())).intersects(contentsRect);
            if (hit) take(row, column);
        }
    }
    if (firstRow >= 0) {
        const QItemSelection selection(model()->index(firstRow, firstColumn, rootIndex()),
                                       model()->index(lastRow, lastColumn, rootIndex()));
        selectionModel()->select(selection, command);
    } else {
        selectionModel()->select(QItemSelection(QModelIndex(), QModelIndex()), command);
    }
    viewport()->update();
}

void PieView::mousePressEvent(QMouseEvent* event)
{
    QAbstractItemView::mousePressEvent(event);
    origin = event->pos();
    if (!rubberBand) rubberBand = new QRubberBand(QRubberBand::Rectangle, viewport());
    rubberBand->setGeometry(QRect(origin, QSize()));
    rubberBand->show();
}

void PieView::mouseMoveEvent(QMouseEvent* event)
{
    if (rubberBand) {
        const QRect band = QRect(origin, event->pos()).normalized();
        rubberBand->setGeometry(band);
        // The base selects only from an item under the mouse, and no point is one here.
        if (event->buttons() & Qt::LeftButton) {
            const bool adding = event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier);
            setSelection(band, adding ? QItemSelectionModel::Select : QItemSelectionModel::ClearAndSelect);
            // A release after a drag keeps what the band took; after a plain click it clears.
            setState(DragSelectingState);
        }
    }
    QAbstractItemView::mouseMoveEvent(event);
}

void PieView::mouseReleaseEvent(QMouseEvent* event)
{
    QAbstractItemView::mouseReleaseEvent(event);
    if (rubberBand) rubberBand->hide();
    viewport()->update();
}

void PieView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.fillRect(event->rect(), palette().brush(QPalette::Base));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::WindowText));

    pieSize = pieExtent() - 2 * margin;
    const QVector<Slice>& all = slices();
    if (validItems == 0 || !model()) return;

    const QModelIndex current = currentIndex();
    QItemSelectionModel* selections = selectionModel();
    if (pieSize > 0) {
        painter.save();
        painter.translate(margin - horizontalOffset(), margin - verticalOffset());
        const bool smooth = validItems <= smoothSliceLimit;
        if (smooth) painter.drawEllipse(0, 0, pieSize, pieSize);
        painter.setRenderHint(QPainter::Antialiasing, smooth);
        const QPen outline = painter.pen();
        if (!smooth) painter.setPen(Qt::NoPen);
        QVector<QLineF> edges;
        for (int row = 0; row < all.size(); ++row) {
            const Slice& slice = all.at(row);
            if (!slice.valid) continue;
            const QModelIndex quantity = model()->index(row, 1, rootIndex());
            const QColor colour =
                model()->index(row, 0, rootIndex()).data(Qt::DecorationRole).value<QColor>();
            Qt::BrushStyle style = Qt::SolidPattern;
            if (quantity == current)
                style = Qt::Dense4Pattern;
            else if (selections && selections->isSelected(quantity))
                style = Qt::Dense3Pattern;
            painter.setBrush(QBrush(colour, style));
            if (smooth) {
                painter.drawPie(0, 0, pieSize, pieSize, int(slice.startAngle * 16), int(slice.angle * 16));
            } else {
                const QPolygonF fan = slicePolygon(slice);
                painter.drawPolygon(fan);
                edges.append(QLineF(fan.at(0), fan.at(1)));
            }
        }
        if (!smooth) {
            // The edges of many slices as one stroke, and the rim smooth on top.
            painter.setPen(outline);
            painter.drawLines(edges);
            painter.setRenderHint(QPainter::Antialiasing, true);
            painter.setBrush(Qt::NoBrush);
            painter.drawEllipse(0, 0, pieSize, pieSize);
        }
        painter.restore();
    }

    painter.setPen(palette().color(QPalette::Text));
    const QStyleOptionViewItem plain = viewOptions();
    const int lineHeight = QFontMetrics(plain.font).height();
    const int left = pieExtent() + margin - horizontalOffset();
    const QRect visible = event->rect();
    for (int row = 0; row < all.size(); ++row) {
        const Slice& slice = all.at(row);
        if (!slice.valid) continue;
        QStyleOptionViewItem option = plain;
        option.rect = QRect(left, int(slice.legendLine * lineHeight + margin) - verticalOffset(), legendWidth,
                            lineHeight);
        if (option.rect.top() > visible.bottom()) break; // the lines below are out of sight too
        if (!option.rect.intersects(visible)) continue;
        const QModelIndex label = model()->index(row, 0, rootIndex());
        if (selections && selections->isSelected(label)) option.state |= QStyle::State_Selected;
        if (label == current) option.state |= QStyle::State_HasFocus;
        itemDelegate(label)->paint(&painter, option, label);
    }
}
