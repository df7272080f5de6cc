#include "can/GUI_CanDeviceParam.h"
#include "can/GUI_CanFilterTool.h"
#include "can/GUI_CanScanBaudrate.h"
#include "device/CANAPI.h"
#include "device/CANBaudrate.h"
#include "device/CANCommunication.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"
#include "widgets/CNotice.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSet>
#include <QTranslator>
#include <QtTest>

#include <algorithm>
#include <vector>

namespace {
using Mode = GUI_CanDeviceParam::Mode;

constexpr quint8 Mark = 0xEE; ///< in the last data byte

const QByteArray NoDevices = R"({"buses": [], "devices": []})";
const QByteArray TwoDevices = R"({
  "buses": [{"name": "quiet", "bitrate": "500k", "nodes": []}],
  "devices": [{"serial": "A", "model": "X9FC-1", "can": [{"bus": "quiet"}, {"bus": "quiet"}], "lin": []},
              {"serial": "B", "model": "X9EC-1", "can": [], "lin": []}]
})";

const QByteArray BusyDevice = R"({
  "buses": [{"name": "busy", "bitrate": "250k", "data_rate": 1,
             "nodes": [{"id": "0x100", "format": "fd", "length": 8, "period_us": 2000}]}],
  "devices": [{"model": "X9FC-1", "can": []}, {"model": "X9FC-2", "can": [{"bus": "busy"}, {"bus": "busy"}]}]
})";

/// A dialog on the virtual adapter, its widgets by name.
class DialogUnderTest
{
public:
    explicit DialogUnderTest(CANCommunication &communication)
        : dialog(communication)
    {
    }

    /// False when it does not get the keyboard.
    bool show()
    {
        dialog.open();
        dialog.activateWindow();
        return QTest::qWaitForWindowActive(&dialog);
    }
    template<typename Widget>
    Widget *find(const char *name) const
    {
        return dialog.findChild<Widget *>(QLatin1String(name));
    }
    QComboBox *combo(const char *name) const { return find<QComboBox>(name); }
    QLineEdit *line(const char *name) const { return find<QLineEdit>(name); }
    QString text(const char *name) const { return line(name)->text(); }
    QPushButton *button(const char *name) const { return find<QPushButton>(name); }
    void click(const char *name) const { QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton); }
    void check(const char *name, bool on) const
    {
        auto *box = find<QCheckBox>(name);
        if (box->isChecked() != on) {
            QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(10, box->height() / 2));
        }
    }
    void type(const char *name, const char *text) const
    {
        line(name)->setFocus();
        line(name)->selectAll();
        QTest::keyClick(line(name), Qt::Key_Delete);
        QTest::keyClicks(line(name), QLatin1String(text));
    }
    void choose(const char *name, int index) const { combo(name)->setCurrentIndex(index); }
    QStringList items(const char *name) const
    {
        QStringList texts;
        for (int i = 0; i < combo(name)->count(); ++i) {
            texts.append(QStringLiteral("%1=%2").arg(combo(name)->itemText(i), combo(name)->itemData(i).toString()));
        }
        return texts;
    }
    CanDeviceParam accepted() const
    {
        click("btn_ok");
        return dialog.result() == QDialog::Accepted ? dialog.deviceParam() : CanDeviceParam();
    }
    GUI_CanFilterTool *tool() const { return dialog.findChild<GUI_CanFilterTool *>(); }
    GUI_CanScanBaudrate *scan() const { return dialog.findChild<GUI_CanScanBaudrate *>(); }
    void takeAll(Mode mode)
    {
        for (const quint8 device : {quint8(0), quint8(1)}) {
            dialog.append(mode, device, 0);
            dialog.append(mode, device, 1);
        }
    }

    GUI_CanDeviceParam dialog;
};

std::unique_ptr<CANAPI> virtualAdapter()
{
    return std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER));
}

std::unique_ptr<CANAPI> noAdapter()
{
    return std::make_unique<CANAPI>(QStringLiteral("./no-such-library"));
}

/// Types a range into the filter tool and adds it.
void addRange(const GUI_CanFilterTool &tool, const char *first, const char *last, bool extended)
{
    auto *type = tool.findChild<QComboBox *>(QStringLiteral("cbx_idType"));
    type->setCurrentIndex(type->findData(extended ? 1 : 0));
    QTest::keyClicks(tool.findChild<QLineEdit *>(QStringLiteral("lbx_idFrom")), QLatin1String(first));
    QTest::keyClicks(tool.findChild<QLineEdit *>(QStringLiteral("lbx_idTo")), QLatin1String(last));
    QTest::mouseClick(tool.findChild<QPushButton *>(QStringLiteral("btn_add")), Qt::LeftButton);
}

void press(const QDialog &dialog, const char *button)
{
    QTest::mouseClick(dialog.findChild<QPushButton *>(QLatin1String(button)), Qt::LeftButton);
}

/// Identifier with bit 31 for an extended one.
quint32 idWord(const VCI_CAN_OBJ &frame)
{
    return frame.ID | (frame.ExternFlag != 0 ? 0x80000000U : 0U);
}

/// What a channel receives.
struct Receiver
{
    quint8 channel;
    QSet<quint32> ids = {};
    bool isMarked = false;

    void take(quint8 canInd, const QVector<VCI_CAN_OBJ> &frames)
    {
        for (const VCI_CAN_OBJ &frame : frames) {
            if (canInd == channel) {
                ids.insert(idWord(frame));
                isMarked = isMarked || frame.Data[7] == Mark;
            }
        }
    }
};

bool isListed(const QVector<CanIdRange> &listed, const VCI_CAN_OBJ &frame)
{
    return std::any_of(listed.begin(), listed.end(), [&frame](const CanIdRange &range) {
        return range.extended == (frame.ExternFlag != 0) && range.first <= frame.ID && frame.ID <= range.last;
    });
}

/// One frame for each standard identifier and for extended ones all over the range, with data that differs.
std::vector<VCI_CAN_OBJ> manyFrames()
{
    std::vector<VCI_CAN_OBJ> frames;
    const auto add = [&frames](quint32 id, bool extended) {
        VCI_CAN_OBJ frame{};
        frame.ID = id;
        frame.ExternFlag = extended ? 1 : 0;
        frame.RemoteFlag = frames.size() % 5 == 0 ? 1 : 0;
        frame.DataLen = 8;
        frame.Data[0] = static_cast<quint8>(frames.size() * 37);
        frame.Data[1] = static_cast<quint8>(frames.size() * 101);
        frames.push_back(frame);
    };
    for (quint32 id = 0; id <= 0x7FF; ++id) {
        add(id, false);
        add(id << 18U, true);
    }
    for (quint32 id = 0x18FE0000; id <= 0x1900FFFF; id += 0x20) {
        add(id, true);
    }
    return frames;
}
} // namespace

