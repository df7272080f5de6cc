#include "can/GatewayIdList.h"
#include "can/GUI_CanGateWay.h"
#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/TestProgram.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QtTest>

#include <functional>
#include <memory>

namespace {
// Device 0 is the gateway between two silent buses, device 1 sits at both ends and plays the traffic.
const QByteArray TwoBuses = R"({
  "buses": [{"name": "a", "bitrate": "500k"}, {"name": "b", "bitrate": "500k"}],
  "devices": [{"model": "X9FC-1", "can": [{"bus": "a"}, {"bus": "b"}]},
              {"model": "X9FC-2", "can": [{"bus": "a"}, {"bus": "b"}]}]
})";

constexpr quint8 Gateway = 0;
constexpr quint8 Ends = 1;
constexpr quint32 MarkerId = 0x7F0; ///< sent by the far channel of the gateway itself, never forwarded

using Words = QSet<quint32>;
using Ids = QVector<quint32>;

ChannelParam channel(quint8 device, quint8 ch)
{
    ChannelParam param;
    param.device = device;
    param.channel = ch;
    param.Timing0 = 0x00;
    param.Timing1 = 0x1C;
    param.AccMask = 0xFFFFFFFF;
    return param;
}

VCI_CAN_OBJ frame(quint32 id, quint8 type)
{
    VCI_CAN_OBJ result{};
    result.ID = id;
    result.ExternFlag = type;
    result.DataLen = 1;
    return result;
}
} // namespace

class tst_GatewayFilter : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void settingNeedsTheGateway();
    void forwardsNothingWhileOff();
    static void forwardsTheListedOnly_data();
    void forwardsTheListedOnly();
    void typesAreDistinguished();
    void forwardsAllWithAnEmptyList();
    void eachDirectionHasItsOwnList();
    void deletedIdentifierIsNoLongerForwarded();
    void leavingTheDialogWritesNothing();
    void sixtyFourEntriesComeBackEqual();
    void oddWordsComeBackEqual();
    void tooManyAreRefused();

private:
    /// What the adapter holds for a channel of the gateway.
    Words listOf(quint8 ch);
    /// Opens the dialog on the list of a channel, lets the user work in it, and writes the list back when it was
    /// accepted.
    CANError edit(quint8 ch, const std::function<void(GUI_CanGateWay &)> &user);
    /// Plays frames onto the bus of a channel and answers the identifiers that arrive on the other bus.
    Ids seenBehind(quint8 ch, const QVector<VCI_CAN_OBJ> &frames);
    /// Waits until a frame with an identifier has arrived at one of the ends.
    bool arrived(quint8 ch, quint32 id) const;

    std::unique_ptr<AdapterFolder> m_folder;
    std::unique_ptr<CANCommunication> m_manager;
    Ids m_seen[2]; ///< by channel of the ends
};

namespace {
void click(const QWidget &parent, const char *name)
{
    QTest::mouseClick(parent.findChild<QAbstractButton *>(QLatin1String(name)), Qt::LeftButton);
}

void addId(GUI_CanGateWay &dialog, quint32 id, quint8 type)
{
    auto *combo = dialog.findChild<QComboBox *>(QStringLiteral("cbx_type"));
    combo->setCurrentIndex(combo->findData(type));
    auto *entry = dialog.findChild<QLineEdit *>(QStringLiteral("lbx_id"));
    entry->clear();
    QTest::keyClicks(entry, QString::number(id, 16));
    click(dialog, "btn_apply");
}

void deleteRow(const GUI_CanGateWay &dialog, int row)
{
    const auto *list = dialog.findChild<QListWidget *>(QStringLiteral("listWidget"));
    click(*list->itemWidget(list->item(row)), "btn_delete");
}
} // namespace

