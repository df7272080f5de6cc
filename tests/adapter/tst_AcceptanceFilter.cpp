#include "adapter/AcceptanceFilter.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

using va::AcceptanceFilter;
using va::CanFrame;

namespace {

CanFrame frame(std::uint32_t id, bool extended, bool remote, const QByteArray &data)
{
    CanFrame result;
    result.id = id;
    result.extended = extended;
    result.remote = remote;
    result.length = static_cast<std::uint8_t>(data.size());
    std::copy(data.begin(), data.end(), result.data.begin());
    return result;
}

} // namespace

class tst_AcceptanceFilter : public QObject
{
    Q_OBJECT

private slots:
    static void accepts_data();
    static void accepts();
    static void identifierAloneIgnoresTheData();
};

void tst_AcceptanceFilter::accepts_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<quint32>("mask");
    QTest::addColumn<quint32>("id");
    QTest::addColumn<bool>("extended");
    QTest::addColumn<bool>("remote");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<bool>("accepted");
    const QByteArray none;
    const auto hex = [](const char *text) {
        return QByteArray::fromHex(text);
    };

    QTest::newRow("all don't care") << 0U << 0xFFFFFFFFU << 0x7FFU << false << true << none << true;
    QTest::newRow("all compared, all zero") << 0U << 0U << 0U << false << false << hex("0000") << true;

    // standard: identifier in bits 31..21
    QTest::newRow("std id equal") << 0x123U * 0x200000U << 0x001FFFFFU << 0x123U << false << false << none << true;
    QTest::newRow("std id low bit") << 0x123U * 0x200000U << 0x001FFFFFU << 0x122U << false << false << none << false;
    QTest::newRow("std id high bit") << 0x123U * 0x200000U << 0x001FFFFFU << 0x523U << false << false << none << false;
    QTest::newRow("std id low bit masked")
        << 0x123U * 0x200000U << 0x003FFFFFU << 0x122U << false << false << none << true;
    QTest::newRow("std top bit alone set") << 0x80000000U << 0x7FFFFFFFU << 0x400U << false << false << none << true;
    QTest::newRow("std top bit alone clear") << 0x80000000U << 0x7FFFFFFFU << 0x3FFU << false << false << none << false;
    // standard: remote bit 20
    QTest::newRow("std remote wanted") << 0x00100000U << 0xFFEFFFFFU << 0x55U << false << true << none << true;
    QTest::newRow("std remote wanted, data") << 0x00100000U << 0xFFEFFFFFU << 0x55U << false << false << none << false;
    QTest::newRow("std data wanted, remote") << 0U << 0xFFEFFFFFU << 0x55U << false << true << none << false;
    // standard: bits 19..16 are not used
    QTest::newRow("std unused bits") << 0x000F0000U << 0xFFF0FFFFU << 0x55U << false << false << none << true;
    // standard: data bytes in bits 15..8 and 7..0
    QTest::newRow("first byte equal") << 0x0000AB00U << 0xFFFF00FFU << 1U << false << false << hex("AB") << true;
    QTest::newRow("first byte other") << 0x0000AB00U << 0xFFFF00FFU << 1U << false << false << hex("AA") << false;
    QTest::newRow("first byte absent") << 0x0000AB00U << 0xFFFF00FFU << 1U << false << false << none << true;
    QTest::newRow("second byte equal") << 0x000000CDU << 0xFFFFFF00U << 1U << false << false << hex("00CD") << true;
    QTest::newRow("second byte other") << 0x000000CDU << 0xFFFFFF00U << 1U << false << false << hex("CD00") << false;
    QTest::newRow("second byte absent") << 0x000000CDU << 0xFFFFFF00U << 1U << false << false << hex("CC") << true;
    QTest::newRow("third byte never") << 0x0000ABCDU << 0xFFFF0000U << 1U << false << false << hex("ABCDEF") << true;
    QTest::newRow("remote has no bytes") << 0x0010ABCDU << 0xFFEF0000U << 1U << false << true << hex("1122") << true;

    // extended: identifier in bits 31..3, remote bit 2, bits 1..0 not used
    QTest::newRow("ext id equal") << 0x1ABCDEFFU * 8U << 0x00000007U << 0x1ABCDEFFU << true << false << none << true;
    QTest::newRow("ext id low bit") << 0x1ABCDEFFU * 8U << 0x00000007U << 0x1ABCDEFEU << true << false << none << false;
    QTest::newRow("ext id top bit") << 0x1ABCDEFFU * 8U << 0x00000007U << 0x0ABCDEFFU << true << false << none << false;
    QTest::newRow("ext masked bit") << 0x1ABCDEFFU * 8U << 0x0000000FU << 0x1ABCDEFEU << true << false << none << true;
    QTest::newRow("ext remote wanted") << 4U << 0xFFFFFFFBU << 0x77U << true << true << none << true;
    QTest::newRow("ext data wanted") << 0U << 0xFFFFFFFBU << 0x77U << true << true << none << false;
    QTest::newRow("ext unused bits") << 3U << 0xFFFFFFFCU << 0x77U << true << false << none << true;
    QTest::newRow("ext ignores data") << 0x77U * 8U << 0U << 0x77U << true << false << hex("FFFF") << true;
}

void tst_AcceptanceFilter::accepts()
{
    QFETCH(quint32, code);
    QFETCH(quint32, mask);
    QFETCH(quint32, id);
    QFETCH(bool, extended);
    QFETCH(bool, remote);
    QFETCH(QByteArray, data);
    const AcceptanceFilter filter{code, mask};
    QTEST(filter.accepts(frame(id, extended, remote, data)), "accepted");
    QCOMPARE(filter.acceptsEverything(), mask == 0xFFFFFFFFU);
}

void tst_AcceptanceFilter::identifierAloneIgnoresTheData()
{
    const AcceptanceFilter filter{0x123U * 0x200000U | 0xABCDU, 0x000F0000U};
    QVERIFY(!filter.accepts(frame(0x123, false, false, QByteArray::fromHex("0000"))));
    QVERIFY(filter.acceptsIdentifier(frame(0x123, false, false, QByteArray::fromHex("0000"))));
    QVERIFY(!filter.acceptsIdentifier(frame(0x122, false, false, QByteArray::fromHex("ABCD"))));
    QVERIFY(!filter.acceptsIdentifier(frame(0x123, false, true, {})));
}

X9_PLAIN_TEST(tst_AcceptanceFilter)
#include "tst_AcceptanceFilter.moc"
