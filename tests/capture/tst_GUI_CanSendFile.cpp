#include "capture/CANFile.h"
#include "capture/CaptureLoader.h"
#include "capture/GUI_CanSendFile.h"
#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "resources/Resources.h"
#include "tests/support/SaveDialogDriver.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtEndian>
#include <QTimer>
#include <QtTest>

#include <array>
#include <limits>

namespace {
constexpr quint8 Device = 2;
constexpr quint8 Channel = 1;

QByteArray littleEndian(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

QByteArray header(const char *text)
{
    return QByteArray(text) + QByteArray(4, '\0');
}

/// A record of a .can file; data: at most 8 bytes.
QByteArray canRecord(quint32 id, const QByteArray &data, bool remote = false, bool extended = false)
{
    return littleEndian(id) + QByteArray(6, '\0') + char(remote) + char(extended) + char(data.size()) + data +
           QByteArray(8 - data.size() + 3, '\0');
}

QByteArray canFile(int frames)
{
    QByteArray content = header("Zhiyuan CAN Data");
    for (int i = 0; i < frames; ++i) {
        content += canRecord(static_cast<quint32>(i + 1), QByteArray(1, static_cast<char>(i)));
    }
    return content;
}

/// A .can file that takes a while to read.
QByteArray largeFile()
{
    return header("Zhiyuan CAN Data") + QByteArray(1000000 * 24, '\0');
}

/// A record of a .canfd file; data: at most 64 bytes.
QByteArray fdRecord(quint32 id, int protocol, const QByteArray &data, bool remote = false, bool extended = false)
{
    return littleEndian(id) + QByteArray(4, '\0') + char(protocol) + '\0' + char(remote) + char(extended) +
           char(data.size()) + data;
}

QByteArray payloadOf(const VCI_CAN_OBJ &frame)
{
    return {reinterpret_cast<const char *>(frame.Data), sizeof frame.Data};
}

QByteArray payloadOf(const VCI_CANFD_OBJ &frame)
{
    return {reinterpret_cast<const char *>(frame.Data), sizeof frame.Data};
}

QByteArray padded(const QByteArray &data, int size)
{
    return data + QByteArray(size - data.size(), '\0');
}

template<typename Record>
QVector<quint32> idsOf(const std::vector<Record> &frames)
{
    QVector<quint32> ids;
    for (const Record &frame : frames) {
        ids.append(frame.ID);
    }
    return ids;
}

ChannelParam channelParam(bool isCANFD)
{
    ChannelParam param;
    param.device = Device;
    param.channel = Channel;
    param.isCANFD = isCANFD;
    param.dataRateCANFD = isCANFD ? 2 : 0;
    return param;
}

/// The dialog on an opened channel of a recording adapter, its widgets by name.
class Player
{
public:
    explicit Player(bool isCANFD = false, QWidget *parent = nullptr)
        : manager(adapter.table())
        , dialog(std::make_unique<GUI_CanSendFile>(channelParam(isCANFD), manager, parent))
        , notices(dialog.get(), &GUI_CanSendFile::sig_showNotice)
    {
        isOpen = manager.openChannel(channelParam(isCANFD)) == CAN_OK;
        if (isCANFD) {
            choose(CANFile::CANFD);
        }
        find<QSpinBox>("sbx_interval")->setValue(1);
        dialog->show();
    }
    ~Player()
    {
        if (isOpen) {
            manager.closeChannel(Device, Channel);
        }
    }
    Player(const Player &) = delete;
    Player &operator=(const Player &) = delete;

    template<typename Widget>
    Widget *find(const char *name) const
    {
        return dialog->findChild<Widget *>(QLatin1String(name));
    }
    void choose(CANFile::FileType type) const
    {
        auto *combo = find<QComboBox>("cbx_fileType");
        combo->setCurrentIndex(combo->findData(type));
    }
    QString makeFile(const QString &name, const QByteArray &content) const
    {
        QFile file(folder.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? file.fileName() : QString();
    }
    void setPath(const QString &path) const
    {
        auto *field = find<QLineEdit>("lbx_fileName");
        field->setFocus();
        field->selectAll();
        field->insert(path); // as from the clipboard: it may have letters that no key of QTest has
    }
    void setFile(const QByteArray &content, const char *name = "a.can") const
    {
        setPath(makeFile(QLatin1String(name), content));
    }
    void setCount(int count) const { find<QSpinBox>("sbx_count")->setValue(count); }
    void clickSend() const { QTest::mouseClick(find<QPushButton>("btn_send"), Qt::LeftButton); }
    QString sendText() const { return find<QPushButton>("btn_send")->text(); }
    QProgressBar *progress() const { return find<QProgressBar>("progressBar"); }
    bool isIdle() const
    {
        return sendText() == QLatin1String("Send") && progress()->isHidden() &&
               find<QPushButton>("btn_browse")->isEnabled() && find<QSpinBox>("sbx_count")->isEnabled();
    }
    bool isSending() const { return sendText() == QLatin1String("Stop") && progress()->isVisible(); }
    /// Sends on and says whether so many more frames have gone out.
    bool hasSent(int frames)
    {
        const auto more = adapter.takeFrames();
        sent.insert(sent.end(), more.cbegin(), more.cend());
        return static_cast<int>(sent.size()) >= frames;
    }
    QStringList lastNotice() const
    {
        const QList<QVariant> notice = notices.isEmpty() ? QList<QVariant>() : notices.last();
        QStringList texts;
        for (const QVariant &argument : notice) {
            texts.append(argument.toString());
        }
        return texts;
    }

    QTemporaryDir folder;
    ScriptedAdapter adapter;
    CANCommunication manager;
    std::unique_ptr<GUI_CanSendFile> dialog;
    QSignalSpy notices;
    std::vector<VCI_CAN_OBJ> sent; ///< what hasSent() has taken
    bool isOpen = false;
};

/// How a window can go away.
using Closing = void (*)(GUI_CanSendFile &);
} // namespace

Q_DECLARE_METATYPE(Closing)

class tst_GUI_CanSendFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    static void widgets();
    static void frameTypeSetsTheIdentifierRange();
    static void sendsTheWholeFileSoOften();
    static void sendsToItsChannel();
    static void sendsAgainAfterTheEnd();
    static void classicFrames();
    static void classicDeviceTakesFdFramesAsClassicOnes();
    static void fdFrames();
    static void noStalePayload();
    static void theExtensionDecides();
    static void refusesTheTypeOnAClassicDevice();
    static void cannotReadTheFile_data();
    static void cannotReadTheFile();
    static void emptyPathDoesNothing();
    static void readsTheFileAnewForEachSend();
    static void controlsWhileSending();
    static void stopsMidWay();
    static void closingStops_data();
    static void closingStops();
    static void minimisingDoesNotStop();
    static void deletingItsTabStops();
    static void aVanishedDeviceDoesNotStopIt();
    static void progressBeyondTheRangeOfInt();
    void loadingLeavesTheWindowAlive();
    static void stopsLoading_data();
    static void stopsLoading();
    static void deletedWhileLoading();
    static void browse_data();
    static void browse();
    static void cancelledBrowse();
    static void deletedWhileBrowsing();
    static void keyboard();

private:
    QTemporaryDir m_home; ///< with a desktop folder
};

void tst_GUI_CanSendFile::initTestCase()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    qputenv("HOME", QFile::encodeName(m_home.path()));
    initResources(); // the size on screen is that with the program's look
    qApp->setFont(QFont(qApp->font().family(), 9));
    qApp->setStyleSheet(QStringLiteral("file:///:/Skins/White/White.css"));
    QVERIFY(QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::DesktopLocation)));
}

