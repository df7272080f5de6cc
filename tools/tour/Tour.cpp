#include "tools/tour/Tour.h"

#include "app/GUI_CanView.h"
#include "app/GUI_DeviceInfo.h"
#include "app/GUI_SoftwareInfo.h"
#include "app/Settings.h"
#include "can/GUI_CanDeviceParam.h"
#include "can/GUI_CanFilterTool.h"
#include "can/GUI_CanGateWay.h"
#include "can/GUI_CanScanBaudrate.h"
#include "capture/CTableViewCAN.h"
#include "capture/GUI_CanAdvancedOpearation.h"
#include "capture/GUI_CanSendFile.h"
#include "lin/GUI_LINDevice.h"
#include "lin/GUI_LINModeDeveloper.h"
#include "lin/GUI_LINModeList.h"
#include "lin/GUI_LINModeMonitor.h"
#include "tests/support/SaveDialogDriver.h"
#include "widgets/CHexEditView.h"
#include "widgets/CMaskWidget.h"
#include "widgets/CMessageBox.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QSpinBox>
#include <QTableView>
#include <QTabWidget>
#include <QTextStream>
#include <QtTest>

#include <array>
#include <utility>

namespace {
constexpr int StepTimeoutMs = 15000;
constexpr int SlowStepTimeoutMs = 60000; ///< in a virtual machine
constexpr int FramesToSee = 200;
/// Sent a hundred times a second on the channel that is shown.
constexpr char HiddenId[] = "101";
/// Identifiers that the slaves of the first LIN bus answer.
constexpr std::array<int, 4> LINSlaves{0x10, 0x11, 0x12, 0x21};
} // namespace

Tour::Tour(GUI_CanView &window, QString language, const QDir &folder, Adapter adapter)
    : m_window(window)
    , m_language(std::move(language))
    , m_folder(folder)
    , m_adapter(adapter)
{
}

bool Tour::run()
{
    return openChannels() && receive() && send() && sendRepeatedly() && sendList() && filterGateway() &&
           refuseIdentifier() && hideIdentifier() && saveCaptures() && playCapture() && saveInRealTime() &&
           (m_adapter == Adapter::Virtual ? useLIN() : refuseLIN()) && closeChannels() && lookAround() &&
           switchLanguage();
}

bool Tour::openChannels()
{
    auto *dialog = m_window.findChild<GUI_CanDeviceParam *>();
    if (!waitUntil("the program asks what to open", [dialog] { return dialog->isVisible(); })) {
        return false;
    }
    QTest::qWait(100);
    shoot(*dialog, QStringLiteral("open"));
    pressIn(*dialog, "btn_setup");
    QTest::qWait(100);
    shoot(*dialog, QStringLiteral("open-lin"));
    pressIn(*dialog, "btn_setup");
    if (!computeFilter(*dialog) || !scan(*dialog)) {
        return false;
    }
    // The first one for CAN FD at 2 Mbit/s, the second one classic.
    auto *dataRate = dialog->findChild<QComboBox *>(QStringLiteral("cbx_baudrateCANFD"));
    dataRate->setCurrentIndex(2);
    pressIn(*dialog, "btn_ok");
    m_window.slot_openCanDevice();
    dataRate->setCurrentIndex(0);
    pressIn(*dialog, "btn_ok");
    auto *tabs = m_window.findChild<QTabWidget *>(QStringLiteral("tabWidget"));
    return waitUntil("the two CAN channels open", [tabs] { return tabs->count() == 2; });
}

/// A filter for two ranges, not taken over.
bool Tour::computeFilter(const GUI_CanDeviceParam &dialog)
{
    pressIn(dialog, "btn_filterTool");
    const QPointer<GUI_CanFilterTool> tool(dialog.findChild<GUI_CanFilterTool *>());
    if (!waitUntil("the filter tool opens", [&] { return tool && tool->isActiveWindow(); })) {
        return false;
    }
    const std::array<std::array<const char *, 2>, 2> ranges{{{"100", "10F"}, {"120", ""}}};
    for (const auto &range : ranges) {
        typeIn(*tool, "lbx_idFrom", QLatin1String(range[0]));
        typeIn(*tool, "lbx_idTo", QLatin1String(range[1]));
        pressIn(*tool, "btn_add");
    }
    typeIn(*tool, "lbx_testID", QStringLiteral("130"));
    QTest::qWait(100);
    shoot(*tool, QStringLiteral("filter-tool"));
    pressIn(*tool, "btn_cancel");
    return waitUntil("the filter tool closes", [&] { return tool.isNull(); });
}

