#include "tests/support/TestProgram.h"
#include "viewer/core/WorkerThreads.h"

#include <QtTest>

#include <atomic>
#include <future>

class tst_WorkerThreads : public QObject
{
    Q_OBJECT

private slots:
    static void oneThreadKeepsTheOrder();
    static void severalWorkAtATime();
    static void dropsWhatHasNotBegun();
};

void tst_WorkerThreads::oneThreadKeepsTheOrder()
{
    constexpr int Count = 1000;
    std::vector<int> order;
    std::promise<void> done;
    WorkerThreads threads(1);
    for (int i = 0; i < Count; ++i) {
        threads.start([&order, &done, i] {
            order.push_back(i);
            if (i == Count - 1) {
                done.set_value();
            }
        });
    }
    done.get_future().wait();
    QCOMPARE(order.size(), std::size_t(Count));
    QVERIFY(std::is_sorted(order.begin(), order.end()));
}

/// Each waits for the others, so none would end if they did not all run.
void tst_WorkerThreads::severalWorkAtATime()
{
    constexpr int Count = 4;
    std::atomic<int> running{0};
    std::atomic<int> ended{0};
    WorkerThreads threads(Count);
    for (int i = 0; i < Count; ++i) {
        threads.start([&running, &ended] {
            ++running;
            while (running < Count) {
                std::this_thread::yield();
            }
            ++ended;
        });
    }
    QTRY_COMPARE(ended.load(), Count);
}

void tst_WorkerThreads::dropsWhatHasNotBegun()
{
    std::promise<void> begun;
    std::promise<void> mayEnd;
    std::atomic<int> ran{0};
    std::thread releaser;
    {
        WorkerThreads threads(1);
        threads.start([&] {
            begun.set_value();
            mayEnd.get_future().wait();
            ++ran;
        });
        threads.start([&ran] { ran += 100; });
        begun.get_future().wait();
        releaser = std::thread([&mayEnd] {
            std::this_thread::sleep_for(std::chrono::milliseconds(100)); // the destructor has begun by then
            mayEnd.set_value();
        });
    }
    releaser.join();
    QCOMPARE(ran.load(), 1);
}

X9_PLAIN_TEST(tst_WorkerThreads)
#include "tst_WorkerThreads.moc"
