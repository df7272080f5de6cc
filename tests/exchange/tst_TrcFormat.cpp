#include "exchange/FindingTexts.h"
#include "exchange/TextLine.h"
#include "exchange/TrcStart.h"
#include "tests/exchange/ExchangeTestData.h"
#include "tests/support/TestProgram.h"

using namespace ExchangeTestData;

/// TRC: the lines of each version.
class tst_TrcFormat : public QObject
{
    Q_OBJECT

private slots:
    static void lines_data();
    static void lines();
    static void starts_data();
    static void starts();
    static void writtenText();
    static void oddLengthIsPadded();
};

void tst_TrcFormat::lines_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("frame"); // empty: none
    QTest::addColumn<QString>("finding");
    const auto row = [](const char *head, const char *line, const char *frame, const QString &finding = {}) {
        QTest::addRow("%s: %s", head, line)
            << QByteArray(head) << QByteArray(line) << QString::fromLatin1(frame) << finding;
    };
    row(";1.0", "     1)      1841  0001  8 00 11 22 33 44 55 66 77", "1841000/- 0 rx 1 [8] 0011223344556677");
    row(";1.0", "     2)      1842  00000100  0", "1842000/- 0 rx 100 ext [0]");
    row(";1.0", "     3)      1843  0020  4 RTR", "1843000/- 0 rx 20 remote [4]");
    row(";1.0", "     4)      1844  FFFFFFFF  4 00 00 00 08", "", FindingTexts::otherEvent());
    row(";$FILEVERSION=1.1", "     1)      1059.9  Rx         0300  7  00 00 00 00 04 00 00",
        "1059900/- 0 rx 300 [7] 00000000040000");
    row(";$FILEVERSION=1.1", "     2)      1059.9  Tx     18EFC034  1  05", "1059900/- 0 tx 18EFC034 ext [1] 05");
    row(";$FILEVERSION=1.1", "     3)      1059.9  Rx         0020  8  RTR", "1059900/- 0 rx 20 remote [8]");
    row(";$FILEVERSION=1.1", "     4)      1059.9  Error      0008  4  00 19 08 08", "1059900/- 0 rx 0 error [0]");
    row(";$FILEVERSION=1.1", "     5)      1059.9  Warng  FFFFFFFF  4  00 00 00 08  BUSHEAVY", "",
        FindingTexts::otherEvent());
    row(";$FILEVERSION=1.2", "     1)      1059.900 2  Rx        0300  1  05", "1059900/- 1 rx 300 [1] 05");
    row(";$FILEVERSION=1.3", "     1)      1059.900 3  Tx        0300 -  1    05", "1059900/- 2 tx 300 [1] 05");
    row(";$FILEVERSION=2.0", "      1      1059.900 DT     0300 Rx 2  00 01", "1059900/- 0 rx 300 [2] 0001");
    row(";$FILEVERSION=2.0", "      2      1059.900 FD 18EFC034 Tx 12 1 2 3 4 5 6 7 8 9 A B C",
        "1059900/- 0 tx 18EFC034 ext fd [12] 0102030405060708090A0B0C");
    row(";$FILEVERSION=2.0", "      3      1059.900 RR     0300 Rx 5", "1059900/- 0 rx 300 remote [5]");
    row(";$FILEVERSION=2.0", "      4      1059.900 ER          Rx 04 00 02 00 00", "1059900/- 0 rx 0 error [0]");
    row(";$FILEVERSION=2.0", "      5      1059.900 ST          Rx 00 00 00 08", "", FindingTexts::otherEvent());
    row(";$FILEVERSION=2.1", "      1      1059.900 DT  1     0300 Rx -  2    00 01", "1059900/- 0 rx 300 [2] 0001");
    row(";$FILEVERSION=2.1", "      2      1059.900 FB  2 0000300 Tx -  9    1 2 3 4 5 6 7 8 9 A B C",
        "1059900/- 1 tx 300 ext fd brs [12] 0102030405060708090A0B0C");
    row(";$FILEVERSION=2.1", "      3      1059.900 FE  2     0300 Tx -  1    1", "1059900/- 1 tx 300 fd esi [1] 01");
    row(";$FILEVERSION=2.1", "      4      1059.900 BI  2     0300 Tx -  0", "1059900/- 1 tx 300 fd brs esi [0]");
    row(";$FILEVERSION=2.1", "      5      1059.900 ER  2        - Rx -  5    04 00 02 00 00",
        "1059900/- 1 rx 0 error [0]");
    row(";$FILEVERSION=2.1", "      6      1059.900 EC  2        - Rx -  2    00 01", "", FindingTexts::otherEvent());
    row(";$FILEVERSION=2.1", "      7      1059.900 EV  Something happened", "", FindingTexts::otherEvent());
    row(";$FILEVERSION=2.1\n;$COLUMNS=N,O,T,I,B,d,l,D", "1 2.5 FD 0300 7 Rx 9 1 2 3 4 5 6 7 8 9",
        "2500/- 6 rx 300 fd [9] 010203040506070809");
    row(";$FILEVERSION=2.1", "      8      1059.900 DT  1     0300 Rx -  3    00 01", "", FindingTexts::wrongLength());
    row(";$FILEVERSION=2.1", "      9      1059.900 DT  1     0800 Rx -  0", "", FindingTexts::damagedLine());
    row(";$FILEVERSION=2.1", "     10      1059.900 DT  1     0300 Rx - 16 ", "", FindingTexts::damagedLine());
    row(";$FILEVERSION=2.1", "     11      some     DT  1     0300 Rx -  0", "", FindingTexts::damagedLine());
    row(";$FILEVERSION=2.1", "     12      1059.900 DT  1", "", FindingTexts::damagedLine());
}

