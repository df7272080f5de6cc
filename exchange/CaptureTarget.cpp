#include "exchange/CaptureTarget.h"

CaptureTarget::CaptureTarget(ByteOutput &out, const ExchangeFormat &format, const WriteOptions &options,
                             bool usesDeviceTimes)
    : m_format(format)
    , m_isAbsolute(options.info.timeBase == CaptureInfo::Absolute)
    , m_usesDeviceTimes(usesDeviceTimes)
    , m_writer(format.writer(out, options, m_findings))
{
}

void CaptureTarget::write(BusFrame *frames, int count)
{
    for (int i = 0; i < count && m_usesDeviceTimes; ++i) {
        m_times.apply(frames[i]);
    }
    m_frames += count;
    m_lastTime = count > 0 && frames[count - 1].time != BusFrame::NoTime ? frames[count - 1].time : m_lastTime;
    m_writer->write(frames, count);
}

void CaptureTarget::finish()
{
    m_writer->finish();
}

qint64 CaptureTarget::fileTime() const
{
    constexpr qint64 NanosecondsPerMs = 1000000;
    const bool isTold = m_isAbsolute && (m_format.holds & ExchangeFormat::ClockTime) != 0;
    return isTold ? m_lastTime / NanosecondsPerMs : -1;
}