void tst_GatewayFilter::init()
{
    m_folder = std::make_unique<AdapterFolder>(TwoBuses);
    m_manager = std::make_unique<CANCommunication>(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)));
    for (const quint8 device : {Gateway, Ends}) {
        for (quint8 ch = 0; ch < 2; ++ch) {
            QCOMPARE(m_manager->openChannel(channel(device, ch)), CAN_OK);
            m_seen[ch].clear();
        }
    }
    connect(m_manager.get(), &CANCommunication::sig_readResultCallback, this,
            [this](quint8 dev, quint8 ch, const QVector<VCI_CAN_OBJ> &frames) {
                for (const VCI_CAN_OBJ &received : frames) {
                    if (dev == Ends) {
                        m_seen[ch].append(received.ID);
                    }
                }
            });
}

void tst_GatewayFilter::cleanup()
{
    for (const quint8 device : {Gateway, Ends}) {
        m_manager->closeChannel(device, 0);
        m_manager->closeChannel(device, 1);
    }
    m_manager.reset();
    m_folder.reset();
}

Words tst_GatewayFilter::listOf(quint8 ch)
{
    Words words = {0xBAD};
    return m_manager->getGatewayIDFilter(Gateway, ch, words) == CAN_OK ? words : Words({0xBAD});
}

CANError tst_GatewayFilter::edit(quint8 ch, const std::function<void(GUI_CanGateWay &)> &user)
{
    Words words;
    const CANError result = m_manager->getGatewayIDFilter(Gateway, ch, words);
    if (result != CAN_OK) {
        return result;
    }
    GUI_CanGateWay dialog(words);
    dialog.show();
    user(dialog);
    return dialog.result() == QDialog::Accepted ? m_manager->setGatewayIDFilter(Gateway, ch, dialog.entries()) : CAN_OK;
}

bool tst_GatewayFilter::arrived(quint8 ch, quint32 id) const
{
    return QTest::qWaitFor([this, ch, id] { return m_seen[ch].contains(id); });
}

/// Frames cross at the moment when they are sent, so whatever the gateway forwards is on the other bus before the
/// marker.
Ids tst_GatewayFilter::seenBehind(quint8 ch, const QVector<VCI_CAN_OBJ> &frames)
{
    const quint8 other = ch == 0 ? 1 : 0;
    const VCI_CAN_OBJ marker = frame(MarkerId, GatewayStandard);
    m_seen[other].clear();
    m_manager->transmit(Ends, ch, frames.constData(), static_cast<quint32>(frames.size()));
    m_manager->transmit(Gateway, other, &marker, 1);
    if (!arrived(other, MarkerId)) {
        return {0xBAD};
    }
    Ids seen = m_seen[other];
    seen.removeLast();
    return seen;
}

void tst_GatewayFilter::settingNeedsTheGateway()
{
    const auto user = [](GUI_CanGateWay &dialog) {
        addId(dialog, 0x10, GatewayStandard);
        click(dialog, "btn_ok");
    };
    QCOMPARE(edit(0, user), CAN_GatewayOperationFailed);
    QCOMPARE(listOf(0), Words());
    QCOMPARE(m_manager->openGateway(Gateway), CAN_OK);
    QCOMPARE(edit(0, user), CAN_OK);
    QCOMPARE(listOf(0), Words({0x81}));
    QCOMPARE(m_manager->closeGateway(Gateway), CAN_OK);
    QCOMPARE(edit(0, [](GUI_CanGateWay &dialog) { click(dialog, "btn_ok"); }), CAN_GatewayOperationFailed);
    QCOMPARE(listOf(0), Words({0x81}));
}

void tst_GatewayFilter::forwardsNothingWhileOff()
{
    const QVector<VCI_CAN_OBJ> frames = {frame(0x10, GatewayStandard)};
    QCOMPARE(seenBehind(0, frames), Ids());
    QCOMPARE(m_manager->openGateway(Gateway), CAN_OK);
    QCOMPARE(edit(0,
                  [](GUI_CanGateWay &dialog) {
                      addId(dialog, 0x10, GatewayStandard);
                      click(dialog, "btn_ok");
                  }),
             CAN_OK);
    QCOMPARE(seenBehind(0, frames), Ids({0x10}));
    QCOMPARE(m_manager->closeGateway(Gateway), CAN_OK);
    QCOMPARE(seenBehind(0, frames), Ids());
    QCOMPARE(seenBehind(1, frames), Ids());
    QCOMPARE(m_manager->openGateway(Gateway), CAN_OK);
    QCOMPARE(seenBehind(0, frames), Ids({0x10}));
}

