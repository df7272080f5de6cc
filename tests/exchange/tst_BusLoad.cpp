#include "exchange/BusLoad.h"

#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {

BusFrame frame(quint32 identifier, const QByteArray &data, unsigned flags = 0)
{
    BusFrame made;
    made.identifier = identifier;
    made.flags = static_cast<quint16>(flags);
    made.length = static_cast<quint8>(data.size());
    std::copy(data.begin(), data.end(), made.data.begin());
    return made;
}

} // namespace

Q_DECLARE_METATYPE(BusFrame)

class tst_BusLoad : public QObject
{
    Q_OBJECT

private slots:
    static void bits_data();
    static void bits();
    static void times();
};

void tst_BusLoad::bits_data()
{
    QTest::addColumn<BusFrame>("sent");
    QTest::addColumn<int>("nominal");
    QTest::addColumn<int>("data");
    const QByteArray counting = QByteArray::fromHex("0102030405060708");
    constexpr unsigned FdBrs = BusFrame::Fd | BusFrame::BitRateSwitch;
    QTest::newRow("eight bytes") << frame(0x123, counting) << 119 << 0;
    QTest::newRow("zeros, a stuff bit in each five") << frame(0, QByteArray(8, '\0')) << 127 << 0;
    QTest::newRow("nothing to stuff") << frame(0x2AA, QByteArray(8, '\x55')) << 111 << 0;
    QTest::newRow("extended") << frame(0x18DAF110, QByteArray(8, '\xFF'), BusFrame::Extended) << 146 << 0;
    QTest::newRow("remote") << frame(0x7FF, {}, BusFrame::Remote) << 50 << 0;
    QTest::newRow("empty") << frame(0x7FF, {}) << 50 << 0;
    QTest::newRow("FD, 8 bytes, switched") << frame(0x123, counting, FdBrs) << 29 << 105;
    QTest::newRow("FD, 64 zeros, switched") << frame(0, QByteArray(64, '\0'), FdBrs) << 31 << 652;
    QTest::newRow("FD, 12 bytes, not switched")
        << frame(0x7FF, QByteArray::fromHex("000102030405060708090A0B"), BusFrame::Fd) << 171 << 0;
    QTest::newRow("FD, empty") << frame(0x123, {}, FdBrs) << 29 << 33;
}

void tst_BusLoad::bits()
{
    QFETCH(BusFrame, sent);
    QFETCH(int, nominal);
    QFETCH(int, data);
    const BusLoad::Bits bits = BusLoad::canBits(sent);
    QCOMPARE(bits.nominal, nominal);
    QCOMPARE(bits.data, data);
}

void tst_BusLoad::times()
{
    const BusLoad load({500000, 2000000, 19200});
    QCOMPARE(load.busy(frame(0x2AA, QByteArray(8, '\x55'))), qint64{222000});
    QCOMPARE(load.busy(frame(0x123, {}, BusFrame::Fd | BusFrame::BitRateSwitch)), qint64{58000 + 16500});
    BusFrame refused = frame(0x123, {});
    refused.direction = BusFrame::Refused;
    QCOMPARE(load.busy(refused), qint64{0});
    QCOMPARE(load.busy(frame(4, {}, BusFrame::Error)), qint64{0});
    QCOMPARE(BusLoad::linBits(frame(1, QByteArray(8, 'x'), BusFrame::Lin)), 124);
    QCOMPARE(load.busy(frame(1, {}, BusFrame::Lin)), qint64{34} * 1000000000 / 19200);
}

X9_PLAIN_TEST(tst_BusLoad)
#include "tst_BusLoad.moc"
