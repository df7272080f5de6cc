#include "exchange/CaptureCheck.h"

#include "device/FrameIdentifier.h"
#include "exchange/Findings.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(CaptureCheck)
};

constexpr int MaxClassic = 8;
constexpr quint32 MaxLinIdentifier = 0x3F;

bool isLength(const BusFrame &frame)
{
    constexpr int FdLengths[] = {12, 16, 20, 24, 32, 48, 64};
    if (frame.length <= MaxClassic) {
        return true;
    }
    return frame.is(BusFrame::Fd) &&
           std::find(std::begin(FdLengths), std::end(FdLengths), int{frame.length}) != std::end(FdLengths);
}

/// Replaces the last time and says whether it is later than this one.
bool jumpsBack(qint64 &last, qint64 time)
{
    const bool isBack = last != BusFrame::NoTime && time != BusFrame::NoTime && time < last;
    last = time != BusFrame::NoTime ? time : last;
    return isBack;
}

} // namespace

void CaptureCheck::add(const BusFrame &frame)
{
    ++m_frame;
    checkTimes(frame);
    checkFrame(frame);
}

void CaptureCheck::checkTimes(const BusFrame &frame)
{
    if (frame.channel >= m_last.size()) {
        m_last.resize(std::size_t{frame.channel} + 1);
    }
    Times &last = m_last[frame.channel];
    const qint64 before = last.time;
    if (jumpsBack(last.time, frame.time)) {
        m_findings.add(Finding::Frame, m_frame, Texts::tr("the time jumps back"));
    } else if (before != BusFrame::NoTime && frame.time != BusFrame::NoTime && frame.time - before > LargestGap) {
        m_findings.add(Finding::Frame, m_frame, Texts::tr("the time jumps forward by more than an hour"));
    }
    // A sent frame's time stamp is not the adapter's.
    if (frame.direction == BusFrame::Received && jumpsBack(last.deviceTime, frame.deviceTime)) {
        m_findings.add(Finding::Frame, m_frame, Texts::tr("the adapter's time stamp jumps back"));
    }
}

void CaptureCheck::checkFrame(const BusFrame &frame)
{
    const bool isLin = frame.is(BusFrame::Lin);
    const quint32 highest =
        isLin ? MaxLinIdentifier : frameIdMax(frame.is(BusFrame::Extended) || frame.is(BusFrame::Error));
    if (frame.identifier > highest) {
        m_findings.add(Finding::Frame, m_frame, Texts::tr("an identifier that no frame has"));
    }
    if (!isLength(frame)) {
        m_findings.add(Finding::Frame, m_frame, Texts::tr("a length that no frame has"));
    }
}
