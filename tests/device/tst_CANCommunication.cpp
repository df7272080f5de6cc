#include "device/CANCommunication.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"

#include <QSignalSpy>
#include <QtTest>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

namespace {

using Frames = QVector<VCI_CAN_OBJ>;
using FramesCANFD = QVector<VCI_CANFD_OBJ>;
using Operation = std::function<CANError(CANCommunication &)>;

QString entry(const char *text)
{
    return QString::fromLatin1(text);
}

/// "VCI_OpenDevice 4 0 0; VCI_CloseDevice 4 0" as a list.
QStringList calls(const char *text)
{
    return QString::fromLatin1(text).split(QStringLiteral("; "), Qt::SkipEmptyParts);
}

ChannelParam canParam(quint8 device, quint8 channel, bool isCANFD = false)
{
    ChannelParam param;
    param.device = device;
    param.channel = channel;
    param.Timing1 = 0x1C;
    param.AccMask = 0xFFFFFFFFU;
    param.isCANFD = isCANFD;
    param.dataRateCANFD = isCANFD ? 3 : 0;
    return param;
}

ChannelParam linParam(quint8 device, quint8 channel)
{
    ChannelParam param;
    param.device = device;
    param.channel = channel;
    param.linBaudRate = 19200;
    param.linChecksum = 1;
    return param;
}

} // namespace

Q_DECLARE_METATYPE(CANError)
Q_DECLARE_METATYPE(Operation)

class tst_CANCommunication : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    static void metaTypesAreRegistered();
    static void takesNoTable();
    static void loadsTheDefaultLibrary();

    void opensAndClosesDevice();
    void deviceOpenedTwice();
    void deviceRefused();
    static void deviceNeedsItsEntries_data();
    void deviceNeedsItsEntries();
    void closesOnlyOpenDevices();
    static void keepsDeviceWithOpenChannel_data();
    void keepsDeviceWithOpenChannel();
    void devicesAreIndependent();

    void opensChannel();
    static void initRecord_data();
    void initRecord();
    void channelOpenedTwice();
    void channelOfARefusedDevice();
    void channelIndexOutOfRange();
    static void channelRefused_data();
    void channelRefused();
    static void refusedChannelKeepsDeviceForTheOther_data();
    void refusedChannelKeepsDeviceForTheOther();
    void opensCANFDChannel();
    static void modelWithoutCANFD_data();
    void modelWithoutCANFD();
    static void libraryWithoutCANFD_data();
    void libraryWithoutCANFD();
    void clearBufferMayBeMissing();
    void classicChannelNeedsNoModel();
    static void workerFollowsTheProtocol_data();
    void workerFollowsTheProtocol();

    void closesTheLastChannel();
    void closesOneOfTwoChannels();
    void closedChannelIsNotPolled();
    void closesOnlyChannelsOfOpenDevices();
    void lastCANChannelLeavesDeviceToLIN();
    void reconfigures();
    void reconfiguresOneOfTwo();
    void reconfigureReportsNoLaterFailure();
    void reconfigureNeedsAnOpenDevice();
    void reconfiguredTwice();
    void closingCallsOffTheReopening();
    void reopeningEndsWithTheManager();

    void transmits();
    static void transmitFails_data();
    void transmitFails();

    void gatewayFoundOn();
    static void gatewayQueryAtOpening_data();
    void gatewayQueryAtOpening();
    void opensGateway();
    void gatewayAlreadyOn();
    void gatewayNeedsBothChannels();
    static void openGatewayFails_data();
    void openGatewayFails();
    void closesGateway();
    static void closeGatewayFails_data();
    void closeGatewayFails();
    void setsGatewayFilter();
    void setGatewayFilterFails();
    void readsGatewayFilter();
    void gatewayFilterCountIsNotTrusted();
    void readGatewayFilterFails();

    void readsInfoOfAClosedDevice();
    void readsInfoOfAnOpenDevice();
    static void infoTexts_data();
    void infoTexts();
    static void readInfoFails_data();
    void readInfoFails();
    void listsPresentDevices();
    void listingLeavesOpenDevicesAlone();
    static void listsNothingWithoutLibrary();

    void opensLIN();
    static void openLINFails_data();
    void openLINFails();
    void refusedLINKeepsDeviceForOthers();
    void closesLIN();
    void closesLINBesideCAN();
    void changesLINParam();
    static void changeLINParamFails_data();
    void changeLINParamFails();
    void opensARefusedLINAgain();
    void usesLIN();
    void receivedLINFrameCarriesTheRequest();
    static void useOfLINFails_data();
    void useOfLINFails();

    static void nothingWorksWithoutLibrary_data();
    static void nothingWorksWithoutLibrary();
    void framesReachTheSignals();
    void openDevicesAreWarnedOfAtTheEnd();

private:
    void start(const QStringList &without = {});
    void openBothChannels();
    /// The gateway's reports since the last time, as "0:on 1:off".
    QString takeGatewayReports();

    std::unique_ptr<ScriptedAdapter> m_adapter;
    std::unique_ptr<CANCommunication> m_manager;
    QStringList m_gatewayReports;
};

void tst_CANCommunication::init()
{
    m_adapter = std::make_unique<ScriptedAdapter>();
    start();
}

void tst_CANCommunication::start(const QStringList &without)
{
    m_manager = std::make_unique<CANCommunication>(m_adapter->table(without));
    m_gatewayReports.clear();
    connect(m_manager.get(), &CANCommunication::sig_gatewayStateChanged, this, [this](quint8 device, bool state) {
        m_gatewayReports.append(QStringLiteral("%1:%2").arg(device).arg(entry(state ? "on" : "off")));
    });
}

void tst_CANCommunication::cleanup()
{
    for (quint8 device = 0; device < 8; ++device) {
        for (quint8 channel = 0; channel < 2; ++channel) {
            m_manager->closeLIN(device, channel);
            m_manager->closeChannel(device, channel);
        }
        QVERIFY(!m_manager->isDeviceOpen(device));
    }
    m_manager.reset();
    m_adapter.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void tst_CANCommunication::openBothChannels()
{
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_OK);
    m_adapter->takeCalls();
    takeGatewayReports();
}

QString tst_CANCommunication::takeGatewayReports()
{
    return std::exchange(m_gatewayReports, {}).join(QLatin1Char(' '));
}

void tst_CANCommunication::metaTypesAreRegistered()
{
    QVERIFY(QMetaType::type("QVector<VCI_CAN_OBJ>") != QMetaType::UnknownType);
    QVERIFY(QMetaType::type("QVector<VCI_CANFD_OBJ>") != QMetaType::UnknownType);
    QVERIFY(QMetaType::type("CANAPI*") != QMetaType::UnknownType);
}

void tst_CANCommunication::takesNoTable()
{
    CANCommunication manager{std::unique_ptr<CANAPI>()};
    QCOMPARE(manager.api().state(), AdapterLibraryState::NotLoaded);
    QCOMPARE(manager.openDevice(0), CAN_DeviceOpenFailed);
}

void tst_CANCommunication::loadsTheDefaultLibrary()
{
    const QTemporaryDir empty;
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(empty.path()));
    CANCommunication manager;
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(manager.api().libraryPath(), CANAPI::defaultLibraryPath());
    QCOMPARE(manager.api().state(), AdapterLibraryState::NotFound);
    QCOMPARE(manager.openDevice(0), CAN_DeviceOpenFailed);
    QCOMPARE(manager.presentDevices().size(), 0);
}

void tst_CANCommunication::opensAndClosesDevice()
{
    QVERIFY(!m_manager->isDeviceOpen(5));
    QCOMPARE(m_manager->openDevice(5), CAN_OK);
    QVERIFY(m_manager->isDeviceOpen(5));
    QCOMPARE(m_manager->closeDevice(5), CAN_OK);
    QVERIFY(!m_manager->isDeviceOpen(5));
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_OpenDevice 4 5 0; VCI_CloseDevice 4 5"));
    QCOMPARE(m_adapter->takePolls(), QStringList());
}

