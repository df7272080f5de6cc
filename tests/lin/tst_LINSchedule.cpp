#include "lin/LINSchedule.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {
const QString IdError = QStringLiteral("The ID is out of range, Error line7!\nValid ID range: 0x0-0x3F!");
const QString LengthError = QStringLiteral("The data length is out of range, Error line7");
const QString IntervalError = QStringLiteral("The interval is out of range, Error line7");
const QString DataError = QStringLiteral("The data is not valid, Error line7");
} // namespace

class tst_LINSchedule : public QObject
{
    Q_OBJECT

private slots:
    static void readsARow();
    static void checksARow_data();
    static void checksARow();
    static void namesTheRow();
    static void servesInTurn_data();
    static void servesInTurn();
    static void nothingComesOfNoRows();
};

void tst_LINSchedule::readsARow()
{
    const LINScheduleTexts texts{QStringLiteral("3c"), QStringLiteral("01 a2 FF"), QStringLiteral("2"),
                                 QStringLiteral("250")};
    QString error;
    const auto row = readLINScheduleRow(texts, 0, error);
    QVERIFY(row.has_value());
    QCOMPARE(row->id, quint8(0x3C));
    QCOMPARE(row->data, QByteArray::fromHex("01A2"));
    QCOMPARE(row->intervalMs, 250);
    QVERIFY(!row->isRequest);
    QCOMPARE(error, QString());
}

void tst_LINSchedule::checksARow_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("length");
    QTest::addColumn<QString>("interval");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *name, const char *id, const char *data, const char *length, const char *interval,
                        const QString &error = QString()) {
        QTest::newRow(name) << QString::fromUtf8(id) << QString::fromUtf8(data) << QString::fromUtf8(length)
                            << QString::fromUtf8(interval) << error;
    };
    row("usual", "05", "00 00 00 00 00 00 00 05", "8", "30");
    row("lowest identifier", "0", "", "0", "30");
    row("highest identifier", "3F", "", "0", "30");
    row("identifier 40", "40", "", "0", "30", IdError);
    row("identifier with blanks around", " 3F ", "", "0", "30");
    row("identifier with a blank inside", "3 F", "", "0", "30", IdError);
    row("no identifier", "", "", "0", "30", IdError);
    row("identifier of blanks", "  ", "", "0", "30", IdError);
    row("identifier in words", "ID", "", "0", "30", IdError);
    row("negative identifier", "-1", "", "0", "30", IdError);
    row("huge identifier", "100000000000000003F", "", "0", "30", IdError);
    row("identifier beyond 32 bits", "100000001", "", "0", "30", IdError);
    row("leading zeros", "0000003F", "", "0", "30");

    row("longest", "1", "0102030405060708", "8", "30");
    row("length 9", "1", "010203040506070809", "9", "30", LengthError);
    row("no length", "1", "01", "", "30", LengthError);
    row("hexadecimal length", "1", "01", "0x1", "30", LengthError);
    row("negative length", "1", "01", "-1", "30", LengthError);
    row("length with a fraction", "1", "01", "1.0", "30", LengthError);
    row("huge length", "1", "01", "4294967297", "30", LengthError);

    row("interval 29", "1", "01", "1", "29", IntervalError);
    row("interval 5000", "1", "01", "1", "5000");
    row("interval 5001", "1", "01", "1", "5001", IntervalError);
    row("no interval", "1", "01", "1", "", IntervalError);
    row("negative interval", "1", "01", "1", "-30", IntervalError);
    row("interval beyond 16 bits", "1", "01", "1", "65566", IntervalError);
    row("interval with a unit", "1", "01", "1", "30 ms", IntervalError);

    row("enough data", "1", "0102", "2", "30");
    row("too little data", "1", "01", "2", "30", DataError);
    row("half a byte too little", "1", "010", "2", "30", DataError);
    row("blanks do not count", "1", " 0 1 \t ", "2", "30", DataError);
    row("data that is not hexadecimal", "1", "zz 01", "2", "30");
    row("no data, none asked for", "1", " ", "0", "30");

    row("identifier first", "40", "", "9", "29", IdError);
    row("then length", "1", "", "9", "29", LengthError);
    row("then interval", "1", "", "8", "29", IntervalError);
}

void tst_LINSchedule::checksARow()
{
    QFETCH(QString, id);
    QFETCH(QString, data);
    QFETCH(QString, length);
    QFETCH(QString, interval);
    QFETCH(QString, error);

    QString said;
    const auto row = readLINScheduleRow({id, data, length, interval}, 7, said);
    QCOMPARE(said, error);
    QCOMPARE(row.has_value(), error.isEmpty());
}

void tst_LINSchedule::namesTheRow()
{
    const LINScheduleTexts texts{QStringLiteral("40"), {}, QStringLiteral("0"), QStringLiteral("30")};
    QString error;
    readLINScheduleRow(texts, 0, error);
    QCOMPARE(error, QStringLiteral("The ID is out of range, Error line0!\nValid ID range: 0x0-0x3F!"));
    readLINScheduleRow(texts, 19, error);
    QCOMPARE(error, QStringLiteral("The ID is out of range, Error line19!\nValid ID range: 0x0-0x3F!"));
}

void tst_LINSchedule::servesInTurn_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("count");
    QTest::addColumn<QVector<int>>("served");

    QTest::newRow("one row once") << 1 << 1 << QVector<int>{0};
    QTest::newRow("one row again and again") << 1 << 4 << QVector<int>{0, 0, 0, 0};
    QTest::newRow("three rows, seven frames") << 3 << 7 << QVector<int>{0, 1, 2, 0, 1, 2, 0};
    QTest::newRow("more rows than frames") << 3 << 2 << QVector<int>{0, 1};
    QTest::newRow("no frame") << 3 << 0 << QVector<int>{};
}

void tst_LINSchedule::servesInTurn()
{
    QFETCH(int, rows);
    QFETCH(int, count);
    QFETCH(QVector<int>, served);

    QVector<LINScheduleRow> list(rows);
    for (int i = 0; i < rows; ++i) {
        list[i].id = static_cast<quint8>(i);
    }
    LINSchedule schedule(list, count);
    QVector<int> order;
    for (int left = count; left > 0; --left) {
        QCOMPARE(schedule.remaining(), left);
        order.append(schedule.takeNext().id);
    }
    QCOMPARE(schedule.remaining(), 0);
    QCOMPARE(order, served);

    LINSchedule all(list, 65535);
    for (int left = 65535; left > 0; --left) {
        QCOMPARE(all.takeNext().id, quint8((65535 - left) % rows));
    }
    QCOMPARE(all.remaining(), 0);
}

void tst_LINSchedule::nothingComesOfNoRows()
{
    QCOMPARE(LINSchedule().remaining(), 0);
    QCOMPARE(LINSchedule({}, 5).remaining(), 0);
}

X9_PLAIN_TEST(tst_LINSchedule)
#include "tst_LINSchedule.moc"