Q_DECLARE_METATYPE(CanIdRange)

class tst_GUI_CanDeviceParam : public QObject
{
    Q_OBJECT

private slots:
    static void looks();
    static void initialValues();
    static void captions();
    static void ratesOnOffer();
    static void choicesOnOffer();
    static void translatesCustomAndNone();
    static void rateSetsTheTiming_data();
    static void rateSetsTheTiming();
    static void customLeavesTheTiming();
    static void switchesThePage();
    static void listsDevicesAndChannels();
    static void listsTheChannelsOfTheDevice();
    static void recordOfTheCANPage();
    static void recordOfTheLINPage();
    static void openAllListsTheChannelsInOrder();
    static void openAllBelongsToItsPage();
    static void openAllListsTheFreeChannels();
    static void nothingChosenBeforeOK();
    static void linBaudRate_data();
    static void linBaudRate();
    static void acceptanceFields_data();
    static void acceptanceFields();
    static void timingFields();
    static void leavesOutTakenChannels();
    static void takenByKind();
    static void offersAgainWhatIsFree();
    static void takenTwiceAndUnknown();
    static void takenWhileShown();
    static void saysThatThereIsNoAdapter();
    static void saysThatAllChannelsAreOpen();
    static void onePageMayHaveNothingLeft();
    static void looksForDevicesWhenShown();
    static void asksTheAdapterOncePerShow();
    static void offersTheSettingsAgain();
    static void offersTheNextChannel();
    static void cancelLeavesTheSettings();
    static void enterAcceptsAndEscCancels();
    static void acceptsOnce();
    static void startsAtTheFirstField();
    static void startsAtAFieldThatCanBeUsed();
    static void waitCursorWhileItLooks();
    static void tabOrderFollowsTheForm();
    static void labelsHaveBuddies();
    static void filterToolWritesCodeAndMask();
    static void filterToolCancelled();
    static void filterToolShowsItsListAgain();
    static void closesWithTheFilterToolOpen();
    static void closesWithAFieldInFocus();
    static void scanOpensItsDialog();
    static void scanFindsTheRates();
    static void scanWithoutADevice();
    static void scanWhenAllChannelsAreOpen();
    static void rateFound_data();
    static void rateFound();
    static void closesWhileAScanRuns();
    static void filterActsOnTheBus_data();
    static void filterActsOnTheBus();
};

void tst_GUI_CanDeviceParam::looks()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    QCOMPARE(test.dialog.windowTitle(), QStringLiteral("Parameter validation"));
    QCOMPARE(test.dialog.size(), QSize(540, 380));
    QCOMPARE(test.dialog.minimumSize(), QSize(540, 380));
    QCOMPARE(test.dialog.maximumSize(), QSize(540, 380));
    const auto nav = [&test](const char *name) {
        return test.button(name)->property("nav").toString();
    };
    QCOMPARE(nav("btn_ok"), QStringLiteral("tBtnStyle_1"));
    QCOMPARE(nav("btn_cancel"), QStringLiteral("tBtnStyle_4"));
    for (const char *name : {"btn_setup", "btn_scan", "btn_filterTool"}) {
        QCOMPARE(nav(name), QStringLiteral("tBtnStyle_3"));
    }
}

void tst_GUI_CanDeviceParam::initialValues()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    QVERIFY(test.find<QWidget>("widget_CAN")->isVisible());
    QVERIFY(!test.find<QWidget>("widget_LIN")->isVisible());
    QCOMPARE(test.text("lbx_accCode"), QStringLiteral("0x00000000"));
    QCOMPARE(test.text("lbx_accMask"), QStringLiteral("0xFFFFFFFF"));
    QCOMPARE(test.combo("cbx_baudrate")->currentIndex(), 3);
    QCOMPARE(test.combo("cbx_baudrate")->currentText(), QStringLiteral("500k bps"));
    QCOMPARE(test.text("lbx_time0"), QStringLiteral("00"));
    QCOMPARE(test.text("lbx_time1"), QStringLiteral("1C"));
    QVERIFY(!test.line("lbx_time0")->isEnabled());
    QVERIFY(!test.line("lbx_time1")->isEnabled());
    QCOMPARE(test.combo("cbx_baudrateCANFD")->currentIndex(), 0);
    QCOMPARE(test.combo("cbx_operatingMode")->currentIndex(), 0);
    QVERIFY(!test.find<QCheckBox>("chbx_openAllChannel")->isChecked());
    QVERIFY(!test.find<QCheckBox>("chbx_openAllChannelLIN")->isChecked());
    QCOMPARE(test.text("lbx_baudrateLIN"), QStringLiteral("19200"));
    QVERIFY(test.button("btn_ok")->isEnabled());
    QVERIFY(!test.find<QLabel>("lbl_noDevice")->isVisible());
}

void tst_GUI_CanDeviceParam::captions()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    const DialogUnderTest test(communication);
    const QVector<QPair<const char *, const char *>> buttons = {
        {"btn_filterTool", "Filter configuration tool"},
        {"chbx_openAllChannel", "Open all CAN channel"},
        {"btn_scan", "Scan baudrate"},
        {"chbx_openAllChannelLIN", "Open all CAN channel"},
        {"btn_setup", "LIN Setup"},
        {"btn_ok", "OK"},
        {"btn_cancel", "Cancel"},
    };
    for (const auto &button : buttons) {
        QCOMPARE(test.find<QAbstractButton>(button.first)->text(), QLatin1String(button.second));
    }
    QCOMPARE(test.find<QGroupBox>("widget_CAN")->title(), QStringLiteral("CAN parameters"));
    QCOMPARE(test.find<QGroupBox>("widget_LIN")->title(), QStringLiteral("LIN parameters"));
    QSet<QString> labels;
    for (const QLabel *label : test.dialog.findChildren<QLabel *>()) {
        labels.insert(label->text());
    }
    for (const char *text :
         {"Device index:", "CAN channal:", "Acc code:", "Acc mask:", "Filter mode:", " BTR0/1:", "(Hex)",
          "Operating mode:", "CAN baudrate:", "CANFD baudrate:", "LIN channal:", "Checksum:", "Baudrate:"}) {
        QVERIFY2(labels.contains(QLatin1String(text)), text);
    }
}

