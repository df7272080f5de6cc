#include "tests/exchange/ExchangeTestData.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

using namespace ExchangeTestData;

class tst_LinCsvFormat : public QObject
{
    Q_OBJECT

private slots:
    static void english();
    static void chineseOverMidnight();
    static void damagedLines_data();
    static void damagedLines();
    static void writtenInBothLanguages();
};

void tst_LinCsvFormat::english()
{
    const Reading reading = readBytes(format("lin-csv"), fileBytes(QStringLiteral("lin/four.csv")));
    QCOMPARE(described(reading.findings), QStringList());
    QCOMPARE(described(reading.frames),
             QStringList({QStringLiteral("45296789000/- 0 rx 12 lin [2] 01A2 5c 1"),
                          QStringLiteral("45296790000/- 0 tx 3C lin [8] 0000000000000000 ff 1"),
                          QStringLiteral("86399999000/- 0 rx 1 lin [0]  3e 4"),
                          QStringLiteral("86400000000/- 0 rx 3F lin [1] 7F 00 5")}));
}

void tst_LinCsvFormat::chineseOverMidnight()
{
    const ReadOptions options{QDateTime(QDate(2026, 3, 4), QTime(12, 0))};
    const Reading reading =
        readBytes(format("lin-csv"), fileBytes(QStringLiteral("exchange/lin_midnight_gbk.csv")), options);
    QCOMPARE(described(reading.findings), QStringList());
    QCOMPARE(int(reading.frames.size()), 4);
    QCOMPARE(reading.info.timeBase, CaptureInfo::Absolute);
    QCOMPARE(reading.frames[0].time / 1000000,
             QDateTime(QDate(2026, 3, 3), QTime(23, 59, 59, 999)).toMSecsSinceEpoch());
    QCOMPARE(reading.frames[1].time / 1000000, QDateTime(QDate(2026, 3, 4), QTime(0, 0, 0, 1)).toMSecsSinceEpoch());
    QCOMPARE(reading.frames[1].direction, BusFrame::Sent);
    QCOMPARE(reading.frames[1].linState, BusFrame::ChecksumV2);
    QCOMPARE(reading.frames[2].linState, BusFrame::WrongChecksumV1);
    QCOMPARE(reading.frames[3].linState, BusFrame::LinError);
}

void tst_LinCsvFormat::damagedLines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("finding");
    QTest::newRow("cut") << QByteArray("1,12:34:56.789,Revice,12[92],2")
                         << QStringLiteral("a line without eight cells was left out");
    QTest::newRow("nine") << QByteArray("1,12:34:56.789,Revice,12[92],2,01 A2 ,5C,V1,")
                          << QStringLiteral("a line without eight cells was left out");
    QTest::newRow("direction") << QByteArray("1,12:34:56.789,Sent,12[92],2,01 A2 ,5C,V1")
                               << QStringLiteral("a line with an unknown direction was left out");
    QTest::newRow("identifier") << QByteArray("1,12:34:56.789,Revice,40[92],2,01 A2 ,5C,V1")
                                << QStringLiteral("a line with an identifier that no frame has was left out");
    QTest::newRow("length") << QByteArray("1,12:34:56.789,Revice,12[92],3,01 A2 ,5C,V1")
                            << QStringLiteral("a line with a damaged payload was left out");
    QTest::newRow("nine bytes") << QByteArray("1,12:34:56.789,Revice,12[92],9,01 02 03 04 05 06 07 08 09 ,5C,V1")
                                << QStringLiteral("a line with a damaged payload was left out");
    QTest::newRow("checksum") << QByteArray("1,12:34:56.789,Revice,12[92],2,01 A2 ,5G,V1")
                              << QStringLiteral("a line with a damaged checksum was left out");
}

void tst_LinCsvFormat::damagedLines()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, finding);
    const Reading reading = readBytes(format("lin-csv"), "No.,System Time,Direction,ID[PID],Length\n" + line + '\n');
    QCOMPARE(described(reading.findings), QStringList(QStringLiteral("Line 2: ") + finding));
    QVERIFY(reading.frames.empty());
}

void tst_LinCsvFormat::writtenInBothLanguages()
{
    const Reading reading = readBytes(format("lin-csv"), fileBytes(QStringLiteral("lin/four.csv")));
    for (const bool isChinese : {false, true}) {
        WriteOptions options;
        options.info = reading.info;
        options.isChinese = isChinese;
        options.encoding = isChinese ? "GB18030" : "UTF-8";
        Findings findings;
        const QByteArray bytes = writeBytes(format("lin-csv"), reading.frames, options, findings);
        QCOMPARE(bytes.contains("Revice"), !isChinese);
        QCOMPARE(described(readBytes(format("lin-csv"), bytes).frames), described(reading.frames));
        QCOMPARE(described(findings), QStringList());
    }
}

X9_PLAIN_TEST(tst_LinCsvFormat)
#include "tst_LinCsvFormat.moc"
