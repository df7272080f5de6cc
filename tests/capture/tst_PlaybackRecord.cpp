#include "capture/CaptureFrames.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

#include <cstring>

namespace {
QByteArray bytesOf(const uchar *bytes, std::size_t size)
{
    return {reinterpret_cast<const char *>(bytes), static_cast<int>(size)};
}

CaptureFrame frame(int length, const QByteArray &data, quint32 protocol = 0)
{
    CaptureFrame result;
    result.idWord = CaptureFrame::toIdWord(0x123, false, false);
    result.attributes = CaptureFrame::toAttributes(length, protocol);
    result.data = data;
    return result;
}
} // namespace

class tst_PlaybackRecord : public QObject
{
    Q_OBJECT

private slots:
    static void payload_data();
    static void payload();
    static void flags_data();
    static void flags();
    static void protocols();
    static void everythingElseIsZero();
};

void tst_PlaybackRecord::payload_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("canLength");
    QTest::addColumn<QByteArray>("canData");
    QTest::addColumn<int>("fdLength");
    QTest::addColumn<QByteArray>("fdData");

    const auto padded = [](const QByteArray &data, int size) {
        return data + QByteArray(size - data.size(), '\0');
    };
    const QByteArray eight = QByteArray::fromHex("1122334455667788");
    const QByteArray sixtyFour(64, '\x5A');
    QTest::newRow("nothing") << 0 << QByteArray() << 0 << padded({}, 8) << 0 << padded({}, 64);
    QTest::newRow("eight") << 8 << eight << 8 << eight << 8 << padded(eight, 64);
    QTest::newRow("length says less than the payload holds") << 2 << eight << 2 << eight << 2 << padded(eight, 64);
    QTest::newRow("length says more than the payload holds")
        << 5 << eight.left(3) << 5 << padded(eight.left(3), 8) << 5 << padded(eight.left(3), 64);
    QTest::newRow("twelve") << 12 << sixtyFour.left(12) << 8 << sixtyFour.left(8) << 12
                            << padded(sixtyFour.left(12), 64);
    QTest::newRow("sixty-four") << 64 << sixtyFour << 8 << sixtyFour.left(8) << 64 << sixtyFour;
    QTest::newRow("a length no frame has") << 255 << eight << 8 << eight << 64 << padded(eight, 64);
}

void tst_PlaybackRecord::payload()
{
    QFETCH(int, length);
    QFETCH(QByteArray, data);
    const VCI_CAN_OBJ can = toCanRecord(frame(length, data));
    QTEST(int(can.DataLen), "canLength");
    QTEST(bytesOf(can.Data, sizeof can.Data), "canData");
    const VCI_CANFD_OBJ fd = toCanFdRecord(frame(length, data));
    QTEST(int(fd.DataLen), "fdLength");
    QTEST(bytesOf(fd.Data, sizeof fd.Data), "fdData");
}

void tst_PlaybackRecord::flags_data()
{
    QTest::addColumn<quint32>("idWord");
    QTest::addColumn<quint32>("id");
    QTest::addColumn<bool>("remote");
    QTest::addColumn<bool>("extended");
    QTest::newRow("standard") << 0x7FFU << 0x7FFU << false << false;
    QTest::newRow("extended") << 0x9FFFFFFFU << 0x1FFFFFFFU << false << true;
    QTest::newRow("remote") << 0x40000001U << 1U << true << false;
    QTest::newRow("both, and the bit that is not used") << 0xE0000001U << 1U << true << true;
}

void tst_PlaybackRecord::flags()
{
    QFETCH(quint32, idWord);
    CaptureFrame source = frame(1, QByteArray(1, 'x'));
    source.idWord = idWord;
    const VCI_CAN_OBJ can = toCanRecord(source);
    const VCI_CANFD_OBJ fd = toCanFdRecord(source);
    QTEST(quint32(can.ID), "id");
    QTEST(quint32(fd.ID), "id");
    QTEST(can.RemoteFlag == 1, "remote");
    QTEST(fd.RemoteFlag == 1, "remote");
    QTEST(can.ExternFlag == 1, "extended");
    QTEST(fd.ExternFlag == 1, "extended");
}

void tst_PlaybackRecord::protocols()
{
    for (quint32 protocol = 0; protocol <= 2; ++protocol) {
        QCOMPARE(quint32(toCanFdRecord(frame(1, QByteArray(1, 'x'), protocol)).FDFlag), protocol);
    }
}

void tst_PlaybackRecord::everythingElseIsZero()
{
    VCI_CAN_OBJ can{};
    can.ID = 0x123;
    can.DataLen = 1;
    can.Data[0] = 'x';
    const VCI_CAN_OBJ canRecord = toCanRecord(frame(1, QByteArray(1, 'x'), 2));
    QCOMPARE(std::memcmp(&canRecord, &can, sizeof can), 0);
    VCI_CANFD_OBJ fd{};
    fd.ID = 0x123;
    fd.FDFlag = 2;
    fd.DataLen = 1;
    fd.Data[0] = 'x';
    const VCI_CANFD_OBJ fdRecord = toCanFdRecord(frame(1, QByteArray(1, 'x'), 2));
    QCOMPARE(std::memcmp(&fdRecord, &fd, sizeof fd), 0);
}

X9_PLAIN_TEST(tst_PlaybackRecord)
#include "tst_PlaybackRecord.moc"
