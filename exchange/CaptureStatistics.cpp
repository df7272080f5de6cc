#include "exchange/CaptureStatistics.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace {

constexpr quint16 KindFlags = BusFrame::Extended | BusFrame::Error | BusFrame::Lin;

quint64 keyOf(const BusFrame &frame)
{
    return quint64{frame.channel} << 48U | quint64{static_cast<quint16>(frame.flags & KindFlags)} << 32U |
           frame.identifier;
}

void addPeriod(IdentifierStatistics &row, qint64 time)
{
    if (row.lastTime != BusFrame::NoTime && time != BusFrame::NoTime && time >= row.lastTime) {
        const qint64 period = time - row.lastTime;
        const bool isFirst = row.period.count() == 0;
        row.shortestPeriod = isFirst ? period : std::min(row.shortestPeriod, period);
        row.longestPeriod = isFirst ? period : std::max(row.longestPeriod, period);
        row.period.add(static_cast<double>(period));
    }
    row.lastTime = time;
}

void addData(IdentifierStatistics &row, const BusFrame &frame)
{
    if (row.frames == row.remoteFrames) {
        row.shortest = frame.length;
        row.longest = frame.length;
        row.data = frame.data;
        return;
    }
    // Behind the shorter one of two lengths a byte is there or not: that is a change, too.
    for (std::size_t i = 0; i < std::max(row.longest, frame.length); ++i) {
        const bool isInBoth = i < std::min(row.shortest, frame.length);
        row.changing[i] = row.changing[i] || !isInBoth || row.data[i] != frame.data[i];
    }
    row.shortest = std::min(row.shortest, frame.length);
    row.longest = std::max(row.longest, frame.length);
    row.data = frame.data;
}

} // namespace

double RunningMean::standardDeviation() const
{
    return m_count > 1 ? std::sqrt(m_squares / static_cast<double>(m_count)) : 0;
}

void CaptureStatistics::add(const BusFrame &frame, qint64 busyNanoseconds)
{
    addTotals(frame);
    if (frame.channel >= m_channels.size()) {
        m_channels.resize(std::size_t{frame.channel} + 1);
    }
    Channel &channel = m_channels[frame.channel];
    ++channel.frames;
    channel.busySeconds += static_cast<double>(busyNanoseconds) * 1e-9;
    const quint64 key = keyOf(frame);
    auto found = m_rows.find(key);
    if (found == m_rows.end()) {
        if (m_rows.size() == MaxRows) {
            ++m_notListed;
            return;
        }
        found = m_rows.emplace(key, IdentifierStatistics()).first;
        found->second.channel = frame.channel;
        found->second.identifier = frame.identifier;
        found->second.kind = static_cast<quint16>(frame.flags & KindFlags);
    }
    IdentifierStatistics &row = found->second;
    addPeriod(row, timeOf(frame));
    if (frame.is(BusFrame::Remote)) {
        ++row.remoteFrames;
    } else {
        addData(row, frame);
    }
    ++row.frames;
}

void CaptureStatistics::addTotals(const BusFrame &frame)
{
    ++m_totals.frames;
    if (frame.is(BusFrame::Lin)) {
        ++m_totals.lin;
    } else if (frame.is(BusFrame::Error)) {
        ++m_totals.error;
    } else {
        ++(frame.is(BusFrame::Fd) ? m_totals.fd : m_totals.classic);
        m_totals.remote += frame.is(BusFrame::Remote) ? 1 : 0;
    }
    m_totals.sent += frame.direction == BusFrame::Sent ? 1 : 0;
    m_totals.refused += frame.direction == BusFrame::Refused ? 1 : 0;
    if (frame.time != BusFrame::NoTime) {
        const bool isFirst = m_totals.firstTime == BusFrame::NoTime;
        m_totals.firstTime = isFirst ? frame.time : std::min(m_totals.firstTime, frame.time);
        m_totals.lastTime = isFirst ? frame.time : std::max(m_totals.lastTime, frame.time);
    }
}

std::vector<IdentifierStatistics> CaptureStatistics::rows() const
{
    std::vector<IdentifierStatistics> rows;
    rows.reserve(m_rows.size());
    for (const auto &row : m_rows) {
        rows.push_back(row.second);
    }
    std::sort(rows.begin(), rows.end(), [](const IdentifierStatistics &a, const IdentifierStatistics &b) {
        return std::tie(a.channel, a.kind, a.identifier) < std::tie(b.channel, b.kind, b.identifier);
    });
    return rows;
}