void tst_CANCommunication::deviceOpenedTwice()
{
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QCOMPARE(m_manager->openDevice(0), CAN_DeviceExists);
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_OpenDevice 4 0 0"));
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
}

void tst_CANCommunication::deviceRefused()
{
    for (const quint32 result : {0U, 2U, 0xFFFFFFFFU}) {
        m_adapter->answer("VCI_OpenDevice", result);
        QCOMPARE(m_manager->openDevice(0), CAN_DeviceOpenFailed);
        QVERIFY(!m_manager->isDeviceOpen(0));
        QCOMPARE(m_adapter->takeCalls(), calls("VCI_OpenDevice 4 0 0"));
    }
}

void tst_CANCommunication::deviceNeedsItsEntries_data()
{
    QTest::addColumn<QString>("missing");
    QTest::newRow("open") << entry("VCI_OpenDevice");
    QTest::newRow("close") << entry("VCI_CloseDevice");
}

void tst_CANCommunication::deviceNeedsItsEntries()
{
    QFETCH(QString, missing);
    start({missing});
    QString text;
    QCOMPARE(m_manager->openDevice(0), CAN_DeviceOpenFailed);
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_DeviceOpenFailed);
    QCOMPARE(m_manager->openLIN(linParam(0, 0)), CAN_DeviceOpenFailed);
    QCOMPARE(m_manager->readDeviceInfo(0, text, text, text), CAN_DeviceOpenFailed);
    QCOMPARE(m_manager->presentDevices().size(), 0);
    QCOMPARE(m_adapter->takeCalls(), QStringList());
}

void tst_CANCommunication::closesOnlyOpenDevices()
{
    QCOMPARE(m_manager->closeDevice(0), CAN_DeviceNotExists);
    QCOMPARE(m_adapter->takeCalls(), QStringList());
}

void tst_CANCommunication::keepsDeviceWithOpenChannel_data()
{
    QTest::addColumn<bool>("isLIN");
    QTest::addColumn<int>("channel");
    QTest::newRow("CAN 0") << false << 0;
    QTest::newRow("CAN 1") << false << 1;
    QTest::newRow("LIN 0") << true << 0;
    QTest::newRow("LIN 1") << true << 1;
}

void tst_CANCommunication::keepsDeviceWithOpenChannel()
{
    QFETCH(bool, isLIN);
    QFETCH(int, channel);
    const auto ch = static_cast<quint8>(channel);
    QCOMPARE(isLIN ? m_manager->openLIN(linParam(0, ch)) : m_manager->openChannel(canParam(0, ch)), CAN_OK);
    m_adapter->takeCalls();
    QCOMPARE(m_manager->closeDevice(0), CAN_ChannelExists);
    QVERIFY(m_manager->isDeviceOpen(0));
    QCOMPARE(m_adapter->takeCalls(), QStringList());
}

void tst_CANCommunication::devicesAreIndependent()
{
    QCOMPARE(m_manager->openChannel(canParam(2, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(canParam(6, 0)), CAN_OK);
    QCOMPARE(m_manager->closeChannel(2, 0), CAN_OK);
    QVERIFY(!m_manager->isDeviceOpen(2));
    QVERIFY(m_manager->isDeviceOpen(6));
    QCOMPARE(m_manager->openChannel(canParam(6, 0)), CAN_ChannelExists);
}

void tst_CANCommunication::opensChannel()
{
    QCOMPARE(m_manager->openChannel(canParam(1, 0)), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(),
             calls("VCI_OpenDevice 4 1 0; VCI_InitCAN 4 1 0 {0 4294967295 0 0 0 28 2}; VCI_StartCAN 4 1 0; "
                   "VCI_ClearBuffer 4 1 0"));
    // The device is open already; with the second channel the gateway is asked for.
    QCOMPARE(m_manager->openChannel(canParam(1, 1)), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(),
             calls("VCI_InitCAN 4 1 1 {0 4294967295 0 0 0 28 2}; VCI_StartCAN 4 1 1; VCI_ClearBuffer 4 1 1; "
                   "KQ_OpenCANGateWay 4 1 255"));
    QCOMPARE(takeGatewayReports(), QString());
}

void tst_CANCommunication::initRecord_data()
{
    QTest::addColumn<int>("listenOnly");
    QTest::addColumn<int>("dataRate");
    QTest::addColumn<int>("mode");
    QTest::newRow("normal") << 0 << 0 << 2;
    QTest::newRow("listen only") << 1 << 0 << 3;
    QTest::newRow("only bit 0 of listen only") << 0xFE << 0 << 2;
    QTest::newRow("data rate 1") << 0 << 1 << 6;
    QTest::newRow("data rate 15, listen only") << 0xFF << 15 << 63;
    QTest::newRow("only four bits of the data rate") << 0 << 0xF3 << 14;
}

void tst_CANCommunication::initRecord()
{
    QFETCH(int, listenOnly);
    QFETCH(int, dataRate);
    QFETCH(int, mode);
    ChannelParam param;
    param.AccCode = 0x12345678;
    param.AccMask = 0x9ABCDEF0;
    param.Filter = 2;
    param.Timing0 = 3;
    param.Timing1 = 4;
    param.listenOnly = static_cast<quint8>(listenOnly);
    param.dataRateCANFD = static_cast<quint8>(dataRate);
    QCOMPARE(m_manager->openChannel(param), CAN_OK);
    QCOMPARE(m_adapter->takeCalls().value(1),
             QStringLiteral("VCI_InitCAN 4 0 0 {305419896 2596069104 0 2 3 4 %1}").arg(mode));
}

void tst_CANCommunication::channelOpenedTwice()
{
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    m_adapter->takeCalls();
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_ChannelExists);
    QCOMPARE(m_adapter->takeCalls(), QStringList());
    QVERIFY(m_manager->isDeviceOpen(0));
}

void tst_CANCommunication::channelOfARefusedDevice()
{
    m_adapter->answer("VCI_OpenDevice", 0);
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_DeviceOpenFailed);
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_OpenDevice 4 0 0"));
}

void tst_CANCommunication::channelIndexOutOfRange()
{
    for (const quint8 channel : {quint8(2), quint8(255)}) {
        QCOMPARE(m_manager->openChannel(canParam(0, channel)), CAN_ChannelOpenFailed);
        QCOMPARE(m_manager->openLIN(linParam(0, channel)), CAN_ChannelOpenFailed);
        QCOMPARE(m_adapter->takeCalls(), QStringList());
    }
    openBothChannels();
    for (const quint8 channel : {quint8(2), quint8(255)}) {
        QCOMPARE(m_manager->closeChannel(0, channel), CAN_ChannelNotExists);
        QCOMPARE(m_manager->reconfigureChannel(canParam(0, channel)), CAN_ChannelNotExists);
        QCOMPARE(m_manager->closeLIN(0, channel), CAN_ChannelNotExists);
        QCOMPARE(m_manager->changeLINParam(linParam(0, channel)), CAN_ChannelOpenFailed);
        QCOMPARE(m_adapter->takeCalls(), QStringList());
    }
    QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_ChannelExists);
}

void tst_CANCommunication::channelRefused_data()
{
    QTest::addColumn<QString>("refused");
    QTest::addColumn<bool>("isMissing");
    QTest::addColumn<QStringList>("expected");
    const char *init = "VCI_OpenDevice 4 0 0; VCI_InitCAN 4 0 0 {0 4294967295 0 0 0 28 2}; VCI_CloseDevice 4 0";
    QTest::newRow("init") << entry("VCI_InitCAN") << false << calls(init);
    QTest::newRow("start") << entry("VCI_StartCAN") << false
                           << calls("VCI_OpenDevice 4 0 0; VCI_InitCAN 4 0 0 {0 4294967295 0 0 0 28 2}; "
                                    "VCI_StartCAN 4 0 0; VCI_CloseDevice 4 0");
    QTest::newRow("init missing") << entry("VCI_InitCAN") << true << calls("VCI_OpenDevice 4 0 0; VCI_CloseDevice 4 0");
    QTest::newRow("start missing") << entry("VCI_StartCAN") << true << calls(init);
}

