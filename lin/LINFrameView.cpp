#include "lin/LINFrameView.h"

#include <QHeaderView>

namespace {
constexpr int ColumnWidths[LINColumnCount] = {80, 100, 80, 80, 80, 300, 100, 100};
constexpr int RowHeight = 23;
} // namespace

LINFrameView::LINFrameView(QWidget *parent)
    : QTableView(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        if (m_isPending) {
            refresh();
        }
    });
    setModel(&m_model);
    // What the table does with every row that comes, countChanged() does once for many.
    disconnect(verticalHeader(), &QHeaderView::sectionCountChanged, this, nullptr);
    connect(verticalHeader(), &QHeaderView::sectionCountChanged, this, &LINFrameView::countChanged);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(RowHeight);
    verticalHeader()->setDefaultSectionSize(RowHeight);
    verticalHeader()->hide();
    for (int column = 0; column < LINColumnCount; ++column) {
        setColumnWidth(column, ColumnWidths[column]);
    }
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false); // Tab goes on
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTextElideMode(Qt::ElideMiddle); // a state ends with what tells it from the others
}

LINFrameView::~LINFrameView()
{
    setModel(nullptr);
}

/// At once after a pause, so that a single row is seen without delay.
void LINFrameView::schedule()
{
    if (m_timer.isActive()) {
        m_isPending = true;
    } else {
        refresh();
    }
}

void LINFrameView::refresh()
{
    m_isPending = false;
    rowCountChanged(0, 0); // places the scroll bars and repaints
    if (m_isFollowing) {
        m_isFollowing = false;
        scrollToBottom();
    }
    m_timer.start(RefreshMs);
}

void LINFrameView::addRow(const CTableViewLIN::DataObject &frame, bool isStaticMode, quint8 checksumType)
{
    if (isStaticMode) {
        m_model.replace(frame, checksumType);
        return;
    }
    m_isFollowing = true;
    m_model.append(frame, checksumType);
}

void LINFrameView::addRows(const QVector<CTableViewLIN::DataObject> &frames, quint8 checksumType)
{
    if (!frames.isEmpty()) {
        m_isFollowing = true;
        m_model.append(frames, checksumType);
    }
}

void LINFrameView::clearRows()
{
    m_isFollowing = false;
    m_model.clear();
}

void LINFrameView::dataChanged(const QModelIndex & /*topLeft*/, const QModelIndex & /*bottomRight*/,
                               const QVector<int> & /*roles*/)
{
    schedule();
}

void LINFrameView::countChanged(int before, int now)
{
    if (now <= before) {
        rowCountChanged(before, now);
    } else {
        schedule();
    }
}