bool Tour::scan(const GUI_CanDeviceParam &dialog)
{
    pressIn(dialog, "btn_scan");
    const QPointer<GUI_CanScanBaudrate> scan(dialog.findChild<GUI_CanScanBaudrate *>());
    if (!waitUntil("the scan opens", [&] { return scan && scan->isActiveWindow(); })) {
        return false;
    }
    pressIn(*scan, "btn_start");
    const auto *bar = scan->findChild<QProgressBar *>();
    if (!waitUntil("the bit rates are found", [bar] { return bar->value() == bar->maximum(); })) {
        return false;
    }
    QTest::qWait(100);
    shoot(*scan, QStringLiteral("scan"));
    pressIn(*scan, "btn_apply");
    return waitUntil("the scan closes", [&] { return scan.isNull(); });
}

bool Tour::receive()
{
    if (!waitUntil("frames arrive", [this] { return table()->rowCount() > FramesToSee; })) {
        return false;
    }
    if (!waitUntil("the frame rate is shown",
                   [this] { return widget<QLineEdit>("lbx_rateR")->text() != QLatin1String("0 p/s"); })) {
        return false;
    }
    shoot(m_window, QStringLiteral("receive"));
    return true;
}

bool Tour::send()
{
    click("btn_pauseReceiving");
    const int before = table()->rowCount();
    type("lbx_frameID", QStringLiteral("123"));
    type(widget<QWidget>("lbx_data")->findChild<QLineEdit *>(), QStringLiteral("DE AD BE EF 01 02 03 04"));
    if (!editData()) {
        return false;
    }
    click("btn_sendData");
    if (!waitUntil("the sent frame is listed", [this, before] { return table()->rowCount() > before; })) {
        return false;
    }
    QTest::qWait(100);
    shoot(m_window, QStringLiteral("send"));
    click("btn_pauseReceiving");
    return true;
}

/// Twenty frames that count up.
bool Tour::sendRepeatedly()
{
    type("lbx_frameOfSend", QStringLiteral("20"));
    type("lbx_sendingCycle", QStringLiteral("5"));
    click("chbx_idIncrease");
    click("chbx_dataIncrease");
    click("btn_sendData");
    const auto *button = widget<QAbstractButton>("btn_sendData");
    if (!waitUntil("the frames have been sent", [button] { return button->isEnabled(); })) {
        return false;
    }
    QTest::qWait(600); // until they are listed
    shoot(m_window, QStringLiteral("send-repeatedly"));
    click("btn_fold");
    const auto *panel = widget<QWidget>("widget_content");
    if (!waitUntil("the panel folds", [panel] { return panel->maximumHeight() == 0; })) {
        return false;
    }
    shoot(m_window, QStringLiteral("fold"));
    click("btn_fold");
    return waitUntil("the panel unfolds", [panel] { return panel->maximumHeight() == 155; });
}

bool Tour::sendList()
{
    click("btn_advancedOperation");
    auto *dialog = tab()->findChild<GUI_CanAdvancedOpearation *>();
    if (!waitUntil("the send list opens", [dialog] { return dialog != nullptr && dialog->isVisible(); })) {
        return false;
    }
    for (int row = 0; row < 12; ++row) {
        pressIn(*dialog, "btnAdd");
    }
    pressIn(*dialog, "btnAllSelect");
    pressIn(*dialog, "checkBox");
    QTest::qWait(100);
    shoot(*dialog, QStringLiteral("send-list"));
    pressIn(*dialog, "btnListSend");
    const auto *stop = dialog->findChild<QAbstractButton *>(QStringLiteral("m_btnStop"));
    return waitUntil("the list has been sent", [stop] { return !stop->isEnabled(); }) && dialog->close();
}

/// Switches the gateway on, lets two identifiers through, and switches it off.
bool Tour::filterGateway()
{
    click("btn_gatewaySwitch");
    click("btn_gatewayFilter");
    const QPointer<GUI_CanGateWay> dialog(tab()->findChild<GUI_CanGateWay *>());
    if (!waitUntil("the gateway filter opens", [&] { return dialog && dialog->isActiveWindow(); })) {
        return false;
    }
    for (const char *id : {"101", "2B0"}) {
        typeIn(*dialog, "lbx_id", QLatin1String(id));
        pressIn(*dialog, "btn_apply");
    }
    QTest::qWait(100);
    shoot(*dialog, QStringLiteral("gateway-filter"));
    pressIn(*dialog, "btn_ok");
    const bool isDone = closeMessage();
    click("btn_gatewaySwitch");
    return isDone;
}

