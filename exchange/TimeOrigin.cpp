#include "exchange/TimeOrigin.h"

#include "exchange/Findings.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>

namespace {

class Text
{
    Q_DECLARE_TR_FUNCTIONS(TimeOrigin)
};

constexpr qint64 NsPerMs = 1000000;

} // namespace

TimeOrigin::TimeOrigin(const CaptureInfo &info, qint64 tick, Findings &findings)
    : m_base(info.timeBase)
    , m_infoStart(info.start)
    , m_tick(tick)
    , m_findings(findings)
{
}

void TimeOrigin::begin(const BusFrame &first)
{
    qint64 start = m_infoStart;
    if (start == 0 && m_base == CaptureInfo::Absolute && first.time != BusFrame::NoTime) {
        start = first.time;
    }
    m_start = start > 0 ? start - start % m_tick : 0;
    m_shift = m_base == CaptureInfo::Absolute ? -m_start : start - m_start;
    m_earliest = -m_shift;
    m_latest = std::numeric_limits<qint64>::max() - m_start - std::max<qint64>(m_shift, 0);
}

qint64 TimeOrigin::reported(qint64 time, qint64 number)
{
    if (time == BusFrame::NoTime) {
        m_findings.add(Finding::Frame, number, Text::tr("frame without a time: written with that of the one before"));
        return m_last;
    }
    if (time > 0) {
        m_findings.add(Finding::Frame, number,
                       Text::tr("time beyond the year 2262: written with that of the frame before"));
        return m_last;
    }
    m_findings.add(Finding::Frame, number, Text::tr("time before the capture's start: written as the start"));
    return 0;
}

qint64 nanosecondsOfLocalTime(const QDate &date, const QTime &time)
{
    if (!date.isValid() || !time.isValid() || date.year() < 1970 || date.year() > 2261) {
        return 0;
    }
    return std::max<qint64>(QDateTime(date, time, Qt::LocalTime).toMSecsSinceEpoch(), 0) * NsPerMs;
}

QDateTime localTime(qint64 nanoseconds)
{
    return QDateTime::fromMSecsSinceEpoch(nanoseconds / NsPerMs, Qt::LocalTime);
}
