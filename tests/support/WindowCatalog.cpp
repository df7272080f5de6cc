#include "tests/support/WindowCatalog.h"

#include "app/GUI_CanView.h"
#include "app/GUI_DeviceInfo.h"
#include "app/GUI_SoftwareInfo.h"
#include "app/GUI_Update.h"
#include "app/Release.h"
#include "app/SoftwareUpdate.h"
#include "app/UpgradeProcess.h"
#include "can/GUI_CanDeviceParam.h"
#include "can/GUI_CanFilterTool.h"
#include "can/GUI_CanGateWay.h"
#include "can/GUI_CanScanBaudrate.h"
#include "capture/CTableViewCAN.h"
#include "capture/GUI_CanAdvancedOpearation.h"
#include "capture/GUI_CanSendFile.h"
#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "lin/GUI_LINModeDeveloper.h"
#include "lin/GUI_LINModeList.h"
#include "lin/GUI_LINModeMonitor.h"
#include "tests/app/UpdateServer.h"
#include "tests/support/AdapterFolder.h"
#include "widgets/CHexEditView.h"
#include "widgets/CMessageBox.h"
#include "widgets/CNotice.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QTabWidget>
#include <QTextEdit>
#include <QToolButton>
#include <QtTest>

namespace {
using Visitor = CatalogWindow::Visitor;

constexpr int StepTimeoutMs = 60000;
constexpr int NoticeMs = 60000;

const QByteArray OneAdapter = R"({
  "buses": [{"name": "main", "bitrate": "500k", "data_rate": 2, "nodes": [
    {"id": "0x0C1", "length": 8, "period_us": 10000, "payload": "counting"},
    {"id": "0x1A5", "length": 4, "period_us": 20000, "payload": "random", "seed": 7},
    {"id": "0x18FEF100", "extended": true, "length": 8, "period_us": 25000, "payload": "counting"},
    {"id": "0x123", "remote": true, "length": 8, "period_us": 100000},
    {"id": "0x052", "format": "fd-brs", "length": 64, "period_us": 20000}]}],
  "lin_buses": [{"name": "doors", "baud_rate": 19200,
    "slaves": [{"id": "0x10", "data": "11 22 33 44"}, {"id": "0x11", "data": "00 00", "counting": true},
               {"id": "0x12", "data": "A0 A1 A2 A3 A4 A5 A6 A7", "checksum": "classic"},
               {"id": "0x21", "data": "5A", "wrong_checksum": true}],
    "traffic": [{"id": "0x10", "period_ms": 50}, {"id": "0x11", "period_ms": 20}, {"id": "0x12", "period_ms": 50},
                {"id": "0x21", "period_ms": 50}]}],
  "devices": [{"serial": "X9FC-2024-00017", "model": "X9FC-200 CANFD", "firmware": "V2.05", "hardware": "V1.30",
               "can": [{"bus": "main"}, {"bus": "main"}], "lin": [{"bus": "doors"}, {"bus": "doors"}]}]
})";
const QByteArray NoAdapter = R"({"buses": [], "devices": []})";

void waitUntil(const char *what, const std::function<bool()> &condition)
{
    if (!QTest::qWaitFor(condition, StepTimeoutMs)) {
        qFatal("The window catalogue waits in vain for this: %s", what);
    }
}

/// The child of that type and name, which must be there.
template<typename Widget>
Widget *in(const QWidget *parent, const char *name = nullptr)
{
    auto *child = parent->findChild<Widget *>(QLatin1String(name));
    if (child == nullptr) {
        qFatal("The window catalogue finds no '%s' of type %s", qPrintable(QString(QLatin1String(name))),
               Widget::staticMetaObject.className());
    }
    return child;
}

void press(const QWidget *parent, const char *button)
{
    QTest::mouseClick(in<QAbstractButton>(parent, button), Qt::LeftButton);
}

void type(QLineEdit *field, const QString &text)
{
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
}

void type(const QWidget *parent, const char *field, const QString &text)
{
    type(in<QLineEdit>(parent, field), text);
}

QString programText(const char *context, const char *key)
{
    return QCoreApplication::translate(context, key);
}

