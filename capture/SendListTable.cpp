#include "capture/SendListTable.h"

#include "capture/WidgetDelegateCAN.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>

#include <algorithm>
#include <array>

namespace {
using Column = WidgetDelegateCAN;

constexpr int TickWidth = 26;
constexpr int LeastLastWidth = 60;                                  // the last column takes what is left, but not less
constexpr std::array<int, 7> Widths{70, 80, 70, 70, 160, 120, 120}; // of the columns from "No." on, pixels
constexpr int FirstEditable = Column::Id;

Qt::ItemFlags flagsOf(int column)
{
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (column == Column::Tick) {
        return flags | Qt::ItemIsUserCheckable;
    }
    return column >= FirstEditable ? flags | Qt::ItemIsEditable : flags;
}
} // namespace

SendListTable::SendListTable(QWidget *parent)
    : QTableWidget(0, Column::ColumnCount, parent)
{
    setItemDelegate(new WidgetDelegateCAN(this));
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setMinimumSectionSize(TickWidth);
    setColumnWidth(Column::Tick, TickWidth);
    for (std::size_t i = 0; i < Widths.size(); ++i) {
        setColumnWidth(Column::Number + static_cast<int>(i), Widths.at(i));
    }
    setColumnWidth(Column::ColumnCount - 1, LeastLastWidth);
    horizontalHeader()->setStretchLastSection(true);
    connect(this, &QTableWidget::cellChanged, this, &SendListTable::followCell);
}

void SendListTable::appendRow()
{
    const int row = rowCount();
    if (row >= MaxRows) {
        return;
    }
    insertRow(row);
    fillCell(row, Column::Tick, QString(), QVariant::fromValue(DataModel()));
    fillCell(row, Column::Type, WidgetDelegateCAN::typeText(Column::Standard), Column::Standard);
    fillCell(row, Column::Data, QString(), QString());
    for (const int column : {Column::Id, Column::Length}) {
        fillCell(row, column, QStringLiteral("0"), 0);
    }
    for (const int column : {Column::FrameCount, Column::SendCount, Column::Interval}) {
        fillCell(row, column, QStringLiteral("1"), 1);
    }
    renumber(row);
    scrollToItem(item(row, Column::Tick));
}

bool SendListTable::removeCurrentRow()
{
    const int row = currentRow();
    if (row < 0) {
        return false;
    }
    removeRow(row);
    renumber(row);
    return true;
}

void SendListTable::setAllTicked(bool isTicked)
{
    {
        const QSignalBlocker blocker(model()); // one repaint instead of one per row
        for (int row = 0; row < rowCount(); ++row) {
            item(row, Column::Tick)->setCheckState(isTicked ? Qt::Checked : Qt::Unchecked);
        }
    }
    viewport()->update();
}

std::vector<DataModel> SendListTable::tickedRows() const
{
    std::vector<DataModel> rows;
    for (int row = 0; row < rowCount(); ++row) {
        const QTableWidgetItem *first = item(row, Column::Tick);
        if (first->checkState() == Qt::Checked) {
            rows.push_back(first->data(Qt::UserRole).value<DataModel>());
        }
    }
    return rows;
}

QModelIndex SendListTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if (action == MoveNext || action == MovePrevious) { // Tab in an editor
        return nextEditableCell(action == MoveNext);
    }
    return QTableWidget::moveCursor(action, modifiers);
}

bool SendListTable::focusNextPrevChild(bool next)
{
    const QModelIndex cell = nextEditableCell(next);
    if (!cell.isValid()) {
        return QTableWidget::focusNextPrevChild(next);
    }
    setCurrentIndex(cell);
    return true;
}

void SendListTable::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space && currentRow() >= 0) {
        QTableWidgetItem *first = item(currentRow(), Column::Tick);
        first->setCheckState(first->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
        return;
    }
    const bool isForward = event->key() == Qt::Key_Tab;
    if ((isForward || event->key() == Qt::Key_Backtab) && event->modifiers().testFlag(Qt::ControlModifier)) {
        QTableWidget::focusNextPrevChild(isForward);
        return;
    }
    QTableWidget::keyPressEvent(event);
}

void SendListTable::followCell(int row, int column)
{
    if (column < FirstEditable) {
        return;
    }
    const QSignalBlocker blocker(this);
    const DataModelCells cells = cellsOf(row);
    const DataModel model = dataModelOf(cells);
    if (model.frame.ID != cells.id) {
        item(row, Column::Id)->setText(QString::number(model.frame.ID, 16).toUpper());
        item(row, Column::Id)->setData(Qt::UserRole, quint32(model.frame.ID));
    }
    item(row, Column::Tick)->setData(Qt::UserRole, QVariant::fromValue(model));
}

DataModelCells SendListTable::cellsOf(int row) const
{
    const auto number = [this, row](int column) {
        return item(row, column)->data(Qt::UserRole).toInt();
    };
    DataModelCells cells;
    cells.id = static_cast<quint32>(number(Column::Id));
    cells.isExtended = number(Column::Type) == Column::Extended;
    cells.length = number(Column::Length);
    cells.data = item(row, Column::Data)->data(Qt::UserRole).toString();
    cells.frameCount = number(Column::FrameCount);
    cells.sendCount = number(Column::SendCount);
    cells.interval = number(Column::Interval);
    return cells;
}

/// A cell of its own in place of what is there; no edit that is followed.
void SendListTable::fillCell(int row, int column, const QString &text, const QVariant &value)
{
    const QSignalBlocker blocker(model());
    auto *cell = new QTableWidgetItem(text);
    cell->setFlags(flagsOf(column));
    cell->setData(Qt::UserRole, value);
    if (column == Column::Tick) {
        cell->setCheckState(Qt::Unchecked);
    }
    setItem(row, column, cell);
}

/// Puts new cells into the column: the model finds the place of one that stays by searching all of them.
void SendListTable::renumber(int firstRow)
{
    for (int row = firstRow; row < rowCount(); ++row) {
        fillCell(row, Column::Number, QString::number(row + 1));
    }
    viewport()->update();
}

/// An invalid index beyond the first and the last one.
QModelIndex SendListTable::nextEditableCell(bool forward) const
{
    constexpr int EditableCount = Column::ColumnCount - FirstEditable;
    const QModelIndex current = currentIndex();
    if (!current.isValid()) {
        return forward ? model()->index(0, FirstEditable) : QModelIndex();
    }
    // Cells in front of the first editable one of a row lie just before it.
    const int column = current.column() - FirstEditable;
    const int step = forward ? std::max(column, -1) + 1 : std::max(column, 0) - 1;
    const int next = current.row() * EditableCount + step;
    return next < 0 ? QModelIndex() : model()->index(next / EditableCount, FirstEditable + next % EditableCount);
}