void tst_GUI_CanSendFile::widgets()
{
    const Player player;
    QVERIFY(player.isOpen);
    QCOMPARE(player.dialog->size(), QSize(450, 220));
    QVERIFY(!player.dialog->isModal());

    const auto entries = [&player](const char *name) {
        const auto *combo = player.find<QComboBox>(name);
        QStringList texts;
        for (int i = 0; i < combo->count(); ++i) {
            texts.append(combo->itemText(i) + QLatin1Char('=') + combo->itemData(i).toString());
        }
        return texts;
    };
    QCOMPARE(entries("cbx_fileType"), (QStringList{QStringLiteral("CAN(*.can)=0"), QStringLiteral("CANFD(*.canfd)=1"),
                                                   QStringLiteral("Csv(*.csv)=2"), QStringLiteral("Text(*.txt)=3")}));
    QCOMPARE(entries("cbx_frameType"), (QStringList{QStringLiteral("Standard=0"), QStringLiteral("Extend=1")}));
    QCOMPARE(entries("cbx_sendFormat"), QStringList{QStringLiteral("Normal=0")});

    const auto *interval = player.dialog->findChild<QSpinBox *>(QStringLiteral("sbx_interval"));
    QCOMPARE(interval->minimum(), 1);
    QCOMPARE(interval->maximum(), 65535);
    QCOMPARE(interval->suffix(), QStringLiteral(" ms"));
    QCOMPARE(GUI_CanSendFile(channelParam(false), const_cast<Player &>(player).manager)
                 .findChild<QSpinBox *>(QStringLiteral("sbx_interval"))
                 ->value(),
             10);
    const auto *count = player.find<QSpinBox>("sbx_count");
    QCOMPARE(count->minimum(), 1);
    QCOMPARE(count->maximum(), 65535);
    QCOMPARE(count->value(), 1);
    const auto *id = player.find<QSpinBox>("sbx_ID");
    QCOMPARE(id->displayIntegerBase(), 16);
    for (const char *name : {"sbx_ID", "cbx_frameType", "cbx_sendFormat"}) {
        QVERIFY(!player.find<QWidget>(name)->isEnabled());
    }
    QVERIFY(player.isIdle());
    for (const char *name : {"cbx_fileType", "lbx_fileName", "sbx_ID", "progressBar"}) {
        QVERIFY2(!player.find<QWidget>(name)->accessibleName().isEmpty(), name);
    }
    const auto labels = player.dialog->findChildren<QLabel *>();
    QStringList texts;
    for (const QLabel *label : labels) {
        texts.append(label->text());
    }
    for (const char *text : {"File type:", "Type:", "Format:", "Count:", "Interval:"}) {
        QVERIFY2(texts.contains(QLatin1String(text)), text);
    }
}

