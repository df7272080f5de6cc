#include "device/CANBaudrate.h"
#include "device/CANCommunication.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/TestProgram.h"

#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace {

constexpr int StepCount = 54;
constexpr int RateCount = 9;
constexpr int DataRateCount = 5; ///< without classic CAN

/// Nominal rate of the bus that has nothing but FD frames, by data-rate index from 1.
constexpr int NominalOfDataRate[DataRateCount] = {3, 1, 5, 2, 9};

/// One device with what a scan of it is to find.
struct Case
{
    QString name;
    QString buses[2];     ///< empty: connected to nothing
    QStringList expected; ///< "can1 can2 index dataRate", "finish"
    QString model = QStringLiteral("X9FC-2");
    QString faults = QStringLiteral("{}");
    CANError answer = CAN_OK;
    QVector<quint8> inUse = {}; ///< channels open at 500k before the scan
};

QString classicBus(int index)
{
    return QStringLiteral("classic %1").arg(index);
}

QString fdBus(int dataRate)
{
    return QStringLiteral("fd %1").arg(dataRate);
}

/// The reports of some steps that all say the same of the channels.
QStringList reports(const char *channels, int firstStep, int endStep)
{
    QStringList list;
    for (int step = firstStep; step < endStep; ++step) {
        list.append(
            QStringLiteral("%1 %2 %3").arg(QLatin1String(channels)).arg(step % RateCount + 1).arg(step / RateCount));
    }
    return list;
}

QStringList finished(const QStringList &list)
{
    return list + QStringList(QStringLiteral("finish"));
}

/// Both channels hear something at that step.
QStringList foundBoth(int step)
{
    return finished(reports("2 2", 0, step) + reports("1 1", step, step + 1));
}

/// One channel hears something at that step, and the scan goes on for the other one.
QStringList foundOne(int channel, int step)
{
    return finished(reports("2 2", 0, step) + reports(channel == 0 ? "1 2" : "2 1", step, step + 1) +
                    reports(channel == 0 ? "0 2" : "2 0", step + 1, StepCount));
}

int stepOfDataRate(int dataRate)
{
    return dataRate * RateCount + NominalOfDataRate[dataRate - 1] - 1;
}

std::vector<Case> casesOfRates()
{
    std::vector<Case> cases;
    for (int index = 1; index <= RateCount; ++index) {
        const QString bus = classicBus(index);
        const QString name = canBaudrates().at(index).name;
        const int channel = index % 2;
        cases.push_back({name + QStringLiteral(", both"), {bus, bus}, foundBoth(index - 1)});
        Case one{name + QStringLiteral(", one"), {}, foundOne(channel, index - 1)};
        one.buses[channel] = bus;
        cases.push_back(one);
    }
    for (int dataRate = 1; dataRate <= DataRateCount; ++dataRate) {
        const QString bus = fdBus(dataRate);
        const QString name = QStringLiteral("data rate %1").arg(dataRate);
        const int channel = dataRate % 2;
        const int step = stepOfDataRate(dataRate);
        cases.push_back({name + QStringLiteral(", both"), {bus, bus}, foundBoth(step)});
        Case one{name + QStringLiteral(", one"), {}, foundOne(channel, step)};
        one.buses[channel] = bus;
        cases.push_back(one);
    }
    return cases;
}

