#pragma once

#include "viewer/core/StoreLoader.h"

#include <algorithm>
#include <memory>

/// Frames of 8 bytes that make(number, frame) sets one by one as they are read; their time is set already.
template<typename Make>
class MadeStream : public CaptureStream, private FrameReader
{
public:
    MadeStream(qint64 frames, const Make &make)
        : m_frames(frames)
        , m_make(make)
    {
    }

    FrameReader &reader() override { return *this; }
    qint64 position() const override { return m_next; }
    qint64 size() const override { return m_frames; }
    void setGrowing(bool /*growing*/) override {}
    bool isBroken() const override { return false; }

private:
    static constexpr qint64 FramePeriod = 100000; ///< ns

    int read(BusFrame *frames, int room) override
    {
        const auto count = static_cast<int>(std::min<qint64>(room, m_frames - m_next));
        for (int i = 0; i < count; ++i, ++m_next) {
            BusFrame frame;
            frame.time = m_next * FramePeriod;
            frame.length = 8;
            m_make(m_next, frame);
            frames[i] = frame;
        }
        return count;
    }

    const qint64 m_frames;
    const Make m_make;
    qint64 m_next = 0;
};

/// What opens such a capture.
template<typename Make>
StoreLoader::Open madeCapture(qint64 frames, const Make &make)
{
    return [frames, make](Findings & /*findings*/, QString & /*error*/) {
        return std::make_unique<MadeStream<Make>>(frames, make);
    };
}
