#include "exchange/FindingTexts.h"
#include "exchange/PcapngTime.h"
#include "tests/exchange/ExchangeTestData.h"
#include "tests/support/TestProgram.h"

#include <QtEndian>

#include <initializer_list>

using namespace ExchangeTestData;

/// pcap and pcapng: both orders of bytes, clocks of any kind, link types, interfaces, damage.
class tst_PcapFormat : public QObject
{
    Q_OBJECT

private slots:
    static void clocks_data();
    static void clocks();
    static void packets_data();
    static void packets();
    static void pcapOfEachSort_data();
    static void pcapOfEachSort();
    static void pcapngInEachOrder_data();
    static void pcapngInEachOrder();
    static void olderBlocks();
    static void sectionsHaveTheirOwnInterfaces();
    static void damagedBlockIsPassedOver();
    static void hugeClaims();
    static void manyInterfaces();
};

namespace {

/// Numbers in the order of bytes of a file.
class Bytes
{
public:
    explicit Bytes(bool isBig)
        : m_isBig(isBig)
    {
    }

    template<typename Number>
    Bytes &add(Number number)
    {
        const Number bytes = m_isBig ? qToBigEndian(number) : qToLittleEndian(number);
        m_bytes.append(reinterpret_cast<const char *>(&bytes), sizeof bytes);
        return *this;
    }
    Bytes &add(const QByteArray &bytes)
    {
        m_bytes.append(bytes);
        return *this;
    }
    Bytes &padded(const QByteArray &bytes) { return add(bytes).add(QByteArray((4 - bytes.size() % 4) % 4, '\0')); }
    QByteArray block(quint32 type) const
    {
        const auto size = static_cast<quint32>(m_bytes.size() + 12);
        return Bytes(m_isBig).add(type).add(size).add(m_bytes).add(size).m_bytes;
    }
    const QByteArray &bytes() const { return m_bytes; }

private:
    bool m_isBig;
    QByteArray m_bytes;
};

QByteArray section(bool isBig)
{
    return Bytes(isBig).add<quint32>(0x1A2B3C4D).add<quint16>(1).add<quint16>(0).add<qint64>(-1).block(0x0A0D0D0A);
}

QByteArray option(bool isBig, quint16 code, const QByteArray &value)
{
    return Bytes(isBig).add(code).add(static_cast<quint16>(value.size())).padded(value).bytes();
}

QByteArray interface(bool isBig, quint16 link, const QByteArray &options = {})
{
    return Bytes(isBig).add(link).add<quint16>(0).add<quint32>(0).add(options).block(1);
}

QByteArray packet(bool isBig, quint32 number, quint64 time, const QByteArray &bytes, const QByteArray &options = {})
{
    const auto size = static_cast<quint32>(bytes.size());
    return Bytes(isBig)
        .add(number)
        .add(static_cast<quint32>(time >> 32U))
        .add(static_cast<quint32>(time))
        .add(size)
        .add(size)
        .padded(bytes)
        .add(options)
        .block(6);
}

const QByteArray Frame1AB = QByteArray::fromHex("000001ab030000000102030000000000");

} // namespace

