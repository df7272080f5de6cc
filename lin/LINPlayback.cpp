#include "lin/LINPlayback.h"

void LINPlayback::start(int frames, int passes)
{
    m_frames = frames;
    m_wantedPasses = passes;
    m_position = 0;
    m_passes = 0;
}

void LINPlayback::advance()
{
    ++m_position;
    if (m_position >= m_frames) {
        m_position = 0;
        ++m_passes;
    }
}
