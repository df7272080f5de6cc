#include "device/CallQueue.h"

#include "tests/support/TestProgram.h"

#include <QtTest>

#include <memory>
#include <thread>
#include <vector>

class tst_CallQueue : public QObject
{
    Q_OBJECT

private slots:
    static void keepsTheOrder();
    static void waitsForTheEventLoop();
    static void dropsWhatComesTooLate();
    static void mayGoInItsCall();
};

/// What a call holds is made in one thread, read in the other, and let go there.
void tst_CallQueue::keepsTheOrder()
{
    constexpr std::size_t Count = 10000;
    std::vector<std::size_t> order;
    CallQueue queue;
    std::thread other([&] {
        for (std::size_t i = 0; i < Count; ++i) {
            queue.post([&order, number = std::make_shared<std::size_t>(i)] { order.push_back(*number); });
        }
    });
    const bool areAllDone = QTest::qWaitFor([&order] { return order.size() == Count; });
    other.join();
    QVERIFY(areAllDone);
    for (std::size_t i = 0; i < Count; ++i) {
        QCOMPARE(order[i], i);
    }
}

void tst_CallQueue::waitsForTheEventLoop()
{
    int calls = 0;
    CallQueue queue;
    const std::function<void()> post = queue.poster([&calls] { ++calls; });
    post();
    post();
    QCOMPARE(calls, 0);
    QCoreApplication::processEvents();
    QCOMPARE(calls, 2);
}

void tst_CallQueue::dropsWhatComesTooLate()
{
    int calls = 0;
    {
        CallQueue queue;
        queue.post([&calls] { ++calls; });
    }
    QCoreApplication::processEvents();
    QCOMPARE(calls, 0);
}

void tst_CallQueue::mayGoInItsCall()
{
    int calls = 0;
    auto *queue = new CallQueue;
    queue->post([&calls, queue] {
        ++calls;
        delete queue;
    });
    queue->post([&calls] { ++calls; });
    QCoreApplication::processEvents();
    QCOMPARE(calls, 1);
}

X9_CORE_TEST(tst_CallQueue)
#include "tst_CallQueue.moc"