/// The main window on an adapter of its own, as far as it is wanted.
class Stage
{
public:
    explicit Stage(const QByteArray &adapter = OneAdapter)
        : folder(adapter)
        , window(std::make_unique<CANCommunication>(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER))))
    {
        window.show();
        waitUntil("the program asks what to open", [this] { return question().isVisible(); });
    }

    GUI_CanDeviceParam &question() const { return *in<GUI_CanDeviceParam>(&window); }
    QWidget *tab() const { return in<QTabWidget>(&window, "tabWidget")->currentWidget(); }

    void openNothing() const { press(&question(), "btn_cancel"); }

    void openCan(bool isCANFD = false)
    {
        in<QComboBox>(&question(), "cbx_baudrateCANFD")->setCurrentIndex(isCANFD ? 2 : 0);
        in<QAbstractButton>(&question(), "chbx_openAllChannel")->setChecked(true);
        answerQuestion();
    }

    void openLin()
    {
        press(&question(), "btn_setup");
        answerQuestion();
    }

    /// With frames in its table and their rate.
    void openBusyCan(bool isCANFD = false)
    {
        openCan(isCANFD);
        const auto *rate = in<QLineEdit>(tab(), "lbx_rateR");
        waitUntil("the frame rate is shown", [rate] { return rate->text() != QLatin1String("0 p/s"); });
    }

    template<typename Dialog>
    Dialog *dialogOf(const QWidget *parent) const
    {
        auto *dialog = in<Dialog>(parent);
        waitUntil("a dialog opens", [dialog] { return dialog->isVisible(); });
        return dialog;
    }

    AdapterFolder folder;
    GUI_CanView window;

private:
    void answerQuestion()
    {
        press(&question(), "btn_ok");
        waitUntil("a tab opens", [this] { return tab() != nullptr; });
        in<CNotice>(&window)->hide();
    }
};

/// Runs click, which returns only when the file dialog that it opens has been left, and visits that dialog.
void visitFileDialog(const std::function<void()> &click, const Visitor &visit)
{
    bool isVisited = false;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!isVisited && dialog != nullptr && dialog->isVisible()) {
            isVisited = true;
            visit(*dialog);
            dialog->reject(); // unless the visitor has left it
        }
    });
    poll.start(10);
    click();
    waitUntil("a file dialog is left", [&isVisited] { return isVisited; });
}

// Main window

void showMain(const Visitor &visit)
{
    Stage stage;
    stage.openNothing();
    visit(stage.window);
}

/// The menu of a button on the tool bar.
void showMenu(const Visitor &visit, const char *button)
{
    Stage stage;
    stage.openNothing();
    QMenu *menu = in<QToolButton>(&stage.window, button)->menu();
    menu->popup(stage.window.mapToGlobal(QPoint()));
    visit(*menu);
    menu->close();
}

void showMessage(const Visitor &visit, const QString &text, int messageType)
{
    Stage stage;
    stage.openNothing();
    stage.window.slot_showMessageBox(text, messageType);
    visit(*stage.dialogOf<CMessageBox>(&stage.window));
}

/// One box with every button there is.
void showMessageButtons(const Visitor &visit)
{
    int buttons = 0;
    for (int button = CMessageBox::FirstButton; button <= CMessageBox::LastButton; button <<= 1) {
        buttons |= button;
    }
    CMessageBox box(CMessageBox::Question, programText("WindowMessages", "Tips"),
                    programText("GUI_CanView", "Do you wish to restart it now?"),
                    CMessageBox::StandardButtons(buttons));
    box.show();
    visit(box);
}

void showNotice(const Visitor &visit, CNotice::Type noticeType, const char *context, const char *key)
{
    Stage stage;
    stage.openNothing();
    stage.window.slot_showNotice(programText(context, key), noticeType, NoticeMs);
    visit(stage.window);
}

// Channel parameters

void showQuestion(const Visitor &visit)
{
    Stage stage;
    visit(stage.question());
}

void showQuestionLin(const Visitor &visit)
{
    Stage stage;
    press(&stage.question(), "btn_setup");
    visit(stage.question());
}

void showQuestionWithoutAdapter(const Visitor &visit)
{
    Stage stage(NoAdapter);
    visit(stage.question());
}

void showQuestionAllOpen(const Visitor &visit)
{
    Stage stage;
    stage.openCan();
    stage.window.slot_openCanDevice();
    visit(*stage.dialogOf<GUI_CanDeviceParam>(&stage.window));
}

