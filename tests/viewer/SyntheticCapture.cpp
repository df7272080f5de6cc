#include "tests/viewer/SyntheticCapture.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr qint64 Start = 1715934600000000000;
constexpr qint64 Step = 500000; // ns

BusFrame syntheticFrame(qint64 number)
{
    BusFrame frame;
    frame.time = Start + number * Step + number % 7 * 900;
    frame.identifier = 0x100 + static_cast<quint32>(number % 20) * 0x11;
    frame.length = 8;
    frame.direction = number % 20 == 3 ? BusFrame::Sent : BusFrame::Received;
    const auto wave = static_cast<int>(2000 + 1500 * std::sin(static_cast<double>(number) / 5000));
    frame.data[0] = static_cast<uchar>(wave);
    frame.data[1] = static_cast<uchar>(wave >> 8);
    frame.data[5] = number > 30000 ? 1 : 0;
    frame.data[7] = static_cast<uchar>(number / 20);
    if (number % 20 == 7) {
        frame.identifier = 0x18FF1234;
        frame.set(BusFrame::Extended);
    } else if (number % 20 == 11) {
        frame.set(BusFrame::Fd);
        frame.set(BusFrame::BitRateSwitch);
        frame.length = 24;
        frame.data[23] = 0xAA;
    } else if (number % 1000 == 13) {
        frame.set(BusFrame::Remote);
        frame.data = {};
    } else if (number % 5000 == 19) {
        frame.set(BusFrame::Error);
        frame.identifier = 4;
    }
    return frame;
}

class SyntheticStream : public CaptureStream, private FrameReader
{
public:
    SyntheticStream(qint64 frames, Findings &findings)
        : m_frames(frames)
        , m_findings(findings)
    {
        m_info.timeBase = CaptureInfo::Absolute;
        m_info.start = Start;
    }

    FrameReader &reader() override { return *this; }
    qint64 position() const override { return m_next * 50; }
    qint64 size() const override { return m_frames * 50; }
    void setGrowing(bool /*growing*/) override {}
    bool isBroken() const override { return false; }

private:
    int read(BusFrame *frames, int room) override
    {
        if (m_next == 0) {
            m_findings.add(Finding::Line, 17, QStringLiteral("A number is missing."));
        }
        const auto count = static_cast<int>(std::min<qint64>(room, m_frames - m_next));
        std::generate_n(frames, count, [this] { return syntheticFrame(m_next++); });
        return count;
    }

    qint64 m_frames;
    Findings &m_findings;
    qint64 m_next = 0;
};

} // namespace

StoreLoader::Open syntheticCapture(qint64 frames)
{
    return [frames](Findings &findings, QString & /*error*/) {
        return std::make_unique<SyntheticStream>(frames, findings);
    };
}
