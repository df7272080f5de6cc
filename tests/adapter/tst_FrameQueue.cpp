#include "adapter/FrameQueue.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

using va::CanFrame;
using va::FrameFormat;
using va::FrameQueue;

class tst_FrameQueue : public QObject
{
    Q_OBJECT

private slots:
    static void keepsEveryField();
    static void keepsOrderOverManyBlocks();
    static void remoteFramesKeepTheirLengthOnly();
    static void isFullAtItsLimit();
    static void clearEmptiesAndGoesOn();
};

void tst_FrameQueue::keepsEveryField()
{
    FrameQueue queue(10);
    CanFrame frame;
    frame.id = 0x1FFFFFFF;
    frame.extended = true;
    frame.format = FrameFormat::FdBitRateSwitch;
    frame.length = 64;
    for (std::size_t i = 0; i < 64; ++i) {
        frame.data[i] = static_cast<std::uint8_t>(255 - i);
    }
    queue.push(frame, 0xFEDCBA98U);
    const va::WaitingFrame got = queue.front();
    QCOMPARE(got.id, 0x1FFFFFFFU);
    QCOMPARE(got.timeMs, 0xFEDCBA98U);
    QVERIFY(got.extended && !got.remote);
    QCOMPARE(got.format, FrameFormat::FdBitRateSwitch);
    QCOMPARE(got.length, std::uint8_t{64});
    QCOMPARE(got.dataSize(), std::uint8_t{64});
    QVERIFY(std::equal(frame.data.begin(), frame.data.end(), got.data));
}

void tst_FrameQueue::keepsOrderOverManyBlocks()
{
    FrameQueue queue(100000);
    std::uint32_t pushed = 0;
    std::uint32_t popped = 0;
    // Grows and shrinks through block borders with lengths that never fit them evenly.
    for (const std::uint32_t target : {30000U, 100U, 50000U, 0U, 7U, 20000U, 0U}) {
        CanFrame frame;
        for (; queue.size() < target; ++pushed) {
            frame.id = pushed;
            frame.length = static_cast<std::uint8_t>(pushed % 65);
            frame.format = FrameFormat::Fd;
            frame.data.fill(static_cast<std::uint8_t>(pushed));
            queue.push(frame, pushed * 3);
        }
        for (; queue.size() > target; ++popped) {
            const va::WaitingFrame got = queue.front();
            QCOMPARE(got.id, popped);
            QCOMPARE(got.timeMs, popped * 3);
            QCOMPARE(std::uint32_t{got.dataSize()}, popped % 65);
            const auto isFilled = [popped](std::uint8_t byte) {
                return byte == static_cast<std::uint8_t>(popped);
            };
            QVERIFY(std::all_of(got.data, got.data + got.dataSize(), isFilled));
            queue.pop();
        }
    }
    QCOMPARE(popped, pushed);
    QVERIFY(popped > 90000);
}

void tst_FrameQueue::remoteFramesKeepTheirLengthOnly()
{
    FrameQueue queue(10);
    CanFrame frame;
    frame.remote = true;
    frame.length = 5;
    frame.data.fill(0xEE);
    queue.push(frame, 1);
    QVERIFY(queue.front().remote);
    QCOMPARE(queue.front().length, std::uint8_t{5});
    QCOMPARE(queue.front().dataSize(), std::uint8_t{0});
}

void tst_FrameQueue::isFullAtItsLimit()
{
    FrameQueue queue(3);
    const CanFrame frame;
    for (int i = 0; i < 3; ++i) {
        QVERIFY(!queue.isFull());
        queue.push(frame, 0);
    }
    QVERIFY(queue.isFull());
    queue.pop();
    QVERIFY(!queue.isFull());
}

void tst_FrameQueue::clearEmptiesAndGoesOn()
{
    FrameQueue queue(100000);
    CanFrame frame;
    for (std::uint32_t i = 0; i < 10000; ++i) {
        queue.push(frame, i);
    }
    queue.pop();
    queue.clear();
    QCOMPARE(queue.size(), std::size_t{0});
    frame.id = 77;
    queue.push(frame, 5);
    QCOMPARE(queue.size(), std::size_t{1});
    QCOMPARE(queue.front().id, 77U);
}

X9_PLAIN_TEST(tst_FrameQueue)
#include "tst_FrameQueue.moc"
