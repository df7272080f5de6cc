#include "can/CanFrameInput.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {
constexpr qint64 None = -1;
}

class tst_CanFrameInput : public QObject
{
    Q_OBJECT

private slots:
    static void numberFromHexText_data();
    static void numberFromHexText();
    static void frameId_data();
    static void frameId();
    static void correctedText_data();
    static void correctedText();
    static void counts_data();
    static void counts();
    static void lengths();
    static void classicFrame();
    static void fdFrame();
};

void tst_CanFrameInput::numberFromHexText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("number");
    const auto row = [](const char *text, qint64 number) {
        QTest::newRow(text) << QString::fromLatin1(text) << number;
    };
    row("0", 0);
    row("00000000", 0);
    row("1c", 0x1C);
    row("BF", 0xBF);
    row("0x1234abCD", 0x1234ABCD);
    row("0X1234ABCD", 0x1234ABCD);
    row("FFFFFFFF", 0xFFFFFFFF);
    row("0xFFFFFFFF", 0xFFFFFFFF);
    row(" 0x12 34 ", 0x1234);
    row("000000000012", 0x12);
    row("100000000", None);
    row("0x1FFFFFFFF", None);
    row("0000000000000001FFFFFFFFFFFFFFFFFFFFFFFF", 1); // the first 16 characters alone are read
    row("", None);
    row(" ", None);
    row("0x", None);
    row("0x0x1", None);
    row("x1", None);
    row("G", None);
    row("12h", None);
    row("-1", None);
    row("+1", None);
    row("1.5", None);
    QTest::newRow("other digits") << QStringLiteral("\u0661\u0662") << None;
    QTest::newRow("wide digits") << QStringLiteral("\uFF11") << None;
}

void tst_CanFrameInput::numberFromHexText()
{
    QFETCH(QString, text);
    const std::optional<quint32> number = numberFromHex(text);
    QTEST(number ? qint64(*number) : None, "number");
}

void tst_CanFrameInput::frameId_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("extended");
    QTest::addColumn<qint64>("id"); // -1: refused
    QTest::newRow("lowest") << "0" << false << qint64(0);
    QTest::newRow("highest standard") << "7FF" << false << qint64(0x7FF);
    QTest::newRow("above standard") << "800" << false << qint64(-1);
    QTest::newRow("same as extended") << "800" << true << qint64(0x800);
    QTest::newRow("highest extended") << "1FFFFFFF" << true << qint64(0x1FFFFFFF);
    QTest::newRow("above extended") << "20000000" << true << qint64(-1);
    QTest::newRow("lower case") << "1ab" << false << qint64(0x1AB);
    QTest::newRow("blanks") << " 1 2\t3 " << false << qint64(0x123);
    QTest::newRow("only 16 characters count") << "00000000000000017FFF" << false << qint64(1);
    QTest::newRow("empty") << "" << false << qint64(-1);
    QTest::newRow("no number") << "xyz" << true << qint64(-1);
    QTest::newRow("low word fits, number does not") << "1000000FF" << true << qint64(-1);
}

void tst_CanFrameInput::frameId()
{
    QFETCH(QString, text);
    QFETCH(bool, extended);
    QFETCH(qint64, id);
    const auto result = frameIdFromText(text, extended);
    QCOMPARE(result ? qint64(*result) : qint64(-1), id);
}

void tst_CanFrameInput::correctedText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("extended");
    QTest::addColumn<QString>("corrected");
    QTest::newRow("fits") << "7FF" << false << "7FF";
    QTest::newRow("case kept") << "7fe" << false << "7fe";
    QTest::newRow("four digits") << "8000" << false << "7FF";
    QTest::newRow("four digits though small") << "0001" << false << "7FF";
    QTest::newRow("too high") << "800" << false << "7FF";
    QTest::newRow("blanks go") << "1 2 3" << false << "123";
    QTest::newRow("extended fits") << "1FFFFFFF" << true << "1FFFFFFF";
    QTest::newRow("extended too high") << "20000000" << true << "1FFFFFFF";
    QTest::newRow("extended nine digits") << "000000001" << true << "1FFFFFFF";
    QTest::newRow("empty") << "" << true << "";
}

