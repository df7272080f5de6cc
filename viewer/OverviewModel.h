#pragma once

#include "viewer/core/FrameColumns.h"
#include "viewer/core/OpenCapture.h"

#include <QAbstractTableModel>

#include <vector>

/// The identifiers of a capture with their figures, and the data that each had last: at the end, or at a row.
class OverviewModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Channel, Identifier, Name, Count, Rate, Mean, Least, Greatest, Deviation, Length, First, Last, Data };
    static constexpr int ColumnCount = Data + 1;
    static constexpr int SortRole = Qt::UserRole;

    /// capture must outlive this.
    explicit OverviewModel(OpenCapture &capture, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Of the column's cells, for the font's digits.
    static int widthInCharacters(int column);
    /// The row at which the last data are shown; -1: the end.
    void setRow(qint64 row);
    /// The filter that passes a row's frames.
    QString filterOf(int row) const;
    const IdentifierStatistics &identifier(int row) const { return at(row); }
    /// Takes the figures as they are now.
    void update();

private:
    QString text(int row, Column column) const;
    QVariant sortValue(int row, Column column) const;
    QString dataText(int row) const;
    QByteArray marks(int row) const;
    const IdentifierStatistics &at(int row) const { return m_identifiers[static_cast<std::size_t>(row)]; }

    OpenCapture &m_capture;
    FrameColumns::Names m_names;
    std::vector<IdentifierStatistics> m_identifiers;
    std::vector<Overview::LastRows> m_lastRows;
    qint64 m_row = -1;
};