void tst_CANCommunication::channelRefused()
{
    QFETCH(QString, refused);
    QFETCH(bool, isMissing);
    start(isMissing ? QStringList(refused) : QStringList());
    m_adapter->answer(refused.toLatin1().constData(), 0);
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_ChannelOpenFailed);
    QTEST(m_adapter->takeCalls(), "expected");
    QVERIFY(!m_manager->isDeviceOpen(0));
}

void tst_CANCommunication::refusedChannelKeepsDeviceForTheOther_data()
{
    QTest::addColumn<bool>("isLIN");
    QTest::addColumn<bool>("isCANFD");
    QTest::newRow("CAN beside CAN") << false << false;
    QTest::newRow("CAN beside LIN") << true << false;
    QTest::newRow("CAN FD beside CAN") << false << true;
}

void tst_CANCommunication::refusedChannelKeepsDeviceForTheOther()
{
    QFETCH(bool, isLIN);
    QFETCH(bool, isCANFD);
    QCOMPARE(isLIN ? m_manager->openLIN(linParam(0, 1)) : m_manager->openChannel(canParam(0, 1)), CAN_OK);
    m_adapter->takeCalls();
    m_adapter->answerChannel("VCI_InitCAN", 0, 0);
    m_adapter->setTexts("SN", isCANFD ? "X9EC" : "X9FC", "V1");
    QCOMPARE(m_manager->openChannel(canParam(0, 0, isCANFD)), isCANFD ? CAN_DeviceNotSupport : CAN_ChannelOpenFailed);
    QVERIFY(m_manager->isDeviceOpen(0));
    QVERIFY(!m_adapter->takeCalls().contains(entry("VCI_CloseDevice 4 0")));
    QCOMPARE(m_manager->closeDevice(0), CAN_ChannelExists);
}

void tst_CANCommunication::opensCANFDChannel()
{
    QCOMPARE(m_manager->openChannel(canParam(0, 1, true)), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(),
             calls("VCI_OpenDevice 4 0 0; KQ_ReadInfo 4 0; VCI_InitCAN 4 0 1 {0 4294967295 0 0 0 28 14}; "
                   "VCI_StartCAN 4 0 1; VCI_ClearBuffer 4 0 1"));
}

void tst_CANCommunication::modelWithoutCANFD_data()
{
    QTest::addColumn<QByteArray>("model");
    QTest::addColumn<quint32>("readResult");
    QTest::addColumn<CANError>("expected");
    QTest::newRow("classic model") << QByteArray("X9EC-2") << 1U << CAN_DeviceNotSupport;
    QTest::newRow("empty") << QByteArray() << 1U << CAN_DeviceNotSupport;
    QTest::newRow("cut off") << QByteArray("X9F") << 1U << CAN_DeviceNotSupport;
    QTest::newRow("lower case") << QByteArray("x9fc") << 1U << CAN_DeviceNotSupport;
    QTest::newRow("not at the start") << QByteArray(" X9FC") << 1U << CAN_DeviceNotSupport;
    QTest::newRow("unreadable") << QByteArray("X9FC") << 0U << CAN_DeviceNotSupport;
    QTest::newRow("bare") << QByteArray("X9FC") << 1U << CAN_OK;
    QTest::newRow("longer") << QByteArray("X9FCXYZ") << 1U << CAN_OK;
}

void tst_CANCommunication::modelWithoutCANFD()
{
    QFETCH(QByteArray, model);
    QFETCH(quint32, readResult);
    QFETCH(CANError, expected);
    m_adapter->setTexts("SN", model, "V1");
    m_adapter->answer("KQ_ReadInfo", readResult);
    QCOMPARE(m_manager->openChannel(canParam(0, 0, true)), expected);
    QCOMPARE(m_manager->isDeviceOpen(0), expected == CAN_OK);
    if (expected != CAN_OK) {
        QCOMPARE(m_adapter->takeCalls(), calls("VCI_OpenDevice 4 0 0; KQ_ReadInfo 4 0; VCI_CloseDevice 4 0"));
    }
}

void tst_CANCommunication::libraryWithoutCANFD_data()
{
    QTest::addColumn<QString>("missing");
    QTest::addColumn<QStringList>("expected");
    const QStringList checked = calls("VCI_OpenDevice 4 0 0; KQ_ReadInfo 4 0; VCI_CloseDevice 4 0");
    QTest::newRow("count") << entry("KQ_GetReceiveNumCANFD") << checked;
    QTest::newRow("transmit") << entry("KQ_TransmitCANFD") << checked;
    QTest::newRow("receive") << entry("KQ_ReceiveCANFD") << checked;
    QTest::newRow("info") << entry("KQ_ReadInfo") << calls("VCI_OpenDevice 4 0 0; VCI_CloseDevice 4 0");
}

void tst_CANCommunication::libraryWithoutCANFD()
{
    QFETCH(QString, missing);
    start({missing});
    QCOMPARE(m_manager->openChannel(canParam(0, 0, true)), CAN_DeviceNotSupport);
    QTEST(m_adapter->takeCalls(), "expected");
    QVERIFY(!m_manager->isDeviceOpen(0));
    // Classic CAN works.
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
}

