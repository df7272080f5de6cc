#pragma once

#include "exchange/BusFrame.h"
#include "exchange/ExchangeFormat.h"

#include <array>

/// For a writer: what of its frames the kind of capture that it writes cannot hold. Counts, and reports each sort of
/// loss once, with its count and the first frame that has it.
class FrameLosses
{
public:
    enum class Refused : quint8 {
        LeftOut, ///< what never was on a bus has no place in the capture
        AsSent
    };

    /// holds: of the format's row in the table. refused: what becomes of refused frames where they cannot be told
    /// apart.
    FrameLosses(quint32 holds, Findings &findings, Refused refused = Refused::LeftOut);

    /// For each frame, in their order. False: it is to be left out.
    bool takes(const BusFrame &frame)
    {
        ++m_frame;
        const quint32 missing = needs(frame) & ~m_holds;
        return missing == 0 || note(missing);
    }
    /// For a writer's finish(): reports what was counted.
    void report();

    /// What a kind must hold for this frame; bits of ExchangeFormat::Ability. Its times do not count.
    static quint32 needs(const BusFrame &frame)
    {
        quint32 bits = ordinary(frame) ? quint32{ExchangeFormat::ClassicCan} : special(frame);
        bits |= frame.channel != 0 ? quint32{ExchangeFormat::Channels} : 0U;
        bits |= frame.direction != BusFrame::Received ? quint32{ExchangeFormat::Directions} : 0U;
        bits |= frame.direction == BusFrame::Refused ? quint32{ExchangeFormat::RefusedFrames} : 0U;
        return bits;
    }

private:
    static constexpr std::size_t Sorts = 9;
    struct Count
    {
        qint64 frames = 0;
        qint64 first = 0;
    };

    static bool ordinary(const BusFrame &frame) { return (frame.flags & ~quint32{BusFrame::Extended}) == 0; }
    static quint32 special(const BusFrame &frame);
    bool note(quint32 missing);

    const quint32 m_holds;
    const quint32 m_leftOut;
    Findings &m_findings;
    qint64 m_frame = 0;
    std::array<Count, Sorts> m_counts;
};
