#pragma once

#include "viewer/core/Series.h"

#include <QString>

#include <vector>

class QIODevice;

/// A column of the table.
struct NamedSeries
{
    QString name;
    const Series *series; ///< not null
};

/// Writes a table with the time in seconds since start and a column for each series (RFC 4180, UTF-8, "." before the
/// decimals): a line for each time that a series has a value at, whose cells are empty for those that have none. Of
/// points of one series at the same time each has a line. False when out does not take all of it.
bool writeSeriesCsv(QIODevice &out, const std::vector<NamedSeries> &columns, qint64 start);
