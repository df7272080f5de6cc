#include "capture/FrameRows.h"

#include "capture/FrameDelegate.h"
#include "ui_FrameRows.h"

#include <QCoreApplication>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QWheelEvent>

#include <algorithm>

namespace {

constexpr int RowHeight = 25;
} // namespace

FrameRows::FrameRows(QWidget *owner, const FrameStore &store)
    : m_store(store)
    , m_owner(owner)
    , m_model(new QStandardItemModel(0, FrameColumnCount, owner))
{
    Ui::FrameRows ui;
    ui.setupUi(owner);
    m_view = ui.frameView;
    m_bar = ui.frameScrollBar;
    m_view->setItemDelegate(new FrameDelegate(m_font, m_view));
    m_view->setModel(m_model);
    m_view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_view->verticalHeader()->setMinimumSectionSize(RowHeight);
    m_view->verticalHeader()->setDefaultSectionSize(RowHeight);
    const std::array<int, FrameColumnCount> widths = frameColumnWidths();
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const auto column = static_cast<int>(i);
        m_model->setHorizontalHeaderItem(column, new QStandardItem(m_labels.titles[i]));
        m_view->setColumnWidth(column, widths[i]);
    }
    m_view->installEventFilter(owner);
    m_view->viewport()->installEventFilter(owner); // where the wheel's events arrive first, and the size of the place
    m_bar->installEventFilter(owner);
    QObject::connect(m_bar, &QScrollBar::valueChanged, owner, [this] { updateShownRows(); });
}

const QWidget *FrameRows::place() const
{
    return m_view->viewport();
}

void FrameRows::update(bool scrollToBottom)
{
    {
        const QSignalBlocker blocker(m_bar); // the shown rows follow below, once
        const int hidden = std::max(m_store.size() - m_visibleRows, 0);
        m_bar->setRange(0, hidden);
        m_bar->setVisible(hidden > 0);
        if (scrollToBottom) {
            m_bar->setValue(hidden);
        }
    }
    updateShownRows();
}

/// What shows the end goes on showing it.
void FrameRows::resize()
{
    m_visibleRows = visibleRows();
    if (m_visibleRows > 0 && !m_store.isEmpty()) {
        update(m_bar->value() == m_bar->maximum());
    }
}

/// How many rows there is room for: less when the columns have a scroll bar below them.
int FrameRows::visibleRows() const
{
    const QHeaderView *header = m_view->horizontalHeader();
    // Until it is shown, the header has not got its height yet.
    int height = m_owner->height() - (header->isVisible() ? header->height() : header->sizeHint().height());
    if (m_view->horizontalScrollBar()->isVisible()) {
        height = std::min(height, place()->height());
    }
    return std::max(0, height) / RowHeight;
}

void FrameRows::scrollByWheel(const QWheelEvent &event) const
{
    const QPoint delta = event.angleDelta();
    if (delta.x() != 0) {
        QWheelEvent sideways(event.position(), event.globalPosition(), QPoint(event.pixelDelta().x(), 0),
                             QPoint(delta.x(), 0), event.buttons(), event.modifiers(), event.phase(), event.inverted(),
                             event.source());
        QCoreApplication::sendEvent(m_view->horizontalScrollBar(), &sideways);
    }
    // A trackpad begins and ends a movement with events that have no delta.
    const bool hasNone = delta.isNull() && event.phase() == Qt::NoScrollPhase;
    if (delta.y() != 0 || hasNone) {
        m_bar->setValue(m_bar->value() + (delta.y() < 1 ? 1 : -1));
    }
}

void FrameRows::updateShownRows()
{
    m_view->clearSelection();
    const int first = std::min(m_bar->value(), std::max(m_store.size() - 1, 0));
    const int rows = std::min(m_visibleRows, m_store.size() - first);
    setModelRows(rows);
    bool changed = false;
    {
        // One signal for all cells: the view would find the place of every single one.
        const QSignalBlocker blocker(m_model);
        for (int row = 0; row < rows; ++row) {
            changed |= setRow(row, first + row);
        }
    }
    if (changed) {
        emit m_model->dataChanged(m_model->index(0, 0), m_model->index(rows - 1, FrameColumnCount - 1),
                                  {Qt::DisplayRole});
    }
}

void FrameRows::setModelRows(int rows)
{
    const int present = m_model->rowCount();
    if (present > rows) {
        m_model->removeRows(rows, present - rows);
    }
    for (int row = present; row < rows; ++row) {
        QList<QStandardItem *> items;
        for (int column = 0; column < FrameColumnCount; ++column) {
            items.append(new QStandardItem);
            items.last()->setSizeHint(QSize(0, RowHeight));
            items.last()->setFont(m_font);
        }
        m_model->appendRow(items);
    }
}

/// True when a cell has changed.
bool FrameRows::setRow(int row, int index) const
{
    const FrameView frame = m_store.at(index);
    bool changed = false;
    for (int column = 0; column < FrameColumnCount; ++column) {
        QStandardItem *item = m_model->item(row, column);
        const QString text = frameCell(frame, index, static_cast<FrameColumn>(column), m_labels);
        if (item->text() != text) {
            item->setText(text);
            changed = true;
        }
    }
    return changed;
}