void tst_PcapFormat::clocks_data()
{
    QTest::addColumn<int>("resolution");
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<quint64>("ticks");
    QTest::addColumn<qint64>("nanoseconds");
    const auto row = [](const char *name, int resolution, qint64 offset, quint64 ticks, qint64 nanoseconds) {
        QTest::newRow(name) << resolution << offset << ticks << nanoseconds;
    };
    constexpr quint64 Most = std::numeric_limits<quint64>::max();
    row("microseconds", 6, 0, 1760000001500001, 1760000001500001000);
    row("nanoseconds", 9, 0, 1760000001500000001, 1760000001500000001);
    row("seconds", 0, 0, 1760000001, 1760000001000000000);
    row("milliseconds, later", 3, 100, 1500, 101500000000);
    row("earlier", 9, -1, 500000000, -500000000);
    row("picoseconds", 12, 0, 1500000000999, 1500000000);
    row("10^-19", 19, 0, 15000000000000000000ULL, 1500000000);
    row("10^-20", 20, 0, 15000000000000000000ULL, 150000000);
    row("10^-127", 127, 0, Most, 0);
    row("2^0", 128, 0, 7, 7000000000);
    row("2^-1", 129, 0, 3, 1500000000);
    row("2^-30", 158, 0, (quint64(3) << 30U) + (1U << 29U), 3500000000);
    row("2^-34", 162, 0, (quint64(3) << 34U) + (quint64(1) << 33U), 3500000000);
    row("2^-40", 168, 0, (quint64(3) << 40U) + (quint64(1) << 39U), 3500000000);
    row("2^-63", 191, 0, Most, 1999999999);
    row("2^-64", 192, 0, quint64(1) << 63U, 500000000);
    row("2^-127", 255, 0, Most, 0);
    row("beyond 2262", 0, 0, 9223372037, BusFrame::NoTime);
    row("far beyond", 6, 0, Most, BusFrame::NoTime);
    row("offset beyond", 6, std::numeric_limits<qint64>::max(), 0, BusFrame::NoTime);
    row("offset before", 6, std::numeric_limits<qint64>::min(), 0, BusFrame::NoTime);
}

void tst_PcapFormat::clocks()
{
    QFETCH(const int, resolution);
    QFETCH(const qint64, offset);
    QFETCH(const quint64, ticks);
    PcapngTime clock;
    clock.resolution = static_cast<quint8>(resolution);
    clock.offset = offset;
    QTEST(clock.nanoseconds(ticks), "nanoseconds");
}

void tst_PcapFormat::packets_data()
{
    QTest::addColumn<int>("link");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("frame"); // empty: none
    const auto row = [](const char *name, int link, const char *bytes, const char *frame) {
        QTest::newRow(name) << link << QByteArray::fromHex(bytes) << QString::fromLatin1(frame);
    };
    row("classic", 227, "000001ab 03000000 0102030000000000", "1/- 0 rx 1AB [3] 010203");
    row("classic, short", 227, "000001ab 03000000 010203", "1/- 0 rx 1AB [3] 010203");
    row("extended", 227, "98daf110 00000000", "1/- 0 rx 18DAF110 ext [0]");
    row("remote", 227, "400001ab 05000000", "1/- 0 rx 1AB remote [5]");
    row("error", 227, "20000088 08000000 0000020000000000", "1/- 0 rx 88 error [8] 0000020000000000");
    row("fd by its flag", 227, "000001ab 02070000 1122", "1/- 0 rx 1AB fd brs esi [2] 1122");
    row("fd by its length", 227, "000001ab 0c000000 0102030405060708090a0b0c",
        "1/- 0 rx 1AB fd [12] 0102030405060708090A0B0C");
    const QByteArray full = "000001ab 01000000 ff" + QByteArray(63 * 2, '0');
    row("fd by its size", 227, full.constData(), "1/- 0 rx 1AB fd [1] FF");
    row("standard identifier with more bits", 227, "000ff1ab 00000000", "1/- 0 rx 1AB [0]");
    row("cut data", 227, "000001ab 03000000 0102", "");
    row("cut header", 227, "000001ab 0300", "");
    row("xl", 227, "000001ab 80000000 0000000000000000", "");
    row("65 bytes", 227, "000001ab 41040000", "");
    row("cooked, sent", 113, "0004 0118 0000 0000000000000000 000c 000001ab 01000000 05", "1/- 0 tx 1AB [1] 05");
    row("cooked, received fd", 113, "0000 0118 0000 0000000000000000 000d 000001ab 01000000 05",
        "1/- 0 rx 1AB fd [1] 05");
    row("cooked, another protocol", 113, "0000 0001 0000 0000000000000000 0800 45000000 01000000 05", "");
    row("cooked, cut", 113, "0000 0118 0000 00", "");
    row("cooked 2, interface 3", 276, "000c 0000 00000003 0118 04 00 0000000000000000 000001ab 01000000 05",
        "1/- 3 tx 1AB [1] 05");
    row("cooked 2, another protocol", 276, "000e 0000 00000003 0118 04 00 0000000000000000 000001ab 01000000 05", "");
    row("another link", 1, "000001ab 03000000 0102030000000000", "");
}