void tst_GUI_CanSendFile::frameTypeSetsTheIdentifierRange()
{
    const Player player;
    auto *type = player.find<QComboBox>("cbx_frameType");
    auto *id = player.find<QSpinBox>("sbx_ID");
    QCOMPARE(id->minimum(), 0);
    QCOMPARE(id->maximum(), 0x3FFF);
    type->setCurrentIndex(type->findData(1));
    QCOMPARE(id->maximum(), 0x1FFFFFF);
    id->setValue(0x1FFFFFF);
    type->setCurrentIndex(type->findData(0));
    QCOMPARE(id->maximum(), 0x3FFF);
    QCOMPARE(id->value(), 0x3FFF);
    QCOMPARE(id->minimum(), 0);
}

void tst_GUI_CanSendFile::sendsTheWholeFileSoOften()
{
    Player player;
    player.setFile(canFile(3));
    player.setCount(2);
    player.clickSend();
    QTRY_VERIFY(player.hasSent(6));
    QTRY_VERIFY(player.isIdle());
    letTicksPass(10);
    QVERIFY(player.hasSent(6));
    QCOMPARE(idsOf(player.sent), (QVector<quint32>{1, 2, 3, 1, 2, 3}));
    QCOMPARE(player.notices.count(), 0);
}

void tst_GUI_CanSendFile::sendsToItsChannel()
{
    Player player;
    player.adapter.takeCalls();
    player.setFile(canFile(2));
    player.clickSend();
    QTRY_VERIFY(player.hasSent(2));
    // One frame a call, on the device and channel of the dialog.
    QCOMPARE(player.adapter.takeCalls(),
             (QStringList{QStringLiteral("VCI_Transmit 4 2 1 1 id1"), QStringLiteral("VCI_Transmit 4 2 1 1 id2")}));
}

void tst_GUI_CanSendFile::sendsAgainAfterTheEnd()
{
    Player player;
    player.setFile(canFile(2));
    player.clickSend();
    QTRY_VERIFY(player.hasSent(2) && player.isIdle());
    player.clickSend();
    QTRY_VERIFY(player.hasSent(4) && player.isIdle());
    QCOMPARE(idsOf(player.sent), (QVector<quint32>{1, 2, 1, 2}));
}

