#include "adapter/socketcan/LinkMessages.h"
#include "tests/support/TestProgram.h"

#include <linux/can/netlink.h>

#include <QtTest>

using socketcan::Bytes;

namespace {

/// Hexadecimal digits with blanks, as dumps are written; the machine is a little-endian one.
Bytes bytes(const QByteArray &digits)
{
    const QByteArray raw = QByteArray::fromHex(digits);
    return {raw.begin(), raw.end()};
}

QByteArray hex(const Bytes &raw)
{
    return QByteArray(reinterpret_cast<const char *>(raw.data()), static_cast<int>(raw.size())).toHex();
}

QByteArray plain(QByteArray digits)
{
    return digits.replace(' ', "");
}

/// A controller with CAN FD: can0, index 3, up, 500 kbit/s and 2 Mbit/s, FD on, restart after 100 ms. Attributes
/// between those of interest are left as the kernel sends them.
const char *const Controller = "90000000 1000 0000 01000000 00000000" // RTM_NEWLINK
                               "0000 1801 03000000 c1000100 00000000" // ARPHRD_CAN, index 3, up and running
                               "0900 0300 63616e30 00000000"          // IFLA_IFNAME can0
                               "0800 0400 48000000"                   // IFLA_MTU 72
                               "5c00 1200"                            // IFLA_LINKINFO
                               "0800 0100 63616e00"                   // kind can
                               "5000 0200"                            // data
                               "2400 0100 20a10700 6b030000 19000000 22000000 22000000 0a000000 05000000 01000000"
                               "0c00 0500 00000000 20000000"                    // CTRLMODE: FD
                               "0800 0600 64000000"                             // RESTART_MS 100
                               "1400 0900 80841e00 00000000 00000000 00000000"; // cut short: no data timing
} // namespace

class tst_LinkMessages : public QObject
{
    Q_OBJECT

private slots:
    static void requests_data();
    static void requests();
    static void controller();
    static void virtualInterface();
    static void othersAreLeftOut_data();
    static void othersAreLeftOut();
    static void cutAnywhere();
    static void datagrams();
};

void tst_LinkMessages::requests_data()
{
    QTest::addColumn<QByteArray>("made");
    QTest::addColumn<QByteArray>("wanted");
    socketcan::Link link;
    link.index = 3;
    link.kind = "can";
    link.modes = CAN_CTRLMODE_LISTENONLY;
    QTest::newRow("all interfaces") << hex(socketcan::linksRequest())
                                    << plain("20000000 1200 0103 00000000 00000000"
                                             "0000 0000 00000000 00000000 00000000");
    QTest::newRow("up") << hex(socketcan::upRequest(3, true))
                        << plain("20000000 1000 0500 00000000 00000000"
                                 "0000 0000 03000000 01000000 01000000");
    QTest::newRow("down") << hex(socketcan::upRequest(3, false))
                          << plain("20000000 1000 0500 00000000 00000000"
                                   "0000 0000 03000000 00000000 01000000");
    QTest::newRow("mtu") << hex(socketcan::mtuRequest(4, 72))
                         << plain("28000000 1000 0500 00000000 00000000"
                                  "0000 0000 04000000 00000000 00000000 0800 0400 48000000");
    const QByteArray timing = "2400 0100 20a10700 6b030000 00000000 00000000 00000000 00000000 00000000 00000000";
    QTest::newRow("classic, no longer listen only")
        << hex(socketcan::settingsRequest(link, {500000, 875, 0, false}))
        << plain("68000000 1000 0500 00000000 00000000 0000 0000 03000000 00000000 00000000"
                 "4800 1200 0800 0100 63616e00 3c00 0200" +
                 timing + "0c00 0500 02000000 00000000 0800 0600 64000000");
    const QByteArray dataTiming = "2400 0900 80841e00 00000000 00000000 00000000 00000000 00000000 00000000 00000000";
    QTest::newRow("CAN FD, listen only")
        << hex(socketcan::settingsRequest(link, {500000, 875, 2000000, true}))
        << plain("8c000000 1000 0500 00000000 00000000 0000 0000 03000000 00000000 00000000"
                 "6c00 1200 0800 0100 63616e00 6000 0200" +
                 timing + dataTiming + "0c00 0500 22000000 22000000 0800 0600 64000000");
    QTest::newRow("restart") << hex(socketcan::restartRequest(link))
                             << plain("38000000 1000 0500 00000000 00000000"
                                      "0000 0000 03000000 00000000 00000000"
                                      "1800 1200 0800 0100 63616e00 0c00 0200 0800 0700 01000000");
}

