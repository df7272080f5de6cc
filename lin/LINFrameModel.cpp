#include "lin/LINFrameModel.h"

#include "lin/LINFrameCells.h"

#include <algorithm>
#include <array>
#include <deque>
#include <limits>

namespace {
struct Row
{
    CTableViewLIN::DataObject frame;
    int number; ///< counted from 1
    LINFrameState state;
};
constexpr int NoRow = -1;
} // namespace

class LINFrameModelPrivate
{
public:
    LINFrameModelPrivate() { firstRows.fill(NoRow); }

    int count() const { return static_cast<int>(rows.size()); }
    void append(const CTableViewLIN::DataObject &frame, quint8 checksumType);
    void remove(int row, int removed);
    void noteFirstRows();

    std::deque<Row> rows;                                                ///< growing it moves no row
    std::array<int, std::numeric_limits<quint8>::max() + 1> firstRows{}; ///< by identifier
};

void LINFrameModelPrivate::append(const CTableViewLIN::DataObject &frame, quint8 checksumType)
{
    const int row = count();
    rows.push_back({frame, row + 1, linFrameState(frame, checksumType)});
    if (firstRows[frame.ID] == NoRow) {
        firstRows[frame.ID] = row;
    }
}

void LINFrameModelPrivate::remove(int row, int removed)
{
    const auto first = rows.begin() + row;
    rows.erase(first, first + removed);
    noteFirstRows();
}

void LINFrameModelPrivate::noteFirstRows()
{
    firstRows.fill(NoRow);
    for (int row = count() - 1; row >= 0; --row) {
        firstRows[rows[static_cast<std::size_t>(row)].frame.ID] = row;
    }
}

LINFrameModel::LINFrameModel(QObject *parent)
    : QStandardItemModel(parent)
    , m_p(std::make_unique<LINFrameModelPrivate>())
{
    // The base's clear(), which only a caller that does not know this class can mean, empties it too.
    connect(this, &QAbstractItemModel::modelAboutToBeReset, this, [this] { m_p->remove(0, m_p->count()); });
}

LINFrameModel::~LINFrameModel() = default;

void LINFrameModel::append(const QVector<CTableViewLIN::DataObject> &frames, quint8 checksumType)
{
    if (frames.isEmpty()) {
        return;
    }
    const int first = m_p->count();
    beginInsertRows(QModelIndex(), first, first + frames.size() - 1);
    for (const CTableViewLIN::DataObject &frame : frames) {
        m_p->append(frame, checksumType);
    }
    endInsertRows();
}

void LINFrameModel::append(const CTableViewLIN::DataObject &frame, quint8 checksumType)
{
    const int row = m_p->count();
    beginInsertRows(QModelIndex(), row, row);
    m_p->append(frame, checksumType);
    endInsertRows();
}

int LINFrameModel::replace(const CTableViewLIN::DataObject &frame, quint8 checksumType)
{
    const int found = m_p->firstRows[frame.ID];
    if (found == NoRow) {
        append(frame, checksumType);
        return m_p->count() - 1;
    }
    Row &row = m_p->rows[static_cast<std::size_t>(found)];
    const quint8 shownPid = row.frame.PID;
    row.frame = frame;
    row.frame.PID = shownPid;
    row.state = linFrameState(frame, checksumType);
    emit dataChanged(index(found, 0), index(found, LINColumnCount - 1), {Qt::DisplayRole, Qt::EditRole});
    return found;
}

void LINFrameModel::clear()
{
    removeRows(0, m_p->count());
}

QString LINFrameModel::cellText(int row, int column) const
{
    if (row < 0 || row >= m_p->count() || column < 0 || column >= LINColumnCount) {
        return {};
    }
    const Row &shown = m_p->rows[static_cast<std::size_t>(row)];
    return linCell(shown.frame, shown.number, shown.state, static_cast<LINColumn>(column));
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): a model is asked for its columns, whatever they are
QString LINFrameModel::headerText(int column) const
{
    return column < 0 || column >= LINColumnCount ? QString() : linColumnTitle(static_cast<LINColumn>(column));
}

QModelIndex LINFrameModel::index(int row, int column, const QModelIndex &parent) const
{
    const bool isCell = !parent.isValid() && row >= 0 && row < m_p->count() && column >= 0 && column < LINColumnCount;
    return isCell ? createIndex(row, column) : QModelIndex();
}

QModelIndex LINFrameModel::parent(const QModelIndex & /*child*/) const
{
    return {};
}

int LINFrameModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_p->count();
}

int LINFrameModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : LINColumnCount;
}

bool LINFrameModel::hasChildren(const QModelIndex &parent) const
{
    return rowCount(parent) > 0;
}

QVariant LINFrameModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole && role != Qt::ToolTipRole)) {
        return {};
    }
    return cellText(index.row(), index.column());
}

QMap<int, QVariant> LINFrameModel::itemData(const QModelIndex &index) const
{
    return index.isValid() ? QMap<int, QVariant>{{Qt::DisplayRole, data(index)}} : QMap<int, QVariant>();
}

QVariant LINFrameModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole && role != Qt::EditRole) {
        return {};
    }
    if (orientation == Qt::Vertical) {
        return section >= 0 && section < m_p->count() ? QVariant(section + 1) : QVariant();
    }
    return section >= 0 && section < LINColumnCount ? QVariant(headerText(section)) : QVariant();
}

Qt::ItemFlags LINFrameModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

bool LINFrameModel::removeRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || row < 0 || count < 1 || row > m_p->count() - count) {
        return false;
    }
    beginRemoveRows(QModelIndex(), row, row + count - 1);
    m_p->remove(row, count);
    endRemoveRows();
    return true;
}

bool LINFrameModel::setData(const QModelIndex & /*index*/, const QVariant & /*value*/, int /*role*/)
{
    return false;
}

bool LINFrameModel::setItemData(const QModelIndex & /*index*/, const QMap<int, QVariant> & /*roles*/)
{
    return false;
}

bool LINFrameModel::setHeaderData(int /*section*/, Qt::Orientation /*orientation*/, const QVariant & /*value*/,
                                  int /*role*/)
{
    return false;
}

bool LINFrameModel::insertRows(int /*row*/, int /*count*/, const QModelIndex & /*parent*/)
{
    return false;
}

bool LINFrameModel::insertColumns(int /*column*/, int /*count*/, const QModelIndex & /*parent*/)
{
    return false;
}

bool LINFrameModel::removeColumns(int /*column*/, int /*count*/, const QModelIndex & /*parent*/)
{
    return false;
}

bool LINFrameModel::dropMimeData(const QMimeData * /*data*/, Qt::DropAction /*action*/, int /*row*/, int /*column*/,
                                 const QModelIndex & /*parent*/)
{
    return false;
}

void LINFrameModel::sort(int /*column*/, Qt::SortOrder /*order*/) {}