void tst_GUI_CanDeviceParam::ratesOnOffer()
{
    CANCommunication communication(noAdapter());
    const DialogUnderTest test(communication);
    const QComboBox *rates = test.combo("cbx_baudrate");
    QCOMPARE(rates->count(), canBaudrates().size());
    for (int i = 0; i < rates->count(); ++i) {
        QCOMPARE(rates->itemText(i), canBaudrates().at(i).name);
        QCOMPARE(rates->itemData(i).value<CANBaudrate>().timing, canBaudrates().at(i).timing);
        QCOMPARE(rates->itemData(i).typeName(), "CANBaudrate");
    }
    QCOMPARE(test.items("cbx_baudrateCANFD"),
             QStringList({QStringLiteral("None=0"), QStringLiteral("1M bps=1"), QStringLiteral("2M bps=2"),
                          QStringLiteral("4M bps=3"), QStringLiteral("5M bps=4")}));
}

void tst_GUI_CanDeviceParam::choicesOnOffer()
{
    CANCommunication communication(noAdapter());
    const DialogUnderTest test(communication);
    QCOMPARE(test.items("cbx_operatingMode"), QStringList({QStringLiteral("Normal=0"), QStringLiteral("Listen=1")}));
    QCOMPARE(test.items("cbx_filterMode"), QStringList({QStringLiteral("Receive all=1")}));
    QCOMPARE(test.items("cbx_checksumLIN"),
             QStringList({QStringLiteral("Standard checksum=0"), QStringLiteral("Enhanced checksum=1")}));
}

void tst_GUI_CanDeviceParam::translatesCustomAndNone()
{
    class Stars : public QTranslator
    {
    public:
        QString translate(const char *context, const char *source, const char *, int) const override
        {
            const bool isWord = qstrcmp(source, "Custom") == 0 || qstrcmp(source, "None") == 0;
            return isWord && qstrcmp(context, "GUI_CanDeviceParam") == 0 ? QLatin1Char('*') + QLatin1String(source)
                                                                         : QString();
        }
        bool isEmpty() const override { return false; }
    };
    Stars stars;
    QVERIFY(QCoreApplication::installTranslator(&stars));
    CANCommunication communication(noAdapter());
    const DialogUnderTest test(communication);
    QCoreApplication::removeTranslator(&stars);
    QCOMPARE(test.combo("cbx_baudrate")->itemText(0), QStringLiteral("*Custom"));
    QCOMPARE(test.combo("cbx_baudrate")->itemText(1), QStringLiteral("1000k bps"));
    QCOMPARE(test.combo("cbx_baudrateCANFD")->itemText(0), QStringLiteral("*None"));
    QCOMPARE(test.combo("cbx_baudrateCANFD")->itemText(1), QStringLiteral("1M bps"));
}

void tst_GUI_CanDeviceParam::rateSetsTheTiming_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("timing0");
    QTest::addColumn<QString>("timing1");
    const auto row = [](const char *name, int index, const char *timing0, const char *timing1) {
        QTest::newRow(name) << index << QString::fromLatin1(timing0) << QString::fromLatin1(timing1);
    };
    row("1000k", 1, "00", "14");
    row("800k", 2, "00", "16");
    row("500k", 3, "00", "1C");
    row("250k", 4, "01", "1C");
    row("125k", 5, "03", "1C");
    row("100k", 6, "04", "1C");
    row("50k", 7, "09", "1C");
    row("25k", 8, "18", "1C");
    row("10k", 9, "31", "1C");
    row("5k", 10, "BF", "FF");
}

void tst_GUI_CanDeviceParam::rateSetsTheTiming()
{
    QFETCH(int, index);
    CANCommunication communication(noAdapter());
    const DialogUnderTest test(communication);
    test.choose("cbx_baudrate", 0);
    test.choose("cbx_baudrate", index);
    QTEST(test.text("lbx_time0"), "timing0");
    QTEST(test.text("lbx_time1"), "timing1");
    QVERIFY(!test.line("lbx_time0")->isEnabled());
    QVERIFY(!test.line("lbx_time1")->isEnabled());
}

void tst_GUI_CanDeviceParam::customLeavesTheTiming()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.choose("cbx_baudrate", 10);
    QCOMPARE(test.text("lbx_time0"), QStringLiteral("BF"));
    QCOMPARE(test.text("lbx_time1"), QStringLiteral("FF"));
    test.choose("cbx_baudrate", 0);
    QCOMPARE(test.text("lbx_time0"), QStringLiteral("BF"));
    QCOMPARE(test.text("lbx_time1"), QStringLiteral("FF"));
    QVERIFY(test.line("lbx_time0")->isEnabled());
    QVERIFY(test.line("lbx_time1")->isEnabled());
    test.type("lbx_time0", "a");
    test.type("lbx_time1", "g3x94");
    const CanDeviceParam param = test.accepted();
    QCOMPARE(param.timing0, quint8(0x0A));
    QCOMPARE(param.timing1, quint8(0x39));
}

void tst_GUI_CanDeviceParam::switchesThePage()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.click("btn_setup");
    QVERIFY(!test.find<QWidget>("widget_CAN")->isVisible());
    QVERIFY(test.find<QWidget>("widget_LIN")->isVisible());
    QCOMPARE(test.button("btn_setup")->text(), QStringLiteral("CAN setup"));
    test.click("btn_setup");
    QVERIFY(test.find<QWidget>("widget_CAN")->isVisible());
    QVERIFY(!test.find<QWidget>("widget_LIN")->isVisible());
    QCOMPARE(test.button("btn_setup")->text(), QStringLiteral("LIN setup"));
    QCOMPARE(test.dialog.size(), QSize(540, 380));
    QCOMPARE(test.accepted().isLIN, 0);
}

void tst_GUI_CanDeviceParam::listsDevicesAndChannels()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    for (const char *name : {"cbx_index", "cbx_indexLIN"}) {
        QCOMPARE(test.items(name), QStringList({QStringLiteral("Device0=0"), QStringLiteral("Device1=1")}));
    }
    for (const char *name : {"cbx_channel", "cbx_channelLIN"}) {
        QCOMPARE(test.items(name), QStringList({QStringLiteral("Channel0=0"), QStringLiteral("Channel1=1")}));
    }
}

void tst_GUI_CanDeviceParam::listsTheChannelsOfTheDevice()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.dialog.append(Mode::CAN, 1, 0);
    test.dialog.append(Mode::LIN, 1, 1);
    test.show();
    test.choose("cbx_index", 1);
    QCOMPARE(test.items("cbx_channel"), QStringList({QStringLiteral("Channel1=1")}));
    test.choose("cbx_index", 0);
    QCOMPARE(test.items("cbx_channel"), QStringList({QStringLiteral("Channel0=0"), QStringLiteral("Channel1=1")}));
    test.choose("cbx_indexLIN", 1);
    QCOMPARE(test.items("cbx_channelLIN"), QStringList({QStringLiteral("Channel0=0")}));
}

