#include "exchange/AscHeader.h"
#include "exchange/FindingTexts.h"
#include "tests/exchange/ExchangeTestData.h"
#include "tests/support/TestProgram.h"

using namespace ExchangeTestData;

/// ASC: each kind of line, dates, bases and what a writer cannot hold.
class tst_AscFormat : public QObject
{
    Q_OBJECT

private slots:
    static void lines_data();
    static void lines();
    static void decimalBase();
    static void relativeTimes();
    static void dates_data();
    static void dates();
    static void startOfTheBlock();
    static void channelsAreFromOne();
    static void longLine();
    static void writtenText();
    static void whatIsLost();
};

namespace {

const QByteArray Head = "base hex  timestamps absolute\ninternal events logged\n";

QByteArray textOf(const std::vector<BusFrame> &frames, Findings &findings)
{
    return writeBytes(format("asc"), frames, {}, findings);
}

} // namespace

void tst_AscFormat::lines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("frame"); // empty: none
    QTest::addColumn<QString>("finding");
    const auto row = [](const char *name, const char *line, const char *frame, const QString &finding = {}) {
        QTest::newRow(name) << QByteArray(line) << QString::fromLatin1(frame) << finding;
    };
    row("classic", "1.5 1 1AB Rx d 3 01 a2 FF", "1500000/- 0 rx 1AB [3] 01A2FF");
    row("extended", "1.5 2 18DAF110x Tx d 0", "1500000/- 1 tx 18DAF110 ext [0]");
    row("more behind", "1.5 1 1AB Rx d 1 01  Length = 240000 BitCount = 123 ID = 427", "1500000/- 0 rx 1AB [1] 01");
    row("code above 8", "1.5 1 1AB Rx d F 1 2 3 4 5 6 7 8", "1500000/- 0 rx 1AB [8] 0102030405060708");
    row("remote", "1.5 1 1AB Rx r", "1500000/- 0 rx 1AB remote [0]");
    row("remote with length", "1.5 1 1AB Rx r 4 Length = 0", "1500000/- 0 rx 1AB remote [4]");
    row("error", "1.5 2 ErrorFrame Flags = 0xe CodeExt = 0x20a2", "1500000/- 1 rx 0 error [0]");
    row("request", "1.5 1 1AB TxRq d 1 01", "", FindingTexts::transmitRequest());
    row("fd", "1.5 CANFD 1 Rx 1AB  1 0 9 12 1 2 3 4 5 6 7 8 9 A B C 130000 130 3000 0 0 0 0 0",
        "1500000/- 0 rx 1AB fd brs [12] 0102030405060708090A0B0C");
    row("fd with a name", "1.5 CANFD 2 Tx 1ABx Engine_1 0 1 1 1 FE 0 0 5000 0 0 0 0 0",
        "1500000/- 1 tx 1AB ext fd esi [1] FE");
    row("fd without flags", "1.5 CANFD 1 Rx 1AB 0 0 2 2 11 22", "1500000/- 0 rx 1AB fd [2] 1122");
    row("fd, passive, without flags", "1.5 CANFD 1 Rx 1AB 0 1 1 1 11", "1500000/- 0 rx 1AB fd esi [1] 11");
    row("fd, empty", "1.5 CANFD 1 Rx 1AB 0 0 0 0 0 0 1000 0", "1500000/- 0 rx 1AB fd [0]");
    row("classic on an fd channel", "1.5 CANFD 1 Rx 1AB 0 0 2 2 11 22 102203 130 200000 0 0 0 0 0",
        "1500000/- 0 rx 1AB [2] 1122");
    row("remote on an fd channel", "1.5 CANFD 3 Rx 50005x 0 1 5 0 140000 73 200050 7a60 46500250 460a0250 0 0",
        "1500000/- 2 rx 50005 ext remote [5]");
    row("error on an fd channel", "1.5 CANFD 5 Tx ErrorFrame Not Acknowledge error, dominant error flag fffe c7",
        "1500000/- 4 tx 0 error [0]");
    row("lin", "1.5 Li 3C Rx 2 01 02 checksum = fc header time = 40, full time = 130 CSM = classic",
        "1500000/- 0 rx 3C lin [2] 0102 fc 1");
    row("lin, enhanced by its checksum", "1.5 L2 10 Tx 1 55 checksum = 5a SOF = 1.4",
        "1500000/- 1 tx 10 lin [1] 55 5a 2");
    row("lin, wrong checksum", "1.5 Li 10 CSErr Rx 1 55 checksum = 11 CSM = enhanced",
        "1500000/- 0 rx 10 lin [1] 55 11 4");
    row("lin, no answer", "1.5 Li 10 RcvError", "1500000/- 0 rx 10 lin [0]  00 5");
    row("lin, nobody", "1.5 Li 10 TransmErr Tx", "1500000/- 0 tx 10 lin [0]  00 5");
    row("lin, another event", "1.5 Li SleepModeEvent 0", "", FindingTexts::otherEvent());
    row("statistic", "1.5 1 Statistic: D 0 R 0 XD 0 XR 0 E 0 O 0 B 0.00%", "", FindingTexts::otherEvent());
    row("status", "1.5 CAN 1 Status:chip status error active", "", FindingTexts::otherEvent());
    row("another bus", "1.5 Fr RMSG 0 0 1 1", "", FindingTexts::otherEvent());
    row("start", "0.0 Start of measurement", "");
    row("comment", "// anything 1 2 3", "");
    row("comment with a time", "1.5 // anything", "");
    row("nothing", "   ", "");
    row("a word", "Nonsense", "", FindingTexts::otherEvent());
    row("no time", "1.5.6 1 1AB Rx d 0", "", FindingTexts::damagedLine());
    row("too few bytes", "1.5 1 1AB Rx d 3 01 02", "", FindingTexts::wrongLength());
    row("a byte that is none", "1.5 1 1AB Rx d 2 01 1FF", "", FindingTexts::wrongLength());
    row("no length", "1.5 1 1AB Rx d", "", FindingTexts::damagedLine());
    row("fd with 65 bytes", "1.5 CANFD 1 Rx 1AB 0 0 f 65 1", "", FindingTexts::damagedLine());
    row("fd with too few", "1.5 CANFD 1 Rx 1AB 0 0 9 12 1 2", "", FindingTexts::wrongLength());
    row("fd with less than nothing", "1.5 CANFD 1 Rx 1AB 0 0 f -7 1", "", FindingTexts::damagedLine());
    row("identifier beyond 11 bits", "1.5 1 800 Rx d 0", "", FindingTexts::damagedLine());
    row("identifier beyond 29 bits", "1.5 1 20000000x Rx d 0", "", FindingTexts::damagedLine());
}

