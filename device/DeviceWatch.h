#pragma once

#include <chrono>

/// Tells when an open device is pulled out. A device from which frames come is there; one that has been silent for a
/// time is asked for its texts. Two failures in a row, with no frame between or after them, mean that it is gone, if it
/// is known to answer at all. Plain arithmetic, of the thread that polls the device; times are those of one monotonic
/// clock.
class DeviceWatch
{
public:
    using Time = std::chrono::milliseconds;

    /// How long a device must have been silent to be asked.
    static constexpr Time Silence{2000};

    explicit DeviceWatch(Time silence = Silence);

    /// The device answered when it was asked by somebody else.
    void noteKnown() { m_isKnown = true; }
    /// After each poll.
    void notePoll(Time now, bool hasFrames);
    /// Whether the device is to be asked now, after a poll.
    bool isToBeAsked(Time now) const { return !m_isTold && now >= m_due; }
    void noteAnswer(Time now, bool answers);
    /// Whether the last poll has left no doubt that the device is gone. True once.
    bool takeLost();

private:
    const Time m_silence;
    Time m_due;
    int m_failures = 0; ///< in a row, of a device known to answer
    bool m_isKnown = false;
    bool m_isTold = false;
};