void tst_CANCommunication::clearBufferMayBeMissing()
{
    start({entry("VCI_ClearBuffer"), entry("VCI_ResetCAN"), entry("KQ_OpenCANGateWay")});
    openBothChannels();
    QCOMPARE(m_manager->closeChannel(0, 0), CAN_OK);
    QCOMPARE(m_manager->closeChannel(0, 1), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_CloseDevice 4 0"));
}

void tst_CANCommunication::classicChannelNeedsNoModel()
{
    m_adapter->answer("KQ_ReadInfo", 0);
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    QVERIFY(m_adapter->takeCalls().filter(entry("KQ_ReadInfo")).isEmpty());
}

void tst_CANCommunication::workerFollowsTheProtocol_data()
{
    QTest::addColumn<bool>("isCANFD");
    QTest::addColumn<int>("dataRate");
    QTest::newRow("CAN") << false << 0;
    QTest::newRow("CAN with a data rate") << false << 3;
    QTest::newRow("CAN FD") << true << 3;
    QTest::newRow("CAN FD without a data rate") << true << 0;
}

void tst_CANCommunication::workerFollowsTheProtocol()
{
    QFETCH(bool, isCANFD);
    QFETCH(int, dataRate);
    ChannelParam param = canParam(0, 1, isCANFD);
    param.dataRateCANFD = static_cast<quint8>(dataRate);
    QCOMPARE(m_manager->openChannel(param), CAN_OK);
    QStringList polls;
    const auto isPolled = [this, &polls] {
        polls += m_adapter->takePolls();
        return !polls.isEmpty();
    };
    QTRY_VERIFY(isPolled());
    QCOMPARE(polls[0], entry(isCANFD ? "KQ_GetReceiveNumCANFD 4 0 1" : "VCI_GetReceiveNum 4 0 1"));
}

void tst_CANCommunication::closesTheLastChannel()
{
    QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_OK);
    m_adapter->takeCalls();
    QCOMPARE(m_manager->closeChannel(0, 1), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_ResetCAN 4 0 1; VCI_CloseDevice 4 0"));
    QVERIFY(!m_manager->isDeviceOpen(0));
    QCOMPARE(takeGatewayReports(), QString());
}

void tst_CANCommunication::closesOneOfTwoChannels()
{
    openBothChannels();
    QCOMPARE(m_manager->openGateway(0), CAN_OK);
    m_adapter->takeCalls();
    takeGatewayReports();
    m_adapter->answer("VCI_ResetCAN", 0); // ignored
    QCOMPARE(m_manager->closeChannel(0, 0), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_ResetCAN 4 0 0"));
    QVERIFY(m_manager->isDeviceOpen(0));
    QCOMPARE(m_manager->isGatewayOn(0), quint8(0));
    QCOMPARE(takeGatewayReports(), entry("0:off"));
    QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_ChannelExists);
}

void tst_CANCommunication::closedChannelIsNotPolled()
{
    openBothChannels();
    QCOMPARE(m_manager->closeChannel(0, 0), CAN_OK);
    // What is polled after two polls of the other channel was decided after the closing.
    QStringList polls;
    const auto sawTwoRounds = [this, &polls] {
        polls += m_adapter->takePolls();
        return polls.count(entry("VCI_GetReceiveNum 4 0 1")) >= 2;
    };
    QTRY_VERIFY(sawTwoRounds());
    polls.clear();
    QTRY_VERIFY(sawTwoRounds());
    QVERIFY(!polls.contains(entry("VCI_GetReceiveNum 4 0 0")));
}

void tst_CANCommunication::closesOnlyChannelsOfOpenDevices()
{
    QCOMPARE(m_manager->closeChannel(0, 0), CAN_DeviceNotExists);
    QCOMPARE(m_manager->closeLIN(0, 0), CAN_DeviceNotExists);
    QCOMPARE(m_manager->closeChannel(0, 9), CAN_DeviceNotExists);
    QCOMPARE(m_adapter->takeCalls(), QStringList());
}

void tst_CANCommunication::lastCANChannelLeavesDeviceToLIN()
{
    QCOMPARE(m_manager->openLIN(linParam(0, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    m_adapter->takeCalls();
    QCOMPARE(m_manager->closeChannel(0, 0), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_ResetCAN 4 0 0"));
    QVERIFY(m_manager->isDeviceOpen(0));
}

void tst_CANCommunication::reconfigures()
{
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    m_adapter->takeCalls();
    ChannelParam param = canParam(0, 0);
    param.Timing0 = 9;
    QCOMPARE(m_manager->reconfigureChannel(param), CAN_OK);
    param.Timing0 = 77; // the record was copied
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_ResetCAN 4 0 0; VCI_CloseDevice 4 0"));
    QVERIFY(!m_manager->isDeviceOpen(0));
    QTRY_VERIFY(m_manager->isDeviceOpen(0));
    QCOMPARE(m_adapter->takeCalls(),
             calls("VCI_OpenDevice 4 0 0; VCI_InitCAN 4 0 0 {0 4294967295 0 0 9 28 2}; VCI_StartCAN 4 0 0; "
                   "VCI_ClearBuffer 4 0 0"));
}

void tst_CANCommunication::reconfiguresOneOfTwo()
{
    openBothChannels();
    QCOMPARE(m_manager->reconfigureChannel(canParam(0, 1)), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_ResetCAN 4 0 1"));
    QCOMPARE(takeGatewayReports(), entry("0:off"));
    m_adapter->setGateway(1);
    QTRY_COMPARE(m_gatewayReports.size(), 1);
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_InitCAN 4 0 1 {0 4294967295 0 0 0 28 2}; VCI_StartCAN 4 0 1; "
                                           "VCI_ClearBuffer 4 0 1; KQ_OpenCANGateWay 4 0 255"));
    QCOMPARE(takeGatewayReports(), entry("0:on"));
}

void tst_CANCommunication::reconfigureReportsNoLaterFailure()
{
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    m_adapter->takeCalls();
    m_adapter->answer("VCI_OpenDevice", 0);
    QCOMPARE(m_manager->reconfigureChannel(canParam(0, 0)), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_ResetCAN 4 0 0; VCI_CloseDevice 4 0"));
    QStringList later;
    const auto isTried = [this, &later] {
        later += m_adapter->takeCalls();
        return !later.isEmpty();
    };
    QTRY_VERIFY(isTried());
    QCOMPARE(later, calls("VCI_OpenDevice 4 0 0"));
    QVERIFY(!m_manager->isDeviceOpen(0));
}

void tst_CANCommunication::reconfigureNeedsAnOpenDevice()
{
    QCOMPARE(m_manager->reconfigureChannel(canParam(0, 0)), CAN_DeviceNotExists);
    QCOMPARE(m_adapter->takeCalls(), QStringList());
}

void tst_CANCommunication::reconfiguredTwice()
{
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    QCOMPARE(m_manager->reconfigureChannel(canParam(0, 0)), CAN_OK);
    // The device is closed for the time being; the first request stands.
    QCOMPARE(m_manager->reconfigureChannel(canParam(0, 0)), CAN_DeviceNotExists);
    QTRY_VERIFY(m_manager->isDeviceOpen(0));
}

void tst_CANCommunication::closingCallsOffTheReopening()
{
    openBothChannels();
    QCOMPARE(m_manager->reconfigureChannel(canParam(0, 0)), CAN_OK);
    QCOMPARE(m_manager->closeChannel(0, 0), CAN_OK);
    // The other channel is re-opened after the time at which the first would have been.
    QCOMPARE(m_manager->reconfigureChannel(canParam(0, 1)), CAN_OK);
    QCOMPARE(m_manager->isDeviceOpen(0), false);
    m_adapter->takeCalls();
    QTRY_VERIFY(m_manager->isDeviceOpen(0));
    QCOMPARE(m_adapter->takeCalls(),
             calls("VCI_OpenDevice 4 0 0; VCI_InitCAN 4 0 1 {0 4294967295 0 0 0 28 2}; VCI_StartCAN 4 0 1; "
                   "VCI_ClearBuffer 4 0 1"));
}

void tst_CANCommunication::reopeningEndsWithTheManager()
{
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    QCOMPARE(m_manager->reconfigureChannel(canParam(0, 0)), CAN_OK);
    start();
    m_adapter->takeCalls();
    // The new manager's re-opening comes after the time of the old one's.
    QCOMPARE(m_manager->openChannel(canParam(1, 0)), CAN_OK);
    QCOMPARE(m_manager->reconfigureChannel(canParam(1, 0)), CAN_OK);
    QTRY_VERIFY(m_manager->isDeviceOpen(1));
    QVERIFY(m_adapter->takeCalls().filter(entry("VCI_OpenDevice 4 0 0")).isEmpty());
}

void tst_CANCommunication::transmits()
{
    Frames frames(2);
    frames[0].ID = 100;
    frames[1].ID = 101;
    FramesCANFD framesCANFD(1);
    framesCANFD[0].ID = 200;
    QCOMPARE(m_manager->openChannel(canParam(3, 1)), CAN_OK);
    m_adapter->takeCalls();
    m_adapter->answer("VCI_Transmit", 2);
    QCOMPARE(m_manager->transmit(3, 1, frames.constData(), 2), CAN_OK);
    QCOMPARE(m_manager->transmitCANFD(3, 1, framesCANFD.constData(), 1), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_Transmit 4 3 1 2 id100 id101; KQ_TransmitCANFD 4 3 1 1 id200"));
}

void tst_CANCommunication::transmitFails_data()
{
    QTest::addColumn<quint32>("accepted");
    QTest::addColumn<bool>("isMissing");
    QTest::newRow("none") << 0U << false;
    QTest::newRow("fewer") << 2U << false;
    QTest::newRow("error") << 0xFFFFFFFFU << false;
    QTest::newRow("more") << 4U << false;
    QTest::newRow("missing") << 3U << true;
}

void tst_CANCommunication::transmitFails()
{
    QFETCH(quint32, accepted);
    QFETCH(bool, isMissing);
    start(isMissing ? QStringList{entry("VCI_Transmit"), entry("KQ_TransmitCANFD")} : QStringList());
    m_adapter->answer("VCI_Transmit", accepted);
    m_adapter->answer("KQ_TransmitCANFD", accepted);
    const Frames frames(3);
    const FramesCANFD framesCANFD(3);
    QSignalSpy refusals(m_manager.get(), &CANCommunication::sig_sendRefused);
    QCOMPARE(m_manager->transmit(0, 1, frames.constData(), 3), CAN_SendFailed);
    QCOMPARE(m_manager->transmitCANFD(2, 0, framesCANFD.constData(), 3), CAN_SendFailed);
    const quint32 refused = !isMissing && accepted < 3 ? 3 - accepted : 3;
    const auto told = [refused](quint8 device, quint8 channel) {
        return QVariantList{QVariant::fromValue(device), QVariant::fromValue(channel), QVariant::fromValue(refused)};
    };
    QCOMPARE(refusals.count(), 2);
    QCOMPARE(refusals[0], told(0, 1));
    QCOMPARE(refusals[1], told(2, 0));
    QCOMPARE(m_adapter->takeCalls().size(), isMissing ? 0 : 2);
}

void tst_CANCommunication::gatewayFoundOn()
{
    m_adapter->setGateway(1);
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    QCOMPARE(m_manager->isGatewayOn(0), quint8(0));
    QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_OK);
    QCOMPARE(m_manager->isGatewayOn(0), quint8(1));
    QCOMPARE(takeGatewayReports(), entry("0:on"));
    QCOMPARE(m_manager->isGatewayOn(1), quint8(0));
}

void tst_CANCommunication::gatewayQueryAtOpening_data()
{
    QTest::addColumn<quint32>("state");
    QTest::addColumn<quint32>("result");
    QTest::newRow("off") << 0U << 1U;
    QTest::newRow("failed") << 1U << 0U;
    QTest::newRow("unknown state") << 2U << 1U;
}

void tst_CANCommunication::gatewayQueryAtOpening()
{
    QFETCH(quint32, state);
    QFETCH(quint32, result);
    m_adapter->setGateway(state);
    m_adapter->answer("KQ_OpenCANGateWay", result);
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_OK);
    QCOMPARE(m_manager->isGatewayOn(0), quint8(0));
    QCOMPARE(takeGatewayReports(), QString());
}

void tst_CANCommunication::opensGateway()
{
    openBothChannels();
    QCOMPARE(m_manager->openGateway(0), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_OpenCANGateWay 4 0 255; KQ_OpenCANGateWay 4 0 1"));
    QCOMPARE(m_manager->isGatewayOn(0), quint8(1));
    QCOMPARE(takeGatewayReports(), entry("0:on"));
}

void tst_CANCommunication::gatewayAlreadyOn()
{
    openBothChannels();
    m_adapter->setGateway(1);
    QCOMPARE(m_manager->openGateway(0), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_OpenCANGateWay 4 0 255"));
    QCOMPARE(m_manager->isGatewayOn(0), quint8(1));
    QCOMPARE(takeGatewayReports(), entry("0:on"));
}

void tst_CANCommunication::gatewayNeedsBothChannels()
{
    QCOMPARE(m_manager->openGateway(0), CAN_ChannelNotExists);
    QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_OK);
    m_adapter->takeCalls();
    QCOMPARE(m_manager->openGateway(0), CAN_ChannelNotExists);
    QCOMPARE(m_adapter->takeCalls(), QStringList());
    QCOMPARE(takeGatewayReports(), QString());
}

void tst_CANCommunication::openGatewayFails_data()
{
    QTest::addColumn<int>("failing"); // operation, -1: none
    QTest::addColumn<bool>("isStuck");
    QTest::addColumn<bool>("isMissing");
    QTest::addColumn<QStringList>("expected");
    const QStringList both = calls("KQ_OpenCANGateWay 4 0 255; KQ_OpenCANGateWay 4 0 1");
    QTest::newRow("query fails") << 255 << false << false << QStringList(both.mid(0, 1));
    QTest::newRow("switching fails") << 1 << false << false << both;
    QTest::newRow("state stays off") << -1 << true << false << both;
    QTest::newRow("missing") << -1 << false << true << QStringList();
}

void tst_CANCommunication::openGatewayFails()
{
    QFETCH(int, failing);
    QFETCH(bool, isStuck);
    QFETCH(bool, isMissing);
    start(isMissing ? QStringList(entry("KQ_OpenCANGateWay")) : QStringList());
    openBothChannels();
    m_adapter->setGateway(0, isStuck);
    if (failing >= 0) {
        m_adapter->answerChannel("KQ_OpenCANGateWay", static_cast<quint8>(failing), 0);
    }
    QCOMPARE(m_manager->openGateway(0), CAN_GatewayOperationFailed);
    QTEST(m_adapter->takeCalls(), "expected");
    QCOMPARE(m_manager->isGatewayOn(0), quint8(0));
    QCOMPARE(takeGatewayReports(), QString());
}

void tst_CANCommunication::closesGateway()
{
    openBothChannels();
    QCOMPARE(m_manager->openGateway(0), CAN_OK);
    m_adapter->takeCalls();
    takeGatewayReports();
    QCOMPARE(m_manager->closeGateway(0), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_OpenCANGateWay 4 0 0"));
    QCOMPARE(m_manager->isGatewayOn(0), quint8(0));
    QCOMPARE(takeGatewayReports(), entry("0:off"));
}

void tst_CANCommunication::closeGatewayFails_data()
{
    QTest::addColumn<quint32>("result");
    QTest::addColumn<bool>("isStuck");
    QTest::newRow("refused") << 0U << false;
    QTest::newRow("state stays on") << 1U << true;
}

void tst_CANCommunication::closeGatewayFails()
{
    QFETCH(quint32, result);
    QFETCH(bool, isStuck);
    QCOMPARE(m_manager->closeGateway(0), CAN_GatewayOperationFailed); // no device
    openBothChannels();
    QCOMPARE(m_manager->openGateway(0), CAN_OK);
    takeGatewayReports();
    m_adapter->setGateway(1, isStuck);
    m_adapter->answer("KQ_OpenCANGateWay", result);
    QCOMPARE(m_manager->closeGateway(0), CAN_GatewayOperationFailed);
    QCOMPARE(m_manager->isGatewayOn(0), quint8(1));
    QCOMPARE(takeGatewayReports(), QString());
}

void tst_CANCommunication::setsGatewayFilter()
{
    openBothChannels();
    QCOMPARE(m_manager->openGateway(0), CAN_OK);
    m_adapter->takeCalls();
    QCOMPARE(m_manager->setGatewayIDFilter(0, 1, {0x2B, 0x11, 0xFFFFFFFFU}), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_SetCANGateWayIDFilter 4 0 1 3"));
    QCOMPARE(m_adapter->gatewayWords(), std::vector<quint32>({0x11, 0x2B, 0xFFFFFFFFU}));
    QCOMPARE(m_manager->setGatewayIDFilter(0, 0, {}), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_SetCANGateWayIDFilter 4 0 0 0"));
    QSet<quint32> most;
    for (quint32 id = 0; id < AdapterGatewayMaxIds; ++id) {
        most.insert(id);
    }
    QCOMPARE(m_manager->setGatewayIDFilter(0, 0, most), CAN_OK);
    QCOMPARE(int(m_adapter->gatewayWords().size()), 64);
}

void tst_CANCommunication::setGatewayFilterFails()
{
    QCOMPARE(m_manager->setGatewayIDFilter(0, 0, {1}), CAN_GatewayOperationFailed); // no device
    openBothChannels();
    QCOMPARE(m_manager->setGatewayIDFilter(0, 0, {1}), CAN_GatewayOperationFailed); // gateway off
    QCOMPARE(m_adapter->takeCalls(), QStringList());
    QCOMPARE(m_manager->openGateway(0), CAN_OK);
    m_adapter->takeCalls();
    QSet<quint32> tooMany;
    for (quint32 id = 0; id <= AdapterGatewayMaxIds; ++id) {
        tooMany.insert(id);
    }
    QCOMPARE(m_manager->setGatewayIDFilter(0, 0, tooMany), CAN_GatewayOperationFailed);
    QCOMPARE(m_adapter->takeCalls(), QStringList());
    m_adapter->answer("KQ_SetCANGateWayIDFilter", 0);
    QCOMPARE(m_manager->setGatewayIDFilter(0, 0, {1}), CAN_GatewayOperationFailed);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_SetCANGateWayIDFilter 4 0 0 1"));
}

void tst_CANCommunication::readsGatewayFilter()
{
    m_adapter->setGatewayWords({9, 7, 9}, 3);
    QSet<quint32> ids{1};
    QCOMPARE(m_manager->getGatewayIDFilter(2, 1, ids), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_GetCANGateWayIDFilter 4 2 1"));
    QCOMPARE(ids, QSet<quint32>({7, 9}));
    m_adapter->setGatewayWords({9, 7}, 0);
    QCOMPARE(m_manager->getGatewayIDFilter(2, 1, ids), CAN_OK);
    QVERIFY(ids.isEmpty());
}

void tst_CANCommunication::gatewayFilterCountIsNotTrusted()
{
    std::vector<quint32> words(64);
    std::iota(words.begin(), words.end(), 1000U);
    for (const quint32 count : {64U, 65U, 0xFFFFFFFFU}) {
        m_adapter->setGatewayWords(words, count);
        QSet<quint32> ids;
        QCOMPARE(m_manager->getGatewayIDFilter(0, 0, ids), CAN_OK);
        QCOMPARE(ids, QSet<quint32>(words.begin(), words.end()));
    }
}

void tst_CANCommunication::readGatewayFilterFails()
{
    m_adapter->setGatewayWords({9}, 1);
    m_adapter->answer("KQ_GetCANGateWayIDFilter", 0);
    QSet<quint32> ids{1};
    QCOMPARE(m_manager->getGatewayIDFilter(0, 0, ids), CAN_GatewayOperationFailed);
    QCOMPARE(ids, QSet<quint32>({1}));
    start({entry("KQ_GetCANGateWayIDFilter"), entry("KQ_SetCANGateWayIDFilter")});
    QCOMPARE(m_manager->getGatewayIDFilter(0, 0, ids), CAN_GatewayOperationFailed);
    openBothChannels();
    QCOMPARE(m_manager->openGateway(0), CAN_OK);
    QCOMPARE(m_manager->setGatewayIDFilter(0, 0, {1}), CAN_GatewayOperationFailed);
}

void tst_CANCommunication::readsInfoOfAClosedDevice()
{
    QString serial;
    QString model;
    QString firmware;
    QCOMPARE(m_manager->readDeviceInfo(4, serial, model, firmware), CAN_OK);
    QCOMPARE(serial, entry("SN0001"));
    QCOMPARE(model, entry("X9FC-2"));
    QCOMPARE(firmware, entry("V2.05"));
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_OpenDevice 4 4 0; KQ_ReadInfo 4 4; VCI_CloseDevice 4 4"));
    QVERIFY(!m_manager->isDeviceOpen(4));
}

void tst_CANCommunication::readsInfoOfAnOpenDevice()
{
    QCOMPARE(m_manager->openChannel(canParam(4, 0)), CAN_OK);
    m_adapter->takeCalls();
    QString text;
    QCOMPARE(m_manager->readDeviceInfo(4, text, text, text), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_ReadInfo 4 4"));
    QVERIFY(m_manager->isDeviceOpen(4));
}

void tst_CANCommunication::infoTexts_data()
{
    QTest::addColumn<QByteArray>("buffer");
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("cut at the zero") << QByteArray("V2\0garbage", 10) << entry("V2");
    QTest::newRow("79 and zero") << QByteArray(79, 'a') + '\0' << QString(79, QLatin1Char('a'));
    QTest::newRow("80 without zero") << QByteArray(80, 'a') << QString(80, QLatin1Char('a'));
    const QString local = QString::fromLocal8Bit("\xE7\x89\x88");
    QTest::newRow("local 8-bit") << QByteArray("\xE7\x89\x88") << local;
}

void tst_CANCommunication::infoTexts()
{
    QFETCH(QByteArray, buffer);
    QFETCH(QString, text);
    m_adapter->setTexts(buffer, buffer, buffer);
    QString serial;
    QString model;
    QString firmware;
    QCOMPARE(m_manager->readDeviceInfo(0, serial, model, firmware), CAN_OK);
    QCOMPARE(serial, text);
    QCOMPARE(model, text);
    QCOMPARE(firmware, text);
}

void tst_CANCommunication::readInfoFails_data()
{
    QTest::addColumn<QString>("refused");
    QTest::addColumn<bool>("isMissing");
    QTest::addColumn<CANError>("error");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("open") << entry("VCI_OpenDevice") << false << CAN_DeviceOpenFailed << calls("VCI_OpenDevice 4 0 0");
    QTest::newRow("read") << entry("KQ_ReadInfo") << false << CAN_DeviceNotSupport
                          << calls("VCI_OpenDevice 4 0 0; KQ_ReadInfo 4 0; VCI_CloseDevice 4 0");
    QTest::newRow("read missing") << entry("KQ_ReadInfo") << true << CAN_DeviceNotSupport
                                  << calls("VCI_OpenDevice 4 0 0; VCI_CloseDevice 4 0");
}

void tst_CANCommunication::readInfoFails()
{
    QFETCH(QString, refused);
    QFETCH(bool, isMissing);
    QFETCH(CANError, error);
    start(isMissing ? QStringList(refused) : QStringList());
    m_adapter->answer(refused.toLatin1().constData(), 0);
    QString text = entry("as before");
    QCOMPARE(m_manager->readDeviceInfo(0, text, text, text), error);
    QCOMPARE(text, entry("as before"));
    QTEST(m_adapter->takeCalls(), "expected");
}

void tst_CANCommunication::listsPresentDevices()
{
    // Devices 0 to 7 are tried; the scripted adapter has them all, the texts of the last three cannot be read.
    int infos = 0;
    m_adapter->onCall("KQ_ReadInfo", [this, &infos] {
        if (++infos == 5) {
            m_adapter->answer("KQ_ReadInfo", 0);
        }
    });
    const QVector<DevicePresence> present = m_manager->presentDevices();
    QStringList expected;
    for (int dev = 0; dev < 8; ++dev) {
        expected +=
            calls(qPrintable(QStringLiteral("VCI_OpenDevice 4 %1 0; KQ_ReadInfo 4 %1; VCI_CloseDevice 4 %1").arg(dev)));
    }
    QCOMPARE(m_adapter->takeCalls(), expected);
    QCOMPARE(present.size(), 8);
    for (int dev = 0; dev < 8; ++dev) {
        QCOMPARE(int(present[dev].device), dev);
        QCOMPARE(present[dev].model, dev < 5 ? entry("X9FC-2") : QString());
        QCOMPARE(present[dev].canChannels, QVector<quint8>({0, 1}));
        QCOMPARE(present[dev].linChannels, QVector<quint8>({0, 1}));
        QVERIFY(!present[dev].isOpen);
    }
    m_adapter->onCall("KQ_ReadInfo", {});
}

void tst_CANCommunication::listingLeavesOpenDevicesAlone()
{
    QCOMPARE(m_manager->openChannel(canParam(3, 0)), CAN_OK);
    m_adapter->takeCalls();
    m_adapter->answer("VCI_OpenDevice", 0); // nothing else is there
    const QVector<DevicePresence> present = m_manager->presentDevices();
    QCOMPARE(present.size(), 1);
    QCOMPARE(int(present[0].device), 3);
    QCOMPARE(present[0].model, entry("X9FC-2"));
    QVERIFY(present[0].isOpen);
    const QStringList made = m_adapter->takeCalls();
    QCOMPARE(made.size(), 8);
    QCOMPARE(made.count(entry("KQ_ReadInfo 4 3")), 1);
    QVERIFY(made.filter(entry("VCI_CloseDevice")).isEmpty());
    QVERIFY(!made.contains(entry("VCI_OpenDevice 4 3 0")));
    QVERIFY(m_manager->isDeviceOpen(3));
}

void tst_CANCommunication::listsNothingWithoutLibrary()
{
    CANCommunication manager(std::make_unique<CANAPI>(QString()));
    QCOMPARE(manager.presentDevices().size(), 0);
}

void tst_CANCommunication::opensLIN()
{
    QCOMPARE(m_manager->openLIN(linParam(0, 1)), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_OpenDevice 4 0 0; KQ_OpenLIN 4 0 1 19200 1"));
    QCOMPARE(m_manager->openLIN(linParam(0, 1)), CAN_ChannelExists);
    QCOMPARE(m_adapter->takeCalls(), QStringList());
    QCOMPARE(m_manager->openLIN(linParam(0, 0)), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_OpenLIN 4 0 0 19200 1"));
}

void tst_CANCommunication::openLINFails_data()
{
    QTest::addColumn<QString>("refused");
    QTest::addColumn<bool>("isMissing");
    QTest::addColumn<CANError>("error");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("device") << entry("VCI_OpenDevice") << false << CAN_DeviceOpenFailed
                            << calls("VCI_OpenDevice 4 0 0");
    QTest::newRow("channel") << entry("KQ_OpenLIN") << false << CAN_ChannelOpenFailed
                             << calls("VCI_OpenDevice 4 0 0; KQ_OpenLIN 4 0 0 19200 1; VCI_CloseDevice 4 0");
    QTest::newRow("missing") << entry("KQ_OpenLIN") << true << CAN_ChannelOpenFailed
                             << calls("VCI_OpenDevice 4 0 0; VCI_CloseDevice 4 0");
}

void tst_CANCommunication::openLINFails()
{
    QFETCH(QString, refused);
    QFETCH(bool, isMissing);
    QFETCH(CANError, error);
    start(isMissing ? QStringList(refused) : QStringList());
    m_adapter->answer(refused.toLatin1().constData(), 0);
    QCOMPARE(m_manager->openLIN(linParam(0, 0)), error);
    QTEST(m_adapter->takeCalls(), "expected");
    QVERIFY(!m_manager->isDeviceOpen(0));
}

void tst_CANCommunication::refusedLINKeepsDeviceForOthers()
{
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    m_adapter->takeCalls();
    m_adapter->answer("KQ_OpenLIN", 0);
    QCOMPARE(m_manager->openLIN(linParam(0, 0)), CAN_ChannelOpenFailed);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_OpenLIN 4 0 0 19200 1"));
    QVERIFY(m_manager->isDeviceOpen(0));
}

void tst_CANCommunication::closesLIN()
{
    QCOMPARE(m_manager->openLIN(linParam(0, 0)), CAN_OK);
    QCOMPARE(m_manager->openLIN(linParam(0, 1)), CAN_OK);
    m_adapter->takeCalls();
    m_adapter->answer("KQ_CloseLIN", 0); // ignored
    QCOMPARE(m_manager->closeLIN(0, 0), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_CloseLIN 4 0 0"));
    QVERIFY(m_manager->isDeviceOpen(0));
    QCOMPARE(m_manager->closeLIN(0, 1), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_CloseLIN 4 0 1; VCI_CloseDevice 4 0"));
    QVERIFY(!m_manager->isDeviceOpen(0));
}

void tst_CANCommunication::closesLINBesideCAN()
{
    start({entry("KQ_CloseLIN")}); // its answer does not count, so it may be missing
    QCOMPARE(m_manager->openLIN(linParam(0, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    m_adapter->takeCalls();
    QCOMPARE(m_manager->closeLIN(0, 0), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), QStringList());
    QVERIFY(m_manager->isDeviceOpen(0));
    QCOMPARE(m_manager->openLIN(linParam(0, 0)), CAN_OK);
}

void tst_CANCommunication::changesLINParam()
{
    QCOMPARE(m_manager->openLIN(linParam(0, 0)), CAN_OK);
    m_adapter->takeCalls();
    ChannelParam param = linParam(0, 0);
    param.linBaudRate = 9600;
    param.linChecksum = 0;
    QCOMPARE(m_manager->changeLINParam(param), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_CloseLIN 4 0 0; KQ_OpenLIN 4 0 0 9600 0"));
}

void tst_CANCommunication::changeLINParamFails_data()
{
    QTest::addColumn<QString>("refused");
    QTest::addColumn<bool>("isMissing");
    QTest::addColumn<CANError>("error");
    QTest::addColumn<QStringList>("expected");
    const QStringList both = calls("KQ_CloseLIN 4 0 0; KQ_OpenLIN 4 0 0 19200 1");
    QTest::newRow("close") << entry("KQ_CloseLIN") << false << CAN_Unknown << QStringList(both.mid(0, 1));
    QTest::newRow("open") << entry("KQ_OpenLIN") << false << CAN_ChannelOpenFailed << both;
    QTest::newRow("close missing") << entry("KQ_CloseLIN") << true << CAN_Unknown << QStringList();
    QTest::newRow("open missing") << entry("KQ_OpenLIN") << true << CAN_ChannelOpenFailed
                                  << QStringList(both.mid(0, 1));
}

void tst_CANCommunication::changeLINParamFails()
{
    QFETCH(QString, refused);
    QFETCH(bool, isMissing);
    QFETCH(CANError, error);
    QCOMPARE(m_manager->changeLINParam(linParam(0, 0)), CAN_DeviceNotExists);
    start(isMissing ? QStringList(refused) : QStringList());
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    m_adapter->takeCalls();
    m_adapter->answer(refused.toLatin1().constData(), 0);
    QCOMPARE(m_manager->changeLINParam(linParam(0, 0)), error);
    QTEST(m_adapter->takeCalls(), "expected");
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
}

/// Such a channel is closed: the adapter would refuse to close it once more. Its device stays open for it.
void tst_CANCommunication::opensARefusedLINAgain()
{
    const QString close = QStringLiteral("KQ_CloseLIN 4 0 0");
    const QString open = QStringLiteral("KQ_OpenLIN 4 0 0 19200 1");
    struct Step
    {
        bool opens;
        bool closes;
        CANError result;
        QStringList calls;
    };
    const std::vector<Step> steps{{false, true, CAN_ChannelOpenFailed, {close, open}},
                                  {false, false, CAN_ChannelOpenFailed, {open}},
                                  {true, false, CAN_OK, {open}},
                                  {true, false, CAN_Unknown, {close}}, // open: it is closed first as ever
                                  {true, true, CAN_OK, {close, open}}};
    QCOMPARE(m_manager->openLIN(linParam(0, 0)), CAN_OK);
    QCOMPARE(m_manager->openLIN(linParam(0, 1)), CAN_OK);
    for (const Step &step : steps) {
        m_adapter->takeCalls();
        m_adapter->answer("KQ_OpenLIN", step.opens ? 1 : 0);
        m_adapter->answer("KQ_CloseLIN", step.closes ? 1 : 0);
        QCOMPARE(m_manager->changeLINParam(linParam(0, 0)), step.result);
        QCOMPARE(m_adapter->takeCalls(), step.calls);
        QCOMPARE(m_manager->openLIN(linParam(0, 0)), CAN_ChannelExists);
    }

    // The other channel is not concerned, and a channel that is closed and opened anew is open.
    m_adapter->answer("KQ_OpenLIN", 0);
    QCOMPARE(m_manager->changeLINParam(linParam(0, 0)), CAN_ChannelOpenFailed);
    m_adapter->answer("KQ_OpenLIN", 1);
    m_adapter->takeCalls();
    QCOMPARE(m_manager->changeLINParam(linParam(0, 1)), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_CloseLIN 4 0 1; KQ_OpenLIN 4 0 1 19200 1"));
    QCOMPARE(m_manager->closeLIN(0, 1), CAN_OK);
    QVERIFY(m_manager->isDeviceOpen(0));
    QCOMPARE(m_manager->openLIN(linParam(0, 1)), CAN_OK);
    QCOMPARE(m_manager->closeLIN(0, 0), CAN_OK);
    QCOMPARE(m_manager->openLIN(linParam(0, 0)), CAN_OK);
    m_adapter->takeCalls();
    QCOMPARE(m_manager->changeLINParam(linParam(0, 0)), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_CloseLIN 4 0 0; KQ_OpenLIN 4 0 0 19200 1"));
}

void tst_CANCommunication::usesLIN()
{
    VCI_LIN_OBJ frame{};
    frame.DataLen = 2;
    frame.ID = 0x21;
    frame.Data[0] = 0xAB;
    frame.Data[7] = 0xCD;
    frame.Checksum = 7;
    QCOMPARE(m_manager->changeLINMode(0, 1, 3), CAN_OK);
    QCOMPARE(m_manager->transmitLIN(0, 1, frame), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_ChangeLINMode 4 0 1 3; KQ_TransmitLIN 4 0 1 {2 33 ab000000000000cd 7}"));
}

void tst_CANCommunication::receivedLINFrameCarriesTheRequest()
{
    VCI_LIN_OBJ answer{};
    answer.DataLen = 1;
    answer.ID = 0x11;
    answer.Data[0] = 0x22;
    m_adapter->setLINFrame(answer);
    for (const bool isBySlave : {false, true}) {
        VCI_LIN_OBJ frame{};
        frame.ID = 0x11;
        QCOMPARE(isBySlave ? m_manager->receiveLINBySlave(0, 1, &frame) : m_manager->receiveLIN(0, 1, &frame), CAN_OK);
        QCOMPARE(std::memcmp(&frame, &answer, sizeof frame), 0);
    }
    QCOMPARE(m_adapter->takeCalls(), calls("KQ_ReceiveLIN 4 0 1 {0011000000000000000000}; "
                                           "KQ_ReceiveLINBySlave 4 0 1 {0011000000000000000000}"));
}

void tst_CANCommunication::useOfLINFails_data()
{
    QTest::addColumn<QString>("refused");
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<CANError>("error");
    const auto add = [](const char *name, CANError error, const Operation &operation) {
        QTest::newRow(name) << entry(name) << operation << error;
    };
    add("KQ_ChangeLINMode", CAN_SendFailed, [](CANCommunication &m) { return m.changeLINMode(0, 0, 1); });
    add("KQ_TransmitLIN", CAN_SendFailed, [](CANCommunication &m) { return m.transmitLIN(0, 0, {}); });
    add("KQ_ReceiveLIN", CAN_ReadFailed, [](CANCommunication &m) {
        VCI_LIN_OBJ frame;
        return m.receiveLIN(0, 0, &frame);
    });
    add("KQ_ReceiveLINBySlave", CAN_ReadFailed, [](CANCommunication &m) {
        VCI_LIN_OBJ frame;
        return m.receiveLINBySlave(0, 0, &frame);
    });
}

void tst_CANCommunication::useOfLINFails()
{
    QFETCH(QString, refused);
    QFETCH(Operation, operation);
    QFETCH(CANError, error);
    QCOMPARE(operation(*m_manager), CAN_OK);
    for (const quint32 result : {0U, 2U, 0xFFFFFFFFU}) {
        m_adapter->answer(refused.toLatin1().constData(), result);
        QCOMPARE(operation(*m_manager), error);
    }
    m_adapter->takeCalls();
    m_adapter->answer(refused.toLatin1().constData(), 1);
    start({refused});
    QCOMPARE(operation(*m_manager), error);
    QCOMPARE(m_adapter->takeCalls(), QStringList());
}

void tst_CANCommunication::nothingWorksWithoutLibrary_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<CANError>("error");
    const auto add = [](const char *name, CANError error, const Operation &operation) {
        QTest::newRow(name) << operation << error;
    };
    add("openDevice", CAN_DeviceOpenFailed, [](CANCommunication &m) { return m.openDevice(0); });
    add("closeDevice", CAN_DeviceNotExists, [](CANCommunication &m) { return m.closeDevice(0); });
    add("openChannel", CAN_DeviceOpenFailed, [](CANCommunication &m) { return m.openChannel(canParam(0, 0)); });
    add("open CAN FD", CAN_DeviceOpenFailed, [](CANCommunication &m) { return m.openChannel(canParam(0, 0, true)); });
    add("reconfigureChannel", CAN_DeviceNotExists,
        [](CANCommunication &m) { return m.reconfigureChannel(canParam(0, 0)); });
    add("closeChannel", CAN_DeviceNotExists, [](CANCommunication &m) { return m.closeChannel(0, 0); });
    add("transmit", CAN_SendFailed, [](CANCommunication &m) { return m.transmit(0, 0, Frames(1).constData(), 1); });
    add("transmitCANFD", CAN_SendFailed,
        [](CANCommunication &m) { return m.transmitCANFD(0, 0, FramesCANFD(1).constData(), 1); });
    add("openGateway", CAN_ChannelNotExists, [](CANCommunication &m) { return m.openGateway(0); });
    add("closeGateway", CAN_GatewayOperationFailed, [](CANCommunication &m) { return m.closeGateway(0); });
    add("setGatewayIDFilter", CAN_GatewayOperationFailed,
        [](CANCommunication &m) { return m.setGatewayIDFilter(0, 0, {1}); });
    add("getGatewayIDFilter", CAN_GatewayOperationFailed, [](CANCommunication &m) {
        QSet<quint32> ids;
        return m.getGatewayIDFilter(0, 0, ids);
    });
    add("readDeviceInfo", CAN_DeviceOpenFailed, [](CANCommunication &m) {
        QString text;
        return m.readDeviceInfo(0, text, text, text);
    });
    add("openLIN", CAN_DeviceOpenFailed, [](CANCommunication &m) { return m.openLIN(linParam(0, 0)); });
    add("changeLINParam", CAN_DeviceNotExists, [](CANCommunication &m) { return m.changeLINParam(linParam(0, 0)); });
    add("closeLIN", CAN_DeviceNotExists, [](CANCommunication &m) { return m.closeLIN(0, 0); });
    add("changeLINMode", CAN_SendFailed, [](CANCommunication &m) { return m.changeLINMode(0, 0, 1); });
    add("transmitLIN", CAN_SendFailed, [](CANCommunication &m) { return m.transmitLIN(0, 0, {}); });
    add("receiveLIN", CAN_ReadFailed, [](CANCommunication &m) {
        VCI_LIN_OBJ frame;
        return m.receiveLIN(0, 0, &frame);
    });
    add("receiveLINBySlave", CAN_ReadFailed, [](CANCommunication &m) {
        VCI_LIN_OBJ frame;
        return m.receiveLINBySlave(0, 0, &frame);
    });
}

void tst_CANCommunication::nothingWorksWithoutLibrary()
{
    QFETCH(Operation, operation);
    CANCommunication manager(std::make_unique<CANAPI>(QString()));
    QTEST(operation(manager), "error");
}

void tst_CANCommunication::framesReachTheSignals()
{
    QSignalSpy can(m_manager.get(), &CANCommunication::sig_readResultCallback);
    QSignalSpy canFD(m_manager.get(), &CANCommunication::sig_readResultCallbackCANFD);
    QCOMPARE(m_manager->openChannel(canParam(2, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(canParam(2, 1, true)), CAN_OK);
    m_adapter->announce(false, 0, 3, 3);
    m_adapter->announce(true, 1, 2, 2);
    QTRY_COMPARE(can.count(), 1);
    QTRY_COMPARE(canFD.count(), 1);
    QCOMPARE(can[0][0].value<quint8>(), quint8(2));
    QCOMPARE(can[0][1].value<quint8>(), quint8(0));
    QCOMPARE(can[0][2].value<Frames>().size(), 3);
    QCOMPARE(can[0][2].value<Frames>()[2].ID, 3U);
    QCOMPARE(canFD[0][0].value<quint8>(), quint8(2));
    QCOMPARE(canFD[0][1].value<quint8>(), quint8(1));
    QCOMPARE(canFD[0][2].value<FramesCANFD>().size(), 2);
}

void tst_CANCommunication::openDevicesAreWarnedOfAtTheEnd()
{
    // The left-over worker sleeps on until the program ends, so this comes last. It polls no channel.
    auto manager = std::make_unique<CANCommunication>(m_adapter->table());
    QCOMPARE(manager->openDevice(0), CAN_OK);
    m_adapter->takeCalls();
    QTest::ignoreMessage(QtWarningMsg, "CANCommunication destroyed with 1 open device(s)");
    manager.reset();
    QCOMPARE(m_adapter->takeCalls(), QStringList());
}

X9_CORE_TEST(tst_CANCommunication)
#include "tst_CANCommunication.moc"
