#include "capture/CANFile.h"

#include "capture/CaptureReader.h"

#include <utility>

bool CANFile::load(const QString &path)
{
    std::optional<CaptureContent> content = readCapture(path);
    setFrames(content ? std::move(content->frames) : CaptureFrames());
    return !m_frames.isEmpty();
}

void CANFile::setFrames(CaptureFrames frames)
{
    m_frames = std::move(frames);
    m_cursor = 0;
}

CANFile::Frame CANFile::next()
{
    if (m_frames.isEmpty()) {
        return {};
    }
    Frame frame = m_frames.at(m_cursor);
    m_cursor = (m_cursor + 1) % m_frames.size();
    return frame;
}