void tst_GUI_CanSendFile::classicFrames()
{
    Player player;
    const QByteArray data = QByteArray::fromHex("0102030405060708");
    player.setFile(header("Zhiyuan CAN Data") + canRecord(0x7FF, data) +
                   canRecord(0x1FFFFFFF, data.left(2), true, true));
    player.clickSend();
    QTRY_VERIFY(player.hasSent(2));
    const VCI_CAN_OBJ &first = player.sent.at(0);
    QCOMPARE(quint32(first.ID), 0x7FFU);
    QCOMPARE(int(first.RemoteFlag), 0);
    QCOMPARE(int(first.ExternFlag), 0);
    QCOMPARE(int(first.DataLen), 8);
    QCOMPARE(payloadOf(first), data);
    const VCI_CAN_OBJ &second = player.sent.at(1);
    QCOMPARE(quint32(second.ID), 0x1FFFFFFFU);
    QCOMPARE(int(second.RemoteFlag), 1);
    QCOMPARE(int(second.ExternFlag), 1);
    QCOMPARE(int(second.DataLen), 2);
    QCOMPARE(payloadOf(second), padded(data.left(2), 8));
}

/// The type box stands on CAN, the file is a .canfd one.
void tst_GUI_CanSendFile::classicDeviceTakesFdFramesAsClassicOnes()
{
    Player player;
    const QByteArray data = QByteArray::fromHex("0102030405060708090A0B0C");
    player.setFile(header("Vantora CAN Data") + fdRecord(0x10, 2, data), "a.canfd");
    player.clickSend();
    QTRY_VERIFY(player.hasSent(1));
    QCOMPARE(int(player.sent.at(0).DataLen), 8);
    QCOMPARE(payloadOf(player.sent.at(0)), data.left(8));
    QVERIFY(player.adapter.takeFdFrames().empty());
}

void tst_GUI_CanSendFile::fdFrames()
{
    Player player(true);
    const QByteArray data(64, '\x5A');
    player.setFile(header("Vantora CAN Data") + fdRecord(0x10, 0, data.left(3)) + fdRecord(0x11, 1, data.left(12)) +
                       fdRecord(0x1ABCDEF, 2, data, false, true) + fdRecord(0x12, 0, {}, true),
                   "a.canfd");
    player.clickSend();
    std::vector<VCI_CANFD_OBJ> frames;
    const auto hasSent = [&](std::size_t count) {
        const auto more = player.adapter.takeFdFrames();
        frames.insert(frames.end(), more.cbegin(), more.cend());
        return frames.size() >= count;
    };
    QTRY_VERIFY(hasSent(4));
    QVERIFY(player.adapter.takeFrames().empty());
    QCOMPARE(idsOf(frames), (QVector<quint32>{0x10, 0x11, 0x1ABCDEF, 0x12}));
    const std::array<int, 4> lengths{3, 12, 64, 0};
    const std::array<int, 4> protocols{0, 1, 2, 0};
    for (std::size_t i = 0; i < frames.size(); ++i) {
        QCOMPARE(int(frames.at(i).DataLen), lengths.at(i));
        QCOMPARE(int(frames.at(i).FDFlag), protocols.at(i));
        QCOMPARE(payloadOf(frames.at(i)), padded(data.left(lengths.at(i)), 64));
        QCOMPARE(int(frames.at(i).ExternFlag), i == 2 ? 1 : 0);
        QCOMPARE(int(frames.at(i).RemoteFlag), i == 3 ? 1 : 0);
    }
}

void tst_GUI_CanSendFile::noStalePayload()
{
    Player player;
    player.setFile(header("Zhiyuan CAN Data") + canRecord(1, QByteArray(8, '\xFF')) +
                   canRecord(2, QByteArray(1, '\x11')));
    player.setCount(2);
    player.clickSend();
    QTRY_VERIFY(player.hasSent(4));
    QCOMPARE(payloadOf(player.sent.at(1)), padded(QByteArray(1, '\x11'), 8));
    QCOMPARE(payloadOf(player.sent.at(2)), QByteArray(8, '\xFF'));
    QCOMPARE(payloadOf(player.sent.at(3)), padded(QByteArray(1, '\x11'), 8));
}

