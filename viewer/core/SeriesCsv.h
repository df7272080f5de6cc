#pragma once

#include "viewer/core/Series.h"

#include <QString>

#include <atomic>
#include <limits>
#include <vector>

class QIODevice;

/// A column of the table.
struct NamedSeries
{
    QString name;
    const Series *series; ///< not null
};

/// What is written of the series: nanoseconds, in their time base.
struct SeriesCsvSection
{
    qint64 start = 0; ///< what times count from
    qint64 begin = std::numeric_limits<qint64>::min();
    qint64 end = std::numeric_limits<qint64>::max(); ///< the last moment
};

/// Writes a table with the time in seconds since the start and a column for each series (RFC 4180, UTF-8, "." before
/// the decimals): a line for each time that a series has a value at, whose cells are empty for those that have none. Of
/// points of one series at the same time each has a line. False when out does not take all of it, and when stop is set.
bool writeSeriesCsv(QIODevice &out, const std::vector<NamedSeries> &columns, const SeriesCsvSection &section,
                    const std::atomic<bool> &stop);