std::vector<Case> allCases()
{
    const QStringList nothing = finished(reports("2 2", 0, StepCount));
    std::vector<Case> cases = casesOfRates();
    cases.push_back(
        {QStringLiteral("two rates"),
         {classicBus(7), classicBus(2)},
         finished(reports("2 2", 0, 1) + reports("2 1", 1, 2) + reports("2 0", 2, 6) + reports("1 0", 6, 7))});
    cases.push_back({QStringLiteral("classic and FD"),
                     {fdBus(1), classicBus(1)},
                     finished(reports("2 1", 0, 1) + reports("2 0", 1, 11) + reports("1 0", 11, 12))});
    cases.push_back({QStringLiteral("no traffic"), {QStringLiteral("quiet"), QStringLiteral("quiet")}, nothing});
    cases.push_back({QStringLiteral("5k"), {QStringLiteral("5k"), QStringLiteral("5k")}, nothing});
    Case classicModel{QStringLiteral("model without CAN FD"), {fdBus(1), QString()}, nothing};
    classicModel.model = QStringLiteral("X9EC-2");
    cases.push_back(classicModel);
    Case vanishing{QStringLiteral("vanishing device"), {classicBus(9), fdBus(1)}, nothing};
    vanishing.faults = QStringLiteral(R"({"vanish_after_ms": 100})");
    cases.push_back(vanishing);
    for (const quint8 used : {quint8(0), quint8(1)}) {
        Case oneInUse{QStringLiteral("channel %1 in use").arg(used), {}, foundOne(1 - used, 4)};
        oneInUse.buses[used] = classicBus(3);
        oneInUse.buses[1 - used] = classicBus(5);
        oneInUse.inUse = {used};
        cases.push_back(oneInUse);
    }
    Case bothInUse{QStringLiteral("both channels in use"), {classicBus(3), classicBus(3)}, {}};
    bothInUse.answer = CAN_DeviceOpenFailed;
    bothInUse.inUse = {0, 1};
    cases.push_back(bothInUse);
    Case refused{QStringLiteral("device refused"), {classicBus(3), classicBus(3)}, {}};
    refused.faults = QStringLiteral(R"({"open_refused": true})");
    refused.answer = CAN_DeviceOpenFailed;
    cases.push_back(refused);
    return cases;
}

QString jsonOfBus(const QString &name, const QString &rate, int dataRate, const QString &node)
{
    return QStringLiteral(R"({"name": "%1", "bitrate": "%2", "data_rate": %3, "nodes": [%4]})")
        .arg(name, rate, QString::number(dataRate), node);
}

QByteArray configuration(const std::vector<Case> &cases)
{
    const QString classicNode = QStringLiteral(R"({"id": 1, "period_us": 3000, "payload": "counting"})");
    const QString fdNode = QStringLiteral(R"({"id": 2, "period_us": 3000, "format": "fd", "length": 64})");
    const QStringList rates = QStringLiteral("1000k 800k 500k 250k 125k 100k 50k 25k 10k").split(QLatin1Char(' '));
    QStringList buses{jsonOfBus(QStringLiteral("quiet"), rates.at(2), 0, QString()),
                      jsonOfBus(QStringLiteral("5k"), QStringLiteral("5k"), 0, classicNode)};
    for (int index = 1; index <= RateCount; ++index) {
        buses.append(jsonOfBus(classicBus(index), rates.at(index - 1), 0, classicNode));
    }
    for (int dataRate = 1; dataRate <= DataRateCount; ++dataRate) {
        buses.append(jsonOfBus(fdBus(dataRate), rates.at(NominalOfDataRate[dataRate - 1] - 1), dataRate, fdNode));
    }
    QStringList devices;
    for (const Case &row : cases) {
        QStringList channels;
        for (const QString &bus : row.buses) {
            channels.append(bus.isEmpty() ? QStringLiteral("{}") : QStringLiteral(R"({"bus": "%1"})").arg(bus));
        }
        devices.append(QStringLiteral(R"({"model": "%1", "can": [%2], "faults": %3})")
                           .arg(row.model, channels.join(QLatin1Char(',')), row.faults));
    }
    return QStringLiteral(R"({"buses": [%1], "devices": [%2]})")
        .arg(buses.join(QLatin1Char(',')), devices.join(QLatin1Char(',')))
        .toUtf8();
}