/// A look at all bytes of the data, left as they are.
bool Tour::editData()
{
    QTest::mouseClick(widget<QWidget>("lbx_data")->findChild<QAbstractButton *>(), Qt::LeftButton);
    auto *dialog = widget<CHexEditView>("CHexEditView");
    if (!waitUntil("the data dialog opens", [dialog] { return dialog != nullptr && dialog->isActiveWindow(); })) {
        return false;
    }
    QTest::qWait(100);
    shoot(*dialog, QStringLiteral("edit-data"));
    const QPointer<CHexEditView> open(dialog);
    QTest::keyClick(dialog, Qt::Key_Escape);
    return waitUntil("the data dialog closes", [open] { return open.isNull(); });
}

/// An identifier that standard frames cannot have: a message, and the window behind it dimmed.
bool Tour::refuseIdentifier()
{
    auto *frameType = widget<QComboBox>("cbx_frameType");
    frameType->setCurrentIndex(1);
    type("lbx_frameID", QStringLiteral("800"));
    frameType->setCurrentIndex(0);
    click("btn_sendData");
    const QPointer<CMessageBox> message(m_window.findChild<CMessageBox *>());
    const auto isDimmed = [this] {
        return m_window.findChild<CMaskWidget *>() != nullptr;
    };
    if (!waitUntil("the message opens", [&] { return message && message->isActiveWindow() && isDimmed(); })) {
        return false;
    }
    QTest::qWait(100);
    shoot(*message, QStringLiteral("message"));
    shoot(m_window, QStringLiteral("behind-the-message"));
    QTest::keyClick(message.data(), Qt::Key_Return);
    return waitUntil("the message closes", [&] { return message.isNull() && !isDimmed(); });
}

/// The one message that is expected.
bool Tour::closeMessage()
{
    const QPointer<CMessageBox> message(m_window.findChild<CMessageBox *>());
    if (!waitUntil("a message opens", [&] { return message && message->isActiveWindow(); })) {
        return false;
    }
    QTest::keyClick(message.data(), Qt::Key_Return);
    return waitUntil("the message closes", [&] { return message.isNull(); });
}

bool Tour::hideIdentifier()
{
    click("rbtn_enable");
    type("lbx_setFilter", QLatin1String(HiddenId));
    const int before = table()->rowCount();
    click("btn_setFilter");
    // What was queued before the filter was set is still listed by the next refresh.
    if (!waitUntil("the table refreshes", [this, before] { return table()->rowCount() > before; })) {
        return false;
    }
    click("btn_clear");
    if (!waitUntil("frames arrive past the filter", [this] { return table()->rowCount() > FramesToSee; })) {
        return false;
    }
    shoot(m_window, QStringLiteral("filter"));
    return true;
}

bool Tour::saveCaptures()
{
    const QStringList suffixes{QStringLiteral("can"), QStringLiteral("canfd"), QStringLiteral("csv"),
                               QStringLiteral("txt")};
    for (const QString &suffix : suffixes) {
        const QString path = file(QStringLiteral("capture.") + suffix);
        QFile::remove(path); // of an earlier tour: the dialog would ask
        const bool isFirst = suffix == suffixes.first();
        SaveDialogDriver answer(path, [this, isFirst](QFileDialog &dialog) {
            if (isFirst) {
                shoot(dialog, QStringLiteral("save-dialog"));
            }
        });
        click("btn_save");
        if (!waitUntil("the capture is saved", [&path] { return QFileInfo(path).size() > 0; })) {
            return false;
        }
    }
    return isHiddenIn(file(QStringLiteral("capture.csv")));
}

/// The saved capture shows what the filter let through.
bool Tour::isHiddenIn(const QString &path)
{
    QFile capture(path);
    if (capture.open(QIODevice::ReadOnly) && !capture.readAll().contains(QByteArray(",0x") + HiddenId + ',')) {
        return true;
    }
    QTextStream(stderr) << "The tour stopped: the hidden identifier is in the saved capture.\n";
    return false;
}

