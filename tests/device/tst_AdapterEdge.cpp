#include "device/CANCommunication.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QRegularExpression>
#include <QTimer>
#include <QtTest>

#include <memory>

using namespace std::chrono_literals;

namespace {

const QString TableHead = QStringLiteral("| entry | GUI thread | receive thread");

/// The cells of the rows of the table in the documentation, without head and rule.
QVector<QStringList> tableRows()
{
    QFile file(QStringLiteral(X9_ARCHITECTURE));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QString text = QString::fromUtf8(file.readAll());
    QVector<QStringList> rows;
    for (const QString &line : text.mid(text.indexOf(TableHead)).split(QLatin1Char('\n')).mid(2)) {
        if (!line.startsWith(QLatin1Char('|'))) {
            break;
        }
        rows.append(line.split(QLatin1Char('|')).mid(1, 4));
    }
    return rows;
}

QStringList entriesOf(const QString &cell)
{
    QStringList entries;
    static const QRegularExpression name(QStringLiteral("`(\\w+)`"));
    for (auto match = name.globalMatch(cell); match.hasNext();) {
        entries.append(match.next().captured(1));
    }
    return entries;
}

/// As ScriptedAdapter::callers() tells them.
QStringList callersOfTheTable()
{
    QStringList callers;
    const QStringList kinds{QStringLiteral(" GUI"), QStringLiteral(" worker"), QStringLiteral(" monitor")};
    for (const QStringList &row : tableRows()) {
        for (const QString &entry : entriesOf(row.at(0))) {
            for (int kind = 0; kind < kinds.size(); ++kind) {
                if (!row.at(kind + 1).trimmed().isEmpty()) {
                    callers.append(entry + kinds.at(kind));
                }
            }
        }
    }
    callers.sort();
    return callers;
}

QStringList without(QStringList list, const QStringList &others)
{
    for (const QString &other : others) {
        list.removeAll(other);
    }
    return list;
}

ChannelParam channel(quint8 dev, quint8 ch, bool isCANFD = false)
{
    ChannelParam param;
    param.device = dev;
    param.channel = ch;
    param.isCANFD = isCANFD;
    param.dataRateCANFD = isCANFD ? 2 : 0;
    return param;
}

} // namespace

/// Which threads call the adapter library, against the table in docs/ARCHITECTURE.md.
class tst_AdapterEdge : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    static void tableNamesEveryEntryOnce();
    void callersAreThoseOfTheTable();

private:
    void useCAN();
    void useGateway();
    void useLIN();
    void scan();

    std::unique_ptr<ScriptedAdapter> m_adapter;
    std::unique_ptr<CANCommunication> m_manager;
};

void tst_AdapterEdge::init()
{
    m_adapter = std::make_unique<ScriptedAdapter>();
    const auto query = [this](const QString & /*productCode*/, const std::atomic<bool> & /*isCancelled*/) {
        m_adapter->noteMonitor();
        return QString();
    };
    m_manager = std::make_unique<CANCommunication>(m_adapter->table(), query, nullptr, 1ms);
    m_manager->watchDevices(0ms); // so every poll asks
}

void tst_AdapterEdge::cleanup()
{
    for (const quint8 dev : {quint8(0), quint8(1)}) {
        for (const quint8 ch : {quint8(0), quint8(1)}) {
            m_manager->closeChannel(dev, ch);
            m_manager->closeLIN(dev, ch);
        }
    }
    m_manager.reset();
    m_adapter.reset();
}

void tst_AdapterEdge::tableNamesEveryEntryOnce()
{
    QStringList wanted;
    const CANAPI::EntryLookUp lookUp = [&wanted](const char *name) -> void (*)() {
        wanted.append(QString::fromLatin1(name));
        return nullptr;
    };
    const CANAPI api(lookUp);
    wanted.removeDuplicates(); // one is looked up twice
    QStringList named;
    for (const QStringList &row : tableRows()) {
        QCOMPARE(row.size(), 4);
        named += entriesOf(row.at(0));
    }
    wanted.sort();
    named.sort();
    QCOMPARE(named, wanted);
}

void tst_AdapterEdge::useCAN()
{
    QCOMPARE(m_manager->openChannel(channel(0, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(channel(0, 1)), CAN_OK);
    QCOMPARE(m_manager->openChannel(channel(1, 0, true)), CAN_OK);
    const VCI_CAN_OBJ frame{};
    const VCI_CANFD_OBJ fdFrame{};
    QCOMPARE(m_manager->transmit(0, 0, &frame, 1), CAN_OK);
    QCOMPARE(m_manager->transmitCANFD(1, 0, &fdFrame, 1), CAN_OK);
    m_adapter->announce(false, 0, 1, 1);
    m_adapter->announce(true, 0, 1, 1);
    QSignalSpy classic(m_manager.get(), &CANCommunication::sig_readResultCallback);
    QSignalSpy fd(m_manager.get(), &CANCommunication::sig_readResultCallbackCANFD);
    QTRY_VERIFY(!classic.isEmpty() && !fd.isEmpty());
}

void tst_AdapterEdge::useGateway()
{
    QCOMPARE(m_manager->openGateway(0), CAN_OK);
    QSet<quint32> words{9};
    QCOMPARE(m_manager->setGatewayIDFilter(0, 0, words), CAN_OK);
    QCOMPARE(m_manager->getGatewayIDFilter(0, 0, words), CAN_OK);
    QCOMPARE(m_manager->closeGateway(0), CAN_OK);
}

void tst_AdapterEdge::useLIN()
{
    QCOMPARE(m_manager->openLIN(channel(0, 0)), CAN_OK);
    QCOMPARE(m_manager->changeLINMode(0, 0, 1), CAN_OK);
    VCI_LIN_OBJ frame{};
    QCOMPARE(m_manager->transmitLIN(0, 0, frame), CAN_OK);
    QCOMPARE(m_manager->receiveLIN(0, 0, &frame), CAN_OK);
    QCOMPARE(m_manager->receiveLINBySlave(0, 0, &frame), CAN_OK);
    QCOMPARE(m_manager->changeLINParam(channel(0, 0)), CAN_OK);
}

/// Up to the first step with a data rate.
void tst_AdapterEdge::scan()
{
    QSignalSpy steps(m_manager.get(), &CANCommunication::sig_scanResultCallback);
    QCOMPARE(m_manager->slot_scanCANBaudrate(2, 0), CAN_OK);
    m_manager->findChild<QTimer *>(QStringLiteral("scanTimer"))->setInterval(0);
    QTRY_VERIFY(steps.size() >= 10);
    m_manager->stopScan();
}

void tst_AdapterEdge::callersAreThoseOfTheTable()
{
    QVERIFY(!m_manager->presentDevices().isEmpty());
    useCAN();
    useGateway();
    useLIN();
    scan();
    QCOMPARE(m_manager->closeLIN(0, 0), CAN_OK);
    QCOMPARE(m_manager->closeChannel(0, 0), CAN_OK);
    QTRY_VERIFY(m_adapter->callers().contains(QStringLiteral("KQ_ReadInfo worker")));
    QTRY_VERIFY(m_adapter->callers().contains(QStringLiteral("KQ_ReadInfo monitor")));
    const QStringList seen = m_adapter->callers();
    const QStringList allowed = callersOfTheTable();
    QCOMPARE(without(seen, allowed).join(QLatin1Char(',')), QString());
    QCOMPARE(without(allowed, seen).join(QLatin1Char(',')), QString());
}

X9_CORE_TEST(tst_AdapterEdge)
#include "tst_AdapterEdge.moc"
