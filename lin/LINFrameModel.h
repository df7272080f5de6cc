#pragma once

#include "lin/LINFrameCells.h"

#include <QAbstractTableModel>

#include <array>
#include <deque>
#include <limits>

/// The table of received and sent LIN frames, columns as LINColumn has them. A row holds its frame once and its cells
/// are written when they are asked for. Rows come in and go out only through the functions below.
class LINFrameModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit LINFrameModel(QObject *parent = nullptr);

    /// Dynamic display: adds rows at the end, announced together. checksumType (0 standard, 1 enhanced) decides the
    /// text of "State" now; a later change does not touch rows that are there.
    void append(const QVector<CTableViewLIN::DataObject> &frames, quint8 checksumType);
    void append(const CTableViewLIN::DataObject &frame, quint8 checksumType) { append(QVector{frame}, checksumType); }
    /// Static display: puts the frame into the first row with its identifier, whose "No." and "ID[PID]" stay; appends
    /// it when there is none. Returns the row. Costs the same however many rows there are.
    int replace(const CTableViewLIN::DataObject &frame, quint8 checksumType);
    /// Drops all rows; the headers stay.
    void clear();

    /// Empty for a cell that is not there.
    QString cellText(int row, int column) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    /// Qt::DisplayRole, Qt::EditRole and, as a column may be too narrow for it, Qt::ToolTipRole give the cell's text.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    struct Row
    {
        CTableViewLIN::DataObject frame;
        quint8 checksumType; ///< set when the frame came
    };

    std::deque<Row> m_rows;                                                ///< growing it moves no row
    std::array<int, std::numeric_limits<quint8>::max() + 1> m_firstRows{}; ///< by identifier
};
