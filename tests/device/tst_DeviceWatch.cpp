#include "device/DeviceWatch.h"
#include "tests/support/TestProgram.h"

#include <QtTest>
#include <QVector>

using Times = QVector<int>;
Q_DECLARE_METATYPE(Times)

namespace {
constexpr int PollMs = 250;
} // namespace

class tst_DeviceWatch : public QObject
{
    Q_OBJECT

private slots:
    static void asksAfterTwoSeconds();
    static void watches_data();
    static void watches();
    static void asksAtEveryPollWithoutSilence();
};

void tst_DeviceWatch::asksAfterTwoSeconds()
{
    QCOMPARE(int(DeviceWatch::Silence.count()), 2000);
}

/// One character per poll, the first at the opening: 'f' brings frames, '.' brings none; what the device answers each
/// time it is asked, the last one from then on; when it is asked and when it is told to be gone, in milliseconds.
void tst_DeviceWatch::watches_data()
{
    QTest::addColumn<bool>("isKnown");
    QTest::addColumn<QByteArray>("polls");
    QTest::addColumn<QByteArray>("answers");
    QTest::addColumn<Times>("asked");
    QTest::addColumn<Times>("lost");

    const auto silent = [](int polls) {
        return QByteArray(polls, '.');
    };
    QTest::newRow("silent, but there") << false << silent(41) << QByteArray("1") << Times{2000, 4000, 6000, 8000, 10000}
                                       << Times{};
    QTest::newRow("frames all the time") << true << QByteArray(41, 'f') << QByteArray("0") << Times{} << Times{};
    QTest::newRow("frames now and then") << true << QByteArray("f.......").repeated(5) << QByteArray("0") << Times{}
                                         << Times{};
    QTest::newRow("two failures") << true << silent(41) << QByteArray("0") << Times{2000, 3000} << Times{3250};
    QTest::newRow("pulled out while frames come")
        << true << QByteArray("ffffffff") + silent(33) << QByteArray("0") << Times{3750, 4750} << Times{5000};
    QTest::newRow("a single failure") << true << silent(31) << QByteArray("01") << Times{2000, 3000, 5000, 7000}
                                      << Times{};
    QTest::newRow("every other one") << true << silent(33) << QByteArray("010101")
                                     << Times{2000, 3000, 5000, 6000, 8000} << Times{};
    QTest::newRow("frames between two failures")
        << true << silent(10) + "f" + silent(18) << QByteArray("0") << Times{2000, 4500, 5500} << Times{5750};
    QTest::newRow("frames after two failures")
        << true << silent(13) + "f" + silent(8) << QByteArray("0") << Times{2000, 3000, 5250} << Times{};
    QTest::newRow("never known to answer")
        << false << silent(33) << QByteArray("0") << Times{2000, 4000, 6000, 8000} << Times{};
    QTest::newRow("has answered once") << false << silent(41) << QByteArray("0100") << Times{2000, 4000, 6000, 7000}
                                       << Times{7250};
}

void tst_DeviceWatch::watches()
{
    QFETCH(bool, isKnown);
    QFETCH(QByteArray, polls);
    QFETCH(QByteArray, answers);
    DeviceWatch watch;
    if (isKnown) {
        watch.noteKnown();
    }
    Times asked;
    Times lost;
    for (int poll = 0; poll < polls.size(); ++poll) {
        const DeviceWatch::Time now(poll * PollMs);
        watch.notePoll(now, polls.at(poll) == 'f');
        if (watch.takeLost()) {
            lost.append(int(now.count()));
        } else if (watch.isToBeAsked(now)) {
            watch.noteAnswer(now, answers.at(qMin(asked.size(), answers.size() - 1)) == '1');
            asked.append(int(now.count()));
        }
    }
    QTEST(asked, "asked");
    QTEST(lost, "lost");
}

void tst_DeviceWatch::asksAtEveryPollWithoutSilence()
{
    DeviceWatch watch(DeviceWatch::Time(0));
    for (int poll = 0; poll < 3; ++poll) {
        const DeviceWatch::Time now(poll);
        watch.notePoll(now, false);
        QVERIFY(watch.isToBeAsked(now));
        watch.noteAnswer(now, true);
    }
}

X9_PLAIN_TEST(tst_DeviceWatch)
#include "tst_DeviceWatch.moc"