void tst_TrcFormat::lines()
{
    QFETCH(const QByteArray, head);
    QFETCH(const QByteArray, line);
    QFETCH(const QString, frame);
    QFETCH(const QString, finding);
    const Reading reading = readBytes(format("trc"), head + "\r\n" + line + "\r\n\r\n");
    QCOMPARE(described(reading.frames).join(QLatin1Char('|')), frame);
    QCOMPARE(described(reading.findings).join(QLatin1Char('|')),
             finding.isEmpty() ? QString() : QStringLiteral("Line %1: ").arg(2 + head.count('\n')) + finding);
}

void tst_TrcFormat::starts_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QDateTime>("start");
    const QDateTime known({2013, 6, 10}, {14, 58, 2, 880});
    QTest::newRow("days") << QByteArray(";$STARTTIME=41435.62364444444") << known;
    QTest::newRow("text") << QByteArray(";   Start time: 10.06.2013 14:58:02.880.0") << known;
    QTest::newRow("both") << QByteArray(";$STARTTIME=41435.62364444444\n;   Start time: 11.06.2013 14:58:02.880")
                          << known;
    QTest::newRow("whole day") << QByteArray(";$STARTTIME=41435") << QDateTime({2013, 6, 10}, {0, 0});
    QTest::newRow("nonsense") << QByteArray(";$STARTTIME=yesterday\n;   Start time: never") << QDateTime();
    QTest::newRow("before 1970") << QByteArray(";$STARTTIME=2.5") << QDateTime();
}

void tst_TrcFormat::starts()
{
    QFETCH(const QByteArray, head);
    QFETCH(const QDateTime, start);
    const Reading reading = readBytes(format("trc"), ";$FILEVERSION=2.1\n" + head + "\n");
    QCOMPARE(reading.info.start, start.isValid() ? start.toMSecsSinceEpoch() * 1000000 : 0);
}

void tst_TrcFormat::writtenText()
{
    BusFrame frame;
    frame.identifier = 0x1AB;
    frame.length = 2;
    frame.data = {1, 0xA2};
    frame.time = 1500000;
    BusFrame fd = frame;
    fd.flags = BusFrame::Fd | BusFrame::Extended;
    fd.direction = BusFrame::Sent;
    fd.channel = 1;
    WriteOptions options;
    options.info.start = QDateTime({2013, 6, 10}, {14, 58, 2, 880}).toMSecsSinceEpoch() * 1000000;
    Findings findings;
    const QByteArray text = writeBytes(format("trc"), {frame, fd}, options, findings);
    QVERIFY(text.startsWith(";$FILEVERSION=2.1\r\n;$STARTTIME=41435.62364444444\r\n"
                            ";   Start time: 10.06.2013 14:58:02.880\r\n;$COLUMNS=N,O,T,B,I,d,R,L,D\r\n"));
    QVERIFY(text.endsWith("\r\n      1         1.500 DT  1     01AB Rx -  2    01 A2\r\n"
                          "      2         1.500 FD  2 000001AB Tx -  2    01 A2\r\n"));
}

/// There is no code for 9 bytes.
void tst_TrcFormat::oddLengthIsPadded()
{
    BusFrame frame;
    frame.time = 0;
    frame.flags = BusFrame::Fd;
    frame.length = 9;
    frame.data[8] = 0x11;
    Findings findings;
    const Reading reading = readBytes(format("trc"), writeBytes(format("trc"), {frame}, {}, findings));
    QCOMPARE(described(reading.frames), QStringList(QStringLiteral("0/- 0 rx 0 fd [12] 000000000000000011000000")));
    QCOMPARE(described(findings), QStringList(QStringLiteral("Frame 1: ") + FindingTexts::paddedLength(9, 12)));
}

X9_CORE_TEST(tst_TrcFormat)
#include "tst_TrcFormat.moc"
