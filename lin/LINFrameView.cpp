#include "lin/LINFrameView.h"

#include "lin/LINFrameCells.h"
#include "lin/LINFrameModel.h"

#include <QHeaderView>
#include <QTimer>

namespace {
constexpr int ColumnWidths[LINColumnCount] = {80, 100, 80, 80, 80, 300, 100, 100};
constexpr int RowHeight = 23;
} // namespace

class LINFrameViewPrivate
{
public:
    explicit LINFrameViewPrivate(LINFrameView *view)
        : q(view)
    {
    }

    void schedule();
    void refresh();

    LINFrameView *q;
    LINFrameModel model;
    QTimer timer; ///< runs since the last refresh
    bool isPending = false;
    bool isFollowing = false; ///< to the bottom with the next refresh
};

/// At once after a pause, so that a single row is seen without delay.
void LINFrameViewPrivate::schedule()
{
    if (timer.isActive()) {
        isPending = true;
    } else {
        refresh();
    }
}

void LINFrameViewPrivate::refresh()
{
    isPending = false;
    q->rowCountChanged(0, 0); // places the scroll bars and repaints
    if (isFollowing) {
        isFollowing = false;
        q->scrollToBottom();
    }
    timer.start(LINFrameView::RefreshMs);
}

LINFrameView::LINFrameView(QWidget *parent)
    : QTableView(parent)
    , m_p(std::make_unique<LINFrameViewPrivate>(this))
{
    m_p->timer.setSingleShot(true);
    connect(&m_p->timer, &QTimer::timeout, this, [this] {
        if (m_p->isPending) {
            m_p->refresh();
        }
    });
    setModel(&m_p->model);
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

const LINFrameModel &LINFrameView::frames() const
{
    return m_p->model;
}

void LINFrameView::addRow(const CTableViewLIN::DataObject &frame, bool isStaticMode, quint8 checksumType)
{
    if (isStaticMode) {
        m_p->model.replace(frame, checksumType);
        return;
    }
    m_p->isFollowing = true;
    m_p->model.append(frame, checksumType);
}

void LINFrameView::addRows(const QVector<CTableViewLIN::DataObject> &frames, quint8 checksumType)
{
    if (!frames.isEmpty()) {
        m_p->isFollowing = true;
        m_p->model.append(frames, checksumType);
    }
}

void LINFrameView::clearRows()
{
    m_p->isFollowing = false;
    m_p->model.clear();
}

void LINFrameView::dataChanged(const QModelIndex & /*topLeft*/, const QModelIndex & /*bottomRight*/,
                               const QVector<int> & /*roles*/)
{
    m_p->schedule();
}

void LINFrameView::countChanged(int before, int now)
{
    if (now <= before) {
        rowCountChanged(before, now);
    } else {
        m_p->schedule();
    }
}
