#include "exchange/OwnTextLine.h"

#include "tests/exchange/ExchangeTestData.h"
#include "tests/support/TestProgram.h"

#include <QRandomGenerator>
#include <QtTest>

using ExchangeTestData::described;

namespace {

std::string_view view(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

/// What both ways make of lines, with their findings.
struct BothWays
{
    Findings fastFindings;
    Findings slowFindings;
    OwnTextLine fast{QDate(), fastFindings};
    OwnTextLine slow{QDate(), slowFindings};
    qint64 lineNumber = 0;

    /// Empty where the two differ.
    QString read(const QByteArray &line)
    {
        ++lineNumber;
        BusFrame frame;
        BusFrame slowFrame;
        const bool isFrame = fast.read(view(line), lineNumber, frame);
        if (isFrame != slow.readSlowly(view(line), lineNumber, slowFrame) ||
            (isFrame && described(frame) != described(slowFrame)) ||
            described(fastFindings) != described(slowFindings)) {
            return {};
        }
        return isFrame ? described(frame) : QStringLiteral("none");
    }
};

const QByteArray Words[] = {"Revice", "Send successfully", "Send failure", "\u63a5\u6536", "\u53d1\u9001\u5931\u8d25"};

} // namespace

class tst_OwnTextLine : public QObject
{
    Q_OBJECT

private slots:
    static void lines_data();
    static void lines();
    static void numbers();
    static void bothWaysAgreeOnDamagedLines();
};

void tst_OwnTextLine::lines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("frame");
    QTest::addColumn<QString>("finding");
    const auto row = [](const char *name, const char *line, const char *frame, const char *finding = "") {
        QTest::newRow(name) << QByteArray(line) << QString::fromLatin1(frame) << QString::fromLatin1(finding);
    };
    const char *const Classic = "37230400000/3723004000 0 rx 1AB [3] 01A2FF";
    row("saved", "1,10:20:30.400,1:2:3.4,Revice,0x1AB,CAN,Data,Standard,0x3,01 A2 FF ", Classic);
    row("in real time", "1,10:20:30.400,1:2:3.4,Revice,0x1AB,CAN,Data,Standard,0x3,01 A2 FF ,", Classic);
    row("blanks",
        "1     10:20:30.400     1:2:3.4     Revice     0x1AB     CAN     Data     Standard     0x3     01 A2 FF      ",
        Classic);
    row("blanks, nothing behind",
        "1     10:20:30.400     1:2:3.4     Revice     0x1AB     CAN     Data     Standard     0x3     01 A2 FF ",
        Classic);
    row("blanks, no data",
        "1     10:20:30.400     None     Send failure     0x1AB     CANFD     Data     Standard     0x0          ",
        "37230400000/- 0 refused 1AB fd [0]");
    row("remote", "2,10:20:30.400,None,Send successfully,0x1FFFFFFF,CAN,Remote,Extend,0x4,00 00 00 00 ",
        "37230400000/- 0 tx 1FFFFFFF ext remote [4]");
    row("remote, no bytes", "2,10:20:30.400,None,Send successfully,0x7FF,CAN,Remote,Standard,0x4,",
        "37230400000/- 0 tx 7FF remote [4]");
    row("bit-rate switch", "2,0:0:0.0,None,Send successfully,0x1,CANFD Speed,Data,Extended,0x1,7f",
        "0/- 0 tx 1 ext fd brs [1] 7F");
    row("Chinese, UTF-8",
        "3,10:20:30.400,\u65e0,\u53d1\u9001\u5931\u8d25,0x7FF,CANFD\u52a0\u901f,\u6570\u636e\u5e27,\u6807\u51c6\u5e27,"
        "0x0,",
        "37230400000/- 0 refused 7FF fd brs [0]");
    row("Chinese, GBK",
        "3,10:20:30.400,\xCE\xDE,\xB7\xA2\xCB\xCD\xB3\xC9\xB9\xA6,0x7FF,CANFD\xBC\xD3\xCB\xD9,\xCA\xFD\xBE\xDD\xD6\xA1,"
        "\xC0\xA9\xD5\xB9\xD6\xA1,0x0,",
        "37230400000/- 0 tx 7FF ext fd brs [0]");
    row("a payload that is longer than its length",
        "1,10:20:30.400,1:2:3.4,Revice,0x1AB,CAN,Data,Standard,0x2,01 A2 FF ", Classic,
        "Line 1: the length is not that of the payload, which was taken");
    row("a payload that is cut", "1,10:20:30.400,1:2:3.4,Revice,0x1AB,CAN,Data,Standard,0x4,01 A2 FF ", Classic,
        "Line 1: the length is not that of the payload, which was taken");
    row("a payload that is cut within a byte", "1,10:20:30.400,1:2:3.4,Revice,0x1AB,CAN,Data,Standard,0x3,01 A2 F",
        "none", "Line 1: a line with a damaged payload was left out");
    row("too few cells", "1,10:20:30.400,1:2:3.4,Revice,0x1AB", "none",
        "Line 1: a line with too few cells was left out");
    row("nine classic bytes", "1,10:20:30.400,1:2:3.4,Revice,0x1AB,CAN,Data,Standard,0x9,01 02 03 04 05 06 07 08 09 ",
        "none", "Line 1: a classic frame of more than 8 bytes was left out");
    row("standard, 12 bits", "1,10:20:30.400,1:2:3.4,Revice,0x800,CAN,Data,Standard,0x0,", "none",
        "Line 1: a line with an identifier that no frame has was left out");
    row("extended, 30 bits", "1,10:20:30.400,1:2:3.4,Revice,0x20000000,CAN,Data,Extend,0x0,", "none",
        "Line 1: a line with an identifier that no frame has was left out");
    row("a direction that is not known", "1,10:20:30.400,1:2:3.4,Receive,0x1AB,CAN,Data,Standard,0x0,", "none",
        "Line 1: a line with an unknown direction was left out");
    row("a type that is not known", "1,10:20:30.400,1:2:3.4,Revice,0x1AB,CAN,Data,Standart,0x0,", "none",
        "Line 1: a line with an unknown protocol, format or type was left out");
    row("no stamp", "1,10:20:30.400,1:2:3,Revice,0x1AB,CAN,Data,Standard,0x0,", "37230400000/- 0 rx 1AB [0]",
        "Line 1: a time stamp that cannot be read");
    row("no time of day", "1,noon,1:2:3.4,Revice,0x1AB,CAN,Data,Standard,0x0,", "0/3723004000 0 rx 1AB [0]",
        "Line 1: a time of day that cannot be read; that of the frame before was taken");
    row("empty", "", "none");
    row("blanks only", "       ", "none");
}