void tst_GUI_CanDeviceParam::recordOfTheCANPage()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.choose("cbx_index", 1);
    test.choose("cbx_channel", 1);
    test.type("lbx_accCode", "0x24600000");
    test.type("lbx_accMask", "1fFFff");
    test.choose("cbx_operatingMode", 1);
    test.choose("cbx_baudrate", 4);
    test.choose("cbx_baudrateCANFD", 3);
    const CanDeviceParam param = test.accepted();
    QCOMPARE(param.operatingMode, quint8(1));
    QCOMPARE(param.filterMode, quint8(1));
    QCOMPARE(param.timing0, quint8(0x01));
    QCOMPARE(param.timing1, quint8(0x1C));
    QCOMPARE(param.accCode, 0x24600000U);
    QCOMPARE(param.accMask, 0x001FFFFFU);
    QCOMPARE(param.dataRateCANFD, quint8(3));
    QCOMPARE(param.linChecksum, quint8(0));
    QCOMPARE(param.linBaudRate, quint16(19200));
    QCOMPARE(param.device, quint8(1));
    QCOMPARE(param.isLIN, 0);
    QCOMPARE(param.channels, QVector<quint8>({1}));
}

void tst_GUI_CanDeviceParam::recordOfTheLINPage()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.choose("cbx_index", 0);
    test.click("btn_setup");
    test.choose("cbx_indexLIN", 1);
    test.choose("cbx_channelLIN", 1);
    test.choose("cbx_checksumLIN", 1);
    test.type("lbx_baudrateLIN", "9600");
    const CanDeviceParam param = test.accepted();
    QCOMPARE(param.linChecksum, quint8(1));
    QCOMPARE(param.linBaudRate, quint16(9600));
    QCOMPARE(param.device, quint8(1));
    QCOMPARE(param.isLIN, 1);
    QCOMPARE(param.channels, QVector<quint8>({1}));
}

void tst_GUI_CanDeviceParam::openAllListsTheChannelsInOrder()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.choose("cbx_channel", 1);
    test.check("chbx_openAllChannel", true);
    QCOMPARE(test.accepted().channels, QVector<quint8>({0, 1}));
}

void tst_GUI_CanDeviceParam::openAllBelongsToItsPage()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.check("chbx_openAllChannel", true);
    test.click("btn_setup");
    QCOMPARE(test.accepted().channels, QVector<quint8>({0}));
    test.show();
    test.check("chbx_openAllChannelLIN", true);
    QCOMPARE(test.accepted().channels, QVector<quint8>({0, 1}));
}

void tst_GUI_CanDeviceParam::openAllListsTheFreeChannels()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.dialog.append(Mode::CAN, 0, 0);
    test.show();
    test.check("chbx_openAllChannel", true);
    QCOMPARE(test.accepted().channels, QVector<quint8>({1}));
}

void tst_GUI_CanDeviceParam::nothingChosenBeforeOK()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.click("btn_cancel");
    QCOMPARE(test.dialog.result(), int(QDialog::Rejected));
    QVERIFY(test.dialog.deviceParam().channels.isEmpty());
}

void tst_GUI_CanDeviceParam::linBaudRate_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<quint16>("rate");
    QTest::newRow("number") << QByteArray("2400") << quint16(2400);
    QTest::newRow("empty") << QByteArray("") << quint16(4800);
    QTest::newRow("letters are not taken") << QByteArray("abc") << quint16(4800);
    QTest::newRow("digits alone are taken") << QByteArray("-1 2.0x0") << quint16(1200);
    QTest::newRow("highest") << QByteArray("65535") << quint16(65535);
    QTest::newRow("too high") << QByteArray("65536") << quint16(4800);
    QTest::newRow("forty digits") << QByteArray(40, '9') << quint16(4800);
}

void tst_GUI_CanDeviceParam::linBaudRate()
{
    QFETCH(QByteArray, typed);
    QFETCH(quint16, rate);
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.click("btn_setup");
    test.type("lbx_baudrateLIN", typed.constData());
    QCOMPARE(test.accepted().linBaudRate, rate);
    test.show();
    QCOMPARE(test.text("lbx_baudrateLIN"), QString::number(rate)); // what is in force is shown
}

void tst_GUI_CanDeviceParam::acceptanceFields_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<quint32>("code");
    QTest::addColumn<quint32>("mask");
    QTest::addColumn<QString>("codeText");
    const auto row = [](const char *typed, quint32 code, quint32 mask, const char *codeText) {
        QTest::newRow(typed) << QByteArray(typed) << code << mask << QString::fromLatin1(codeText);
    };
    row("12AB", 0x12AB, 0x12AB, "12AB");
    row("0x12ab", 0x12AB, 0x12AB, "0x12ab");
    row("", 0, 0xFFFFFFFF, "0x00000000");
    row("0x", 0, 0xFFFFFFFF, "0x00000000");
    row("xyz", 0, 0xFFFFFFFF, "0x00000000");
    row("123456789ABCDEF", 0x12345678, 0x12345678, "12345678");
    row("-1 2", 0x12, 0x12, "12");
}

void tst_GUI_CanDeviceParam::acceptanceFields()
{
    QFETCH(QByteArray, typed);
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.type("lbx_accCode", typed.constData());
    test.type("lbx_accMask", typed.constData());
    const CanDeviceParam param = test.accepted();
    QTEST(param.accCode, "code");
    QTEST(param.accMask, "mask");
    test.show();
    QTEST(test.text("lbx_accCode"), "codeText");
}

void tst_GUI_CanDeviceParam::timingFields()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.choose("cbx_baudrate", 0);
    test.type("lbx_time0", "");
    test.type("lbx_time1", "fff");
    const CanDeviceParam param = test.accepted();
    QCOMPARE(param.timing0, quint8(0));
    QCOMPARE(param.timing1, quint8(0xFF));
    test.show();
    QCOMPARE(test.combo("cbx_baudrate")->currentIndex(), 0);
    QCOMPARE(test.text("lbx_time0"), QStringLiteral("00"));
    QCOMPARE(test.text("lbx_time1"), QStringLiteral("ff"));
    QVERIFY(test.line("lbx_time0")->isEnabled());
}

void tst_GUI_CanDeviceParam::leavesOutTakenChannels()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.dialog.append(Mode::CAN, 0, 1);
    test.show();
    QCOMPARE(test.items("cbx_channel"), QStringList({QStringLiteral("Channel0=0")}));
    test.click("btn_cancel");
    test.dialog.append(Mode::CAN, 0, 0);
    test.show();
    QCOMPARE(test.items("cbx_index"), QStringList({QStringLiteral("Device1=1")}));
    QCOMPARE(test.items("cbx_channel"), QStringList({QStringLiteral("Channel0=0"), QStringLiteral("Channel1=1")}));
    QCOMPARE(test.accepted().device, quint8(1));
}

