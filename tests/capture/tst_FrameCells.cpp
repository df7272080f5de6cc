#include "CaptureTestData.h"

#include "capture/FrameCells.h"
#include "tests/support/TestProgram.h"

#include <QTest>

using namespace CaptureTestData;

namespace {

QString cell(const FrameRecord &record, FrameColumn column)
{
    FrameStore store;
    store.append(record);
    return frameCell(store.at(0), 0, column, englishLabels());
}

} // namespace

class tst_FrameCells : public QObject
{
    Q_OBJECT

private slots:
    static void number_data();
    static void number();
    static void systemTimeIsTheProducersText();
    static void timeStamp_data();
    static void timeStamp();
    static void timeStampOfSentFrames();
    static void direction_data();
    static void direction();
    static void identifier_data();
    static void identifier();
    static void protocol_data();
    static void protocol();
    static void formatAndType();
    static void extendedRemoteFrame();
    static void length_data();
    static void length();
    static void payload();
    static void payloadOfEveryByte();
    static void wordsComeFromTheLabels();
};

void tst_FrameCells::number_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    QTest::newRow("first") << 0 << "1";
    QTest::newRow("9") << 8 << "9";
    QTest::newRow("10") << 9 << "10";
    QTest::newRow("99") << 98 << "99";
    QTest::newRow("100") << 99 << "100";
    QTest::newRow("1234567") << 1234566 << "1234567";
    QTest::newRow("a million") << 999999 << "1000000";
    QTest::newRow("largest") << 2147483646 << "2147483647";
}

void tst_FrameCells::number()
{
    QFETCH(int, index);
    QFETCH(QString, text);
    FrameStore store;
    store.append(frame(1));
    QCOMPARE(frameCell(store.at(0), index, FrameColumn::Number, englishLabels()), text);
}

void tst_FrameCells::systemTimeIsTheProducersText()
{
    FrameRecord record = frame(1);
    record.systemTime = QStringLiteral("\u4e0a\u5348, 1 ");
    QCOMPARE(cell(record, FrameColumn::SystemTime), record.systemTime);
}

void tst_FrameCells::timeStamp_data()
{
    QTest::addColumn<quint32>("milliseconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << 0U << "0:0:0.0";
    QTest::newRow("no leading zeros") << 5007U << "0:0:5.7";
    QTest::newRow("every part") << 3723004U << "1:2:3.4";
    QTest::newRow("end of the day") << 86399999U << "23:59:59.999";
    QTest::newRow("next day") << 86400000U << "0:0:0.0";
    QTest::newRow("largest") << 4294967295U << "17:2:47.295";
}

void tst_FrameCells::timeStamp()
{
    QFETCH(quint32, milliseconds);
    QFETCH(QString, text);
    FrameRecord record = frame(1);
    record.timeStamp = milliseconds;
    QCOMPARE(cell(record, FrameColumn::TimeStamp), text);
}

void tst_FrameCells::timeStampOfSentFrames()
{
    for (const quint8 direction : {quint8(0), quint8(1), quint8(3), quint8(255)}) {
        FrameRecord record = sentFrame(1, direction);
        record.timeStamp = 3723004;
        QCOMPARE(cell(record, FrameColumn::TimeStamp), QStringLiteral("None"));
    }
}

void tst_FrameCells::direction_data()
{
    QTest::addColumn<int>("direction");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0 << "Send failure";
    QTest::newRow("1") << 1 << "Send successfully";
    QTest::newRow("2") << 2 << "Revice";
    QTest::newRow("3") << 3 << "Send successfully";
    QTest::newRow("255") << 255 << "Send successfully";
}

void tst_FrameCells::direction()
{
    QFETCH(int, direction);
    QFETCH(QString, text);
    QCOMPARE(cell(sentFrame(1, static_cast<quint8>(direction)), FrameColumn::Direction), text);
}

void tst_FrameCells::identifier_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << 0U << "0x0";
    QTest::newRow("one digit") << 0xFU << "0xF";
    QTest::newRow("two digits") << 0x10U << "0x10";
    QTest::newRow("upper case") << 0x1ABU << "0x1AB";
    QTest::newRow("inner zeros") << 0x100000FU << "0x100000F";
    QTest::newRow("largest") << 0x1FFFFFFFU << "0x1FFFFFFF";
}