void tst_AscFormat::lines()
{
    QFETCH(const QByteArray, line);
    QFETCH(const QString, frame);
    QFETCH(const QString, finding);
    const Reading reading = readBytes(format("asc"), Head + line + "\r\n");
    QCOMPARE(described(reading.frames).join(QLatin1Char('|')), frame);
    QCOMPARE(described(reading.findings).join(QLatin1Char('|')),
             finding.isEmpty() ? QString() : QStringLiteral("Line 3: ") + finding);
}

void tst_AscFormat::decimalBase()
{
    const Reading reading =
        readBytes(format("asc"), "base dec  timestamps absolute\n"
                                 "0.1 1 427 Rx d 2 16 255\n"
                                 "0.2 CANFD 1 Rx 100x 0 0 10 16 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 0 0 1000\n");
    QCOMPARE(described(reading.frames),
             QStringList({QStringLiteral("100000/- 0 rx 1AB [2] 10FF"),
                          QStringLiteral("200000/- 0 rx 64 ext fd [16] 0102030405060708090A0B0C0D0E0F10")}));
}

/// Each time counts from the line before, whatever that is.
void tst_AscFormat::relativeTimes()
{
    const Reading reading = readBytes(format("asc"), "base hex  timestamps relative\n"
                                                     "0.1 1 1 Rx d 0\n0.2 Fr RMSG\n0.000000001 1 2 Rx d 0\n");
    QCOMPARE(reading.frames.size(), std::size_t(2));
    QCOMPARE(reading.frames[0].time, 100000000);
    QCOMPARE(reading.frames[1].time, 300000001);
}

void tst_AscFormat::dates_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QDateTime>("date");
    const auto row = [](const char *text, const QDate &date, const QTime &time) {
        QTest::newRow(text) << QByteArray(text) << QDateTime(date, time);
    };
    row("Thu Oct 09 08:53:21.500 AM 2025", {2025, 10, 9}, {8, 53, 21, 500});
    row("Thu Oct 9 08:53:21.5 pm 2025", {2025, 10, 9}, {20, 53, 21, 500});
    row("Thu Oct 9 12:00:00 am 2025", {2025, 10, 9}, {0, 0});
    row("Thu Oct 9 12:00:00 pm 2025", {2025, 10, 9}, {12, 0});
    row("Thu Oct  9 20:53:21 2025", {2025, 10, 9}, {20, 53, 21});
    row("Sam Sep 30 15:06:13.191 2017", {2017, 9, 30}, {15, 6, 13, 191});
    row("Don Okt 9 08:53:21.5 2025", {2025, 10, 9}, {8, 53, 21, 500});
    row("Mit M\xE4r 1 01:02:03 2023", {2023, 3, 1}, {1, 2, 3});
    row("Mit M\xC3\xA4r 1 01:02:03 2023", {2023, 3, 1}, {1, 2, 3});
    row("Mon Mai 1 01:02:03.004 nachm. 2023", {2023, 5, 1}, {13, 2, 3, 4});
    row("Die 31. Dez 23:59:59.999 2024", {2024, 12, 31}, {23, 59, 59, 999});
    QTest::newRow("no month") << QByteArray("Thu Xyz 09 08:53:21 2025") << QDateTime();
    QTest::newRow("no such time") << QByteArray("Thu Oct 09 25:53:21 2025") << QDateTime();
    QTest::newRow("no such day") << QByteArray("Thu Feb 30 05:53:21 2025") << QDateTime();
    QTest::newRow("nothing") << QByteArray() << QDateTime();
}