/// Sends the frames of the capture that was saved.
bool Tour::playCapture()
{
    click("btn_sendFile");
    auto *dialog = tab()->findChild<GUI_CanSendFile *>();
    if (!waitUntil("the file sender opens", [dialog] { return dialog != nullptr && dialog->isVisible(); })) {
        return false;
    }
    type("lbx_fileName", QDir::current().relativeFilePath(file(QStringLiteral("capture.can"))));
    widget<QSpinBox>("sbx_interval")->setValue(1);
    click("btn_send");
    const auto *progress = widget<QProgressBar>("progressBar");
    if (!waitUntil("the file is played", [progress] { return progress->value() > progress->maximum() / 3; })) {
        return false;
    }
    shoot(*dialog, QStringLiteral("send-file"));
    if (!waitUntil("the file has been played", [progress] { return !progress->isVisible(); })) {
        return false;
    }
    return dialog->close();
}

bool Tour::saveInRealTime()
{
    const QString path = file(QStringLiteral("real-time.csv"));
    QFile::remove(path);
    SaveDialogDriver answer(path);
    click("btn_realTimeSaving");
    const qint64 first = QFileInfo(path).size();
    const bool isGrowing =
        waitUntil("the real-time file grows", [&path, first] { return first > 0 && QFileInfo(path).size() > first; });
    shoot(m_window, QStringLiteral("real-time-saving"));
    click("btn_realTimeSaving");
    return isGrowing;
}

bool Tour::useLIN()
{
    return openLIN() && runSchedule() && monitorLIN() && developLIN();
}

void Tour::chooseLIN()
{
    m_window.slot_openCanDevice();
    auto *dialog = m_window.findChild<GUI_CanDeviceParam *>();
    pressIn(*dialog, "btn_setup");
    pressIn(*dialog, "btn_ok");
}

/// The adapter has none, and the program says so.
bool Tour::refuseLIN()
{
    chooseLIN();
    const QPointer<CMessageBox> message(m_window.findChild<CMessageBox *>());
    if (!waitUntil("LIN is refused", [&] { return message && message->text().contains(QLatin1String("LIN")); })) {
        return false;
    }
    QTest::qWait(100);
    shoot(*message, QStringLiteral("no-lin"));
    return closeMessage();
}

bool Tour::openLIN()
{
    chooseLIN();
    return waitUntil("the LIN channel opens", [this] { return qobject_cast<GUI_LINDevice *>(tab()) != nullptr; });
}

/// One frame is sent, the others are asked of slaves.
bool Tour::runSchedule()
{
    auto *page = tab()->findChild<GUI_LINModeList *>();
    QAbstractItemModel *rows = page->findChild<QTableView *>(QStringLiteral("tableViewParam"))->model();
    for (int row = 0; row < 5; ++row) {
        rows->setData(rows->index(row, 0), Qt::Checked, Qt::CheckStateRole);
        if (row > 0) {
            rows->setData(rows->index(row, 1), 1, Qt::UserRole);
            rows->setData(rows->index(row, 1), GUI_LINModeList::tr("Revice"));
            rows->setData(rows->index(row, 2), QString::number(LINSlaves.at(static_cast<std::size_t>(row) - 1), 16));
        }
    }
    page->findChild<QSpinBox *>(QStringLiteral("lbx_count"))->setValue(20);
    pressIn(*page, "btn_start");
    const auto *start = page->findChild<QAbstractButton *>(QStringLiteral("btn_start"));
    if (!waitUntil("the schedule ends", [start] { return start->isEnabled(); })) {
        return false;
    }
    QTest::qWait(100);
    shoot(m_window, QStringLiteral("lin-list"));
    return page->findChild<QTableView *>(QStringLiteral("tableview"))->model()->rowCount() > 0;
}

bool Tour::monitorLIN()
{
    pressIn(*tab(), "btn_modeMonitor");
    auto *page = tab()->findChild<GUI_LINModeMonitor *>();
    page->findChild<QComboBox *>(QStringLiteral("cbx_mode"))->setCurrentIndex(1);
    pressIn(*page, "btn_start");
    const QAbstractItemModel *rows = page->findChild<QTableView *>(QStringLiteral("tableView"))->model();
    if (!waitUntil("LIN frames are seen", [rows] { return rows->rowCount() >= 8; })) {
        return false;
    }
    QTest::qWait(100);
    shoot(m_window, QStringLiteral("lin-monitor"));
    pressIn(*page, "btn_stop");
    return true;
}