void tst_CanFrameInput::correctedText()
{
    QFETCH(QString, text);
    QFETCH(bool, extended);
    QTEST(correctedFrameIdText(text, extended), "corrected");
}

void tst_CanFrameInput::counts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("count"); // -1: no number
    QTest::addColumn<int>("asInt");
    QTest::newRow("zero") << "0" << qint64(0) << 0;
    QTest::newRow("leading zeros") << "00000000000000000020" << qint64(20) << 20;
    QTest::newRow("highest int") << "2147483647" << qint64(2147483647) << 2147483647;
    QTest::newRow("above an int") << "2147483648" << qint64(2147483648) << 2147483647;
    QTest::newRow("highest") << "4294967295" << qint64(4294967295) << 2147483647;
    QTest::newRow("above the highest") << "4294967296" << qint64(4294967295) << 2147483647;
    QTest::newRow("far above the highest") << "99999999999999999999999" << qint64(4294967295) << 2147483647;
    QTest::newRow("empty") << "" << qint64(-1) << 7;
    QTest::newRow("blanks") << " 1" << qint64(-1) << 7;
    QTest::newRow("sign") << "+1" << qint64(-1) << 7;
    QTest::newRow("negative") << "-1" << qint64(-1) << 7;
    QTest::newRow("far above, and a letter") << "99999999999999999999999x" << qint64(-1) << 7;
    QTest::newRow("hexadecimal") << "0x10" << qint64(-1) << 7;
    QTest::newRow("other digits") << QStringLiteral("\uFF11") << qint64(-1) << 7;
}

void tst_CanFrameInput::counts()
{
    QFETCH(QString, text);
    QFETCH(int, asInt);
    const auto result = countFromText(text);
    QTEST(result ? qint64(*result) : qint64(-1), "count");
    QCOMPARE(intFromText(text, 7), asInt);
}

void tst_CanFrameInput::lengths()
{
    QCOMPARE(payloadLengths(false), (QVector<int>{1, 2, 3, 4, 5, 6, 7, 8}));
    QCOMPARE(payloadLengths(true), (QVector<int>{1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64}));
}

void tst_CanFrameInput::classicFrame()
{
    CanFrameInput input;
    input.id = 0x1ABCDEF0;
    input.extended = true;
    input.remote = true;
    input.data = QByteArray("\x11\x22\x33", 3);
    const VCI_CAN_OBJ frame = toClassicFrame(input);
    QCOMPARE(frame.ID, 0x1ABCDEF0U);
    QCOMPARE(frame.ExternFlag, quint8(1));
    QCOMPARE(frame.RemoteFlag, quint8(1));
    QCOMPARE(frame.SendType, quint8(0));
    QCOMPARE(frame.DataLen, quint8(3));
    QCOMPARE(frame.Data[2], quint8(0x33));
    QCOMPARE(frame.Data[3], quint8(0));

    input.data = QByteArray(12, '\x5A');
    QCOMPARE(toClassicFrame(input).DataLen, quint8(8));
}

void tst_CanFrameInput::fdFrame()
{
    CanFrameInput input;
    input.id = 0x7FF;
    input.remote = true;
    input.protocol = 2;
    input.data = QByteArray(64, '\x5A');
    const VCI_CANFD_OBJ frame = toFdFrame(input);
    QCOMPARE(frame.ID, 0x7FFU);
    QCOMPARE(frame.ExternFlag, quint8(0));
    QCOMPARE(frame.RemoteFlag, quint8(0)); // FD frames are always data frames
    QCOMPARE(frame.FDFlag, quint8(2));
    QCOMPARE(frame.DataLen, quint8(64));
    QCOMPARE(frame.Data[63], quint8(0x5A));

    input.data = QByteArray(70, '\x5A');
    QCOMPARE(toFdFrame(input).DataLen, quint8(64));
}

X9_PLAIN_TEST(tst_CanFrameInput)
#include "tst_CanFrameInput.moc"
