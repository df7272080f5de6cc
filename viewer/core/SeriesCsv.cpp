#include "viewer/core/SeriesCsv.h"

#include "viewer/core/FrameTimes.h"

#include <QIODevice>
#include <QLocale>

#include <algorithm>

namespace {

constexpr int PieceSize = 1 << 16;

QByteArray quoted(const QString &name)
{
    QByteArray cell = name.toUtf8();
    cell.replace('"', "\"\"");
    return '"' + cell + '"';
}

} // namespace

bool writeSeriesCsv(QIODevice &out, const std::vector<NamedSeries> &columns, const SeriesCsvSection &section,
                    const std::atomic<bool> &stop)
{
    QByteArray text = "\"time\"";
    for (const NamedSeries &column : columns) {
        text += ',' + quoted(column.name);
    }
    text += "\r\n";
    std::vector<std::size_t> next;
    next.reserve(columns.size());
    for (const NamedSeries &column : columns) {
        next.push_back(column.series->firstFrom(section.begin));
    }
    for (bool isMore = true; isMore;) {
        qint64 time = std::numeric_limits<qint64>::max();
        isMore = false;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const Series &series = *columns[i].series;
            if (next[i] < series.size() && series.at(next[i]).time <= section.end) {
                time = std::min(time, series.at(next[i]).time);
                isMore = true;
            }
        }
        if (isMore) {
            text += durationText(static_cast<qint64>(static_cast<quint64>(time) - static_cast<quint64>(section.start)))
                        .toLatin1();
            for (std::size_t i = 0; i < columns.size(); ++i) {
                const Series &series = *columns[i].series;
                text += ',';
                if (next[i] < series.size() && series.at(next[i]).time == time) {
                    text += QByteArray::number(series.at(next[i]).value, 'g', QLocale::FloatingPointShortest);
                    ++next[i];
                }
            }
            text += "\r\n";
        }
        if (text.size() > PieceSize || !isMore) {
            if (stop || out.write(text) != text.size()) {
                return false;
            }
            text.clear();
        }
    }
    return true;
}
