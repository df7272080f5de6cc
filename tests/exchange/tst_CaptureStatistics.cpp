#include "exchange/CaptureStatistics.h"

#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {

BusFrame frame(qint64 ms, quint32 identifier, const QByteArray &data, unsigned flags = 0)
{
    BusFrame made;
    made.time = ms * 1000000;
    made.identifier = identifier;
    made.flags = static_cast<quint16>(flags);
    made.length = static_cast<quint8>(data.size());
    std::copy(data.begin(), data.end(), made.data.begin());
    return made;
}

} // namespace

class tst_CaptureStatistics : public QObject
{
    Q_OBJECT

private slots:
    static void means();
    static void periods();
    static void theDevicesTimesCountFirst();
    static void changingBytes();
    static void totals();
    static void rowsAreInOrder();
};

void tst_CaptureStatistics::means()
{
    RunningMean mean;
    QCOMPARE(mean.standardDeviation(), 0.0);
    for (const double number : {2.0, 4.0, 4.0, 4.0, 5.0, 5.0, 7.0, 9.0}) {
        mean.add(number);
    }
    QCOMPARE(mean.mean(), 5.0);
    QCOMPARE(mean.standardDeviation(), 2.0);
}

void tst_CaptureStatistics::periods()
{
    CaptureStatistics statistics;
    for (const int ms : {0, 10, 30, 60, 50}) { // the last one goes back: no period
        statistics.add(frame(ms, 1, {}));
    }
    const IdentifierStatistics row = statistics.rows().at(0);
    QCOMPARE(row.frames, 5);
    QCOMPARE(row.period.count(), 3);
    QCOMPARE(row.period.mean(), 20e6);
    QCOMPARE(row.shortestPeriod, 10000000);
    QCOMPARE(row.longestPeriod, 30000000);
}

void tst_CaptureStatistics::theDevicesTimesCountFirst()
{
    CaptureStatistics statistics;
    for (const int ms : {100, 105}) {
        BusFrame polled = frame(250, 1, {});
        polled.deviceTime = qint64{ms} * 1000000;
        statistics.add(polled);
    }
    QCOMPARE(statistics.rows().at(0).period.mean(), 5e6);
}

void tst_CaptureStatistics::changingBytes()
{
    CaptureStatistics statistics;
    statistics.add(frame(0, 1, "", BusFrame::Remote));
    statistics.add(frame(1, 1, "abcd"));
    statistics.add(frame(2, 1, "aXcd"));
    statistics.add(frame(3, 1, "abc"));
    const IdentifierStatistics row = statistics.rows().at(0);
    QCOMPARE(row.changing.to_string().substr(60), std::string("1010"));
    QCOMPARE(int{row.shortest}, 3);
    QCOMPARE(int{row.longest}, 4);
    QCOMPARE(row.remoteFrames, 1);
}

void tst_CaptureStatistics::totals()
{
    CaptureStatistics statistics;
    statistics.add(frame(20, 1, "a"), 1000000);
    statistics.add(frame(10, 1, "a", BusFrame::Fd));
    statistics.add(frame(40, 4, "a", BusFrame::Error));
    statistics.add(frame(30, 4, "a", BusFrame::Lin));
    BusFrame sent = frame(30, 4, {}, BusFrame::Remote);
    sent.direction = BusFrame::Sent;
    sent.channel = 2;
    statistics.add(sent, 500000);
    const CaptureStatistics::Totals &totals = statistics.totals();
    QCOMPARE(totals.frames, 5);
    QCOMPARE(totals.classic, 2);
    QCOMPARE(totals.fd, 1);
    QCOMPARE(totals.error, 1);
    QCOMPARE(totals.lin, 1);
    QCOMPARE(totals.remote, 1);
    QCOMPARE(totals.sent, 1);
    QCOMPARE(totals.firstTime, 10000000);
    QCOMPARE(totals.lastTime, 40000000);
    QCOMPARE(int(statistics.channels().size()), 3);
    QCOMPARE(statistics.channels().at(1).frames, 0);
    QCOMPARE(statistics.channels().at(2).busySeconds, 0.0005);
}

void tst_CaptureStatistics::rowsAreInOrder()
{
    CaptureStatistics statistics;
    BusFrame other = frame(0, 1, {});
    other.channel = 1;
    statistics.add(other);
    statistics.add(frame(0, 5, {}, BusFrame::Extended));
    statistics.add(frame(0, 7, {}));
    statistics.add(frame(0, 5, {}));
    QStringList order;
    for (const IdentifierStatistics &row : statistics.rows()) {
        order.append(QStringLiteral("%1:%2:%3").arg(row.channel).arg(row.kind).arg(row.identifier));
    }
    QCOMPARE(order.join(QLatin1Char(' ')), QStringLiteral("0:0:5 0:0:7 0:1:5 1:0:1"));
}

X9_PLAIN_TEST(tst_CaptureStatistics)
#include "tst_CaptureStatistics.moc"