void tst_GUI_CanDeviceParam::takenByKind()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.dialog.append(Mode::LIN, 0, 0);
    test.dialog.append(Mode::LIN, 0, 1);
    test.show();
    QCOMPARE(test.combo("cbx_index")->count(), 2);
    QCOMPARE(test.combo("cbx_channel")->count(), 2);
    QCOMPARE(test.items("cbx_indexLIN"), QStringList({QStringLiteral("Device1=1")}));
}

void tst_GUI_CanDeviceParam::offersAgainWhatIsFree()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.takeAll(Mode::CAN);
    test.show();
    QCOMPARE(test.combo("cbx_index")->count(), 0);
    test.click("btn_cancel");
    test.dialog.remove(Mode::CAN, 1, 1);
    test.show();
    QCOMPARE(test.items("cbx_index"), QStringList({QStringLiteral("Device1=1")}));
    QCOMPARE(test.items("cbx_channel"), QStringList({QStringLiteral("Channel1=1")}));
    QVERIFY(test.button("btn_ok")->isEnabled());
    QVERIFY(!test.find<QLabel>("lbl_noDevice")->isVisible());
}

void tst_GUI_CanDeviceParam::takenTwiceAndUnknown()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.dialog.append(Mode::CAN, 0, 0);
    test.dialog.append(Mode::CAN, 0, 0);
    test.dialog.remove(Mode::CAN, 0, 0);
    test.dialog.remove(Mode::LIN, 7, 9);
    test.dialog.append(Mode::CAN, 255, 255);
    test.show();
    QCOMPARE(test.combo("cbx_index")->count(), 2);
    QCOMPARE(test.combo("cbx_channel")->count(), 2);
}

void tst_GUI_CanDeviceParam::takenWhileShown()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.choose("cbx_index", 1);
    test.choose("cbx_channel", 1);
    test.type("lbx_accCode", "123");
    test.dialog.append(Mode::CAN, 0, 0);
    QCOMPARE(test.combo("cbx_index")->currentText(), QStringLiteral("Device1"));
    QCOMPARE(test.combo("cbx_channel")->currentText(), QStringLiteral("Channel1"));
    QCOMPARE(test.text("lbx_accCode"), QStringLiteral("123"));
    test.dialog.append(Mode::CAN, 1, 1);
    QCOMPARE(test.items("cbx_channel"), QStringList({QStringLiteral("Channel0=0")}));
    test.dialog.append(Mode::CAN, 1, 0);
    QCOMPARE(test.items("cbx_index"), QStringList({QStringLiteral("Device0=0")}));
    test.dialog.append(Mode::CAN, 0, 1);
    QVERIFY(test.find<QLabel>("lbl_noDevice")->isVisible());
    test.dialog.remove(Mode::CAN, 0, 1);
    QVERIFY(!test.find<QLabel>("lbl_noDevice")->isVisible());
}

void tst_GUI_CanDeviceParam::saysThatThereIsNoAdapter()
{
    const AdapterFolder folder(NoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    const QString text = QStringLiteral("No adapter found. Connect one and open this dialog again.");
    QVERIFY(test.find<QLabel>("lbl_noDevice")->isVisible());
    QCOMPARE(test.find<QLabel>("lbl_noDevice")->text(), text);
    QVERIFY(!test.combo("cbx_index")->isEnabled());
    QVERIFY(!test.combo("cbx_channel")->isEnabled());
    test.click("btn_setup");
    QVERIFY(test.find<QLabel>("lbl_noDeviceLIN")->isVisible());
    QCOMPARE(test.find<QLabel>("lbl_noDeviceLIN")->text(), text);
    test.click("btn_ok"); // whoever opens the channels says that there are none
    QVERIFY(!test.dialog.isVisible());
    QVERIFY(test.dialog.deviceParam().channels.isEmpty());
}

void tst_GUI_CanDeviceParam::saysThatAllChannelsAreOpen()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.takeAll(Mode::CAN);
    test.takeAll(Mode::LIN);
    test.show();
    QVERIFY(test.find<QLabel>("lbl_noDevice")->isVisible());
    QCOMPARE(test.find<QLabel>("lbl_noDevice")->text(), QStringLiteral("All CAN channels are open already."));
    test.click("btn_setup");
    QVERIFY(test.find<QLabel>("lbl_noDeviceLIN")->isVisible());
    QCOMPARE(test.find<QLabel>("lbl_noDeviceLIN")->text(), QStringLiteral("All LIN channels are open already."));
}

void tst_GUI_CanDeviceParam::onePageMayHaveNothingLeft()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.takeAll(Mode::CAN);
    test.show();
    QVERIFY(test.find<QLabel>("lbl_noDevice")->isVisible());
    test.click("btn_setup");
    QVERIFY(!test.find<QLabel>("lbl_noDeviceLIN")->isVisible());
    test.click("btn_ok");
    QCOMPARE(test.dialog.deviceParam().channels.size(), 1);
}

void tst_GUI_CanDeviceParam::looksForDevicesWhenShown()
{
    ScriptedAdapter adapter;
    adapter.answer("VCI_OpenDevice", 0);
    CANCommunication communication(adapter.table());
    DialogUnderTest test(communication);
    test.show();
    QCOMPARE(test.combo("cbx_index")->count(), 0);
    test.click("btn_cancel");
    adapter.answer("VCI_OpenDevice", 1); // plugged in
    test.show();
    QCOMPARE(test.combo("cbx_index")->count(), 8);
    test.click("btn_cancel");
    adapter.answer("VCI_OpenDevice", 0); // pulled out
    test.show();
    QCOMPARE(test.combo("cbx_index")->count(), 0);
}

void tst_GUI_CanDeviceParam::asksTheAdapterOncePerShow()
{
    ScriptedAdapter adapter;
    CANCommunication communication(adapter.table());
    DialogUnderTest test(communication);
    QVERIFY(adapter.takeCalls().isEmpty());
    test.show();
    const QStringList opened = adapter.takeCalls().filter(QStringLiteral("VCI_OpenDevice"));
    QCOMPARE(opened.size(), 8);
    test.choose("cbx_index", 3);
    test.choose("cbx_indexLIN", 3);
    test.click("btn_setup");
    test.dialog.append(Mode::CAN, 3, 0);
    test.dialog.remove(Mode::CAN, 3, 0);
    test.click("btn_ok");
    QVERIFY(adapter.takeCalls().isEmpty());
    test.show();
    QCOMPARE(adapter.takeCalls().filter(QStringLiteral("VCI_OpenDevice")), opened);
}