void tst_GUI_CanSendFile::theExtensionDecides()
{
    Player player;
    player.setFile("Vantora CAN Data\ntitles\n1,10:20:30.400,None,Revice,0x123,CAN,Data,Standard,0x2,AA BB ", "A.CSV");
    player.choose(CANFile::Text);
    player.clickSend();
    QTRY_VERIFY(player.hasSent(1));
    QCOMPARE(quint32(player.sent.at(0).ID), 0x123U);
    QCOMPARE(payloadOf(player.sent.at(0)), padded(QByteArray::fromHex("AABB"), 8));
}

/// The type chosen is what counts, not the path's ending.
void tst_GUI_CanSendFile::refusesTheTypeOnAClassicDevice()
{
    Player player;
    player.setFile(canFile(1));
    player.choose(CANFile::CANFD);
    player.clickSend();
    QCOMPARE(player.notices.count(), 1);
    QCOMPARE(player.lastNotice(),
             (QStringList{QStringLiteral("CANFD file not supported"), QStringLiteral("3"), QStringLiteral("1500")}));
    QVERIFY(player.isIdle());
    letTicksPass(10);
    QVERIFY(player.adapter.takeFrames().empty());
}

void tst_GUI_CanSendFile::cannotReadTheFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("no such file") << QString() << QByteArray();
    QTest::newRow("empty") << QStringLiteral("a.can") << QByteArray();
    QTest::newRow("header alone") << QStringLiteral("a.can") << header("Zhiyuan CAN Data");
    QTest::newRow("wrong header") << QStringLiteral("a.can") << QByteArray(100, 'x');
    QTest::newRow("unknown ending") << QStringLiteral("a.bin") << canFile(1);
}

void tst_GUI_CanSendFile::cannotReadTheFile()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    Player player;
    player.setPath(name.isEmpty() ? player.folder.filePath(QStringLiteral("gone.can"))
                                  : player.makeFile(name, content));
    player.clickSend();
    QTRY_COMPARE(player.notices.count(), 1);
    QCOMPARE(player.lastNotice(),
             (QStringList{QStringLiteral("File read failure"), QStringLiteral("3"), QStringLiteral("1500")}));
    QVERIFY(player.isIdle());
    letTicksPass(10);
    QVERIFY(player.adapter.takeFrames().empty());
}

void tst_GUI_CanSendFile::emptyPathDoesNothing()
{
    const Player player;
    player.choose(CANFile::CANFD); // also before the type is looked at
    player.clickSend();
    QVERIFY(player.isIdle());
    letTicksPass(10);
    QCOMPARE(player.notices.count(), 0);
}

void tst_GUI_CanSendFile::readsTheFileAnewForEachSend()
{
    Player player;
    player.setFile(canFile(1));
    player.clickSend();
    QTRY_VERIFY(player.hasSent(1) && player.isIdle());
    player.makeFile(QStringLiteral("a.can"), header("Zhiyuan CAN Data") + canRecord(0x55, {}));
    player.clickSend();
    QTRY_VERIFY(player.hasSent(2) && player.isIdle());
    QCOMPARE(idsOf(player.sent), (QVector<quint32>{1, 0x55}));
    QVERIFY(QFile::remove(player.folder.filePath(QStringLiteral("a.can"))));
    player.clickSend();
    QTRY_COMPARE(player.notices.count(), 1);
    QVERIFY(player.isIdle());
    QVERIFY(!player.hasSent(3));
}

