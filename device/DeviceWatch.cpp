#include "device/DeviceWatch.h"

namespace {
constexpr int FailuresOfALostDevice = 2; ///< a single one may come of a busy adapter
} // namespace

DeviceWatch::DeviceWatch(Time silence)
    : m_silence(silence)
    , m_due(silence)
{
}

void DeviceWatch::notePoll(Time now, bool hasFrames)
{
    if (hasFrames) {
        m_failures = 0;
        m_due = now + m_silence;
    }
}

void DeviceWatch::noteAnswer(Time now, bool answers)
{
    m_isKnown = m_isKnown || answers;
    m_failures = answers || !m_isKnown ? 0 : m_failures + 1;
    m_due = now + (m_failures == 0 ? m_silence : m_silence / 2);
}

bool DeviceWatch::takeLost()
{
    if (m_isTold || m_failures < FailuresOfALostDevice) {
        return false;
    }
    m_isTold = true;
    return true;
}
