#include "exchange/CaptureCheck.h"

#include "tests/exchange/ExchangeTestData.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

using ExchangeTestData::described;

namespace {

BusFrame at(qint64 ms, quint16 channel = 0)
{
    BusFrame frame;
    frame.time = ms * 1000000;
    frame.channel = channel;
    return frame;
}

QStringList findingsOf(const std::vector<BusFrame> &frames)
{
    Findings findings;
    CaptureCheck check(findings);
    for (const BusFrame &frame : frames) {
        check.add(frame);
    }
    return described(findings);
}

} // namespace

class tst_CaptureCheck : public QObject
{
    Q_OBJECT

private slots:
    static void soundTimes();
    static void jumpingTimes();
    static void stampsOfTheAdapter();
    static void impossibleFrames();
};

void tst_CaptureCheck::soundTimes()
{
    // Channels have no order among each other.
    QCOMPARE(findingsOf({at(5), at(5), at(3, 1), at(7), at(3600007)}), QStringList());
}

void tst_CaptureCheck::jumpingTimes()
{
    QCOMPARE(findingsOf({at(5), at(4), at(4), at(3600005)}),
             QStringList({QStringLiteral("Frame 2: the time jumps back"),
                          QStringLiteral("Frame 4: the time jumps forward by more than an hour")}));
}

void tst_CaptureCheck::stampsOfTheAdapter()
{
    std::vector<BusFrame> frames = {at(1), at(2), at(3)};
    frames[0].deviceTime = 100;
    frames[1].deviceTime = 50;
    frames[1].direction = BusFrame::Sent;
    QCOMPARE(findingsOf(frames), QStringList());
    frames[1].direction = BusFrame::Received;
    QCOMPARE(findingsOf(frames), QStringList(QStringLiteral("Frame 2: the adapter's time stamp jumps back")));
}

void tst_CaptureCheck::impossibleFrames()
{
    BusFrame wide = at(1);
    wide.identifier = 0x800;
    BusFrame odd = at(2);
    odd.set(BusFrame::Fd);
    odd.length = 13;
    BusFrame lin = at(3);
    lin.set(BusFrame::Lin);
    lin.identifier = 64;
    lin.length = 9;
    QCOMPARE(findingsOf({wide, odd, lin}), QStringList({QStringLiteral("Frame 1: an identifier that no frame has"),
                                                        QStringLiteral("Frame 2: a length that no frame has"),
                                                        QStringLiteral("Frame 3: an identifier that no frame has"),
                                                        QStringLiteral("Frame 3: a length that no frame has")}));
}

X9_PLAIN_TEST(tst_CaptureCheck)
#include "tst_CaptureCheck.moc"