void tst_GatewayFilter::forwardsTheListedOnly_data()
{
    QTest::addColumn<quint8>("ch");
    QTest::newRow("from channel 0 to 1") << quint8{0};
    QTest::newRow("from channel 1 to 0") << quint8{1};
}

void tst_GatewayFilter::forwardsTheListedOnly()
{
    QFETCH(quint8, ch);
    QCOMPARE(m_manager->openGateway(Gateway), CAN_OK);
    QCOMPARE(edit(ch,
                  [](GUI_CanGateWay &dialog) {
                      addId(dialog, 0x10, GatewayStandard);
                      addId(dialog, 0x12345, GatewayExtend);
                      click(dialog, "btn_ok");
                  }),
             CAN_OK);
    QCOMPARE(seenBehind(ch, {frame(0x11, GatewayStandard), frame(0x10, GatewayStandard), frame(0x12346, GatewayExtend),
                             frame(0x12345, GatewayExtend), frame(0x0F, GatewayStandard)}),
             Ids({0x10, 0x12345}));
}

void tst_GatewayFilter::typesAreDistinguished()
{
    QCOMPARE(m_manager->openGateway(Gateway), CAN_OK);
    QCOMPARE(edit(0,
                  [](GUI_CanGateWay &dialog) {
                      addId(dialog, 0x20, GatewayStandard);
                      addId(dialog, 0x30, GatewayExtend);
                      click(dialog, "btn_ok");
                  }),
             CAN_OK);
    QCOMPARE(seenBehind(0, {frame(0x20, GatewayExtend), frame(0x30, GatewayStandard)}), Ids());
    QCOMPARE(seenBehind(0, {frame(0x20, GatewayStandard), frame(0x30, GatewayExtend)}), Ids({0x20, 0x30}));
}

void tst_GatewayFilter::forwardsAllWithAnEmptyList()
{
    const QVector<VCI_CAN_OBJ> frames = {frame(0x10, GatewayStandard), frame(0x12345, GatewayExtend)};
    QCOMPARE(m_manager->openGateway(Gateway), CAN_OK);
    QCOMPARE(seenBehind(0, frames), Ids({0x10, 0x12345}));
    QCOMPARE(m_manager->setGatewayIDFilter(Gateway, 0, {gatewayWord(0x10, GatewayStandard)}), CAN_OK);
    QCOMPARE(seenBehind(0, frames), Ids({0x10}));
    QCOMPARE(edit(0,
                  [](GUI_CanGateWay &dialog) {
                      click(dialog, "btn_clear");
                      click(dialog, "btn_ok");
                  }),
             CAN_OK);
    QCOMPARE(listOf(0), Words());
    QCOMPARE(seenBehind(0, frames), Ids({0x10, 0x12345}));
}

void tst_GatewayFilter::eachDirectionHasItsOwnList()
{
    const QVector<VCI_CAN_OBJ> frames = {frame(0x10, GatewayStandard), frame(0x11, GatewayStandard)};
    QCOMPARE(m_manager->openGateway(Gateway), CAN_OK);
    QCOMPARE(edit(0,
                  [](GUI_CanGateWay &dialog) {
                      addId(dialog, 0x10, GatewayStandard);
                      click(dialog, "btn_ok");
                  }),
             CAN_OK);
    QCOMPARE(edit(1,
                  [](GUI_CanGateWay &dialog) {
                      addId(dialog, 0x11, GatewayStandard);
                      click(dialog, "btn_ok");
                  }),
             CAN_OK);
    QCOMPARE(seenBehind(0, frames), Ids({0x10})); // the list of the channel that receives
    QCOMPARE(seenBehind(1, frames), Ids({0x11}));
    QCOMPARE(listOf(0), Words({0x81}));
    QCOMPARE(listOf(1), Words({0x89}));
}

