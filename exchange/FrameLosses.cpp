#include "exchange/FrameLosses.h"

#include "exchange/Findings.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Sort
{
    quint32 ability;
    bool isWholeFrame; ///< a frame that needs it is left out; otherwise it only loses it
    const char *text;
};

constexpr Sort SortsOfLoss[] = {
    {ExchangeFormat::ClassicCan, true,
     QT_TRANSLATE_NOOP("FrameLosses", "CAN frame left out: this kind of file holds none")},
    {ExchangeFormat::CanFd, true,
     QT_TRANSLATE_NOOP("FrameLosses", "CAN FD frame left out: this kind of file holds none")},
    {ExchangeFormat::RemoteFrames, true,
     QT_TRANSLATE_NOOP("FrameLosses", "remote frame left out: this kind of file holds none")},
    {ExchangeFormat::ErrorFrames, true,
     QT_TRANSLATE_NOOP("FrameLosses", "error frame left out: this kind of file holds none")},
    {ExchangeFormat::LinFrames, true,
     QT_TRANSLATE_NOOP("FrameLosses", "LIN frame left out: this kind of file holds none")},
    {ExchangeFormat::RefusedFrames, true,
     QT_TRANSLATE_NOOP("FrameLosses", "frame that the adapter refused: this kind of file does not tell it apart")},
    {ExchangeFormat::Channels, false,
     QT_TRANSLATE_NOOP("FrameLosses", "channel not written: this kind of file has one")},
    {ExchangeFormat::Directions, false,
     QT_TRANSLATE_NOOP("FrameLosses", "direction not written: this kind of file does not tell it")},
    {ExchangeFormat::ErrorStateFlag, false,
     QT_TRANSLATE_NOOP("FrameLosses", "error state indicator not written: this kind of file has none")},
};

constexpr quint32 wholeFrames()
{
    quint32 bits = 0;
    for (const Sort &sort : SortsOfLoss) {
        bits |= sort.isWholeFrame ? sort.ability : 0U;
    }
    return bits;
}

} // namespace

FrameLosses::FrameLosses(quint32 holds, Findings &findings, Refused refused)
    : m_holds(holds)
    , m_leftOut(wholeFrames() & ~(refused == Refused::AsSent ? quint32{ExchangeFormat::RefusedFrames} : 0U))
    , m_findings(findings)
{
    static_assert(std::size(SortsOfLoss) == Sorts);
}

quint32 FrameLosses::special(const BusFrame &frame)
{
    if (frame.is(BusFrame::Lin)) {
        return ExchangeFormat::LinFrames;
    }
    if (frame.is(BusFrame::Error)) {
        return ExchangeFormat::ErrorFrames;
    }
    quint32 bits = frame.is(BusFrame::Fd) ? ExchangeFormat::CanFd : ExchangeFormat::ClassicCan;
    bits |= frame.is(BusFrame::Remote) ? quint32{ExchangeFormat::RemoteFrames} : 0U;
    bits |= frame.is(BusFrame::ErrorStateIndicator) ? quint32{ExchangeFormat::ErrorStateFlag} : 0U;
    return bits;
}

bool FrameLosses::note(quint32 missing)
{
    // A frame that is left out loses nothing besides.
    const quint32 leftOut = missing & m_leftOut;
    for (std::size_t i = 0; i < Sorts; ++i) {
        if (((leftOut != 0 ? leftOut : missing) & SortsOfLoss[i].ability) != 0) {
            Count &count = m_counts[i];
            count.first = count.frames++ == 0 ? m_frame : count.first;
        }
    }
    return leftOut == 0;
}

void FrameLosses::report()
{
    for (std::size_t i = 0; i < Sorts; ++i) {
        if (m_counts[i].frames > 0) {
            m_findings.add(Finding::Frame, m_counts[i].first,
                           QCoreApplication::translate("FrameLosses", SortsOfLoss[i].text), m_counts[i].frames);
        }
    }
    m_counts = {};
}