void tst_PcapFormat::packets()
{
    QFETCH(const int, link);
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, frame);
    const QByteArray head = section(false) + interface(false, static_cast<quint16>(link));
    const Reading reading = readBytes(format("pcapng"), head + packet(false, 0, 1, bytes));
    QCOMPARE(described(reading.frames).join(QLatin1Char('|')), frame);
    QCOMPARE(reading.findings.count(FindingTexts::otherEvent()), frame.isEmpty() ? 1 : 0);
}

void tst_PcapFormat::pcapOfEachSort_data()
{
    QTest::addColumn<bool>("isBig");
    QTest::addColumn<quint32>("magic");
    QTest::addColumn<qint64>("time");
    QTest::newRow("little, microseconds") << false << 0xA1B2C3D4U << qint64(4000000000000123000);
    QTest::newRow("big, microseconds") << true << 0xA1B2C3D4U << qint64(4000000000000123000);
    QTest::newRow("little, nanoseconds") << false << 0xA1B23C4DU << qint64(4000000000000000123);
    QTest::newRow("big, nanoseconds") << true << 0xA1B23C4DU << qint64(4000000000000000123);
}

void tst_PcapFormat::pcapOfEachSort()
{
    QFETCH(const bool, isBig);
    QFETCH(const quint32, magic);
    QFETCH(const qint64, time);
    Bytes bytes(isBig);
    bytes.add(magic).add<quint16>(2).add<quint16>(4).add<quint64>(0).add<quint32>(65535).add<quint32>(0x10000000 | 227);
    bytes.add<quint32>(4000000000).add<quint32>(123).add<quint32>(16).add<quint32>(16).add(Frame1AB);
    QVERIFY(recognisedFormat({bytes.bytes().constData(), 64}) == &format("pcap"));
    const Reading reading = readBytes(format("pcap"), bytes.bytes());
    QCOMPARE(reading.frames.size(), std::size_t(1));
    QCOMPARE(reading.frames[0].time, time);
    QCOMPARE(reading.frames[0].identifier, 0x1ABU);
    QCOMPARE(reading.info.timeBase, CaptureInfo::Absolute);
    bytes.add<quint32>(1).add<quint32>(1).add<quint32>(0xFFFFFFFF).add<quint32>(16);
    QCOMPARE(described(readBytes(format("pcap"), bytes.bytes()).findings),
             QStringList(QStringLiteral("Offset 56: ") + FindingTexts::damagedRecord()));
}

void tst_PcapFormat::pcapngInEachOrder_data()
{
    QTest::addColumn<bool>("isBig");
    QTest::newRow("little") << false;
    QTest::newRow("big") << true;
}

void tst_PcapFormat::pcapngInEachOrder()
{
    QFETCH(const bool, isBig);
    const QByteArray options = option(isBig, 2, "vcan1") + option(isBig, 9, QByteArray(1, char(3))) +
                               option(isBig, 14, Bytes(isBig).add<qint64>(1000).bytes()) + option(isBig, 0, {}) +
                               option(isBig, 2, "behind the end");
    const QByteArray sent =
        option(isBig, 1, "a comment") + option(isBig, 2, Bytes(isBig).add<quint32>(0x10 | 2).bytes());
    const QByteArray received = option(isBig, 2, Bytes(isBig).add<quint32>(1).bytes());
    const Reading reading =
        readBytes(format("pcapng"), section(isBig) + interface(isBig, 1) + interface(isBig, 227, options) +
                                        Bytes(isBig).add<quint64>(0).block(5) + packet(isBig, 1, 1500, Frame1AB, sent) +
                                        packet(isBig, 1, 2500, Frame1AB, received) + packet(isBig, 0, 1, Frame1AB));
    QCOMPARE(described(reading.frames), QStringList({QStringLiteral("1001500000/- 1 tx 1AB [3] 010203"),
                                                     QStringLiteral("1002500000/- 1 rx 1AB [3] 010203")}));
    QCOMPARE(reading.info.channelNames.value(1), QStringLiteral("vcan1"));
    QCOMPARE(reading.findings.count(), 1); // the packet of a network
}