void tst_GUI_CanDeviceParam::offersTheSettingsAgain()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.choose("cbx_index", 1);
    test.choose("cbx_channel", 1);
    test.type("lbx_accCode", "1234");
    test.choose("cbx_operatingMode", 1);
    test.choose("cbx_baudrate", 0);
    test.type("lbx_time0", "3F");
    test.choose("cbx_baudrateCANFD", 2);
    test.check("chbx_openAllChannel", true);
    test.click("btn_setup");
    test.choose("cbx_indexLIN", 1);
    test.choose("cbx_checksumLIN", 1);
    test.click("btn_ok");
    test.show();
    QVERIFY(test.find<QWidget>("widget_LIN")->isVisible());
    QCOMPARE(test.button("btn_setup")->text(), QStringLiteral("CAN setup"));
    QCOMPARE(test.combo("cbx_indexLIN")->currentIndex(), 1);
    QCOMPARE(test.combo("cbx_checksumLIN")->currentIndex(), 1);
    test.click("btn_setup");
    QCOMPARE(test.combo("cbx_index")->currentText(), QStringLiteral("Device1"));
    QCOMPARE(test.combo("cbx_channel")->currentText(), QStringLiteral("Channel1"));
    QCOMPARE(test.text("lbx_accCode"), QStringLiteral("1234"));
    QCOMPARE(test.combo("cbx_operatingMode")->currentIndex(), 1);
    QCOMPARE(test.combo("cbx_baudrate")->currentIndex(), 0);
    QCOMPARE(test.text("lbx_time0"), QStringLiteral("3F"));
    QCOMPARE(test.combo("cbx_baudrateCANFD")->currentIndex(), 2);
    QVERIFY(test.find<QCheckBox>("chbx_openAllChannel")->isChecked());
}

void tst_GUI_CanDeviceParam::offersTheNextChannel()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.choose("cbx_index", 1);
    const CanDeviceParam first = test.accepted();
    QCOMPARE(first.channels, QVector<quint8>({0}));
    test.dialog.append(Mode::CAN, 1, 0);
    QCOMPARE(test.dialog.deviceParam().channels, first.channels); // still what was accepted
    test.show();
    const CanDeviceParam second = test.accepted();
    QCOMPARE(second.device, quint8(1));
    QCOMPARE(second.channels, QVector<quint8>({1}));
    test.dialog.append(Mode::CAN, 1, 1);
    test.show();
    QCOMPARE(test.accepted().device, quint8(0));
}

void tst_GUI_CanDeviceParam::cancelLeavesTheSettings()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.choose("cbx_index", 1);
    test.choose("cbx_baudrate", 4);
    test.click("btn_ok");
    test.show();
    test.choose("cbx_index", 0);
    test.choose("cbx_baudrate", 0);
    test.type("lbx_time0", "77");
    test.type("lbx_accMask", "0");
    test.check("chbx_openAllChannel", true);
    test.click("btn_setup");
    test.type("lbx_baudrateLIN", "1");
    test.click("btn_cancel");
    QCOMPARE(test.dialog.deviceParam().timing0, quint8(0x01));
    test.show();
    QVERIFY(test.find<QWidget>("widget_CAN")->isVisible());
    QCOMPARE(test.combo("cbx_index")->currentText(), QStringLiteral("Device1"));
    QCOMPARE(test.combo("cbx_baudrate")->currentIndex(), 4);
    QCOMPARE(test.text("lbx_time0"), QStringLiteral("01"));
    QVERIFY(!test.line("lbx_time0")->isEnabled());
    QCOMPARE(test.text("lbx_accMask"), QStringLiteral("0xFFFFFFFF"));
    QVERIFY(!test.find<QCheckBox>("chbx_openAllChannel")->isChecked());
    QCOMPARE(test.text("lbx_baudrateLIN"), QStringLiteral("19200"));
}

void tst_GUI_CanDeviceParam::enterAcceptsAndEscCancels()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    for (const char *name : {"lbx_accCode", "cbx_index", "cbx_baudrate"}) {
        QVERIFY(test.show());
        test.find<QWidget>(name)->setFocus();
        QTest::keyClick(test.find<QWidget>(name), Qt::Key_Return);
        QVERIFY2(!test.dialog.isVisible(), name);
        QCOMPARE(test.dialog.result(), int(QDialog::Accepted));
    }
    QVERIFY(test.show());
    QTest::keyClick(test.line("lbx_accCode"), Qt::Key_Escape);
    QVERIFY(!test.dialog.isVisible());
    QCOMPARE(test.dialog.result(), int(QDialog::Rejected));
}

/// What the user pressed while the window was busy with the first press reaches the closed dialog.
void tst_GUI_CanDeviceParam::acceptsOnce()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    QSignalSpy accepted(&test.dialog, &QDialog::accepted);
    QVERIFY(test.show());
    QObject::connect(&test.dialog, &QDialog::accepted, &test.dialog, [&test] { test.dialog.append(Mode::CAN, 0, 0); });
    test.click("btn_ok");
    QCOMPARE(accepted.count(), 1);
    test.click("btn_ok");
    test.button("btn_ok")->setFocus();
    QTest::keyClick(test.button("btn_ok"), Qt::Key_Space);
    QTest::keyClick(&test.dialog, Qt::Key_Return);
    QCOMPARE(accepted.count(), 1);
    QCOMPARE(test.dialog.deviceParam().channels, QVector<quint8>{0});
    QVERIFY(test.show());
    test.click("btn_ok");
    QCOMPARE(accepted.count(), 2);
    QCOMPARE(test.dialog.deviceParam().channels, QVector<quint8>{1});
}

void tst_GUI_CanDeviceParam::startsAtTheFirstField()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    QWidget other; // has the keyboard between two openings
    other.show();
    const auto startsAt = [&](const char *field) {
        other.activateWindow();
        return QTest::qWaitForWindowActive(&other) && test.show() && test.find<QWidget>(field)->hasFocus() &&
               test.button("btn_ok")->isDefault();
    };
    QVERIFY(startsAt("cbx_index"));
    test.button("btn_scan")->setFocus();
    QVERIFY(!test.button("btn_ok")->isDefault());
    test.dialog.reject();
    QVERIFY(startsAt("cbx_index"));
    test.click("btn_setup");
    test.button("btn_setup")->setFocus();
    test.dialog.reject();
    QVERIFY(startsAt("cbx_index"));
    test.click("btn_setup");
    test.line("lbx_baudrateLIN")->setFocus();
    test.click("btn_ok");
    QVERIFY(startsAt("cbx_indexLIN")); // the page that was accepted
    QTest::keyClick(test.dialog.focusWidget(), Qt::Key_Return);
    QCOMPARE(test.dialog.result(), int(QDialog::Accepted));
}

void tst_GUI_CanDeviceParam::startsAtAFieldThatCanBeUsed()
{
    CANCommunication communication(noAdapter());
    DialogUnderTest test(communication);
    QVERIFY(test.show());
    QVERIFY(!test.combo("cbx_index")->isEnabled());
    QVERIFY(test.line("lbx_accCode")->hasFocus());
    QVERIFY(test.button("btn_ok")->isDefault());
}

