#include "adapter/socketcan/Links.h"
#include "tests/socketcan/StandInKernel.h"
#include "tests/support/TestProgram.h"

#include <linux/can/netlink.h>

#include <QtTest>

using socketcan::Links;
using socketcan::LinkSettings;
using socketcan::Problem;

Q_DECLARE_METATYPE(StandInLink)
Q_DECLARE_METATYPE(LinkSettings)

namespace {

constexpr std::uint32_t AllModes = CAN_CTRLMODE_FD | CAN_CTRLMODE_LISTENONLY;
const LinkSettings Classic500{500000, 875, 0, false};
const LinkSettings Fd2M{500000, 875, 2000000, false};
const LinkSettings Listening{500000, 875, 0, true};

StandInLink controller(std::uint32_t bitrate, bool isUp, std::uint32_t modes = 0, std::uint32_t dataBitrate = 0)
{
    StandInLink link;
    link.name = "can0";
    link.isUp = isUp;
    link.bitrate = bitrate;
    link.modes = modes;
    link.dataBitrate = dataBitrate;
    link.supportedModes = AllModes;
    link.mtu = (modes & CAN_CTRLMODE_FD) != 0 ? 72 : 16;
    return link;
}

StandInLink virtualLink(bool isUp, std::uint32_t mtu)
{
    StandInLink link;
    link.name = "can0";
    link.kind = "vcan";
    link.isUp = isUp;
    link.mtu = mtu;
    return link;
}

} // namespace

class tst_Links : public QObject
{
    Q_OBJECT

private slots:
    static void order_data();
    static void order();
    static void listsCanOnly();
    static void withRights_data();
    static void withRights();
    static void withoutRights_data();
    static void withoutRights();
    static void nobodyIsDisturbed();
    static void refusedSettingsAreTakenBack();
    static void missingInterface();
    static void listeningThatCannotBeSet();
};

void tst_Links::order_data()
{
    QTest::addColumn<QString>("names");
    QTest::newRow("numbers") << "can0 can1 can2 can10 can11";
    QTest::newRow("kinds") << "can0 can1 slcan0 vcan0 vcan3";
    QTest::newRow("zeros") << "can01 can1 can2";
    QTest::newRow("numbers inside") << "a2b1 a2b3 a10b1 b1";
    QTest::newRow("beginnings") << "can can0 canA";
}

void tst_Links::order()
{
    QFETCH(QString, names);
    const QStringList list = names.split(QLatin1Char(' '));
    for (int i = 0; i < list.size(); ++i) {
        for (int j = 0; j < list.size(); ++j) {
            QCOMPARE(socketcan::comesBefore(list.at(i).toStdString(), list.at(j).toStdString()), i < j);
        }
    }
}

void tst_Links::listsCanOnly()
{
    StandInKernel kernel;
    for (const char *name : {"can10", "eth0", "vcan0", "can2"}) {
        StandInLink link = virtualLink(true, 16);
        link.name = name;
        link.kind = link.name == "eth0" ? "ether" : "vcan";
        kernel.plugIn(link);
    }
    QStringList names;
    for (const socketcan::Link &link : Links(kernel).list()) {
        names.append(QString::fromStdString(link.name));
    }
    QCOMPARE(names, QStringList({QStringLiteral("can2"), QStringLiteral("can10"), QStringLiteral("vcan0")}));
}

void tst_Links::withRights_data()
{
    QTest::addColumn<StandInLink>("link");
    QTest::addColumn<LinkSettings>("settings");
    const auto row = [](const char *name, const StandInLink &link, const LinkSettings &settings) {
        QTest::newRow(name) << link << settings;
    };
    row("down, never set", controller(0, false), Classic500);
    row("up with another rate", controller(250000, true), Classic500);
    row("listens, is to send", controller(500000, true, CAN_CTRLMODE_LISTENONLY), Classic500);
    row("is to listen", controller(500000, true), Listening);
    row("classic, is to be FD", controller(500000, true), Fd2M);
    row("FD at another data rate", controller(500000, true, CAN_CTRLMODE_FD, 4000000), Fd2M);
    row("FD at another rate, is to be classic", controller(250000, true, CAN_CTRLMODE_FD, 4000000), Classic500);
    row("virtual, down", virtualLink(false, 16), Classic500);
    row("virtual, is to be FD", virtualLink(true, 16), Fd2M);
}

void tst_Links::withRights()
{
    QFETCH(StandInLink, link);
    QFETCH(LinkSettings, settings);
    StandInKernel kernel;
    kernel.plugIn(link);
    const auto ready = Links(kernel).makeReady("can0", settings);
    QVERIFY(std::holds_alternative<Links::Ready>(ready));
    QVERIFY(std::get<Links::Ready>(ready).note.empty());
    const StandInLink &now = kernel.link("can0");
    QVERIFY(now.isUp);
    QVERIFY(!settings.isFd() || now.mtu == 72);
    if (link.kind == "can") {
        QCOMPARE(now.bitrate, settings.bitrate);
        QCOMPARE(now.samplePoint, settings.samplePoint);
        QCOMPARE(now.restartMs, socketcan::RestartMs);
        QCOMPARE((now.modes & CAN_CTRLMODE_LISTENONLY) != 0, settings.listenOnly);
        QCOMPARE((now.modes & CAN_CTRLMODE_FD) != 0, settings.isFd());
        QVERIFY(!settings.isFd() || now.dataBitrate == settings.dataBitrate);
    }
}

