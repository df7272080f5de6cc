#include "exchange/ByteInput.h"
#include "tests/support/TestProgram.h"

#include <QBuffer>
#include <QtTest>

class tst_ByteInput : public QObject
{
    Q_OBJECT

private slots:
    static void lines();
    static void cutsLongLines();
    static void leavesAnUnfinishedLineWhileGrowing();
    static void countsWhatIsPassed();
};

void tst_ByteInput::lines()
{
    QBuffer buffer;
    buffer.setData("one\r\ntwo\n\nlast");
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    ByteInput in(buffer);
    QCOMPARE(in.line().value_or("-"), std::string_view("one"));
    QCOMPARE(in.line().value_or("-"), std::string_view("two"));
    QCOMPARE(in.line().value_or("-"), std::string_view(""));
    QCOMPARE(in.line().value_or("-"), std::string_view("last"));
    QCOMPARE(in.lineNumber(), 4);
    QVERIFY(!in.line());
    QVERIFY(!in.isBroken());
}

void tst_ByteInput::cutsLongLines()
{
    QBuffer buffer;
    buffer.setData(QByteArray(3 * ByteInput::MaxAtHand, 'x') + "\nnext\n");
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    ByteInput in(buffer);
    const std::size_t size = in.line().value_or("").size();
    QVERIFY(size >= ByteInput::MaxAtHand && size <= ByteInput::MaxAtHand + ByteInput::PieceSize);
    QVERIFY(in.isCut());
    QCOMPARE(in.line().value_or("-"), std::string_view("next"));
    QVERIFY(!in.isCut());
}

void tst_ByteInput::leavesAnUnfinishedLineWhileGrowing()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::ReadWrite));
    ByteInput in(buffer);
    in.setGrowing(true);
    buffer.buffer().append("first\nsec");
    QCOMPARE(in.line().value_or("-"), std::string_view("first"));
    QVERIFY(!in.line());
    buffer.buffer().append("ond\nend");
    QCOMPARE(in.line().value_or("-"), std::string_view("second"));
    QVERIFY(!in.line());
    in.setGrowing(false);
    QCOMPARE(in.line().value_or("-"), std::string_view("end"));
}

void tst_ByteInput::countsWhatIsPassed()
{
    QBuffer buffer;
    buffer.setData(QByteArray(1000000, 'x') + "end");
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    ByteInput in(buffer);
    QVERIFY(in.pass(1000000));
    QCOMPARE(in.offset(), 1000000);
    QVERIFY(in.need(3));
    QCOMPARE(in.window(), std::string_view("end"));
    QVERIFY(!in.need(4));
    QVERIFY(!in.pass(4));
    QCOMPARE(in.offset(), 1000003);
}

X9_CORE_TEST(tst_ByteInput)
#include "tst_ByteInput.moc"