void tst_OwnTextLine::lines()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, frame);
    QFETCH(QString, finding);
    BothWays ways;
    QCOMPARE(ways.read(line), frame);
    QCOMPARE(described(ways.fastFindings).join(QLatin1Char('|')), finding);
    // What the first line has taught makes the second one a fast one.
    QCOMPARE(ways.read(line), frame);
}

void tst_OwnTextLine::numbers()
{
    const auto line = [](int number) {
        return QByteArray::number(number) + ",10:20:30.400,None,Revice,0x1AB,CAN,Data,Standard,0x0,";
    };
    BothWays ways;
    for (const int number : {5, 6, 7, 1, 2, 4, 3, 4}) {
        QCOMPARE(ways.read(line(number)), QStringLiteral("37230400000/- 0 rx 1AB [0]"));
    }
    QCOMPARE(described(ways.fastFindings),
             QStringList({QStringLiteral("Line 6: frames are missing: their numbers jump"),
                          QStringLiteral("Line 7: the numbers jump back")}));
}

void tst_OwnTextLine::bothWaysAgreeOnDamagedLines()
{
    QRandomGenerator random(2026);
    const QByteArray characters("0159aAfFxXgG,. :-\t\xB1\xA1");
    const auto digits = [&random](int count) {
        QByteArray text;
        for (int i = 0; i < count; ++i) {
            text += QByteArray::number(random.bounded(256), 16).rightJustified(2, '0').toUpper() + ' ';
        }
        return text;
    };
    int frames = 0;
    BothWays ways;
    for (int i = 0; i < 20000; ++i) {
        const int length = random.bounded(10);
        const QByteArray separator = random.bounded(2) == 0 ? "," : "     ";
        const QByteArrayList cells = {
            QByteArray::number(i + 1),
            QTime::fromMSecsSinceStartOfDay(i * 4000).toString(QStringLiteral("hh:mm:ss.zzz")).toLatin1(),
            random.bounded(3) == 0 ? "None" : "1:2:3." + QByteArray::number(i % 1000),
            Words[random.bounded(5)],
            "0x" + QByteArray::number(random.bounded(0x900), 16).toUpper(),
            random.bounded(2) == 0 ? "CAN" : "CANFD",
            random.bounded(5) == 0 ? "Remote" : "Data",
            random.bounded(2) == 0 ? "Standard" : "Extend",
            "0x" + QByteArray::number(length, 16).toUpper(),
            digits(length)};
        QByteArray line = cells.join(separator) + (random.bounded(2) == 0 ? separator : QByteArray());
        for (int change = random.bounded(3); change > 0; --change) {
            const int place = random.bounded(line.size());
            switch (random.bounded(3)) {
            case 0:
                line[place] = characters.at(random.bounded(characters.size()));
                break;
            case 1:
                line.remove(place, 1 + random.bounded(4));
                break;
            case 2:
                line.insert(place, characters.at(random.bounded(characters.size())));
                break;
            }
        }
        const QString frame = ways.read(line);
        QVERIFY2(!frame.isEmpty(), line.constData());
        frames += frame != QLatin1String("none") ? 1 : 0;
        ways.fastFindings = Findings();
        ways.slowFindings = Findings();
    }
    QVERIFY2(frames > 5000 && frames < 15000, qPrintable(QString::number(frames)));
}

X9_PLAIN_TEST(tst_OwnTextLine)
#include "tst_OwnTextLine.moc"