void tst_GUI_CanSendFile::controlsWhileSending()
{
    Player player;
    player.setFile(canFile(3));
    player.setCount(1000);
    const std::array<const char *, 5> controls{"cbx_fileType", "lbx_fileName", "btn_browse", "sbx_count",
                                               "sbx_interval"};
    const std::array<const char *, 3> unused{"sbx_ID", "cbx_frameType", "cbx_sendFormat"};
    player.clickSend();
    QTRY_VERIFY(player.isSending());
    QCOMPARE(player.progress()->minimum(), 0);
    QCOMPARE(player.progress()->maximum(), 3000);
    for (const char *name : controls) {
        QVERIFY2(!player.find<QWidget>(name)->isEnabled(), name);
    }
    QTRY_VERIFY(player.hasSent(5));
    QCOMPARE(player.progress()->value(), static_cast<int>(player.sent.size()));
    player.clickSend();
    QVERIFY(player.isIdle());
    for (const char *name : controls) {
        QVERIFY2(player.find<QWidget>(name)->isEnabled(), name);
    }
    for (const char *name : unused) {
        QVERIFY2(!player.find<QWidget>(name)->isEnabled(), name);
    }
}

void tst_GUI_CanSendFile::stopsMidWay()
{
    Player player;
    player.setFile(canFile(3));
    player.setCount(1000);
    player.clickSend();
    QTRY_VERIFY(player.hasSent(4));
    player.clickSend();
    QVERIFY(player.progress()->isHidden());
    QCOMPARE(player.sendText(), QStringLiteral("Send"));
    player.adapter.takeFrames();
    letTicksPass(20);
    QVERIFY(player.adapter.takeFrames().empty());
    player.sent.clear();
    player.clickSend(); // starts with the first frame again
    QTRY_VERIFY(player.hasSent(1));
    QCOMPARE(quint32(player.sent.at(0).ID), 1U);
}

