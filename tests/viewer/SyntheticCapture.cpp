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

QByteArray syntheticDatabase()
{
    return R"(VERSION ""
BU_: Motor Body
BO_ 256 Engine: 8 Motor
 SG_ Speed : 0|16@1+ (0.5,0) [0|32767.5] "rpm" Body
 SG_ Torque : 23|12@0- (0.5,0) [-1024|1023.5] "Nm" Body
 SG_ Gear : 27|3@0+ (1,0) [0|7] "" Body
 SG_ OilPressureLow : 40|1@1+ (1,0) [0|1] "" Body
 SG_ Temperature : 48|8@1- (1,-40) [-168|87] "degC" Body
 SG_ Counter : 56|8@1+ (1,0) [0|255] "" Body
BO_ 273 Doors: 8 Body
 SG_ Page M : 56|8@1+ (1,0) [0|255] "" Motor
 SG_ LevelOfPageOne m1 : 0|16@1+ (1,0) [0|0] "mm" Motor
 SG_ LevelOfPageTwo m2 : 7|16@0+ (1,0) [0|0] "mm" Motor
 SG_ Open : 40|1@1+ (1,0) [0|1] "" Motor
BO_ 443 Radar: 24 Body
 SG_ Distance : 0|16@1+ (0.01,0) [0|655.35] "m" Motor
 SG_ Quality : 184|8@1+ (1,0) [0|255] "%" Motor
BO_ 2566853172 Gateway: 8 Body
 SG_ Load : 0|16@1+ (0.1,0) [0|0] "%" Motor
BO_ 1792 Climate: 8 Body
 SG_ Fan : 0|8@1+ (1,0) [0|255] "" Motor
CM_ BO_ 256 "Every 10 ms";
CM_ SG_ 256 Speed "Crankshaft";
CM_ SG_ 256 OilPressureLow "Switch in the oil circuit";
VAL_ 256 OilPressureLow 0 "pressure" 1 "NO PRESSURE" ;
VAL_ 256 Gear 0 "neutral" 1 "first" 2 "second" ;
VAL_ 273 Open 0 "closed" 1 "open" ;
)";
}