/// The packet block of older files and the one without a time.
void tst_PcapFormat::olderBlocks()
{
    const QByteArray old = Bytes(false)
                               .add<quint16>(0)
                               .add<quint16>(7)
                               .add<quint32>(0)
                               .add<quint32>(5)
                               .add<quint32>(16)
                               .add<quint32>(16)
                               .add(Frame1AB)
                               .block(2);
    const QByteArray simple = Bytes(false).add<quint32>(16).add(Frame1AB).block(3);
    const Reading reading = readBytes(format("pcapng"), section(false) + interface(false, 227) + old + simple);
    QCOMPARE(described(reading.frames),
             QStringList({QStringLiteral("5/- 0 rx 1AB [3] 010203"), QStringLiteral("-/- 0 rx 1AB [3] 010203")}));
}

void tst_PcapFormat::sectionsHaveTheirOwnInterfaces()
{
    const auto name = [](bool isBig, const char *text) {
        return option(isBig, 2, text);
    };
    const QByteArray bytes = section(false) + interface(false, 227, name(false, "can0")) +
                             interface(false, 227, name(false, "can1")) + packet(false, 1, 1, Frame1AB) +
                             section(true) + interface(true, 227, name(true, "can1")) + packet(true, 0, 2, Frame1AB) +
                             packet(true, 1, 3, Frame1AB);
    const Reading reading = readBytes(format("pcapng"), bytes);
    QCOMPARE(described(reading.frames),
             QStringList({QStringLiteral("1/- 1 rx 1AB [3] 010203"), QStringLiteral("2/- 1 rx 1AB [3] 010203")}));
    QCOMPARE(reading.findings.count(FindingTexts::damagedRecord()), 1); // of an interface that is not there
}

void tst_PcapFormat::damagedBlockIsPassedOver()
{
    const QByteArray head = section(false) + interface(false, 227);
    const QByteArray one = packet(false, 0, 1, Frame1AB);
    for (const int at : {4, 5, 6, 7, 40, one.size() - 4}) {
        QByteArray damaged = one;
        damaged[at] = static_cast<char>(damaged[at] + 64);
        if (at == 40) {
            damaged.remove(at, 3); // what follows is not where it should be
        }
        const Reading reading = readBytes(format("pcapng"), head + one + damaged + one + one);
        QCOMPARE(reading.frames.size(), std::size_t(3));
        QCOMPARE(described(reading.findings), QStringList(QStringLiteral("Offset %1: ").arg(head.size() + one.size()) +
                                                          FindingTexts::damagedRecord()));
    }
}

/// What blocks and options say of their sizes is not believed.
void tst_PcapFormat::hugeClaims()
{
    const QByteArray head = section(false) + interface(false, 227);
    QByteArray captured = packet(false, 0, 1, Frame1AB);
    qToLittleEndian<quint32>(0xFFFFFFF0, captured.data() + 20);
    QCOMPARE(readBytes(format("pcapng"), head + captured).findings.count(FindingTexts::damagedRecord()), 1);
    const QByteArray lying = Bytes(false).add<quint16>(2).add<quint16>(0xFFFF).add<quint32>(0).bytes();
    QCOMPARE(readBytes(format("pcapng"), head + packet(false, 0, 1, Frame1AB, lying)).frames.size(), std::size_t(1));
    const QByteArray huge = Bytes(false).add<quint32>(6).add<quint32>(0xFFFFFFFC).add<quint32>(0).bytes();
    QCOMPARE(described(readBytes(format("pcapng"), head + huge).findings),
             QStringList(QStringLiteral("Offset %1: ").arg(head.size()) + FindingTexts::cutAtEnd()));
}

void tst_PcapFormat::manyInterfaces()
{
    QByteArray bytes = section(false);
    for (int i = 0; i < 5000; ++i) {
        bytes += interface(false, 227, option(false, 2, "name" + QByteArray::number(i)));
    }
    const Reading reading = readBytes(format("pcapng"), bytes + packet(false, 4095, 1, Frame1AB));
    QCOMPARE(reading.frames.size(), std::size_t(1));
    QCOMPARE(reading.findings.count(), 5000 - 4096);
    QVERIFY(reading.info.channelNames.size() <= 256);
}

X9_CORE_TEST(tst_PcapFormat)
#include "tst_PcapFormat.moc"
