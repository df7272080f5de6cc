#include "capture/CaptureFrames.h"
#include "tests/support/TestProgram.h"

#include <QRandomGenerator>
#include <QTest>

#include <utility>

class tst_CaptureFrames : public QObject
{
    Q_OBJECT

private slots:
    static void wordsHoldTheirFields();
    static void framesComeBackInOrder();
    static void movedListIsEmptyAndUsable();
};

void tst_CaptureFrames::wordsHoldTheirFields()
{
    CaptureFrame frame;
    frame.idWord = CaptureFrame::toIdWord(0x1FFFFFFF, false, false);
    QCOMPARE(frame.idWord, 0x1FFFFFFFU);
    QVERIFY(!frame.isRemote() && !frame.isExtended());
    frame.idWord = CaptureFrame::toIdWord(0xFFFFFFFF, true, false);
    QCOMPARE(frame.idWord, 0x5FFFFFFFU);
    QVERIFY(frame.isRemote() && !frame.isExtended());
    frame.idWord = CaptureFrame::toIdWord(1, false, true);
    QCOMPARE(frame.idWord, 0x80000001U);
    QVERIFY(!frame.isRemote() && frame.isExtended());
    QCOMPARE(frame.id(), 1U);

    frame.attributes = CaptureFrame::toAttributes(64, 2);
    QCOMPARE(frame.attributes, 0x2400U);
    QCOMPARE(frame.length(), 64);
    QCOMPARE(int(frame.protocol()), 2);
    frame.attributes = CaptureFrame::toAttributes(1, 1);
    QCOMPARE(frame.attributes, 0x1010U);
}

void tst_CaptureFrames::framesComeBackInOrder()
{
    QRandomGenerator random(1);
    CaptureFrames frames;
    std::vector<CaptureFrame> expected;
    for (int i = 0; i < 50000; ++i) {
        CaptureFrame frame;
        frame.idWord = random.generate();
        frame.attributes = random.generate();
        frame.data = QByteArray(random.bounded(CaptureFrame::MaxLength + 1), char(i));
        frames.append(frame.idWord, frame.attributes, reinterpret_cast<const uchar *>(frame.data.constData()),
                      frame.data.size());
        expected.push_back(frame);
    }
    QCOMPARE(frames.size(), qint64(expected.size()));
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const CaptureFrame frame = frames.at(qint64(i));
        if (frame.idWord != expected[i].idWord || frame.attributes != expected[i].attributes ||
            frame.data != expected[i].data) {
            QFAIL(qPrintable(QStringLiteral("frame %1 differs").arg(i)));
        }
    }
}

void tst_CaptureFrames::movedListIsEmptyAndUsable()
{
    const uchar data[] = {1, 2};
    CaptureFrames frames;
    QVERIFY(frames.isEmpty());
    frames.append(1, 2, data, 2);
    CaptureFrames other(std::move(frames));
    QVERIFY(frames.isEmpty()); // NOLINT(bugprone-use-after-move): that is what is tested
    QCOMPARE(other.size(), 1);
    frames.append(3, 4, data, 1);
    QCOMPARE(frames.at(0).idWord, 3U);
    frames = std::move(other);
    QVERIFY(other.isEmpty()); // NOLINT(bugprone-use-after-move)
    QCOMPARE(frames.at(0).idWord, 1U);
    QCOMPARE(frames.at(0).data, QByteArray("\x01\x02"));
}

X9_PLAIN_TEST(tst_CaptureFrames)
#include "tst_CaptureFrames.moc"