void tst_GUI_CanSendFile::closingStops_data()
{
    QTest::addColumn<Closing>("closing");
    QTest::newRow("Esc") << Closing([](GUI_CanSendFile &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    QTest::newRow("close") << Closing([](GUI_CanSendFile &dialog) { dialog.close(); });
    QTest::newRow("reject") << Closing([](GUI_CanSendFile &dialog) { dialog.reject(); });
    QTest::newRow("hide") << Closing([](GUI_CanSendFile &dialog) { dialog.hide(); });
}

void tst_GUI_CanSendFile::closingStops()
{
    QFETCH(Closing, closing);
    Player player;
    player.setFile(canFile(3));
    player.setCount(1000);
    player.choose(CANFile::CSV);
    player.clickSend();
    QTRY_VERIFY(player.hasSent(2));
    closing(*player.dialog);
    QVERIFY(!player.dialog->isVisible());
    player.adapter.takeFrames();
    letTicksPass(20);
    QVERIFY(player.adapter.takeFrames().empty());

    player.dialog->show();
    QVERIFY(player.isIdle());
    QCOMPARE(player.find<QSpinBox>("sbx_count")->value(), 1000);
    QCOMPARE(player.find<QSpinBox>("sbx_interval")->value(), 1);
    QCOMPARE(player.find<QComboBox>("cbx_fileType")->currentData().toInt(), int(CANFile::CSV));
    QCOMPARE(player.find<QLineEdit>("lbx_fileName")->text(), player.folder.filePath(QStringLiteral("a.can")));
    player.sent.clear();
    player.clickSend();
    QTRY_VERIFY(player.hasSent(1));
    QCOMPARE(quint32(player.sent.at(0).ID), 1U);
}

/// The window system tells of it by an event of its own.
void tst_GUI_CanSendFile::minimisingDoesNotStop()
{
    Player player;
    player.setFile(canFile(3));
    player.setCount(1000);
    player.clickSend();
    QTRY_VERIFY(player.isSending());
    QHideEvent event;
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(player.dialog.get(), &event); // sendEvent() would make it one of the program's own
    QVERIFY(player.isSending());
    const int before = static_cast<int>(player.sent.size());
    QTRY_VERIFY(player.hasSent(before + 5));
}

void tst_GUI_CanSendFile::deletingItsTabStops()
{
    auto tab = std::make_unique<QWidget>();
    tab->show();
    Player player(false, tab.get());
    player.setFile(canFile(3));
    player.setCount(1000);
    player.clickSend();
    QTRY_VERIFY(player.hasSent(2));
    QPointer<GUI_CanSendFile> dialog = player.dialog.release();
    tab.reset();
    QVERIFY(dialog.isNull());
    player.adapter.takeFrames();
    letTicksPass(20);
    QVERIFY(player.adapter.takeFrames().empty());
}

void tst_GUI_CanSendFile::aVanishedDeviceDoesNotStopIt()
{
    Player player;
    player.adapter.answer("VCI_Transmit", 0);
    player.setFile(canFile(3));
    player.setCount(2);
    player.clickSend();
    QTRY_VERIFY(player.hasSent(6) && player.isIdle());

    player.manager.closeChannel(Device, Channel); // closes the device, too
    player.isOpen = false;
    player.setCount(1000);
    player.clickSend();
    QTRY_VERIFY(player.progress()->isVisible() && player.progress()->value() > 5);
    player.clickSend();
    QVERIFY(player.isIdle());
    QCOMPARE(player.notices.count(), 0);
}

void tst_GUI_CanSendFile::progressBeyondTheRangeOfInt()
{
    constexpr int Frames = 33000;
    constexpr int Count = 65535;
    constexpr qint64 Total = qint64(Frames) * Count;
    static_assert(Total > std::numeric_limits<int>::max());
    Player player;
    player.setFile(canFile(Frames));
    player.setCount(Count);
    player.clickSend();
    QTRY_VERIFY(player.isSending());
    QCOMPARE(qint64(player.progress()->maximum()), Total / 2);
    QTRY_VERIFY(player.hasSent(20));
    QCOMPARE(player.progress()->value(), static_cast<int>(player.sent.size() / 2));
    QVERIFY(player.isSending());
}

/// What waits in the event loop at the time of the click is handled before the file is there.
void tst_GUI_CanSendFile::loadingLeavesTheWindowAlive()
{
    Player player;
    player.setFile(largeFile());
    bool isHandled = false;
    const auto look = [&] {
        isHandled = true;
        QCOMPARE(player.sendText(), QStringLiteral("Stop"));
        QVERIFY(player.progress()->isHidden());
        QVERIFY(!player.find<QWidget>("btn_browse")->isEnabled());
        QVERIFY(!player.find<QWidget>("sbx_interval")->isEnabled());
    };
    QMetaObject::invokeMethod(this, look, Qt::QueuedConnection);
    player.clickSend();
    QVERIFY(!isHandled);
    QTRY_VERIFY(player.isSending());
    QVERIFY(isHandled);
    QCOMPARE(player.progress()->maximum(), 1000000);
}

void tst_GUI_CanSendFile::stopsLoading_data()
{
    QTest::addColumn<Closing>("closing");
    QTest::newRow("Stop") << Closing([](GUI_CanSendFile &dialog) {
        QTest::mouseClick(dialog.findChild<QPushButton *>(QStringLiteral("btn_send")), Qt::LeftButton);
    });
    QTest::newRow("close") << Closing([](GUI_CanSendFile &dialog) { dialog.close(); });
}

void tst_GUI_CanSendFile::stopsLoading()
{
    QFETCH(Closing, closing);
    Player player;
    player.setFile(largeFile());
    player.clickSend();
    QCOMPARE(player.sendText(), QStringLiteral("Stop"));
    closing(*player.dialog);
    player.dialog->show();
    QVERIFY(player.isIdle());
    CaptureLoader other; // reads the same file from now on
    bool isRead = false;
    QVERIFY(other.start(player.folder.filePath(QStringLiteral("a.can")),
                        [&isRead](const std::optional<CaptureContent> &) { isRead = true; }));
    QTRY_VERIFY(isRead);
    letTicksPass(20);
    QVERIFY(player.isIdle());
    QVERIFY(player.adapter.takeFrames().empty());
    player.setFile(canFile(2), "b.can");
    player.clickSend();
    QTRY_VERIFY(player.hasSent(2) && player.isIdle());
    letTicksPass(20);
    QVERIFY(!player.hasSent(3)); // nothing of the file that was given up
    QCOMPARE(player.notices.count(), 0);
}

void tst_GUI_CanSendFile::deletedWhileLoading()
{
    Player player;
    player.setFile(largeFile());
    player.clickSend();
    QCOMPARE(player.sendText(), QStringLiteral("Stop"));
    player.dialog.reset();
    letTicksPass(20);
    QVERIFY(player.adapter.takeFrames().empty());
}

void tst_GUI_CanSendFile::browse_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("filter");
    QTest::newRow("can") << int(CANFile::CAN) << QStringLiteral("a.can") << QStringLiteral("CAN(*.can)");
    QTest::newRow("canfd") << int(CANFile::CANFD) << QStringLiteral("a.canfd") << QStringLiteral("CANFD(*.canfd)");
    QTest::newRow("csv") << int(CANFile::CSV) << QStringLiteral("a.csv") << QStringLiteral("Csv(*.csv)");
    QTest::newRow("a name with blanks in Chinese")
        << int(CANFile::Text) << QString::fromUtf8("\xE6\x8D\x95\xE8\x8E\xB7 \xE4\xBA\x8C.txt")
        << QStringLiteral("Text(*.txt)");
}

void tst_GUI_CanSendFile::browse()
{
    QFETCH(int, type);
    QFETCH(QString, name);
    Player player(true);
    const QString path = player.makeFile(
        name,
        "Vantora CAN Data\ntitles\n1     10:20     None     Revice     0x123     CAN     Data     Standard     0x0");
    player.choose(static_cast<CANFile::FileType>(type));
    const SaveDialogDriver dialog(path);
    QTest::mouseClick(player.find<QPushButton>("btn_browse"), Qt::LeftButton);
    QTRY_VERIFY(dialog.isAnswered());
    QTRY_COMPARE(player.find<QLineEdit>("lbx_fileName")->text(), path);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Open File"));
    QCOMPARE(dialog.folder(), QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));
    QTEST(dialog.nameFilters().join(QString()), "filter");
    if (type == CANFile::Text) {
        player.clickSend();
        QTRY_VERIFY(player.isIdle());
        QCOMPARE(idsOf(player.adapter.takeFdFrames()), QVector<quint32>{0x123});
    }
}