void tst_FrameCells::identifier()
{
    QFETCH(quint32, id);
    QFETCH(QString, text);
    QCOMPARE(cell(frame(id), FrameColumn::Id), text);
}

void tst_FrameCells::protocol_data()
{
    QTest::addColumn<int>("protocol");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0 << "CAN";
    QTest::newRow("1") << 1 << "CANFD";
    QTest::newRow("2") << 2 << "CANFD Speed";
}

void tst_FrameCells::protocol()
{
    QFETCH(int, protocol);
    QFETCH(QString, text);
    FrameRecord record = frame(1);
    record.protocol = static_cast<quint8>(protocol);
    QCOMPARE(cell(record, FrameColumn::Protocol), text);
}

void tst_FrameCells::formatAndType()
{
    FrameRecord record = frame(1);
    QCOMPARE(cell(record, FrameColumn::Format), QStringLiteral("Data"));
    QCOMPARE(cell(record, FrameColumn::Type), QStringLiteral("Standard"));
    record.remote = 1;
    QCOMPARE(cell(record, FrameColumn::Format), QStringLiteral("Remote"));
    QCOMPARE(cell(record, FrameColumn::Type), QStringLiteral("Standard"));
    record.remote = 0;
    record.extended = 1;
    QCOMPARE(cell(record, FrameColumn::Format), QStringLiteral("Data"));
    QCOMPARE(cell(record, FrameColumn::Type), QStringLiteral("Extend"));
}

void tst_FrameCells::extendedRemoteFrame()
{
    FrameRecord record = frame(0x1FFFFFFF);
    record.remote = 1;
    record.extended = 1;
    QCOMPARE(cell(record, FrameColumn::Id), QStringLiteral("0x1FFFFFFF"));
    QCOMPARE(cell(record, FrameColumn::Format), QStringLiteral("Remote"));
    QCOMPARE(cell(record, FrameColumn::Type), QStringLiteral("Extend"));
}

void tst_FrameCells::length_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << 0 << "0x0";
    QTest::newRow("classic") << 8 << "0x8";
    QTest::newRow("letter") << 12 << "0xC";
    QTest::newRow("fd") << 64 << "0x40";
    QTest::newRow("more than the bus allows") << 65535 << "0xFFFF";
}

void tst_FrameCells::length()
{
    QFETCH(int, size);
    QFETCH(QString, text);
    QCOMPARE(cell(frame(1, QByteArray(size, 'x')), FrameColumn::Length), text);
}

void tst_FrameCells::payload()
{
    QCOMPARE(cell(frame(1), FrameColumn::Data), QString());
    QCOMPARE(cell(frame(1, "\x01\xA2\xFF"), FrameColumn::Data), QStringLiteral("01 A2 FF "));
}

void tst_FrameCells::payloadOfEveryByte()
{
    QString expected;
    for (int i = 0; i < 256; ++i) {
        expected += QStringLiteral("%1 ").arg(i, 2, 16, QLatin1Char('0')).toUpper();
    }
    QCOMPARE(cell(frame(1, countingBytes(256)), FrameColumn::Data), expected);
}

void tst_FrameCells::wordsComeFromTheLabels()
{
    FrameLabels labels;
    for (std::size_t i = 0; i < labels.words.size(); ++i) {
        labels.words[i] = QString::number(i);
    }
    FrameRecord record = sentFrame(1, FrameRecord::SendFailure);
    record.protocol = FrameRecord::CANFDSpeed;
    record.remote = 1;
    record.extended = 1;
    FrameStore store;
    store.append(record);
    const FrameView view = store.at(0);
    QCOMPARE(frameCell(view, 0, FrameColumn::TimeStamp, labels), QStringLiteral("0"));
    QCOMPARE(frameCell(view, 0, FrameColumn::Direction, labels), QStringLiteral("3"));
    QCOMPARE(frameCell(view, 0, FrameColumn::Protocol, labels), QStringLiteral("6"));
    QCOMPARE(frameCell(view, 0, FrameColumn::Format, labels), QStringLiteral("8"));
    QCOMPARE(frameCell(view, 0, FrameColumn::Type, labels), QStringLiteral("10"));
}

X9_PLAIN_TEST(tst_FrameCells)
#include "tst_FrameCells.moc"
