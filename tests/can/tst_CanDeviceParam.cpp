#include "can/CanDeviceParam.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

class tst_CanDeviceParam : public QObject
{
    Q_OBJECT

private slots:
    static void linBaudRate_data();
    static void linBaudRate();
    static void acceptance_data();
    static void acceptance();
    static void oneChannelParamPerChannel();
    static void listenOnly_data();
    static void listenOnly();
    static void fdWithADataRate_data();
    static void fdWithADataRate();
    static void linFields();
    static void noChannels();
};

void tst_CanDeviceParam::linBaudRate_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint16>("rate");
    const auto row = [](const char *text, quint16 rate) {
        QTest::newRow(text) << QString::fromLatin1(text) << rate;
    };
    row("19200", 19200);
    row("4800", 4800);
    row("9600", 9600);
    row("1", 1);
    row("0", 0);
    row("65535", 65535);
    row("65536", 4800);
    row("99999999999999999999999", 4800);
    row("", 4800);
    row(" ", 4800);
    row("abc", 4800);
    row("0x10", 4800);
    row("-1", 4800);
    row("+1", 4800);
    row("19200.5", 4800);
}

void tst_CanDeviceParam::linBaudRate()
{
    QFETCH(QString, text);
    QTEST(linBaudRateFromText(text), "rate");
}

void tst_CanDeviceParam::acceptance_data()
{
    QTest::addColumn<quint32>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << 0U << QStringLiteral("0x00000000");
    QTest::newRow("filled") << 0x24600000U << QStringLiteral("0x24600000");
    QTest::newRow("zeros before") << 0xABCU << QStringLiteral("0x00000ABC");
    QTest::newRow("highest") << 0xFFFFFFFFU << QStringLiteral("0xFFFFFFFF");
}

void tst_CanDeviceParam::acceptance()
{
    QFETCH(quint32, value);
    QTEST(acceptanceText(value), "text");
}

void tst_CanDeviceParam::oneChannelParamPerChannel()
{
    CanDeviceParam param;
    param.operatingMode = 1;
    param.filterMode = 1;
    param.timing0 = 0x03;
    param.timing1 = 0x1C;
    param.accCode = 0x12345678;
    param.accMask = 0x9ABCDEF0;
    param.dataRateCANFD = 4;
    param.device = 5;
    param.channels = {1, 0};
    const QVector<ChannelParam> channels = channelParams(param);
    QCOMPARE(channels.size(), 2);
    QCOMPARE(channels.at(0).channel, quint8(1));
    QCOMPARE(channels.at(1).channel, quint8(0));
    for (const ChannelParam &channel : channels) {
        QCOMPARE(channel.device, quint8(5));
        QCOMPARE(channel.listenOnly, quint8(1));
        QCOMPARE(channel.Filter, quint8(1));
        QCOMPARE(channel.Timing0, quint8(0x03));
        QCOMPARE(channel.Timing1, quint8(0x1C));
        QCOMPARE(channel.AccCode, 0x12345678U);
        QCOMPARE(channel.AccMask, 0x9ABCDEF0U);
        QCOMPARE(channel.dataRateCANFD, quint8(4));
        QVERIFY(channel.isCANFD);
    }
}

void tst_CanDeviceParam::listenOnly_data()
{
    QTest::addColumn<quint8>("operatingMode");
    QTest::newRow("normal") << quint8(0);
    QTest::newRow("listen") << quint8(1);
}

void tst_CanDeviceParam::listenOnly()
{
    QFETCH(quint8, operatingMode);
    CanDeviceParam param;
    param.operatingMode = operatingMode;
    param.channels = {0};
    QCOMPARE(channelParams(param).constFirst().listenOnly, operatingMode);
}

void tst_CanDeviceParam::fdWithADataRate_data()
{
    QTest::addColumn<quint8>("index");
    QTest::addColumn<bool>("isCANFD");
    QTest::newRow("None") << quint8(0) << false;
    QTest::newRow("1M bps") << quint8(1) << true;
    QTest::newRow("5M bps") << quint8(4) << true;
}

void tst_CanDeviceParam::fdWithADataRate()
{
    QFETCH(quint8, index);
    CanDeviceParam param;
    param.dataRateCANFD = index;
    param.channels = {0};
    QCOMPARE(channelParams(param).constFirst().dataRateCANFD, index);
    QTEST(channelParams(param).constFirst().isCANFD, "isCANFD");
}

void tst_CanDeviceParam::linFields()
{
    CanDeviceParam param;
    param.linChecksum = 1;
    param.linBaudRate = 19200;
    param.device = 2;
    param.isLIN = 1;
    param.channels = {0, 1};
    const QVector<ChannelParam> channels = channelParams(param);
    QCOMPARE(channels.size(), 2);
    for (int i = 0; i < channels.size(); ++i) {
        QCOMPARE(channels.at(i).device, quint8(2));
        QCOMPARE(channels.at(i).channel, quint8(i));
        QCOMPARE(channels.at(i).linChecksum, quint8(1));
        QCOMPARE(channels.at(i).linBaudRate, quint16(19200));
        QCOMPARE(channels.at(i).isCANFD, false);
    }
}

void tst_CanDeviceParam::noChannels()
{
    QVERIFY(channelParams(CanDeviceParam()).isEmpty());
}

X9_PLAIN_TEST(tst_CanDeviceParam)
#include "tst_CanDeviceParam.moc"