void tst_LinkMessages::requests()
{
    QFETCH(QByteArray, made);
    QTEST(made, "wanted");
}

void tst_LinkMessages::controller()
{
    const auto link = socketcan::parseLink(bytes(Controller));
    QVERIFY(link.has_value());
    QCOMPARE(link->index, 3);
    QCOMPARE(link->name, std::string("can0"));
    QCOMPARE(link->kind, std::string("can"));
    QVERIFY(link->isUp && link->hasFdMtu && link->hasBitTiming && link->canFd);
    QCOMPARE(link->bitrate, 500000U);
    QCOMPARE(link->dataBitrate, 0U); // the attribute is cut short
    QCOMPARE(link->modes, unsigned{CAN_CTRLMODE_FD});
    QCOMPARE(link->restartMs, 100U);
}

/// As Linux 6.1 sent it, without the attributes behind.
void tst_LinkMessages::virtualInterface()
{
    const auto link = socketcan::parseLink(bytes("44000000 1000 0200 01000000 00000000"
                                                 "0000 1801 02000000 80000000 00000000"
                                                 "0a00 0300 7663616e 30000000"
                                                 "0800 0400 10000000"
                                                 "1000 1200 0900 0100 7663616e 00000000"));
    QVERIFY(link.has_value());
    QCOMPARE(link->name, std::string("vcan0"));
    QCOMPARE(link->kind, std::string("vcan"));
    QVERIFY(!link->isUp && !link->hasFdMtu && !link->hasBitTiming);
    QVERIFY(link->canFd);
}

void tst_LinkMessages::othersAreLeftOut_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("an Ethernet interface") << QByteArray("30000000 1000 0200 01000000 00000000"
                                                         "0000 0100 02000000 01000000 00000000"
                                                         "0900 0300 65746830 00000000");
    QTest::newRow("an interface that goes") << QByteArray("30000000 1100 0200 01000000 00000000"
                                                          "0000 1801 02000000 01000000 00000000"
                                                          "0900 0300 63616e30 00000000");
    QTest::newRow("a name that leads out of the message") << QByteArray("2c000000 1000 0200 01000000 00000000"
                                                                        "0000 1801 02000000 01000000 00000000"
                                                                        "ff00 0300 63616e30 00000000");
    QTest::newRow("no name") << QByteArray("20000000 1000 0200 01000000 00000000"
                                           "0000 1801 02000000 01000000 00000000");
}

void tst_LinkMessages::othersAreLeftOut()
{
    QFETCH(QByteArray, message);
    QVERIFY(!socketcan::parseLink(bytes(message)).has_value());
}

/// Neither a cut message nor lengths that lead out of it are read beyond their end; the sanitizers watch.
void tst_LinkMessages::cutAnywhere()
{
    const Bytes whole = bytes(Controller);
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        socketcan::parseLink(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    }
    for (std::size_t at = 16; at < whole.size(); ++at) {
        for (const unsigned byte : {0U, 1U, 3U, 0x7FU, 0xFFU}) {
            Bytes spoilt = whole;
            spoilt[at] = static_cast<std::uint8_t>(byte);
            socketcan::parseLink(spoilt);
        }
    }
}

void tst_LinkMessages::datagrams()
{
    const Bytes two = bytes("14000000 1000 0200 07000000 00000000 aabbccdd"
                            "14000000 1000 0200 08000000 00000000 aabbccdd" // of another request
                            "14000000 1000 0200 07000000 00000000 11223344");
    socketcan::Answer answer;
    addDatagram(answer, two.data(), two.size(), 7);
    QCOMPARE(answer.messages.size(), std::size_t{2});
    QVERIFY(!answer.isComplete);
    const Bytes done = bytes("14000000 0300 0200 07000000 00000000 00000000");
    addDatagram(answer, done.data(), done.size(), 7);
    QVERIFY(answer.isComplete);
    QCOMPARE(answer.error, 0);
    const Bytes refused = bytes("24000000 0200 0000 07000000 00000000 ffffffff"
                                "20000000 1000 0500 07000000 00000000");
    socketcan::Answer other;
    addDatagram(other, refused.data(), refused.size(), 7);
    QVERIFY(other.isComplete);
    QCOMPARE(other.error, EPERM);
    const Bytes endless = bytes("00000000 1000 0200 07000000 00000000");
    addDatagram(answer, endless.data(), endless.size(), 7);
    QCOMPARE(answer.messages.size(), std::size_t{2});
}

X9_PLAIN_TEST(tst_LinkMessages)
#include "tst_LinkMessages.moc"