void tst_GatewayFilter::deletedIdentifierIsNoLongerForwarded()
{
    const QVector<VCI_CAN_OBJ> frames = {frame(0x10, GatewayStandard), frame(0x11, GatewayStandard)};
    QCOMPARE(m_manager->openGateway(Gateway), CAN_OK);
    QCOMPARE(m_manager->setGatewayIDFilter(Gateway, 0, {0x81, 0x89}), CAN_OK);
    QCOMPARE(seenBehind(0, frames), Ids({0x10, 0x11}));
    QCOMPARE(edit(0,
                  [](GUI_CanGateWay &dialog) {
                      deleteRow(dialog, 0);
                      click(dialog, "btn_ok");
                  }),
             CAN_OK);
    QCOMPARE(seenBehind(0, frames), Ids({0x11}));
}

void tst_GatewayFilter::leavingTheDialogWritesNothing()
{
    QCOMPARE(m_manager->openGateway(Gateway), CAN_OK);
    QCOMPARE(m_manager->setGatewayIDFilter(Gateway, 0, {0x81}), CAN_OK);
    QCOMPARE(edit(0,
                  [](GUI_CanGateWay &dialog) {
                      click(dialog, "btn_clear");
                      addId(dialog, 0x22, GatewayExtend);
                      click(dialog, "btn_cancel");
                  }),
             CAN_OK);
    QCOMPARE(listOf(0), Words({0x81}));
    QCOMPARE(seenBehind(0, {frame(0x22, GatewayExtend), frame(0x10, GatewayStandard)}), Ids({0x10}));
}

void tst_GatewayFilter::sixtyFourEntriesComeBackEqual()
{
    Words expected;
    QVector<VCI_CAN_OBJ> listed;
    Ids ids;
    for (quint32 i = 0; i < 64; ++i) {
        const quint8 type = i % 2 == 0 ? GatewayStandard : GatewayExtend;
        const quint32 id = i % 2 == 0 ? 0x7BF - i : 0x1FFFFFFF - i;
        expected.insert(gatewayWord(id, type));
        listed.append(frame(id, type));
        ids.append(id);
    }
    QCOMPARE(m_manager->openGateway(Gateway), CAN_OK);
    QCOMPARE(edit(1,
                  [&listed](GUI_CanGateWay &dialog) {
                      for (const VCI_CAN_OBJ &each : listed) {
                          addId(dialog, each.ID, each.ExternFlag);
                      }
                      click(dialog, "btn_ok");
                  }),
             CAN_OK);
    QCOMPARE(listOf(1), expected);
    QCOMPARE(listOf(0), Words());
    QCOMPARE(edit(1, [](GUI_CanGateWay &dialog) { click(dialog, "btn_ok"); }), CAN_OK); // written back untouched
    QCOMPARE(listOf(1), expected);
    listed.append(frame(1, GatewayStandard));
    QCOMPARE(seenBehind(1, listed), ids);
}

void tst_GatewayFilter::oddWordsComeBackEqual()
{
    const Words odd = {0x0, 0x4, 0x918, 0x91D, 0xFFFFFFFF};
    QCOMPARE(m_manager->openGateway(Gateway), CAN_OK);
    QCOMPARE(m_manager->setGatewayIDFilter(Gateway, 0, odd), CAN_OK);
    QCOMPARE(edit(0, [](GUI_CanGateWay &dialog) { click(dialog, "btn_ok"); }), CAN_OK);
    QCOMPARE(listOf(0), odd);
}

void tst_GatewayFilter::tooManyAreRefused()
{
    Words words;
    for (quint32 i = 0; i < 65; ++i) {
        words.insert(gatewayWord(i, GatewayStandard));
    }
    QCOMPARE(m_manager->openGateway(Gateway), CAN_OK);
    const GUI_CanGateWay dialog(words);
    QCOMPARE(m_manager->setGatewayIDFilter(Gateway, 0, dialog.entries()), CAN_GatewayOperationFailed);
    QCOMPARE(listOf(0), Words());
}

X9_GUI_TEST(tst_GatewayFilter)
#include "tst_GatewayFilter.moc"
