#include "exchange/BusLoad.h"

#include "tests/support/TestProgram.h"

#include <QtTest>

#include <random>

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
    static void leastAndMost_data();
    static void leastAndMost();
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

void tst_BusLoad::leastAndMost_data()
{
    QTest::addColumn<unsigned>("flags");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("least"); // bits, without a stuff bit
    QTest::addColumn<int>("most");  // with a stuff bit for the first 5, then for each 4
    const auto row = [](const char *name, unsigned flags, int length, int least, int most) {
        QTest::newRow(name) << flags << length << least << most;
    };
    // The lengths that are known of classic frames: 47 + 8 n and 67 + 8 n bits, at most 135 and 160 with 8 bytes.
    row("empty", 0, 0, 47, 55);
    row("8 bytes", 0, 8, 111, 135);
    row("extended", BusFrame::Extended, 8, 131, 160);
    row("remote", BusFrame::Remote, 8, 47, 55);
    row("FD without switch", BusFrame::Fd, 8, 30 + 69 + 27, 30 + 69 + 27 + 21);
    row("FD", BusFrame::Fd | BusFrame::BitRateSwitch, 16, 30 + 133 + 27, 30 + 133 + 27 + 37);
    row("FD, long", BusFrame::Fd | BusFrame::BitRateSwitch, 64, 30 + 517 + 32, 30 + 517 + 32 + 133);
    row("FD, extended", BusFrame::Fd | BusFrame::Extended | BusFrame::BitRateSwitch, 64, 49 + 517 + 32,
        49 + 8 + 517 + 129 + 32);
}

void tst_BusLoad::leastAndMost()
{
    QFETCH(unsigned, flags);
    QFETCH(int, length);
    QFETCH(int, least);
    QFETCH(int, most);
    std::mt19937 random(1);
    int sum = 0;
    constexpr int Frames = 2000;
    for (int i = 0; i < Frames; ++i) {
        QByteArray data(length, '\0');
        std::generate(data.begin(), data.end(), [&random] { return static_cast<char>(random()); });
        const quint32 mask = (flags & BusFrame::Extended) != 0 ? 0x1FFFFFFFU : 0x7FFU;
        const BusLoad::Bits bits = BusLoad::canBits(frame(static_cast<quint32>(random()) & mask, data, flags));
        QVERIFY(bits.nominal + bits.data >= least);
        QVERIFY(bits.nominal + bits.data <= most);
        sum += bits.nominal + bits.data - least;
    }
    // Of random bits one in 31 is stuffed; the fixed ones of the shortest frames have more zeros.
    const double stuffed = static_cast<double>(sum) / Frames;
    const double expected = (least - 13) / 31.0;
    QVERIFY2(stuffed > 0.6 * expected && stuffed < 2.5 * expected, qPrintable(QString::number(stuffed / expected)));
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