void showFilterTool(const Visitor &visit)
{
    Stage stage;
    press(&stage.question(), "btn_filterTool");
    const auto *tool = stage.dialogOf<GUI_CanFilterTool>(&stage.question());
    type(tool, "lbx_idFrom", QStringLiteral("100"));
    type(tool, "lbx_idTo", QStringLiteral("10F"));
    press(tool, "btn_add");
    type(tool, "lbx_idFrom", QStringLiteral("120"));
    press(tool, "btn_add");
    type(tool, "lbx_testID", QStringLiteral("130"));
    visit(*in<GUI_CanFilterTool>(&stage.question()));
}

void showFilterToolRefusing(const Visitor &visit)
{
    Stage stage;
    press(&stage.question(), "btn_filterTool");
    auto *tool = stage.dialogOf<GUI_CanFilterTool>(&stage.question());
    type(tool, "lbx_idFrom", QStringLiteral("200"));
    type(tool, "lbx_idTo", QStringLiteral("100"));
    press(tool, "btn_add");
    visit(*tool);
}

void showScanBefore(const Visitor &visit)
{
    Stage stage;
    press(&stage.question(), "btn_scan");
    visit(*stage.dialogOf<GUI_CanScanBaudrate>(&stage.question()));
}

void showScan(const Visitor &visit)
{
    Stage stage;
    press(&stage.question(), "btn_scan");
    auto *scan = stage.dialogOf<GUI_CanScanBaudrate>(&stage.question());
    press(scan, "btn_start");
    const auto *bar = in<QProgressBar>(scan, "progressBar");
    waitUntil("the scan ends", [bar] { return bar->value() == bar->maximum(); });
    visit(*scan);
}

// CAN tab

void showCan(const Visitor &visit, bool isCANFD)
{
    Stage stage;
    stage.openBusyCan(isCANFD);
    visit(stage.window);
}

void showCanFolded(const Visitor &visit)
{
    Stage stage;
    stage.openBusyCan();
    const auto *panel = in<QWidget>(stage.tab(), "widget_content");
    press(stage.tab(), "btn_fold");
    waitUntil("the panel folds", [panel] { return !panel->isVisible(); });
    visit(stage.window);
}

/// Sending, paused and with the gateway on.
void showCanSending(const Visitor &visit)
{
    Stage stage;
    stage.openBusyCan();
    press(stage.tab(), "btn_gatewaySwitch");
    type(stage.tab(), "lbx_frameOfSend", QStringLiteral("100"));
    type(stage.tab(), "lbx_sendingCycle", QStringLiteral("60000"));
    press(stage.tab(), "btn_sendData");
    press(stage.tab(), "btn_pause");
    press(stage.tab(), "btn_pauseReceiving");
    visit(stage.window);
    press(stage.tab(), "btn_stopSending");
}

void showSaveDialog(const Visitor &visit)
{
    Stage stage;
    stage.openBusyCan();
    visitFileDialog([&stage] { press(stage.tab(), "btn_save"); }, visit);
}

GUI_CanAdvancedOpearation *openSendList(const Stage &stage)
{
    press(stage.tab(), "btn_advancedOperation");
    auto *list = stage.dialogOf<GUI_CanAdvancedOpearation>(stage.tab());
    for (int row = 0; row < 3; ++row) {
        press(list, "btnAdd");
    }
    press(list, "btnAllSelect");
    return list;
}

void showSendList(const Visitor &visit)
{
    Stage stage;
    stage.openCan();
    visit(*openSendList(stage));
}

void showSendListRunning(const Visitor &visit)
{
    Stage stage;
    stage.openCan();
    auto *list = openSendList(stage);
    in<QComboBox>(list, "cbxMode")->setCurrentIndex(1);
    in<QSpinBox>(list, "cbxRepeat")->setValue(1000);
    in<QSpinBox>(list, "lbxInterval")->setValue(10000);
    press(list, "btnListSend");
    const auto *stop = in<QAbstractButton>(list, "m_btnStop");
    waitUntil("the list is sent", [stop] { return stop->isEnabled(); });
    visit(*list);
}

