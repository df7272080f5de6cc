#pragma once

#include "lin/CTableViewLIN.h"

#include <QStandardItemModel>

#include <memory>

class LINFrameModelPrivate;

/// The table of received and sent LIN frames. A row holds its frame once and its cells are written when they are asked
/// for, so that a row takes about 150 bytes instead of eight items with a text each.
///
/// Cells are read with index() and data(), or cellText(). There are no QStandardItems: item() and itemFromIndex()
/// answer null, and rows come in and go out only through the functions below; cells cannot be edited, sorted or dropped
/// on, rows and columns cannot be inserted.
class LINFrameModel : public QStandardItemModel
{
    Q_OBJECT

public:
    explicit LINFrameModel(QObject *parent = nullptr);
    ~LINFrameModel() override;

    /// Dynamic display: adds rows at the end, announced together. checksumType (0 standard, 1 enhanced) decides the
    /// text of "State" now; a later change does not touch rows that are there.
    void append(const QVector<CTableViewLIN::DataObject> &frames, quint8 checksumType);
    void append(const CTableViewLIN::DataObject &frame, quint8 checksumType);
    /// Static display: puts the frame into the first row with its identifier, whose "No." and "ID[PID]" stay; appends
    /// it when there is none. Returns the row. Costs the same however many rows there are.
    int replace(const CTableViewLIN::DataObject &frame, quint8 checksumType);
    /// Drops all rows; the headers stay.
    void clear();

    /// Empty for a cell that is not there.
    QString cellText(int row, int column) const;
    QString headerText(int column) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    bool hasChildren(const QModelIndex &parent = QModelIndex()) const override;
    /// Qt::DisplayRole, Qt::EditRole and, as a column may be too narrow for it, Qt::ToolTipRole give the cell's text.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QMap<int, QVariant> itemData(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// "No." of the rows that remain stays as it is.
    bool removeRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;

    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    bool setItemData(const QModelIndex &index, const QMap<int, QVariant> &roles) override;
    bool setHeaderData(int section, Qt::Orientation orientation, const QVariant &value,
                       int role = Qt::EditRole) override;
    bool insertRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;
    bool insertColumns(int column, int count, const QModelIndex &parent = QModelIndex()) override;
    bool removeColumns(int column, int count, const QModelIndex &parent = QModelIndex()) override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

private:
    std::unique_ptr<LINFrameModelPrivate> m_p;
};
