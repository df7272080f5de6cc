#pragma once

#include "viewer/core/LastSignals.h"
#include "viewer/core/SignalCells.h"

#include <QAbstractItemModel>
#include <QSortFilterProxyModel>

/// The messages of the databases, by name, below each its signals, and the value that each had last. Texts are made
/// when they are asked for.
class ValueTreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { Name, Value, Unit, Text, Time, ColumnCount };
    static constexpr int IsSeenRole = Qt::UserRole; ///< whether a frame has it

    /// store must outlive this.
    explicit ValueTreeModel(const BusFrameStore &store, QObject *parent = nullptr);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Null: none.
    void setSource(std::shared_ptr<const DatabaseSignals> source);
    const std::shared_ptr<const DatabaseSignals> &source() const { return m_source; }
    /// Those of another source are left alone.
    void setRows(const LastSignals::Rows &rows);

    /// Of a message or of one of its signals; -1: none.
    int messageOf(const QModelIndex &index) const;
    /// -1 where index is none.
    int signalOf(const QModelIndex &index) const;
    /// Of the last frame that has it; -1: none.
    qint64 rowOf(const QModelIndex &index) const;

private:
    QString text(const QModelIndex &index) const;
    QString messageText(int message, int column, qint64 row) const;
    QString signalText(int signal, int column, qint64 row) const;
    QString toolTip(const QModelIndex &index) const;

    const BusFrameStore &m_store;
    std::shared_ptr<const DatabaseSignals> m_source;
    std::vector<int> m_messages; ///< by row
    LastSignals::Rows m_rows;
};

/// The messages and signals whose names have a text in them; of a message that has it, all signals.
class ValueTreeFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setText(const QString &text);
    void setOnlySeen(bool isOnlySeen);

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    bool hasText(const QModelIndex &index) const;

    QString m_text;
    bool m_isOnlySeen = false;
};