void showSendFile(const Visitor &visit, bool isPlaying)
{
    Stage stage;
    stage.openCan();
    press(stage.tab(), "btn_sendFile");
    auto *sender = stage.dialogOf<GUI_CanSendFile>(stage.tab());
    if (isPlaying) {
        QFile::copy(QStringLiteral(X9_TEST_DATA "/capture/can_four.can"), QStringLiteral("capture.can"));
        type(sender, "lbx_fileName", QStringLiteral("capture.can"));
        in<QSpinBox>(sender, "sbx_count")->setValue(10);
        in<QSpinBox>(sender, "sbx_interval")->setValue(200);
        press(sender, "btn_send");
        const auto *bar = in<QProgressBar>(sender, "progressBar");
        waitUntil("the file is played", [bar] { return bar->value() > 2; });
    }
    visit(*sender);
}

void showOpenDialog(const Visitor &visit)
{
    Stage stage;
    stage.openCan();
    press(stage.tab(), "btn_sendFile");
    const auto *sender = stage.dialogOf<GUI_CanSendFile>(stage.tab());
    visitFileDialog([sender] { press(sender, "btn_browse"); }, visit);
}

void showGatewayFilter(const Visitor &visit)
{
    Stage stage;
    stage.openCan();
    press(stage.tab(), "btn_gatewaySwitch");
    press(stage.tab(), "btn_gatewayFilter");
    auto *filter = stage.dialogOf<GUI_CanGateWay>(stage.tab());
    for (const char *id : {"101", "2B0"}) {
        type(filter, "lbx_id", QLatin1String(id));
        press(filter, "btn_apply");
    }
    visit(*filter);
}

void showEditData(const Visitor &visit)
{
    Stage stage;
    stage.openCan();
    const auto *field = in<QWidget>(stage.tab(), "lbx_data");
    type(in<QLineEdit>(field, "m_pLineEdit"), QStringLiteral("DEADBEEF01020304"));
    press(field, "m_pPushButton");
    visit(*stage.dialogOf<CHexEditView>(field));
}

void showDataMenu(const Visitor &visit)
{
    Stage stage;
    stage.openCan();
    auto *line = in<QLineEdit>(stage.tab(), "m_pLineEdit");
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(), line->mapToGlobal(QPoint()));
    QCoreApplication::sendEvent(line, &event);
    waitUntil("the menu opens", [] { return QApplication::activePopupWidget() != nullptr; });
    const QPointer<QWidget> menu(QApplication::activePopupWidget());
    visit(*menu);
    if (menu) {
        menu->close();
    }
}

// LIN tab

void showLinList(const Visitor &visit)
{
    Stage stage;
    stage.openLin();
    const auto *page = in<GUI_LINModeList>(stage.tab());
    QAbstractItemModel *rows = in<QTableView>(page, "tableViewParam")->model();
    for (int row = 0; row < 4; ++row) {
        rows->setData(rows->index(row, 0), Qt::Checked, Qt::CheckStateRole);
        if (row > 0) {
            rows->setData(rows->index(row, 1), 1, Qt::UserRole);
            rows->setData(rows->index(row, 1), programText("GUI_LINModeList", "Revice"));
            rows->setData(rows->index(row, 2), QString::number(0x0F + row, 16));
        }
    }
    in<QSpinBox>(page, "lbx_count")->setValue(12);
    press(page, "btn_start");
    const auto *start = in<QAbstractButton>(page, "btn_start");
    waitUntil("the schedule ends", [start] { return start->isEnabled(); });
    visit(stage.window);
}

void showLinMonitor(const Visitor &visit)
{
    Stage stage;
    stage.openLin();
    press(stage.tab(), "btn_modeMonitor");
    const auto *page = in<GUI_LINModeMonitor>(stage.tab());
    in<QComboBox>(page, "cbx_mode")->setCurrentIndex(1);
    press(page, "btn_start");
    const QAbstractItemModel *rows = in<QTableView>(page, "tableView")->model();
    waitUntil("LIN frames are seen", [rows] { return rows->rowCount() >= 8; });
    visit(stage.window);
    press(page, "btn_stop");
}

void showLinMonitorIdle(const Visitor &visit)
{
    Stage stage;
    stage.openLin();
    press(stage.tab(), "btn_modeMonitor");
    visit(stage.window);
}

