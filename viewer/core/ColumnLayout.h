#pragma once

#include "viewer/core/FrameColumns.h"

#include <QByteArray>

#include <vector>

/// Which columns a table of frames has, in which order and how wide. A plain value; every column is in it once.
class ColumnLayout
{
public:
    static constexpr double MinWidth = 2;
    static constexpr double MaxWidth = 400;

    struct Column
    {
        FrameColumn column;
        double width; ///< digits of the table's font, MinWidth to MaxWidth
        bool isShown;

        bool operator==(const Column &other) const
        {
            return column == other.column && width == other.width && isShown == other.isShown;
        }
    };

    /// As the program comes.
    ColumnLayout();
    /// Columns that are missing come behind the others, hidden; one that is there twice counts once.
    explicit ColumnLayout(const std::vector<Column> &columns);

    /// From left to right.
    const std::vector<Column> &columns() const { return m_columns; }
    bool operator==(const ColumnLayout &other) const { return m_columns == other.m_columns; }
    bool operator!=(const ColumnLayout &other) const { return !(*this == other); }

    QByteArray toJson() const;
    /// Leaves out what is not right; of anything else than a list of columns with one that is shown, the standard.
    static ColumnLayout fromJson(const QByteArray &json);

private:
    std::vector<Column> m_columns;
};
