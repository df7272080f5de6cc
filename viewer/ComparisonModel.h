#pragma once

#include "viewer/core/ComparisonWork.h"
#include "viewer/core/FrameColumns.h"

#include <QAbstractTableModel>

#include <memory>

/// The identifiers of two captures, A and B, side by side.
class ComparisonModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column {
        Channel,
        Identifier,
        Name,
        Difference,
        BytesA,
        BytesB,
        CountA,
        CountB,
        CountChange,
        RateA,
        RateB,
        RateChange,
        PeriodA,
        PeriodB,
        PeriodChange,
        LengthA,
        LengthB
    };
    static constexpr int ColumnCount = LengthB + 1;
    static constexpr int SortRole = Qt::UserRole;
    static constexpr int DiffersRole = Qt::UserRole + 1; ///< "1" or "0"

    using QAbstractTableModel::QAbstractTableModel;

    void setComparison(std::shared_ptr<const Comparison> comparison);
    void setNames(const FrameColumns::Names &names) { m_names = names; }
    /// Null before the first.
    const std::shared_ptr<const Comparison> &comparison() const { return m_comparison; }
    const ComparedIdentifier &at(int row) const { return m_comparison->identifiers[static_cast<std::size_t>(row)]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    static int widthInCharacters(int column);

    /// "byte 5 bit 0: 0 → 1; byte 2 & F0 moves in B": the likeliest first.
    static QString differenceText(const ComparedIdentifier &identifier);

private:
    static QString bytesText(const ByteValues &bytes);
    static QByteArray marks(const ComparedIdentifier &identifier, bool isB);
    QString text(int row, Column column) const;
    QVariant sortValue(int row, Column column) const;

    std::shared_ptr<const Comparison> m_comparison;
    FrameColumns::Names m_names;
};