void showLinDeveloper(const Visitor &visit)
{
    Stage stage;
    stage.openLin();
    press(stage.tab(), "btn_modeDeveloper");
    const auto *page = in<GUI_LINModeDeveloper>(stage.tab());
    in<QSpinBox>(page, "sbx_ID")->setValue(0x12);
    in<QSpinBox>(page, "sbx_length")->setValue(4);
    type(page, "lbx_data", QStringLiteral("01 02 03 04"));
    press(page, "btn_calculate");
    visit(stage.window);
}

void showImportDialog(const Visitor &visit)
{
    Stage stage;
    stage.openLin();
    press(stage.tab(), "btn_modeDeveloper");
    visitFileDialog([&stage] { press(stage.tab(), "btn_importData"); }, visit);
}

// About

void showSoftwareInfo(const Visitor &visit, bool isChecking)
{
    Stage stage;
    stage.openNothing();
    stage.window.slot_showSoftwareInfo();
    auto *dialog = stage.dialogOf<GUI_SoftwareInfo>(&stage.window);
    dialog->setChecking(isChecking);
    visit(*dialog);
}

void showUpdate(const Visitor &visit, int state)
{
    GUI_Update dialog(nullptr, QStringLiteral("https://www.example.org/"));
    const QString current = programText("SoftwareUpdate", "Current version") + QStringLiteral(" V") + programVersion();
    dialog.setVersionLine(state == 2 ? current + QStringLiteral(" \u2192 V1.2.0") : current);
    dialog.setSummary(QStringLiteral("<ul><li>CAN FD: 8 Mbps</li><li>LIN: ID 0x3C</li></ul>"));
    dialog.setState(state);
    dialog.show();
    visit(dialog);
}

void showUpdateDownload(const Visitor &visit)
{
    Stage stage;
    stage.openNothing();
    UpdateServer server;
    SoftwareUpdateSetup setup;
    setup.baseUrl = server.url();
    setup.packageFolder = stage.folder.filePath(QStringLiteral("packages"));
    SoftwareUpdate update(&stage.window, setup);
    update.update(server.url("no-answer") + QStringLiteral("/downloads/Install.zip"));
    visit(*stage.dialogOf<QProgressDialog>(&stage.window));
}

void showDeviceInfo(const Visitor &visit)
{
    Stage stage;
    stage.openNothing();
    stage.window.slot_showDeviceInfo();
    visit(*stage.dialogOf<GUI_DeviceInfo>(&stage.window));
}

void showDeviceInfoUpdating(const Visitor &visit)
{
    Stage stage;
    stage.openNothing();
    UpdateServer server(
        {QStringLiteral("--record"), QStringLiteral(R"(X9770CANFirmWare={"name": "", "summary": "", "versionNo": "2.06",
                                           "url": "http://127.0.0.1:{port}/behave/no-answer/downloads/X9.bin"})")});
    DeviceInfoSetup setup;
    setup.applicationDir = stage.folder.filePath(QString());
    setup.updateServer = server.url();
    UpgradeProcess upgrade;
    GUI_DeviceInfo dialog(upgrade, setup, &stage.window);
    dialog.setDevice(QStringLiteral("X9FC-2024-00017"), QStringLiteral("X9FC-200 CANFD"), QStringLiteral("V2.05"));
    dialog.open();
    press(&dialog, "btn_update");
    waitUntil("the server answers", [&dialog] { return dialog.findChild<CMessageBox *>() != nullptr; });
    const auto *answers = in<QDialogButtonBox>(in<CMessageBox>(&dialog));
    answers->button(QDialogButtonBox::Yes)->click();
    const auto *bar = in<QProgressBar>(&dialog, "progressBar");
    waitUntil("the firmware is downloaded", [bar] { return bar->isVisible(); });
    visit(dialog);
}

/// After a run that failed.
void showMigration(const Visitor &visit)
{
    Stage stage;
    stage.openNothing();
    stage.window.slot_showDeviceInfo();
    auto *dialog = stage.dialogOf<GUI_DeviceInfo>(&stage.window);
    press(dialog, "btn_migration");
    press(in<QWidget>(dialog, "MigrationWidget"), "btn_migration");
    const auto *results = in<QTextEdit>(dialog, "tbx_result");
    waitUntil("the migration ends", [results] { return !results->toPlainText().isEmpty(); });
    visit(*dialog);
}

// The catalogue

/// The visitor finds the window laid out.
Visitor settled(const Visitor &visit)
{
    return [visit](QWidget &window) {
        QTest::qWait(0);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest); // each level of layouts asks the next one
        visit(window);
    };
}

