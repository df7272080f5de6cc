#pragma once

#include "capture/FrameCells.h"
#include "capture/FrameStore.h"

#include <QFont>

class QScrollBar;
class QStandardItemModel;
class QTableView;
class QWheelEvent;
class QWidget;

/// The rows of a store that are on screen: a view on a model of just these, and a scroll bar over all of them. Whoever
/// changes the store calls update() afterwards.
class FrameRows
{
public:
    /// Lays the widgets out in owner, which is their parent and filters their events. store must outlive this.
    FrameRows(QWidget *owner, const FrameStore &store);
    FrameRows(const FrameRows &) = delete;
    FrameRows &operator=(const FrameRows &) = delete;

    const FrameLabels &labels() const { return m_labels; }
    /// Brings the scroll bar and the rows on screen up to date.
    void update(bool scrollToBottom);
    /// The owner or the rows' place has another size.
    void resize();
    /// One row per event, whatever its size; what goes sideways is for the columns.
    void scrollByWheel(const QWheelEvent &event) const;
    /// Where rows stand, without the columns' titles and scroll bar.
    const QWidget *place() const;

private:
    int visibleRows() const;
    void updateShownRows();
    void setModelRows(int rows);
    bool setRow(int row, int index) const;

    const FrameStore &m_store;
    const FrameLabels m_labels = FrameLabels::translated();
    const QFont m_font{QStringLiteral("Microsoft Yahei"), 9};
    QWidget *m_owner;
    QTableView *m_view = nullptr;
    QScrollBar *m_bar = nullptr;
    QStandardItemModel *m_model;
    int m_visibleRows = 0;
};