/// A manager that scans one device, and what it signals.
class Scanner
{
public:
    explicit Scanner(quint8 device)
        : m_device(device)
        , m_manager(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)))
    {
        using Manager = CANCommunication;
        QObject::connect(&m_manager, &Manager::sig_scanResultCallback, &m_manager,
                         [this](quint8 can1, quint8 can2, quint8 index, quint8 dataRate) {
                             heard.append(QStringLiteral("%1 %2 %3 %4").arg(can1).arg(can2).arg(index).arg(dataRate));
                         });
        QObject::connect(&m_manager, &Manager::sig_scanFinish, &m_manager,
                         [this] { heard.append(QStringLiteral("finish")); });
        QObject::connect(&m_manager, &Manager::sig_readResultCallback, &m_manager,
                         [this](quint8, quint8, const QVector<VCI_CAN_OBJ> &obj) { count(obj); });
    }
    ~Scanner()
    {
        for (const quint8 channel : {quint8(0), quint8(1)}) {
            m_manager.closeChannel(m_device, channel);
        }
    }
    Scanner(const Scanner &) = delete;
    Scanner &operator=(const Scanner &) = delete;

    void start(const QVector<quint8> &inUse)
    {
        for (const quint8 channel : inUse) {
            ChannelParam param;
            param.device = m_device;
            param.channel = channel;
            param.Timing1 = 0x1C; // 500k
            param.AccMask = 0xFFFFFFFFU;
            isPrepared = m_manager.openChannel(param) == CAN_OK && isPrepared;
        }
        answer = m_manager.slot_scanCANBaudrate(m_device, 0);
    }
    bool isScanning() const { return m_manager.isScanning(); }
    bool isOpen() const { return m_manager.isDeviceOpen(m_device); }
    /// Whether the adapter, too, has the device closed: it can be opened.
    bool canBeOpened() { return m_manager.openDevice(m_device) == CAN_OK && m_manager.closeDevice(m_device) == CAN_OK; }

    QStringList heard;
    CANError answer = CAN_Unknown;
    bool isPrepared = true;
    int frames = 0; ///< received on channels in use
    int lost = 0;

private:
    void count(const QVector<VCI_CAN_OBJ> &received)
    {
        for (const VCI_CAN_OBJ &frame : received) {
            const auto number = qFromLittleEndian<quint64>(frame.Data);
            lost += m_last && number != *m_last + 1 ? 1 : 0;
            m_last = number;
        }
        frames += received.size();
    }

    quint8 m_device;
    CANCommunication m_manager;
    std::optional<quint64> m_last;
};

} // namespace

/// Scans against the virtual adapter, at their own pace. All devices are scanned at the same time, each by a manager of
/// its own, in the time of one scan.
class tst_BaudrateScanAdapter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void scans_data();
    void scans();
    void cleanupTestCase();

private:
    std::vector<Case> m_cases;
    std::unique_ptr<AdapterFolder> m_folder;
    std::vector<std::unique_ptr<Scanner>> m_scanners; ///< by device
};

void tst_BaudrateScanAdapter::initTestCase()
{
    m_cases = allCases();
    m_folder = std::make_unique<AdapterFolder>(configuration(m_cases));
    for (std::size_t device = 0; device < m_cases.size(); ++device) {
        m_scanners.push_back(std::make_unique<Scanner>(quint8(device)));
        m_scanners.back()->start(m_cases[device].inUse);
    }
    const auto areIdle = [this] {
        return std::none_of(m_scanners.begin(), m_scanners.end(), [](const auto &it) { return it->isScanning(); });
    };
    QVERIFY(QTest::qWaitFor(areIdle, 100000));
}

void tst_BaudrateScanAdapter::scans_data()
{
    QTest::addColumn<int>("device");
    for (std::size_t device = 0; device < m_cases.size(); ++device) {
        QTest::newRow(qPrintable(m_cases[device].name)) << int(device);
    }
}

void tst_BaudrateScanAdapter::scans()
{
    QFETCH(int, device);
    const Case &expected = m_cases[std::size_t(device)];
    Scanner &scanner = *m_scanners[std::size_t(device)];
    QVERIFY(scanner.isPrepared);
    QCOMPARE(scanner.answer, expected.answer);
    QCOMPARE(scanner.heard, expected.expected);
    QCOMPARE(scanner.isOpen(), !expected.inUse.isEmpty());
    if (expected.faults == QLatin1String("{}") && expected.inUse.isEmpty()) {
        QVERIFY(scanner.canBeOpened());
    }
    if (expected.inUse.size() == 1) { // received all the time
        QTRY_VERIFY(scanner.frames > 100);
        QCOMPARE(scanner.lost, 0);
    }
}

void tst_BaudrateScanAdapter::cleanupTestCase()
{
    m_scanners.clear();
    m_folder.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

X9_CORE_TEST(tst_BaudrateScanAdapter)
#include "tst_BaudrateScanAdapter.moc"