void tst_AscFormat::dates()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QDateTime, date);
    const qint64 expected = date.isValid() ? date.toMSecsSinceEpoch() * 1000000 : 0;
    QCOMPARE(timeOfAscDate({text.constData(), static_cast<std::size_t>(text.size())}), expected);
}

/// The first block's date counts, where it has one.
void tst_AscFormat::startOfTheBlock()
{
    const QByteArray first = "date Thu Oct 09 08:53:21 2025\nbase hex timestamps absolute\n";
    const QByteArray second = first + "Begin Triggerblock Thu Oct 09 08:53:22 2025\n";
    const QByteArray third = second + "End TriggerBlock\nBegin Triggerblock Thu Oct 09 09:53:22 2025\n";
    const qint64 start = QDateTime({2025, 10, 9}, {8, 53, 21}).toMSecsSinceEpoch() * 1000000;
    QCOMPARE(readBytes(format("asc"), first).info.start, start);
    QCOMPARE(readBytes(format("asc"), first + "Begin TriggerBlock\n").info.start, start);
    QCOMPARE(readBytes(format("asc"), second).info.start, start + 1000000000);
    QCOMPARE(readBytes(format("asc"), third).info.start, start + 1000000000);
}

void tst_AscFormat::channelsAreFromOne()
{
    const Reading reading = readBytes(format("asc"), Head + "1 65535 1 Rx d 0\n1 0 1 Rx d 0\n1 65536 1 Rx d 0\n");
    QCOMPARE(described(reading.frames),
             QStringList({QStringLiteral("1000000/- 65534 rx 1 [0]"), QStringLiteral("1000000/- 0 rx 1 [0]")}));
    QCOMPARE(described(reading.findings), QStringList(QStringLiteral("Line 5: ") + FindingTexts::otherEvent()));
}

void tst_AscFormat::longLine()
{
    const QByteArray line = "1.0 1 1AB Rx d 1 01 " + QByteArray(3 * int(ByteInput::MaxAtHand), 'x');
    const Reading reading = readBytes(format("asc"), Head + line + "\n2.0 1 1AB Rx d 1 02\n");
    QCOMPARE(described(reading.frames), QStringList(QStringLiteral("2000000/- 0 rx 1AB [1] 02")));
    QCOMPARE(described(reading.findings), QStringList(QStringLiteral("Line 3: ") + FindingTexts::damagedLine()));
}

void tst_AscFormat::writtenText()
{
    BusFrame classic;
    classic.time = 10000;
    classic.identifier = 0x1AB;
    classic.length = 2;
    classic.data = {1, 0xA2};
    BusFrame fd = classic;
    fd.time = 1000000001;
    fd.flags = BusFrame::Fd | BusFrame::BitRateSwitch | BusFrame::Extended;
    fd.channel = 1;
    fd.direction = BusFrame::Sent;
    BusFrame lin = classic;
    lin.flags = BusFrame::Lin;
    lin.identifier = 0x10;
    lin.checksum = 0x0C;
    lin.linState = BusFrame::ChecksumV2;
    Findings findings;
    QCOMPARE(textOf({classic, fd, lin}, findings),
             QByteArray("base hex  timestamps absolute\ninternal events logged\nBegin Triggerblock\n"
                        "   0.000000 Start of measurement\n"
                        "   0.000010 1  1AB             Rx   d 2 01 A2\n"
                        "   1.000000001 CANFD   2 Tx   1ABx                                       1 0 2  2 01 A2"
                        "        0    0     3000        0        0        0        0        0\n"
                        "   0.000010 Li 10              Rx   2 01 A2  checksum = C  CSM = enhanced\n"
                        "End TriggerBlock\n"));
}

void tst_AscFormat::whatIsLost()
{
    BusFrame error;
    error.time = 0;
    error.flags = BusFrame::Error;
    error.identifier = 0x88;
    BusFrame refused;
    refused.direction = BusFrame::Refused;
    BusFrame timeless;
    Findings findings;
    const QByteArray text = textOf({error, refused, timeless}, findings);
    QCOMPARE(text.count("ErrorFrame"), 1);
    QCOMPARE(text.count("Rx   d 0"), 1);
    QCOMPARE(findings.count(), 3);
    QCOMPARE(findings.kept().first().text, FindingTexts::errorDetails());
    QCOMPARE(findings.kept()[1].number, 3);
    QCOMPARE(findings.kept()[2].number, 2);
}

X9_CORE_TEST(tst_AscFormat)
#include "tst_AscFormat.moc"
