#include "adapter/socketcan/SocketPort.h"
#include "tests/socketcan/CanTestFrames.h"
#include "tests/support/TestProgram.h"

#include <linux/can.h>
#include <sys/socket.h>

#include <QtTest>

#include <cerrno>

using socketcan::Batch;
using socketcan::FileDescriptor;
using socketcan::SocketPort;

namespace {

struct Pair
{
    Pair()
    {
        std::array<int, 2> ends{};
        socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, ends.data());
        near = std::make_unique<SocketPort>(FileDescriptor(ends[0]));
        farEnd = FileDescriptor(ends[1]);
    }

    std::unique_ptr<SocketPort> near;
    FileDescriptor farEnd;
    const std::unique_ptr<Batch> batch = std::make_unique<Batch>();
};

/// A frame's bytes as the kernel's headers lay them out.
QByteArray kernelBytes(std::uint32_t id, std::uint8_t length, std::uint8_t flags, const QByteArray &data, int size)
{
    QByteArray bytes(size, '\0');
    std::memcpy(bytes.data(), &id, sizeof id);
    bytes[4] = static_cast<char>(length);
    bytes[5] = static_cast<char>(flags);
    return bytes.replace(8, data.size(), data);
}

} // namespace

class tst_SocketPort : public QObject
{
    Q_OBJECT

private slots:
    static void bothWays_data();
    static void bothWays();
    static void reportsOfErrors();
    static void oddDatagrams();
    static void emptyAndFull();
    static void manyInOrder();
    static void lengthsOnTheBus();
    static void gone();
};

void tst_SocketPort::bothWays_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *frame, std::uint32_t id, std::uint8_t length, std::uint8_t flags, const char *data,
                        int size) {
        QTest::newRow(frame) << QByteArray(frame) << kernelBytes(id, length, flags, QByteArray::fromHex(data), size);
    };
    row("123#", 0x123, 0, 0, "", CAN_MTU);
    row("7FF#1122334455667788", 0x7FF, 8, 0, "1122334455667788", CAN_MTU);
    row("00000123#11", 0x80000123, 1, 0, "11", CAN_MTU);
    row("1FFFFFFF#1122", 0x9FFFFFFF, 2, 0, "1122", CAN_MTU);
    row("123#R0", 0x40000123, 0, 0, "", CAN_MTU);
    row("12345678#R5", 0xD2345678, 5, 0, "", CAN_MTU);
    row("123##0", 0x123, 0, 0, "", CANFD_MTU);
    row("123##011223344", 0x123, 4, 0, "11223344", CANFD_MTU);
    row("12345678##1112233445566778899AABBCC", 0x92345678, 12, CANFD_BRS, "112233445566778899AABBCC", CANFD_MTU);
}

void tst_SocketPort::bothWays()
{
    QFETCH(QByteArray, frame);
    QFETCH(QByteArray, bytes);
    const Pair pair;
    QCOMPARE(pair.near->write(frameOf(frame)), 0);
    QByteArray sent(100, '?');
    sent.resize(static_cast<int>(recv(pair.farEnd.get(), sent.data(), 100, MSG_DONTWAIT)));
    QCOMPARE(sent.toHex(), bytes.toHex());

    QVERIFY(send(pair.farEnd.get(), bytes.constData(), static_cast<std::size_t>(bytes.size()), 0) == bytes.size());
    QCOMPARE(pair.near->read(*pair.batch), 0);
    QCOMPARE(pair.batch->size, std::size_t{1});
    const socketcan::Arrival &arrival = pair.batch->arrivals.front();
    QVERIFY(!arrival.isError && !arrival.isOwn);
    QCOMPARE(textOf(arrival.frame), frame);
}

void tst_SocketPort::reportsOfErrors()
{
    const Pair pair;
    const QByteArray bytes = kernelBytes(0x20000044, 8, 0, QByteArray::fromHex("0001"), CAN_MTU);
    send(pair.farEnd.get(), bytes.constData(), CAN_MTU, 0);
    QCOMPARE(pair.near->read(*pair.batch), 0);
    QVERIFY(pair.batch->arrivals.front().isError);
    QCOMPARE(pair.batch->arrivals.front().frame.id, 0x44U);
    QCOMPARE(int(pair.batch->arrivals.front().frame.data[1]), 1);
}

/// Of another size than a frame: left out, those around them stay. A length that the frame cannot have is cut.
void tst_SocketPort::oddDatagrams()
{
    const Pair pair;
    for (const int size : {15, int{CAN_MTU}, 17, 71, int{CANFD_MTU}}) {
        const QByteArray bytes = kernelBytes(0x100U + static_cast<unsigned>(size), 255, 0, {}, size);
        send(pair.farEnd.get(), bytes.constData(), static_cast<std::size_t>(size), 0);
    }
    QCOMPARE(pair.near->read(*pair.batch), 0);
    QCOMPARE(pair.batch->size, std::size_t{2});
    QCOMPARE(pair.batch->arrivals[0].frame.id, 0x100U + CAN_MTU);
    QCOMPARE(int(pair.batch->arrivals[0].frame.length), 8);
    QCOMPARE(pair.batch->arrivals[1].frame.id, 0x100U + CANFD_MTU);
    QCOMPARE(int(pair.batch->arrivals[1].frame.length), 64);
}

void tst_SocketPort::emptyAndFull()
{
    const Pair pair;
    QCOMPARE(pair.near->read(*pair.batch), EAGAIN);
    int error = 0;
    int sent = 0;
    for (; error == 0 && sent < 1000000; ++sent) {
        error = pair.near->write(frameOf("123#11"));
    }
    QCOMPARE(error, EAGAIN);
    QVERIFY(sent > 1);
}

void tst_SocketPort::manyInOrder()
{
    const Pair pair;
    SocketPort far{FileDescriptor(dup(pair.farEnd.get()))};
    std::uint32_t sent = 0;
    std::uint32_t received = 0;
    while (received < 5000) {
        for (int error = 0; sent < 5000 && error == 0;) {
            va::CanFrame frame;
            frame.extended = true;
            frame.id = sent;
            error = far.write(frame);
            sent += error == 0 ? 1U : 0U;
        }
        QCOMPARE(pair.near->read(*pair.batch), 0);
        for (std::size_t i = 0; i < pair.batch->size; ++i) {
            QCOMPARE(pair.batch->arrivals[i].frame.id, received++);
        }
    }
}

void tst_SocketPort::lengthsOnTheBus()
{
    const QVector<int> valid{0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64};
    for (int length = 0; length <= 64; ++length) {
        const int wanted = *std::lower_bound(valid.begin(), valid.end(), length);
        QCOMPARE(int(socketcan::busLength(static_cast<std::uint8_t>(length))), wanted);
    }
    const Pair pair;
    va::CanFrame frame = frameOf("123##0112233445566778899");
    QCOMPARE(pair.near->write(frame), 0);
    QByteArray sent(CANFD_MTU, '?');
    QCOMPARE(int(recv(pair.farEnd.get(), sent.data(), CANFD_MTU, MSG_DONTWAIT)), int(CANFD_MTU));
    QCOMPARE(int(sent.at(4)), 12);
    QCOMPARE(sent.mid(8, 12).toHex(), QByteArray("112233445566778899000000")); // filled with zeros
}

void tst_SocketPort::gone()
{
    SocketPort closed{FileDescriptor()};
    Batch batch;
    QCOMPARE(closed.read(batch), EBADF);
    QCOMPARE(closed.write(frameOf("123#")), EBADF);
}

X9_PLAIN_TEST(tst_SocketPort)
#include "tst_SocketPort.moc"