void tst_Links::withoutRights_data()
{
    QTest::addColumn<StandInLink>("link");
    QTest::addColumn<LinkSettings>("settings");
    QTest::addColumn<int>("code"); // 0: taken as it is
    QTest::addColumn<QString>("remedy");
    const auto row = [](const char *name, const StandInLink &link, const LinkSettings &settings,
                        AdapterProblemCode code, const char *remedy = "") {
        QTest::newRow(name) << link << settings << static_cast<int>(code) << QString::fromLatin1(remedy);
    };
    using Code = AdapterProblemCode;
    row("as wanted", controller(500000, true), Classic500, Code::None);
    row("as wanted, FD", controller(500000, true, CAN_CTRLMODE_FD, 2000000), Fd2M, Code::None);
    row("FD, only classic is wanted", controller(500000, true, CAN_CTRLMODE_FD, 2000000), Classic500, Code::None);
    row("virtual", virtualLink(true, 16), Classic500, Code::None);
    row("virtual, FD", virtualLink(true, 72), Fd2M, Code::None);
    row("another rate", controller(250000, true), Classic500, Code::WrongBitRate,
        "ip link set can0 down; ip link set can0 up type can bitrate 500000");
    row("down", controller(500000, false), Classic500, Code::IsDown, "ip link set can0 up type can bitrate 500000");
    row("listens", controller(500000, true, CAN_CTRLMODE_LISTENONLY), Classic500, Code::WrongMode,
        "ip link set can0 down; ip link set can0 up type can bitrate 500000 listen-only off");
    row("classic", controller(500000, true), Fd2M, Code::WrongMode,
        "ip link set can0 down; ip link set can0 up type can bitrate 500000 dbitrate 2000000 fd on");
    row("another data rate", controller(500000, true, CAN_CTRLMODE_FD, 4000000), Fd2M, Code::WrongMode,
        "ip link set can0 down; ip link set can0 up type can bitrate 500000 dbitrate 2000000 fd on");
    row("virtual, down", virtualLink(false, 72), Classic500, Code::IsDown, "ip link set can0 up");
    row("virtual, small frames", virtualLink(true, 16), Fd2M, Code::WrongMode,
        "ip link set can0 down; ip link set can0 mtu 72 up");
    StandInLink classicOnly = controller(500000, true);
    classicOnly.supportedModes = CAN_CTRLMODE_LISTENONLY;
    row("no FD at all", classicOnly, Fd2M, Code::NoCanFd);
}

void tst_Links::withoutRights()
{
    QFETCH(StandInLink, link);
    QFETCH(LinkSettings, settings);
    QFETCH(int, code);
    StandInKernel kernel;
    kernel.mayChange = false;
    kernel.plugIn(link);
    const auto result = Links(kernel).makeReady("can0", settings);
    const auto *problem = std::get_if<Problem>(&result);
    QCOMPARE(problem == nullptr ? 0 : static_cast<int>(problem->code), code);
    if (problem != nullptr) {
        QTEST(QString::fromStdString(problem->remedy), "remedy");
        QVERIFY(problem->text.find("can0") == 0);
        QVERIFY(problem->text.size() < AdapterProblemSize);
        QVERIFY(code == static_cast<int>(AdapterProblemCode::NoCanFd) ||
                problem->text.find("Operation not permitted") != std::string::npos);
    }
    QCOMPARE(kernel.link("can0").isUp, link.isUp);
    QCOMPARE(kernel.link("can0").bitrate, link.bitrate);
}

/// What is as wanted is not touched, whoever else may be using it.
void tst_Links::nobodyIsDisturbed()
{
    StandInKernel kernel;
    kernel.plugIn(controller(500000, true));
    QVERIFY(std::holds_alternative<Links::Ready>(Links(kernel).makeReady("can0", Classic500)));
    QCOMPARE(kernel.changes, 0);
}

void tst_Links::refusedSettingsAreTakenBack()
{
    StandInKernel kernel;
    kernel.plugIn(controller(250000, true, CAN_CTRLMODE_FD, 2000000));
    const auto result = Links(kernel).makeReady("can0", {5000, 680, 0, false}); // of this controller too slow
    QVERIFY(std::holds_alternative<Problem>(result));
    QCOMPARE(std::get<Problem>(result).code, AdapterProblemCode::WrongBitRate);
    QVERIFY(kernel.link("can0").isUp);
    QCOMPARE(kernel.link("can0").bitrate, 250000U);
    QCOMPARE(kernel.link("can0").dataBitrate, 2000000U);
}

void tst_Links::missingInterface()
{
    StandInKernel kernel;
    const auto result = Links(kernel).makeReady("can0", Classic500);
    QCOMPARE(std::get<Problem>(result).code, AdapterProblemCode::NoInterface);
}

/// It can be received from all the same; that it acknowledges is said.
void tst_Links::listeningThatCannotBeSet()
{
    StandInKernel kernel;
    kernel.mayChange = false;
    kernel.plugIn(controller(500000, true));
    const auto result = Links(kernel).makeReady("can0", Listening);
    QVERIFY(std::holds_alternative<Links::Ready>(result));
    QVERIFY(std::get<Links::Ready>(result).note.find("can0 acknowledges frames") == 0);
}

X9_PLAIN_TEST(tst_Links)
#include "tst_Links.moc"