void tst_GUI_CanSendFile::cancelledBrowse()
{
    const Player player;
    player.setPath(QStringLiteral("old.can"));
    const SaveDialogDriver dialog{QString()};
    QTest::mouseClick(player.find<QPushButton>("btn_browse"), Qt::LeftButton);
    QTRY_VERIFY(dialog.isAnswered());
    QTRY_VERIFY(player.dialog->findChild<QFileDialog *>() == nullptr);
    QCOMPARE(player.find<QLineEdit>("lbx_fileName")->text(), QStringLiteral("old.can"));
}

void tst_GUI_CanSendFile::deletedWhileBrowsing()
{
    Player player;
    QTest::mouseClick(player.find<QPushButton>("btn_browse"), Qt::LeftButton);
    QPointer<QFileDialog> browsing = player.dialog->findChild<QFileDialog *>();
    QVERIFY(browsing != nullptr);
    player.dialog.reset();
    QVERIFY(browsing.isNull());
}

/// Enter sends from every field, and stops; on "Browse" it browses. Tab goes through the fields as they are laid out.
void tst_GUI_CanSendFile::keyboard()
{
    Player player;
    player.dialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(player.dialog.get()));
    player.setFile(canFile(3));
    player.setCount(1000);
    for (const char *name : {"lbx_fileName", "sbx_count", "sbx_interval", "btn_send"}) {
        auto *field = player.find<QWidget>(name);
        field->setFocus();
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_VERIFY2(player.isSending(), name);
        QTest::keyClick(player.dialog->focusWidget(), Qt::Key_Return);
        QVERIFY2(player.isIdle(), name);
    }
    player.find<QWidget>("btn_browse")->setFocus();
    QTest::keyClick(player.find<QWidget>("btn_browse"), Qt::Key_Return);
    auto *browsing = player.dialog->findChild<QFileDialog *>();
    QVERIFY(browsing != nullptr);
    browsing->reject();
    QVERIFY(player.isIdle());
    player.find<QWidget>("cbx_fileType")->setFocus();
    for (const char *name : {"lbx_fileName", "btn_browse", "sbx_count", "sbx_interval", "btn_send", "cbx_fileType"}) {
        QTest::keyClick(player.dialog->focusWidget(), Qt::Key_Tab);
        QCOMPARE(player.dialog->focusWidget()->objectName(), QLatin1String(name));
    }
}

X9_GUI_TEST(tst_GUI_CanSendFile)
#include "tst_GUI_CanSendFile.moc"
