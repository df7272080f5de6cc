#pragma once

#include <QtGlobal>

#include <bitset>

/// Where a playback of a list of frames stands: the list is gone through a number of times, a frame per step.
class LINPlayback
{
public:
    /// id, 0 to 0x3F, is not sent, in this run and in all that follow: wanted so, there is no unmasking.
    void mask(quint8 id) { m_masked.set(id % m_masked.size()); }
    bool isMasked(quint8 id) const { return m_masked.test(id % m_masked.size()); }

    /// From the first frame on; both numbers from 1.
    void start(int frames, int passes)
    {
        m_frames = frames;
        m_wantedPasses = passes;
        m_position = 0;
        m_passes = 0;
    }
    /// The frame whose turn it is, from 0. A masked one has its turn too.
    int position() const { return m_position; }
    /// Times that the list has been gone through.
    int passes() const { return m_passes; }
    /// The frame at position() has had its turn.
    void advance()
    {
        if (++m_position >= m_frames) {
            m_position = 0;
            ++m_passes;
        }
    }
    bool isFinished() const { return m_passes >= m_wantedPasses; }

private:
    std::bitset<64> m_masked;
    int m_frames = 0;
    int m_wantedPasses = 0;
    int m_position = 0;
    int m_passes = 0;
};
