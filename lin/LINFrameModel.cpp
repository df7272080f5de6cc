#include "lin/LINFrameModel.h"

namespace {
constexpr int NoRow = -1;
} // namespace

LINFrameModel::LINFrameModel(QObject *parent)
    : QAbstractTableModel(parent)
{
    m_firstRows.fill(NoRow);
}

void LINFrameModel::append(const QVector<CTableViewLIN::DataObject> &frames, quint8 checksumType)
{
    if (frames.isEmpty()) {
        return;
    }
    int row = rowCount();
    beginInsertRows(QModelIndex(), row, row + frames.size() - 1);
    for (const CTableViewLIN::DataObject &frame : frames) {
        m_rows.push_back({frame, checksumType});
        if (m_firstRows[frame.ID] == NoRow) {
            m_firstRows[frame.ID] = row;
        }
        ++row;
    }
    endInsertRows();
}

int LINFrameModel::replace(const CTableViewLIN::DataObject &frame, quint8 checksumType)
{
    const int found = m_firstRows[frame.ID];
    if (found == NoRow) {
        append(frame, checksumType);
        return rowCount() - 1;
    }
    Row &row = m_rows[static_cast<std::size_t>(found)];
    const quint8 shownPid = row.frame.PID;
    row = {frame, checksumType};
    row.frame.PID = shownPid;
    emit dataChanged(index(found, 0), index(found, LINColumnCount - 1), {Qt::DisplayRole, Qt::EditRole});
    return found;
}

void LINFrameModel::clear()
{
    if (m_rows.empty()) {
        return;
    }
    beginRemoveRows(QModelIndex(), 0, rowCount() - 1);
    m_rows.clear();
    m_firstRows.fill(NoRow);
    endRemoveRows();
}

QString LINFrameModel::cellText(int row, int column) const
{
    if (row < 0 || row >= rowCount() || column < 0 || column >= LINColumnCount) {
        return {};
    }
    const Row &shown = m_rows[static_cast<std::size_t>(row)];
    return linCell(shown.frame, row + 1, shown.checksumType, static_cast<LINColumn>(column));
}

int LINFrameModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int LINFrameModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : LINColumnCount;
}

QVariant LINFrameModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole && role != Qt::ToolTipRole)) {
        return {};
    }
    return cellText(index.row(), index.column());
}

QVariant LINFrameModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    const bool isTitle = role == Qt::DisplayRole && section >= 0 && section < LINColumnCount;
    return isTitle ? QVariant(linColumnTitles().at(section)) : QVariant();
}