void tst_GUI_CanDeviceParam::waitCursorWhileItLooks()
{
    ScriptedAdapter adapter;
    CANCommunication communication(adapter.table());
    DialogUnderTest test(communication);
    int looks = 0;
    int waiting = 0;
    adapter.onCall("VCI_OpenDevice", [&] {
        const QCursor *cursor = QApplication::overrideCursor();
        ++looks;
        waiting += cursor != nullptr && cursor->shape() == Qt::WaitCursor ? 1 : 0;
    });
    test.show();
    QVERIFY(looks > 0);
    QCOMPARE(waiting, looks);
    QVERIFY(QApplication::overrideCursor() == nullptr);
}

void tst_GUI_CanDeviceParam::tabOrderFollowsTheForm()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    QVERIFY(test.show());
    const auto tabbed = [&test](const char *first, int count) {
        test.find<QWidget>(first)->setFocus();
        QStringList names;
        for (int i = 0; i < count; ++i) {
            names.append(test.dialog.focusWidget()->objectName());
            QTest::keyClick(test.dialog.focusWidget(), Qt::Key_Tab);
        }
        return names.join(QLatin1Char(' '));
    };
    test.choose("cbx_baudrate", 0);
    QCOMPARE(tabbed("cbx_index", 16),
             QStringLiteral("cbx_index cbx_channel lbx_accCode lbx_accMask cbx_filterMode lbx_time0 lbx_time1 "
                            "cbx_operatingMode cbx_baudrate cbx_baudrateCANFD btn_filterTool chbx_openAllChannel "
                            "btn_scan btn_setup btn_ok btn_cancel"));
    test.click("btn_setup");
    QCOMPARE(tabbed("cbx_indexLIN", 8),
             QStringLiteral("cbx_indexLIN cbx_channelLIN chbx_openAllChannelLIN cbx_checksumLIN lbx_baudrateLIN "
                            "btn_setup btn_ok btn_cancel"));
}

void tst_GUI_CanDeviceParam::labelsHaveBuddies()
{
    CANCommunication communication(noAdapter());
    const DialogUnderTest test(communication);
    int labels = 0;
    for (const QLabel *label : test.dialog.findChildren<QLabel *>()) {
        if (label->text().endsWith(QLatin1Char(':'))) {
            ++labels;
            QVERIFY2(label->buddy() != nullptr, qPrintable(label->text()));
        }
    }
    QCOMPARE(labels, 13);
}

void tst_GUI_CanDeviceParam::filterToolWritesCodeAndMask()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.click("btn_filterTool");
    const GUI_CanFilterTool *opened = test.tool();
    QVERIFY(opened != nullptr);
    QVERIFY(opened->isVisible());
    QVERIFY(opened->isModal());
    QPointer<GUI_CanFilterTool> tool = test.tool();
    addRange(*tool, "123", "", false);
    QCOMPARE(test.text("lbx_accCode"), QStringLiteral("0x00000000"));
    press(*tool, "btn_ok");
    QCOMPARE(test.text("lbx_accCode"), QStringLiteral("0x24600000"));
    QCOMPARE(test.text("lbx_accMask"), QStringLiteral("0x001FFFFF"));
    QTRY_VERIFY(tool == nullptr);
    const CanDeviceParam param = test.accepted();
    QCOMPARE(param.accCode, 0x24600000U);
    QCOMPARE(param.accMask, 0x001FFFFFU);
}

void tst_GUI_CanDeviceParam::filterToolCancelled()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.type("lbx_accCode", "5555");
    test.click("btn_filterTool");
    QPointer<GUI_CanFilterTool> tool = test.tool();
    QVERIFY(tool != nullptr);
    addRange(*tool, "123", "", false);
    press(*tool, "btn_cancel");
    QTRY_VERIFY(tool == nullptr);
    QCOMPARE(test.text("lbx_accCode"), QStringLiteral("5555"));
    QCOMPARE(test.text("lbx_accMask"), QStringLiteral("0xFFFFFFFF"));
    test.click("btn_filterTool");
    QVERIFY(test.tool()->ids().isEmpty());
}

void tst_GUI_CanDeviceParam::filterToolShowsItsListAgain()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.click("btn_filterTool");
    QPointer<GUI_CanFilterTool> tool = test.tool();
    addRange(*tool, "123", "", false);
    addRange(*tool, "18FF0000", "18FFFFFF", true);
    press(*tool, "btn_ok");
    QTRY_VERIFY(tool == nullptr);
    test.click("btn_cancel");
    test.show();
    QCOMPARE(test.text("lbx_accMask"), QStringLiteral("0xFFFFFFFF"));
    test.click("btn_filterTool");
    const QVector<CanIdRange> expected{{0x123, 0x123, false}, {0x18FF0000, 0x18FFFFFF, true}};
    QVERIFY(test.tool()->ids() == expected);
}

void tst_GUI_CanDeviceParam::closesWithTheFilterToolOpen()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    QPointer<GUI_CanFilterTool> tool;
    {
        DialogUnderTest test(communication);
        test.show();
        test.click("btn_filterTool");
        tool = test.tool();
        QVERIFY(tool != nullptr);
    }
    QVERIFY(tool == nullptr);
}

void tst_GUI_CanDeviceParam::closesWithAFieldInFocus()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    QVERIFY(test.show());
    test.type("lbx_accMask", "0x");
    QVERIFY(test.line("lbx_accMask")->hasFocus());
}

void tst_GUI_CanDeviceParam::scanOpensItsDialog()
{
    const AdapterFolder folder(BusyDevice);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.click("btn_scan");
    const GUI_CanScanBaudrate *opened = test.scan();
    QVERIFY(opened != nullptr);
    QVERIFY(opened->isVisible());
    QVERIFY(opened->isModal());
    QPointer<GUI_CanScanBaudrate> scan = test.scan();
    press(*scan, "btn_apply");
    QTRY_VERIFY(scan == nullptr);
    QCOMPARE(test.combo("cbx_baudrate")->currentIndex(), 3);
}

// Device 1 is busy at 250 kbit/s with frames that nobody sees without the data rate.
void tst_GUI_CanDeviceParam::scanFindsTheRates()
{
    const AdapterFolder folder(BusyDevice);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.choose("cbx_index", 1);
    test.click("btn_scan");
    press(*test.scan(), "btn_start");
    QVERIFY(communication.isScanning());
    QTRY_VERIFY_WITH_TIMEOUT(!communication.isScanning(), 20000);
    QCOMPARE(test.combo("cbx_baudrate")->currentText(), QStringLiteral("250k bps"));
    QCOMPARE(test.combo("cbx_baudrateCANFD")->currentText(), QStringLiteral("1M bps"));
    QCOMPARE(test.text("lbx_time0"), QStringLiteral("01"));
    press(*test.scan(), "btn_apply");
    const CanDeviceParam param = test.accepted();
    QCOMPARE(param.device, quint8(1));
    QCOMPARE(param.timing0, quint8(0x01));
    QCOMPARE(param.dataRateCANFD, quint8(1));
    QVERIFY(!communication.isDeviceOpen(1));
}