bool Tour::developLIN()
{
    pressIn(*tab(), "btn_modeDeveloper");
    auto *page = tab()->findChild<GUI_LINModeDeveloper *>();
    page->findChild<QSpinBox *>(QStringLiteral("sbx_ID"))->setValue(0x12);
    page->findChild<QSpinBox *>(QStringLiteral("sbx_length"))->setValue(4);
    typeIn(*page, "lbx_data", QStringLiteral("01 02 03 04"));
    pressIn(*page, "btn_calculate");
    const auto *pid = page->findChild<QLineEdit *>(QStringLiteral("lbx_PID"));
    QTest::qWait(100);
    shoot(m_window, QStringLiteral("lin-developer"));
    return waitUntil("the identifier is protected", [pid] { return pid->text() == QLatin1String("92"); });
}

bool Tour::closeChannels()
{
    m_window.slot_closeCanDevice();
    auto *tabs = m_window.findChild<QTabWidget *>(QStringLiteral("tabWidget"));
    return waitUntil("the channels close", [tabs] { return tabs->count() == 0; });
}

/// The dialogs of the About menu.
bool Tour::lookAround()
{
    m_window.slot_showSoftwareInfo();
    const QPointer<GUI_SoftwareInfo> software(m_window.findChild<GUI_SoftwareInfo *>());
    if (!waitUntil("the software information opens", [&] { return software && software->isActiveWindow(); })) {
        return false;
    }
    QTest::qWait(100);
    shoot(*software, QStringLiteral("software-information"));
    QTest::keyClick(software.data(), Qt::Key_Escape);
    m_window.slot_showDeviceInfo();
    const QPointer<GUI_DeviceInfo> device(m_window.findChild<GUI_DeviceInfo *>());
    if (!waitUntil("the device information opens", [&] { return device && device->isActiveWindow(); })) {
        return false;
    }
    QTest::qWait(100);
    shoot(*device, QStringLiteral("device-information"));
    QTest::keyClick(device.data(), Qt::Key_Escape);
    return waitUntil("the dialogs close", [&] { return software.isNull() && device.isNull(); });
}

/// To the other language; the restart that is offered would end the tour.
bool Tour::switchLanguage()
{
    const QString other = m_language == QLatin1String("zh") ? QStringLiteral("EN") : QStringLiteral("CN");
    m_window.findChild<QAction *>(other)->trigger();
    const QPointer<CMessageBox> question(m_window.findChild<CMessageBox *>());
    if (!waitUntil("the restart is offered", [&] { return question && question->isActiveWindow(); })) {
        return false;
    }
    QTest::qWait(100);
    shoot(*question, QStringLiteral("language"));
    QTest::keyClick(question.data(), Qt::Key_Escape);
    return waitUntil("the question closes", [&] { return question.isNull(); }) &&
           waitUntil("the language is stored", [&] { return (getLanguage() == 0) == (other == QLatin1String("CN")); });
}

bool Tour::waitUntil(const char *what, const std::function<bool()> &condition)
{
    const int limitMs = qEnvironmentVariableIsSet("X9_TOUR_SLOWLY") ? SlowStepTimeoutMs : StepTimeoutMs;
    if (QTest::qWaitFor(condition, limitMs)) {
        return true;
    }
    QTextStream(stderr) << "The tour stopped: within " << limitMs / 1000 << " s it did not happen that " << what
                        << ".\n";
    return false;
}

QWidget *Tour::tab() const
{
    return m_window.findChild<QTabWidget *>(QStringLiteral("tabWidget"))->currentWidget();
}

CTableViewCAN *Tour::table() const
{
    return widget<CTableViewCAN>("tableView");
}

template<typename Widget>
Widget *Tour::widget(const char *name) const
{
    return tab()->findChild<Widget *>(QLatin1String(name));
}

void Tour::click(const char *name) const
{
    pressIn(*tab(), name);
}

void Tour::pressIn(const QWidget &parent, const char *name)
{
    QTest::mouseClick(parent.findChild<QAbstractButton *>(QLatin1String(name)), Qt::LeftButton);
}

void Tour::type(const char *name, const QString &text) const
{
    typeIn(*tab(), name, text);
}

void Tour::typeIn(const QWidget &parent, const char *name, const QString &text)
{
    type(parent.findChild<QLineEdit *>(QLatin1String(name)), text);
}

void Tour::type(QLineEdit *field, const QString &text)
{
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
}

void Tour::shoot(QWidget &target, const QString &name)
{
    ++m_shots;
    target.grab().save(file(QStringLiteral("%1-%2.png").arg(m_shots, 2, 10, QLatin1Char('0')).arg(name)));
}

QString Tour::file(const QString &name) const
{
    return m_folder.filePath(m_language + QLatin1Char('-') + name);
}