template<typename... Arguments>
CatalogWindow entry(const char *name, void (*show)(const Visitor &, Arguments...), Arguments... arguments)
{
    return {QLatin1String(name), [=](const Visitor &visit) {
                show(settled(visit), arguments...);
            }};
}

CatalogWindow messageEntry(const char *name, int messageType, const char *context, const char *key)
{
    return {QLatin1String(name), [=](const Visitor &visit) {
                showMessage(settled(visit), programText(context, key), messageType);
            }};
}

CatalogWindow noticeEntry(const char *name, CNotice::Type noticeType, const char *context, const char *key)
{
    return {QLatin1String(name), [=](const Visitor &visit) {
                showNotice(settled(visit), noticeType, context, key);
            }};
}
} // namespace

std::vector<CatalogWindow> windowCatalog()
{
    return {
        entry("main", showMain),
        entry("menu-connect", showMenu, "btn_connect"),
        entry("menu-about", showMenu, "btn_about"),
        entry("menu-language", showMenu, "btn_language"),
        entry("open", showQuestion),
        entry("open-lin", showQuestionLin),
        entry("open-no-adapter", showQuestionWithoutAdapter),
        entry("open-all-open", showQuestionAllOpen),
        entry("filter-tool", showFilterTool),
        entry("filter-tool-refusing", showFilterToolRefusing),
        entry("scan-before", showScanBefore),
        entry("scan", showScan),
        entry("can", showCan, false),
        entry("can-fd", showCan, true),
        entry("can-folded", showCanFolded),
        entry("can-sending", showCanSending),
        entry("save-dialog", showSaveDialog),
        entry("send-list", showSendList),
        entry("send-list-running", showSendListRunning),
        entry("send-file-idle", showSendFile, false),
        entry("send-file", showSendFile, true),
        entry("open-dialog", showOpenDialog),
        entry("gateway-filter", showGatewayFilter),
        entry("edit-data", showEditData),
        entry("menu-data", showDataMenu),
        entry("lin-list", showLinList),
        entry("lin-monitor", showLinMonitor),
        entry("lin-monitor-idle", showLinMonitorIdle),
        entry("lin-developer", showLinDeveloper),
        entry("import-dialog", showImportDialog),
        entry("software-information", showSoftwareInfo, false),
        entry("software-information-checking", showSoftwareInfo, true),
        entry("update-none", showUpdate, 0),
        entry("update-failed", showUpdate, 1),
        entry("update", showUpdate, 2),
        entry("update-download", showUpdateDownload),
        entry("device-information", showDeviceInfo),
        entry("device-information-updating", showDeviceInfoUpdating),
        entry("migration", showMigration),
        messageEntry("message-information", 0, "GUI_DeviceInfo", "No firmware is published for this device."),
        messageEntry("message-success", 1, "GUI_CanDevice", "Successful setting!"),
        messageEntry("message-question", 2, "GUI_CanView", "Do you wish to restart it now?"),
        messageEntry("message-warning", 3, "GUI_LINDevice", "Switchover failure"),
        messageEntry("message-critical", 4, "GUI_CanDevice",
                     "Frame ID error, Standard frame valid range: 0x0-0x7FF, Extend frame valid range: "
                     "0x0-0x1FFFFFFF"),
        entry("message-buttons", showMessageButtons),
        noticeEntry("notice-done", CNotice::Done, "GUI_CanView", "Devices is open"),
        noticeEntry("notice-warning", CNotice::Warning, "GUI_CanAdvancedOpearation", "The send list is empty"),
        noticeEntry("notice-question", CNotice::Question, "GUI_CanView", "Do you want to go update it now?"),
        noticeEntry("notice-failure", CNotice::Failure, "GUI_CanView", "No devices!!!"),
        noticeEntry("notice-about", CNotice::About, "GUI_CanView", "Device turned off"),
    };
}