void tst_GUI_CanDeviceParam::scanWithoutADevice()
{
    const AdapterFolder folder(NoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.click("btn_scan");
    press(*test.scan(), "btn_start");
    QCOMPARE(test.scan()->findChild<CNotice *>()->accessibleName(), QStringLiteral("No devices"));
}

void tst_GUI_CanDeviceParam::scanWhenAllChannelsAreOpen()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    ChannelParam channel;
    for (const quint8 index : {quint8(0), quint8(1)}) {
        channel.channel = index;
        QCOMPARE(communication.openChannel(channel), CAN_OK);
    }
    test.takeAll(Mode::CAN);
    test.show();
    test.click("btn_scan");
    press(*test.scan(), "btn_start");
    QVERIFY(!communication.isScanning());
    QCOMPARE(test.scan()->findChild<CNotice *>()->accessibleName(), QStringLiteral("Both CAN channels are in use"));
    QCOMPARE(communication.closeChannel(0, 0), CAN_OK);
    QCOMPARE(communication.closeChannel(0, 1), CAN_OK);
}

void tst_GUI_CanDeviceParam::rateFound_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("dataRate");
    QTest::addColumn<int>("shownIndex");
    QTest::addColumn<int>("shownDataRate");
    QTest::newRow("both") << 9 << 4 << 9 << 4;
    QTest::newRow("classic") << 1 << 0 << 1 << 0;
    QTest::newRow("data rate not on offer") << 5 << 5 << 5 << 2;
    QTest::newRow("rate not on offer") << 11 << 1 << 3 << 1;
    QTest::newRow("below") << -1 << -1 << 3 << 2;
}

void tst_GUI_CanDeviceParam::rateFound()
{
    QFETCH(int, index);
    QFETCH(int, dataRate);
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.choose("cbx_baudrateCANFD", 2);
    test.click("btn_scan");
    emit test.scan()->sig_rateFound(index, dataRate);
    QTEST(test.combo("cbx_baudrate")->currentIndex(), "shownIndex");
    QTEST(test.combo("cbx_baudrateCANFD")->currentIndex(), "shownDataRate");
}

void tst_GUI_CanDeviceParam::closesWhileAScanRuns()
{
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    {
        DialogUnderTest test(communication);
        test.show();
        test.click("btn_scan");
        press(*test.scan(), "btn_start");
        QVERIFY(communication.isScanning());
    }
    QVERIFY(!communication.isScanning());
    QVERIFY(!communication.isDeviceOpen(0));
}

void tst_GUI_CanDeviceParam::filterActsOnTheBus_data()
{
    QTest::addColumn<QVector<CanIdRange>>("listed");
    const auto row = [](const char *name, const QVector<CanIdRange> &listed) {
        QTest::newRow(name) << listed;
    };
    row("one standard", {{0x123, 0x123, false}});
    row("standard range", {{0x3E5, 0x3FA, false}});
    row("one extended", {{0x18FF0000, 0x18FF0000, true}});
    row("extended range", {{0x18FF0000, 0x18FF00FF, true}, {0x18FFF000, 0x18FFF0FF, true}});
    row("mixed", {{0x63F, 0x63F, false}, {0x18FE0000, 0x18FFFFFF, true}});
    row("nothing", {});
}

// Through the whole way: typed into the tool, taken over by the dialog, applied by the adapter.
void tst_GUI_CanDeviceParam::filterActsOnTheBus()
{
    QFETCH(QVector<CanIdRange>, listed);
    const AdapterFolder folder(TwoDevices);
    CANCommunication communication(virtualAdapter());
    DialogUnderTest test(communication);
    test.show();
    test.click("btn_filterTool");
    for (const CanIdRange &range : qAsConst(listed)) {
        addRange(*test.tool(), QByteArray::number(range.first, 16).constData(),
                 QByteArray::number(range.last, 16).constData(), range.extended);
    }
    const CanAcceptanceFilter filter = test.tool()->filter();
    press(*test.tool(), "btn_ok");
    const ChannelParam receiver = channelParams(test.accepted()).value(0);
    QCOMPARE(receiver.AccMask, filter.mask);
    ChannelParam sender = receiver;
    sender.channel = 1;
    Receiver received{receiver.channel};
    QObject context;
    connect(&communication, &CANCommunication::sig_readResultCallback, &context,
            [&received](quint8, quint8 canInd, const QVector<VCI_CAN_OBJ> &frames) { received.take(canInd, frames); });
    QCOMPARE(communication.openChannel(receiver), CAN_OK);
    QCOMPARE(communication.openChannel(sender), CAN_OK);

    std::vector<VCI_CAN_OBJ> frames = manyFrames();
    QSet<quint32> passing;   // with every frame
    QSet<quint32> sometimes; // with some frames
    for (const VCI_CAN_OBJ &frame : frames) {
        const CanPassage verdict = passage(filter, frame.ID, frame.ExternFlag != 0);
        QVERIFY(verdict == CanPassage::EveryFrame || !isListed(listed, frame));
        if (verdict == CanPassage::EveryFrame) {
            passing.insert(idWord(frame));
        } else if (verdict == CanPassage::SomeFrames) {
            sometimes.insert(idWord(frame));
        }
    }
    // Some frame that passes for sure marks the end.
    const auto last = std::find_if(frames.cbegin(), frames.cend(),
                                   [&passing](const VCI_CAN_OBJ &frame) { return passing.contains(idWord(frame)); });
    QVERIFY(last != frames.cend());
    QVERIFY(listed.isEmpty() || passing.size() < static_cast<int>(frames.size()) / 2);
    frames.push_back(*last);
    frames.back().RemoteFlag = 0;
    frames.back().Data[7] = Mark;
    QCOMPARE(communication.transmit(sender.device, sender.channel, frames.data(), static_cast<quint32>(frames.size())),
             CAN_OK);
    QTRY_VERIFY(received.isMarked);
    QCOMPARE(passing - received.ids, QSet<quint32>());
    QCOMPARE(received.ids - passing - sometimes, QSet<quint32>());
    QCOMPARE(communication.closeChannel(receiver.device, receiver.channel), CAN_OK);
    QCOMPARE(communication.closeChannel(sender.device, sender.channel), CAN_OK);
}

X9_GUI_TEST(tst_GUI_CanDeviceParam)
#include "tst_GUI_CanDeviceParam.moc"
