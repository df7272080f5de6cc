#include "can/GatewayIdList.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {
constexpr quint32 Refused = 0xEEEEEEEE; ///< in the tables: no identifier
constexpr quint8 OtherType = 2;
} // namespace

class tst_GatewayEntry : public QObject
{
    Q_OBJECT

private slots:
    static void word_data();
    static void word();
    static void oddWords_data();
    static void oddWords();
    static void idFromText_data();
    static void idFromText();
    static void idText_data();
    static void idText();
    static void rowNumber_data();
    static void rowNumber();
};

void tst_GatewayEntry::word_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<quint8>("type");
    QTest::addColumn<quint32>("word");
    QTest::newRow("lowest standard") << 0U << GatewayStandard << 0x1U;
    QTest::newRow("lowest extended") << 0U << GatewayExtend << 0x3U;
    QTest::newRow("1 standard") << 1U << GatewayStandard << 0x9U;
    QTest::newRow("1 extended") << 1U << GatewayExtend << 0xBU;
    QTest::newRow("0x123 standard") << 0x123U << GatewayStandard << 0x919U;
    QTest::newRow("0x7FF standard") << 0x7FFU << GatewayStandard << 0x3FF9U;
    QTest::newRow("0x1FFF standard") << 0x1FFFU << GatewayStandard << 0xFFF9U;
    QTest::newRow("0x1FFF extended") << 0x1FFFU << GatewayExtend << 0xFFFBU;
    QTest::newRow("highest extended") << 0x1FFFFFFFU << GatewayExtend << 0xFFFFFFFBU;
}

void tst_GatewayEntry::word()
{
    QFETCH(quint32, id);
    QFETCH(quint8, type);
    QFETCH(quint32, word);
    QCOMPARE(gatewayWord(id, type), word);
    QCOMPARE(gatewayId(word), id);
    QCOMPARE(isGatewayExtend(word), type == GatewayExtend);
}

void tst_GatewayEntry::oddWords_data()
{
    QTest::addColumn<quint32>("word");
    QTest::addColumn<quint32>("id");
    QTest::addColumn<bool>("isExtend");
    QTest::newRow("nothing") << 0U << 0U << false;
    QTest::newRow("everything") << 0xFFFFFFFFU << 0x1FFFFFFFU << true;
    QTest::newRow("bit 0 clear") << 0x918U << 0x123U << false;
    QTest::newRow("bit 0 clear, extended") << 0x91AU << 0x123U << true;
    QTest::newRow("bit 2 set") << 0x91DU << 0x123U << false;
    QTest::newRow("bit 2 set, extended") << 0x91FU << 0x123U << true;
    QTest::newRow("29 bits standard") << 0xFFFFFFF9U << 0x1FFFFFFFU << false;
}

void tst_GatewayEntry::oddWords()
{
    QFETCH(quint32, word);
    QFETCH(quint32, id);
    QFETCH(bool, isExtend);
    QCOMPARE(gatewayId(word), id);
    QCOMPARE(isGatewayExtend(word), isExtend);
}

void tst_GatewayEntry::idFromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint8>("type");
    QTest::addColumn<quint32>("id");
    QTest::newRow("one digit") << "0" << GatewayStandard << 0U;
    QTest::newRow("highest on the bus") << "7FF" << GatewayStandard << 0x7FFU;
    QTest::newRow("above it") << "800" << GatewayStandard << 0x800U;
    QTest::newRow("highest standard") << "1FFF" << GatewayStandard << 0x1FFFU;
    QTest::newRow("too high for standard") << "2000" << GatewayStandard << Refused;
    QTest::newRow("eight digits standard") << "00001FFF" << GatewayStandard << 0x1FFFU;
    QTest::newRow("all digits standard") << "FFFFFFFF" << GatewayStandard << Refused;
    QTest::newRow("too high for standard, extended") << "2000" << GatewayExtend << 0x2000U;
    QTest::newRow("highest extended") << "1FFFFFFF" << GatewayExtend << 0x1FFFFFFFU;
    QTest::newRow("too high for extended") << "20000000" << GatewayExtend << Refused;
    QTest::newRow("all digits extended") << "FFFFFFFF" << GatewayExtend << Refused;
    QTest::newRow("nine digits that would fit") << "000000001" << GatewayStandard << Refused;
    QTest::newRow("nine digits extended") << "01FFFFFFF" << GatewayExtend << Refused;
    QTest::newRow("nine with a blank, eight without") << "1FFF FFFF" << GatewayExtend << 0x1FFFFFFFU;
    QTest::newRow("small letters") << "abcdef" << GatewayExtend << 0xABCDEFU;
    QTest::newRow("blanks between") << "1 2 3" << GatewayStandard << 0x123U;
    QTest::newRow("blanks and tabs around") << " \t12\t " << GatewayStandard << 0x12U;
    QTest::newRow("empty") << "" << GatewayStandard << Refused;
    QTest::newRow("blanks only") << "   " << GatewayStandard << Refused;
    QTest::newRow("prefix") << "0x12" << GatewayStandard << Refused;
    QTest::newRow("sign") << "+12" << GatewayStandard << Refused;
    QTest::newRow("no digits") << "xyz" << GatewayStandard << Refused;
    QTest::newRow("very long") << QString(40, QLatin1Char('1')) << GatewayExtend << Refused;
    QTest::newRow("other type, any number") << "FFFFFFFF" << OtherType << 0xFFFFFFFFU;
    QTest::newRow("other type, nine digits") << "000000001" << OtherType << Refused;
}

void tst_GatewayEntry::idFromText()
{
    QFETCH(QString, text);
    QFETCH(quint8, type);
    QFETCH(quint32, id);
    const std::optional<quint32> result = gatewayIdFromText(text, type);
    QCOMPARE(result.has_value(), id != Refused);
    QCOMPARE(result.value_or(Refused), id);
}

void tst_GatewayEntry::idText_data()
{
    QTest::addColumn<quint32>("word");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0x1U << "0x00000000";
    QTest::newRow("0x7AB") << 0x3D59U << "0x000007AB";
    QTest::newRow("highest") << 0xFFFFFFFBU << "0x1FFFFFFF";
    QTest::newRow("the lowest three bits do not show") << 0x7U << "0x00000000";
}

void tst_GatewayEntry::idText()
{
    QFETCH(quint32, word);
    QFETCH(QString, text);
    QCOMPARE(gatewayIdText(word), text);
}

void tst_GatewayEntry::rowNumber_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("one digit") << 1 << "01";
    QTest::newRow("two digits") << 64 << "64";
    QTest::newRow("three digits") << 100 << "100";
}

void tst_GatewayEntry::rowNumber()
{
    QFETCH(int, number);
    QFETCH(QString, text);
    QCOMPARE(gatewayRowNumber(number), text);
}

X9_PLAIN_TEST(tst_GatewayEntry)
#include "tst_GatewayEntry.moc"
