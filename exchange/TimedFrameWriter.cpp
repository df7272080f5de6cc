#include "exchange/TimedFrameWriter.h"

TimedFrameWriter::TimedFrameWriter(const CaptureInfo &info, quint32 holds, qint64 startTick, Findings &findings)
    : m_findings(findings)
    , m_losses(holds, findings)
    , m_origin(info, startTick, findings)
{
}

void TimedFrameWriter::beginWith(const BusFrame &first)
{
    m_hasBegun = true;
    m_origin.begin(first);
    begin();
}

void TimedFrameWriter::write(const BusFrame *frames, int count)
{
    for (const BusFrame *frame = frames; frame != frames + count; ++frame) {
        ++m_number;
        if (!m_losses.takes(*frame)) {
            continue;
        }
        if (!m_hasBegun) {
            beginWith(*frame);
        }
        put(*frame);
    }
}

void TimedFrameWriter::finish()
{
    if (!m_hasBegun) {
        beginWith(BusFrame());
    }
    end();
    m_losses.report();
}
