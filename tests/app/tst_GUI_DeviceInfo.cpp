#include "app/GUI_DeviceInfo.h"
#include "app/MigrationWidget.h"
#include "app/PopupWidget.h"
#include "app/UpgradeProcess.h"
#include "device/FirmwareMonitor.h"
#include "tests/app/StandInProgram.h"
#include "tests/app/UpdateServer.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"
#include "widgets/CMessageBox.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTimer>
#include <QToolButton>
#include <QtTest>
#include <QWindow>

#include <memory>

namespace {
const QByteArray Firmware("\x01\x02 firmware \x00\xFF", 13);
constexpr int AlmostFull = 990;
constexpr int ShortDelayMs = 20;
constexpr int LongerThanShortDelay = 40; ///< ticks of at least a millisecond

/// A record with a version and a file to download.
QString record(const char *code, const char *version, const QString &path = QStringLiteral("/downloads/X9.bin"))
{
    return QStringLiteral(
               "%1={\"name\":\"\",\"summary\":\"\",\"versionNo\":\"%2\",\"url\":\"http://127.0.0.1:{port}%3\"}")
        .arg(QLatin1String(code), QLatin1String(version), path);
}

/// How a user closes a dialog.
enum class Way { Esc, TitleBar, Accept };

void closeBy(Way way, GUI_DeviceInfo &dialog)
{
    switch (way) {
    case Way::Esc:
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
        break;
    case Way::TitleBar: // Alt+F4 as well
        dialog.windowHandle()->close();
        break;
    case Way::Accept:
        dialog.accept();
        break;
    }
}
} // namespace

Q_DECLARE_METATYPE(Way)

class tst_GUI_DeviceInfo : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void look();
    void withoutADevice();
    static void productCodes_data();
    static void productCodes();
    static void productCodeIsAskedFor_data();
    void productCodeIsAskedFor();
    void otherModelIsNotAskedFor();
    void noDeviceIsNotAskedFor();
    void deviceReadAtTheClickCounts();
    void queryRunsAside();
    static void failedQuery_data();
    void failedQuery();
    void noAnswerInTime();
    void latestVersion();
    static void anyOtherVersionIsOffered_data();
    void anyOtherVersionIsOffered();
    void versionCannotBringMarkup();
    void refusedOfferChangesNothing();
    void upgrade();
    static void failedDownload_data();
    void failedDownload();
    void addressWithoutAName();
    void missingUpgradeProgram();
    void crashOfTheUpgradeProgram();
    void upgradeAgain();
    void closingEndsTheQuery();
    void closingEndsTheDownload();
    void closingBeforeTheStart();
    void startDelayIsPrecise();
    static void resultOfTheProgram_data();
    void resultOfTheProgram();
    void resultAfterTheBar();
    void crashAfterTheBar();
    static void cannotBeClosedDuringAnUpgrade_data() { waysToClose(); }
    void cannotBeClosedDuringAnUpgrade();
    void twoDialogsOneProgram();
    void anotherProgramBeforeTheStart();
    void destroyingLeavesTheProgramRunning();

    static void migrationInstallsTheDriverFirst_data();
    void migrationInstallsTheDriverFirst();
    void migrationPopup();
    void migrationIsFreedAtItsEnd();
    void migrationKeepsThePopupOpen();
    static void cannotBeClosedDuringAMigration_data() { waysToClose(); }
    void cannotBeClosedDuringAMigration();
    void popupStaysFromTheClickOn();
    void noMigrationDuringAnUpgrade();
    void noUpgradeDuringAMigration();
    void destroyingLeavesTheMigrationRunning();

private:
    /// The dialog on a server's records, with a device of the first model and firmware V2.05.
    void open(const QStringList &serverArguments, int queryLimitMs = 30000, int startDelayMs = ShortDelayMs);
    /// Up to the running upgrade program; its bar is almost at its end.
    void upgradeUntilStarted(const StandInProgram &program);
    template<typename Widget>
    Widget *find(const char *name) const
    {
        return m_dialog->findChild<Widget *>(QLatin1String(name));
    }
    void click(const char *name) const { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }
    /// The message on screen.
    CMessageBox *message() const;
    static void press(CMessageBox *box, CMessageBox::StandardButton button);
    void checkMessage(CMessageBox::Icon icon, const QString &text,
                      CMessageBox::StandardButtons buttons = CMessageBox::Ok) const;
    void checkRunningMessage() const
    {
        checkMessage(CMessageBox::Warning, UpgradeProcess::runningText());
        if (QTest::currentTestFailed()) {
            return;
        }
        press(message(), CMessageBox::Ok);
        QTRY_VERIFY(message() == nullptr);
    }
    static void waysToClose();
    std::unique_ptr<GUI_DeviceInfo> makeDialog(int queryLimitMs, int startDelayMs);
    bool isIdle() const;
    bool isUpdating() const;
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QStringList filesInUpCode() const
    {
        return QDir(path(QStringLiteral("UpCode"))).entryList(QDir::Files | QDir::Hidden);
    }
    static QStringList serverArguments(const char *version = "2.06")
    {
        return {QStringLiteral("--record"), record("X9CANFirmWare", version)};
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<UpdateServer> m_server;
    std::unique_ptr<UpgradeProcess> m_process;
    std::unique_ptr<GUI_DeviceInfo> m_dialog;
    QStringList m_driverCalls;
    bool m_isUnregistered = false;
};

void tst_GUI_DeviceInfo::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("downloads")));
    QFile file(path(QStringLiteral("downloads/X9.bin")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(Firmware), qint64(Firmware.size()));
    m_process = std::make_unique<UpgradeProcess>();
    m_driverCalls.clear();
    m_isUnregistered = false;
}

void tst_GUI_DeviceInfo::cleanup()
{
    m_dialog.reset();
    m_process.reset();
    m_server.reset();
    m_folder.reset();
}

void tst_GUI_DeviceInfo::open(const QStringList &serverArguments, int queryLimitMs, int startDelayMs)
{
    m_server = std::make_unique<UpdateServer>(
        serverArguments + QStringList{QStringLiteral("--downloads"), path(QStringLiteral("downloads"))});
    m_dialog = makeDialog(queryLimitMs, startDelayMs);
    m_dialog->show();
}

void tst_GUI_DeviceInfo::waysToClose()
{
    QTest::addColumn<Way>("way");
    QTest::newRow("Esc") << Way::Esc;
    QTest::newRow("title bar") << Way::TitleBar;
    QTest::newRow("accept()") << Way::Accept;
}

std::unique_ptr<GUI_DeviceInfo> tst_GUI_DeviceInfo::makeDialog(int queryLimitMs, int startDelayMs)
{
    DeviceInfoSetup setup;
    setup.applicationDir = m_folder->path();
    setup.updateServer = m_server->url();
    setup.updateKey.clear(); // tst_SignedUpdates has those with a key
    setup.queryLimitMs = queryLimitMs;
    setup.startDelayMs = startDelayMs;
    setup.isDeviceUnregistered = [this] {
        m_driverCalls.append(QStringLiteral("isDeviceUnregistered"));
        return m_isUnregistered;
    };
    setup.installMigrationDriver = [this] {
        const bool isPopupThere = m_dialog->findChild<PopupWidget *>() != nullptr;
        m_driverCalls.append(isPopupThere ? QStringLiteral("late") : QStringLiteral("installMigrationDriver"));
        return true;
    };
    auto dialog = std::make_unique<GUI_DeviceInfo>(*m_process, setup);
    dialog->setDevice(QStringLiteral("SN123"), QStringLiteral("X9EC-2"), QStringLiteral("V2.05"));
    return dialog;
}

CMessageBox *tst_GUI_DeviceInfo::message() const
{
    const QList<CMessageBox *> boxes = m_dialog->findChildren<CMessageBox *>();
    for (CMessageBox *box : boxes) {
        if (box->isVisible()) {
            return box;
        }
    }
    return nullptr;
}

void tst_GUI_DeviceInfo::press(CMessageBox *box, CMessageBox::StandardButton button)
{
    auto *buttons = box->findChild<QDialogButtonBox *>();
    QTest::mouseClick(buttons->button(static_cast<QDialogButtonBox::StandardButton>(button)), Qt::LeftButton);
}

void tst_GUI_DeviceInfo::checkMessage(CMessageBox::Icon icon, const QString &text,
                                      CMessageBox::StandardButtons buttons) const
{
    QTRY_VERIFY(message() != nullptr);
    QCOMPARE(message()->text(), text);
    QCOMPARE(message()->windowTitle(), QStringLiteral("Tips"));
    QCOMPARE(message()->icon(), icon);
    QCOMPARE(message()->standardButtons(), buttons);
    QVERIFY(message()->testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(message()->parentWidget(), m_dialog.get());
}

bool tst_GUI_DeviceInfo::isIdle() const
{
    return find<QWidget>("frame_update")->isVisible() && !find<QWidget>("frame_updating")->isVisible() &&
           find<QPushButton>("btn_update")->isEnabled() && find<QPushButton>("btn_migration")->isEnabled();
}

bool tst_GUI_DeviceInfo::isUpdating() const
{
    return !find<QWidget>("frame_update")->isVisible() && find<QWidget>("frame_updating")->isVisible() &&
           !find<QPushButton>("btn_update")->isEnabled() && !find<QPushButton>("btn_migration")->isEnabled();
}

void tst_GUI_DeviceInfo::upgradeUntilStarted(const StandInProgram &program)
{
    const int before = program.starts().size();
    click("btn_update");
    QTRY_VERIFY(message() != nullptr);
    press(message(), CMessageBox::Yes);
    QTRY_COMPARE(program.starts().size(), before + 1);
    find<QProgressBar>("progressBar")->setValue(AlmostFull);
}

void tst_GUI_DeviceInfo::look()
{
    open(serverArguments());
    QCOMPARE(m_dialog->windowTitle(), QStringLiteral("About Device"));
    QCOMPARE(m_dialog->styleSheet(), QStringLiteral("QDialog{background-color:rgb(255 , 255 , 255);}"));
    QCOMPARE(find<QLabel>("label_productSN")->text(), QStringLiteral("Product SN："));
    QCOMPARE(find<QLabel>("lbl_productSN")->text(), QStringLiteral("SN123"));
    QCOMPARE(find<QLabel>("label_firmware")->text(), QStringLiteral("Firmware version:"));
    QCOMPARE(find<QLabel>("lbl_firmware")->text(), QStringLiteral("V2.05"));
    QCOMPARE(find<QPushButton>("btn_update")->parentWidget()->objectName(), QStringLiteral("frame_update"));
    QCOMPARE(find<QPushButton>("btn_update")->text(), QStringLiteral("Check updates"));
    QCOMPARE(find<QPushButton>("btn_update")->property("nav").toString(), QStringLiteral("tBtnStyle_1"));
    QCOMPARE(find<QPushButton>("btn_migration")->text(), QStringLiteral("Migration"));
    QCOMPARE(find<QPushButton>("btn_migration")->property("nav").toString(), QStringLiteral("tBtnStyle_1"));
    QCOMPARE(find<QLabel>("lbl_updating")->text(), QStringLiteral("Updating..."));
    QCOMPARE(find<QWidget>("progressBar")->parentWidget()->objectName(), QStringLiteral("frame_updating"));
    QVERIFY(isIdle());
}

void tst_GUI_DeviceInfo::withoutADevice()
{
    open(serverArguments());
    m_dialog->setDevice({}, {}, {});
    QCOMPARE(find<QLabel>("lbl_productSN")->text(), QStringLiteral("-"));
    QCOMPARE(find<QLabel>("lbl_firmware")->text(), QStringLiteral("-"));
}

void tst_GUI_DeviceInfo::productCodes_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("code");
    QTest::newRow("X9EC") << "X9EC"
                          << "X9CANFirmWare";
    QTest::newRow("X9EC-U2") << "X9EC-U2"
                             << "X9CANFirmWare";
    QTest::newRow("X9FC") << "X9FC"
                          << "X9770CANFirmWare";
    QTest::newRow("X9FC 3") << "X9FC 3"
                            << "X9770CANFirmWare";
    QTest::newRow("X9AB") << "X9AB" << QString();
    QTest::newRow("x9ec") << "x9ec" << QString();
    QTest::newRow("not at the start") << "AX9EC" << QString();
    QTest::newRow("empty") << QString() << QString();
}

void tst_GUI_DeviceInfo::productCodes()
{
    QFETCH(QString, model);
    QTEST(firmwareProductCode(model), "code");
}

void tst_GUI_DeviceInfo::productCodeIsAskedFor_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("code");
    QTest::newRow("X9EC") << "X9EC-2"
                          << "X9CANFirmWare";
    QTest::newRow("X9FC") << "X9FC-2"
                          << "X9770CANFirmWare";
}

void tst_GUI_DeviceInfo::productCodeIsAskedFor()
{
    QFETCH(QString, model);
    QFETCH(QString, code);
    open({QStringLiteral("--record"), record(qPrintable(code), "2.05")});
    m_dialog->setDevice(QStringLiteral("SN"), model, QStringLiteral("V2.05"));
    QSignalSpy clicked(m_dialog.get(), &GUI_DeviceInfo::sig_updataBtnClicked);
    click("btn_update");
    QCOMPARE(clicked.count(), 1);
    QTRY_VERIFY(message() != nullptr);
    QCOMPARE(m_server->requests(),
             QStringList(QStringLiteral("GET /api/software-product-versions/latest-byswcode?langCode=CN&swSnCode=%1 "
                                        "HTTP/1.1")
                             .arg(code)));
}

void tst_GUI_DeviceInfo::otherModelIsNotAskedFor()
{
    open(serverArguments());
    m_dialog->setDevice(QStringLiteral("SN"), QStringLiteral("X9AB"), QStringLiteral("V2.05"));
    QSignalSpy clicked(m_dialog.get(), &GUI_DeviceInfo::sig_updataBtnClicked);
    click("btn_update");
    checkMessage(CMessageBox::Information, QStringLiteral("No firmware is published for this device."));
    QCOMPARE(clicked.count(), 1);
    press(message(), CMessageBox::Ok);
    QVERIFY(isIdle());
    QCOMPARE(m_server->requests(), QStringList());
}

void tst_GUI_DeviceInfo::noDeviceIsNotAskedFor()
{
    open(serverArguments());
    m_dialog->setDevice({}, {}, {});
    click("btn_update");
    checkMessage(CMessageBox::Warning, QStringLiteral("No device was found. Connect it and open this window again."));
    QCOMPARE(m_server->requests(), QStringList());
}

void tst_GUI_DeviceInfo::deviceReadAtTheClickCounts()
{
    open(serverArguments("3.00"));
    m_dialog->setDevice({}, {}, {});
    connect(m_dialog.get(), &GUI_DeviceInfo::sig_updataBtnClicked, m_dialog.get(),
            [this] { m_dialog->setDevice(QStringLiteral("SN"), QStringLiteral("X9EC"), QStringLiteral("V3.00")); });
    click("btn_update");
    checkMessage(CMessageBox::Information, QStringLiteral("Congratulations, This is the latest version!"));
}

void tst_GUI_DeviceInfo::queryRunsAside()
{
    open(serverArguments() + QStringList{QStringLiteral("--behaviour"), QStringLiteral("X9CANFirmWare=no-answer")});
    click("btn_update");
    QVERIFY(!find<QPushButton>("btn_update")->isEnabled());
    QTRY_COMPARE(m_server->requests().size(), 1);
    letTicksPass(20);
    QVERIFY(!find<QPushButton>("btn_update")->isEnabled());
    click("btn_update");
    letTicksPass(20);
    QCOMPARE(m_server->requests().size(), 1);
    QVERIFY(message() == nullptr);
}

void tst_GUI_DeviceInfo::failedQuery_data()
{
    QTest::addColumn<QString>("behaviour");
    QTest::newRow("404") << "404";
    QTest::newRow("invalid JSON") << "invalid";
    QTest::newRow("no version") << "empty";
    QTest::newRow("rubbish") << "rubbish";
}

void tst_GUI_DeviceInfo::failedQuery()
{
    QFETCH(QString, behaviour);
    open(serverArguments() + QStringList{QStringLiteral("--behaviour"), QStringLiteral("X9CANFirmWare=") + behaviour});
    click("btn_update");
    checkMessage(CMessageBox::Critical, QStringLiteral("Server request failed!"));
    QVERIFY(find<QPushButton>("btn_update")->isEnabled());
    press(message(), CMessageBox::Ok);
    QTRY_VERIFY(m_dialog->findChild<CMessageBox *>() == nullptr); // deleted
    QCOMPARE(m_dialog->focusWidget(), find<QPushButton>("btn_update"));
}

void tst_GUI_DeviceInfo::noAnswerInTime()
{
    QCOMPARE(DeviceInfoSetup().queryLimitMs, 30000);
    open(serverArguments() + QStringList{QStringLiteral("--behaviour"), QStringLiteral("X9CANFirmWare=no-answer")}, 50);
    click("btn_update");
    checkMessage(CMessageBox::Critical, QStringLiteral("Server request failed!"));
    QVERIFY(isIdle());
}

void tst_GUI_DeviceInfo::latestVersion()
{
    open(serverArguments("2.05"));
    click("btn_update");
    checkMessage(CMessageBox::Information, QStringLiteral("Congratulations, This is the latest version!"));
    QVERIFY(isIdle());
}

void tst_GUI_DeviceInfo::anyOtherVersionIsOffered_data()
{
    QTest::addColumn<QString>("version");
    QTest::newRow("newer") << "2.06";
    QTest::newRow("older") << "1.99";
    QTest::newRow("same number") << "2.5";
    QTest::newRow("with its letter") << "V2.05";
    QTest::newRow("longer") << "2.05.0";
}

void tst_GUI_DeviceInfo::anyOtherVersionIsOffered()
{
    QFETCH(QString, version);
    open(serverArguments(qPrintable(version)));
    click("btn_update");
    checkMessage(CMessageBox::Question,
                 QStringLiteral("New version detected V%1<br>Do you wish to update it now?").arg(version),
                 {CMessageBox::Yes | CMessageBox::No});
    const auto *label = message()->findChild<QLabel *>(QStringLiteral("textLabel"));
    QCOMPARE(label->textFormat(), Qt::RichText);
}

void tst_GUI_DeviceInfo::versionCannotBringMarkup()
{
    open(serverArguments("<img src='x'>"));
    click("btn_update");
    checkMessage(CMessageBox::Question,
                 QStringLiteral("New version detected V&lt;img src='x'&gt;<br>Do you wish to update it now?"),
                 {CMessageBox::Yes | CMessageBox::No});
}

void tst_GUI_DeviceInfo::refusedOfferChangesNothing()
{
    open(serverArguments());
    QSignalSpy requested(m_dialog.get(), &GUI_DeviceInfo::sig_updateRequest);
    click("btn_update");
    QTRY_VERIFY(message() != nullptr);
    press(message(), CMessageBox::No);
    QVERIFY(isIdle());
    letTicksPass(20);
    QCOMPARE(requested.count(), 0);
    QCOMPARE(m_server->requests().size(), 1);
}

/// The one test in which the delay and the bar take their whole time.
void tst_GUI_DeviceInfo::upgrade()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "exit 7");
    QCOMPARE(DeviceInfoSetup().startDelayMs, 2000);
    open(serverArguments(), DeviceInfoSetup().queryLimitMs, DeviceInfoSetup().startDelayMs);
    auto *bar = find<QProgressBar>("progressBar");
    QSignalSpy requested(m_dialog.get(), &GUI_DeviceInfo::sig_updateRequest);
    QSignalSpy finished(m_dialog.get(), &GUI_DeviceInfo::sig_updateFinish);
    bar->setValue(500); // of an earlier run
    click("btn_update");
    QTRY_VERIFY(message() != nullptr);
    QCOMPARE(requested.count(), 0);
    press(message(), CMessageBox::Yes);
    QCOMPARE(requested.count(), 1);
    QVERIFY(isUpdating());
    QCOMPARE(bar->value(), 0);
    QCOMPARE(bar->minimum(), 0);
    QCOMPARE(bar->maximum(), 1000);
    QTRY_VERIFY(bar->value() > 0); // it runs during the delay as well
    QCOMPARE(program.starts(), QStringList());
    QTRY_COMPARE(program.starts(), QStringList(path(QStringLiteral("UpCode/X9.bin"))));
    QCOMPARE(filesInUpCode(), QStringList(QStringLiteral("X9.bin")));
    QFile file(path(QStringLiteral("UpCode/X9.bin")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), Firmware);
    QVERIFY(bar->value() > 50); // at most 200 ticks in the delay
    QVERIFY(isUpdating());
    QTRY_COMPARE(program.ends().size(), 1);
    checkMessage(CMessageBox::Critical, QStringLiteral("Data send failed"));
    QVERIFY(isUpdating()); // the bar ends it, not the program
    press(message(), CMessageBox::Ok);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 60000);
    QCOMPARE(bar->value(), 1000);
    QVERIFY(isIdle());
    QVERIFY(message() == nullptr);
    QCOMPARE(program.starts().size(), 1);
    QCOMPARE(requested.count(), 1);
}

void tst_GUI_DeviceInfo::failedDownload_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("404") << "/downloads/missing.bin";
    QTest::newRow("incomplete") << "/behave/short/downloads/X9.bin";
    QTest::newRow("too large") << "/behave/rubbish/downloads/X9.bin";
}

void tst_GUI_DeviceInfo::failedDownload()
{
    QFETCH(QString, path);
    const StandInProgram program(this->path(QStringLiteral("UpgradeCAN.exe")));
    open({QStringLiteral("--record"), record("X9CANFirmWare", "2.06", path)});
    QSignalSpy finished(m_dialog.get(), &GUI_DeviceInfo::sig_updateFinish);
    click("btn_update");
    QTRY_VERIFY(message() != nullptr);
    press(message(), CMessageBox::Yes);
    QTRY_VERIFY(message() != nullptr);
    QVERIFY(message()->text().startsWith(QStringLiteral("The firmware could not be downloaded.\n")));
    QVERIFY(message()->text().size() > 50); // says why
    QCOMPARE(message()->icon(), CMessageBox::Critical);
    QCOMPARE(message()->windowTitle(), QStringLiteral("Tips"));
    press(message(), CMessageBox::Ok);
    QVERIFY(isIdle());
    QCOMPARE(filesInUpCode(), QStringList());
    letTicksPass(LongerThanShortDelay);
    QCOMPARE(program.starts(), QStringList());
    QCOMPARE(finished.count(), 0);
    QCOMPARE(find<QProgressBar>("progressBar")->value(), 0);
}

void tst_GUI_DeviceInfo::addressWithoutAName()
{
    open({QStringLiteral("--record"), record("X9CANFirmWare", "2.06", QStringLiteral("/downloads/.."))});
    click("btn_update");
    QTRY_VERIFY(message() != nullptr);
    press(message(), CMessageBox::Yes);
    checkMessage(CMessageBox::Critical,
                 QStringLiteral("The firmware cannot be downloaded: its address names no file."));
    QVERIFY(isIdle());
    QCOMPARE(m_server->requests().size(), 1);
}

void tst_GUI_DeviceInfo::missingUpgradeProgram()
{
    open(serverArguments());
    QSignalSpy finished(m_dialog.get(), &GUI_DeviceInfo::sig_updateFinish);
    click("btn_update");
    QTRY_VERIFY(message() != nullptr);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Upgrade program .*/UpgradeCAN.exe: .+")));
    press(message(), CMessageBox::Yes);
    QTRY_VERIFY(message() != nullptr);
    const QString text = message()->text();
    QVERIFY2(text.startsWith(QStringLiteral("The upgrade program cannot be started.\n")), qPrintable(text));
    QCOMPARE(message()->icon(), CMessageBox::Critical);
    press(message(), CMessageBox::Ok);
    QVERIFY(isIdle());
    const int value = find<QProgressBar>("progressBar")->value();
    letTicksPass(50);
    QCOMPARE(find<QProgressBar>("progressBar")->value(), value);
    QCOMPARE(finished.count(), 0);
}

void tst_GUI_DeviceInfo::crashOfTheUpgradeProgram()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "crash");
    open(serverArguments());
    click("btn_update");
    QTRY_VERIFY(message() != nullptr);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Upgrade program .*/UpgradeCAN.exe: .+")));
    press(message(), CMessageBox::Yes);
    QTRY_VERIFY(message() != nullptr);
    const QString text = message()->text();
    QVERIFY2(text.startsWith(QStringLiteral("The upgrade program has crashed.\n")), qPrintable(text));
    QVERIFY(isIdle());
}

/// But not while the program of the first time still runs.
void tst_GUI_DeviceInfo::upgradeAgain()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "wait");
    open(serverArguments());
    QSignalSpy finished(m_dialog.get(), &GUI_DeviceInfo::sig_updateFinish);
    QSignalSpy requested(m_dialog.get(), &GUI_DeviceInfo::sig_updateRequest);
    QSignalSpy ended(m_process.get(), &UpgradeProcess::sig_finished);
    upgradeUntilStarted(program);
    QTRY_COMPARE(finished.count(), 1);
    QVERIFY(isIdle());
    const int requests = m_server->requests().size();
    click("btn_update");
    checkRunningMessage();
    QVERIFY(isIdle());
    program.letGo();
    QTRY_COMPARE(ended.count(), 1);
    QCOMPARE(m_server->requests().size(), requests);
    QCOMPARE(requested.count(), 1);
    upgradeUntilStarted(program);
    QTRY_COMPARE(finished.count(), 2);
    QTRY_COMPARE(program.ends().size(), 2);
    QCOMPARE(filesInUpCode(), QStringList(QStringLiteral("X9.bin")));
}

void tst_GUI_DeviceInfo::closingEndsTheQuery()
{
    constexpr int LimitMs = 2000;
    open(serverArguments() + QStringList{QStringLiteral("--behaviour"), QStringLiteral("X9CANFirmWare=no-answer")},
         LimitMs);
    click("btn_update");
    QTRY_COMPARE(m_server->requests().size(), 1);
    m_dialog->close();
    QVERIFY(!m_dialog->isVisible());
    QTimer later; // than the end of the limit
    later.setSingleShot(true);
    later.start(LimitMs);
    QTRY_VERIFY(!later.isActive());
    QVERIFY(message() == nullptr);
    m_dialog->show();
    QVERIFY(isIdle());
}

void tst_GUI_DeviceInfo::closingEndsTheDownload()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")));
    open({QStringLiteral("--record"),
          record("X9CANFirmWare", "2.06", QStringLiteral("/behave/stall/downloads/X9.bin"))});
    click("btn_update");
    QTRY_VERIFY(message() != nullptr);
    press(message(), CMessageBox::Yes);
    QTRY_COMPARE(m_server->requests().size(), 2);
    m_dialog->close();
    QTRY_COMPARE(filesInUpCode(), QStringList());
    m_dialog->show();
    QVERIFY(isIdle());
}

void tst_GUI_DeviceInfo::closingBeforeTheStart()
{
    constexpr int DelayMs = 500;
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")));
    open(serverArguments(), DeviceInfoSetup().queryLimitMs, DelayMs);
    connect(find<QProgressBar>("progressBar"), &QProgressBar::valueChanged, m_dialog.get(), &QWidget::close);
    click("btn_update");
    QTRY_VERIFY(message() != nullptr);
    press(message(), CMessageBox::Yes);
    QTRY_VERIFY(!m_dialog->isVisible());
    QTimer later; // than the start would be
    later.setSingleShot(true);
    later.start(DelayMs);
    QTRY_VERIFY(!later.isActive());
    letTicksPass(LongerThanShortDelay); // it would write its file
    QCOMPARE(program.starts(), QStringList());
}

void tst_GUI_DeviceInfo::startDelayIsPrecise()
{
    open(serverArguments());
    QCOMPARE(m_dialog->findChild<QTimer *>(QStringLiteral("startDelay"))->timerType(), Qt::PreciseTimer);
}

void tst_GUI_DeviceInfo::resultOfTheProgram_data()
{
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0 << QString(); // nothing is said
    QTest::newRow("1") << 1 << "File cannot be accessed";
    QTest::newRow("7") << 7 << "Data send failed";
    QTest::newRow("8") << 8 << "Unknown error";
}

void tst_GUI_DeviceInfo::resultOfTheProgram()
{
    QFETCH(int, exitCode);
    QFETCH(QString, text);
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "exit " + QByteArray::number(exitCode));
    open(serverArguments());
    QSignalSpy finished(m_dialog.get(), &GUI_DeviceInfo::sig_updateFinish);
    QSignalSpy ended(m_process.get(), &UpgradeProcess::sig_finished);
    upgradeUntilStarted(program);
    QTRY_COMPARE(ended.count(), 1);
    if (text.isEmpty()) {
        QVERIFY(message() == nullptr);
    } else {
        checkMessage(CMessageBox::Critical, text);
    }
    QTRY_COMPARE(finished.count(), 1);
    QVERIFY(isIdle());
}

/// The bar is no measure of what the program does.
void tst_GUI_DeviceInfo::resultAfterTheBar()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "wait exit 6");
    open(serverArguments());
    QSignalSpy finished(m_dialog.get(), &GUI_DeviceInfo::sig_updateFinish);
    upgradeUntilStarted(program);
    QTRY_COMPARE(finished.count(), 1);
    QVERIFY(message() == nullptr);
    program.letGo();
    checkMessage(CMessageBox::Critical, QStringLiteral("Flash erasing failed"));
    QVERIFY(m_dialog->close());
}

void tst_GUI_DeviceInfo::crashAfterTheBar()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "wait crash");
    open(serverArguments());
    QSignalSpy finished(m_dialog.get(), &GUI_DeviceInfo::sig_updateFinish);
    upgradeUntilStarted(program);
    QTRY_COMPARE(finished.count(), 1);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Upgrade program .*/UpgradeCAN.exe: .+")));
    program.letGo();
    QTRY_VERIFY(message() != nullptr);
    QVERIFY(message()->text().startsWith(QStringLiteral("The upgrade program has crashed.\n")));
    QVERIFY(isIdle());
    QVERIFY(m_dialog->close());
}

/// Neither while the bar runs nor afterwards, as long as the program does.
void tst_GUI_DeviceInfo::cannotBeClosedDuringAnUpgrade()
{
    QFETCH(Way, way);
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "wait");
    open(serverArguments());
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    QSignalSpy finished(m_dialog.get(), &GUI_DeviceInfo::sig_updateFinish);
    QSignalSpy closed(m_dialog.get(), &QDialog::finished);
    QSignalSpy ended(m_process.get(), &UpgradeProcess::sig_finished);
    upgradeUntilStarted(program);
    closeBy(way, *m_dialog);
    checkRunningMessage();
    QVERIFY(m_dialog->isVisible());
    QTRY_COMPARE(finished.count(), 1); // the bar was not stopped
    closeBy(way, *m_dialog);
    checkRunningMessage();
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(closed.count(), 0);
    program.letGo();
    QTRY_COMPARE(ended.count(), 1);
    closeBy(way, *m_dialog);
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(message() == nullptr);
}

/// Whichever dialog starts it.
void tst_GUI_DeviceInfo::twoDialogsOneProgram()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "wait exit 5");
    const StandInProgram migration(migrationProgram(m_folder->path()));
    open(serverArguments());
    const auto other = makeDialog(DeviceInfoSetup().queryLimitMs, ShortDelayMs);
    other->show();
    other->slot_migrationBtnClicked();
    upgradeUntilStarted(program);
    QVERIFY(!other->close());
    QVERIFY(other->isVisible());
    const auto *popup = other->findChild<PopupWidget *>();
    QVERIFY(!popup->findChild<QToolButton *>(QStringLiteral("btn_close"))->isEnabled());
    QTest::mouseClick(popup->findChild<QPushButton *>(QStringLiteral("btn_migration")), Qt::LeftButton);
    QCOMPARE(other->findChildren<CMessageBox *>().size(), 1);
    QCOMPARE(other->findChild<CMessageBox *>()->text(), UpgradeProcess::runningText());
    program.letGo();
    checkMessage(CMessageBox::Critical, QStringLiteral("Version read failed"));
    QCOMPARE(other->findChildren<CMessageBox *>().size(), 1); // it was not its upgrade
    QVERIFY(popup->findChild<QToolButton *>(QStringLiteral("btn_close"))->isEnabled());
    QCOMPARE(migration.starts(), QStringList());
    QVERIFY(other->close());
}

void tst_GUI_DeviceInfo::destroyingLeavesTheProgramRunning()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "wait exit 4");
    open(serverArguments());
    upgradeUntilStarted(program);
    m_dialog.reset();
    program.letGo();
    QTRY_COMPARE(program.ends(), QStringList(QStringLiteral("4")));
}

/// It was started while the firmware was downloaded.
void tst_GUI_DeviceInfo::anotherProgramBeforeTheStart()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")));
    const StandInProgram another(path(QStringLiteral("another.exe")), "wait");
    open(serverArguments());
    QSignalSpy finished(m_dialog.get(), &GUI_DeviceInfo::sig_updateFinish);
    connect(m_dialog.get(), &GUI_DeviceInfo::sig_updateRequest, m_dialog.get(),
            [this, &another] { m_process->start(another.path(), {}); });
    click("btn_update");
    QTRY_VERIFY(message() != nullptr);
    press(message(), CMessageBox::Yes);
    QVERIFY(isUpdating());
    checkRunningMessage();
    QVERIFY(isIdle());
    another.letGo();
    QTRY_VERIFY(!m_process->isRunning());
    QCOMPARE(program.starts(), QStringList());
    QCOMPARE(finished.count(), 0);
}

void tst_GUI_DeviceInfo::migrationInstallsTheDriverFirst_data()
{
    QTest::addColumn<bool>("isUnregistered");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("never seen") << true
                                << QStringList{QStringLiteral("isDeviceUnregistered"),
                                               QStringLiteral("installMigrationDriver")};
    QTest::newRow("seen before") << false << QStringList{QStringLiteral("isDeviceUnregistered")};
}

void tst_GUI_DeviceInfo::migrationInstallsTheDriverFirst()
{
    QFETCH(bool, isUnregistered);
    open(serverArguments());
    m_isUnregistered = isUnregistered;
    click("btn_migration");
    QTEST(m_driverCalls, "calls");
    QVERIFY(m_dialog->findChild<PopupWidget *>()->isVisible());
}

void tst_GUI_DeviceInfo::migrationPopup()
{
    open(serverArguments());
    click("btn_migration");
    m_dialog->slot_migrationBtnClicked(); // only one
    const QList<PopupWidget *> popups = m_dialog->findChildren<PopupWidget *>();
    QCOMPARE(popups.size(), 1);
    const PopupWidget *popup = popups.first();
    QVERIFY(popup->isVisible());
    QCOMPARE(popup->size(), QSize(500, 400));
    QCOMPARE(popup->minimumSize(), popup->maximumSize());
    QCOMPARE(popup->geometry().center(), m_dialog->rect().center());
    QVERIFY(m_dialog->rect().contains(popup->geometry()));
    QVERIFY(popup->findChild<MigrationWidget *>()->isVisible());
    QVERIFY(!find<QPushButton>("btn_update")->isEnabled());
}

void tst_GUI_DeviceInfo::migrationIsFreedAtItsEnd()
{
    open(serverArguments());
    click("btn_migration");
    auto *popup = m_dialog->findChild<PopupWidget *>();
    QTest::mouseClick(popup->findChild<QToolButton *>(QStringLiteral("btn_close")), Qt::LeftButton);
    QTRY_VERIFY(m_dialog->findChild<PopupWidget *>() == nullptr);
    QVERIFY(m_dialog->findChild<MigrationWidget *>() == nullptr);
    QVERIFY(isIdle());
    click("btn_migration");
    QVERIFY(m_dialog->findChild<PopupWidget *>() != nullptr);
}

void tst_GUI_DeviceInfo::migrationKeepsThePopupOpen()
{
    const StandInProgram program(migrationProgram(m_folder->path()), "wait exit 3");
    open(serverArguments());
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    click("btn_migration");
    auto *popup = m_dialog->findChild<PopupWidget *>();
    auto *close = popup->findChild<QToolButton *>(QStringLiteral("btn_close"));
    auto *start = popup->findChild<QPushButton *>(QStringLiteral("btn_migration"));
    QTest::mouseClick(start, Qt::LeftButton);
    QTRY_VERIFY(!close->isEnabled());
    QTRY_COMPARE(program.starts(), QStringList(migrationImage(m_folder->path())));
    QTest::mouseClick(close, Qt::LeftButton);
    QTest::keyClick(m_dialog->windowHandle(), Qt::Key_Escape);
    QVERIFY(popup->isVisible());
    QVERIFY(m_dialog->isVisible());
    program.letGo();
    QTRY_VERIFY(close->isEnabled());
    QCOMPARE(popup->findChild<QTextEdit *>(QStringLiteral("tbx_result"))->toPlainText(),
             QStringLiteral("1. No old device was found"));
    QTest::keyClick(m_dialog->windowHandle(), Qt::Key_Escape);
    QTRY_VERIFY(m_dialog->findChild<PopupWidget *>() == nullptr);
    QVERIFY(m_dialog->isVisible());
}

void tst_GUI_DeviceInfo::cannotBeClosedDuringAMigration()
{
    QFETCH(Way, way);
    const StandInProgram program(migrationProgram(m_folder->path()), "wait");
    open(serverArguments());
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    click("btn_migration");
    const QPointer<PopupWidget> popup(m_dialog->findChild<PopupWidget *>());
    QSignalSpy ended(m_process.get(), &UpgradeProcess::sig_finished);
    QTest::mouseClick(popup->findChild<QPushButton *>(QStringLiteral("btn_migration")), Qt::LeftButton);
    QTRY_COMPARE(program.starts().size(), 1);
    closeBy(way, *m_dialog);
    QVERIFY(m_dialog->isVisible());
    if (message() != nullptr) { // Esc is for the page, which shows that it is busy
        checkRunningMessage();
    }
    QVERIFY(popup && popup->isVisible());
    program.letGo();
    QTRY_COMPARE(ended.count(), 1);
    closeBy(way, *m_dialog);
    QVERIFY(!popup || !popup->isVisible());
}

void tst_GUI_DeviceInfo::popupStaysFromTheClickOn()
{
    const StandInProgram program(migrationProgram(m_folder->path()));
    open(serverArguments());
    click("btn_migration");
    auto *popup = m_dialog->findChild<PopupWidget *>();
    QSignalSpy started(popup->findChild<MigrationWidget *>(), &MigrationWidget::started);
    QTest::mouseClick(popup->findChild<QPushButton *>(QStringLiteral("btn_migration")), Qt::LeftButton);
#ifndef Q_OS_WIN // where it has started by now
    QVERIFY(started.isEmpty());
#endif
    QVERIFY(!popup->close());
    QTRY_VERIFY(popup->findChild<QToolButton *>(QStringLiteral("btn_close"))->isEnabled());
    QVERIFY(popup->close());
}

/// Neither while its firmware is downloaded nor while its program runs, for how long ever.
void tst_GUI_DeviceInfo::noMigrationDuringAnUpgrade()
{
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")), "wait");
    open(serverArguments());
    QSignalSpy finished(m_dialog.get(), &GUI_DeviceInfo::sig_updateFinish);
    click("btn_update");
    QTRY_VERIFY(message() != nullptr);
    press(message(), CMessageBox::Yes);
    QVERIFY(isUpdating());
    m_dialog->slot_migrationBtnClicked();
    QVERIFY(m_dialog->findChild<PopupWidget *>() == nullptr);
    QTRY_COMPARE(program.starts().size(), 1);
    find<QProgressBar>("progressBar")->setValue(AlmostFull);
    QTRY_COMPARE(finished.count(), 1);
    click("btn_migration");
    checkRunningMessage();
    QVERIFY(m_dialog->findChild<PopupWidget *>() == nullptr);
    QCOMPARE(m_driverCalls, QStringList());
    program.letGo();
    QTRY_VERIFY(!m_process->isRunning());
    click("btn_migration");
    QVERIFY(m_dialog->findChild<PopupWidget *>() != nullptr);
}

/// The migration was started between the question and its answer.
void tst_GUI_DeviceInfo::noUpgradeDuringAMigration()
{
    const StandInProgram migration(migrationProgram(m_folder->path()), "wait");
    const StandInProgram program(path(QStringLiteral("UpgradeCAN.exe")));
    open(serverArguments());
    QSignalSpy requested(m_dialog.get(), &GUI_DeviceInfo::sig_updateRequest);
    click("btn_update");
    click("btn_migration");
    QTest::mouseClick(m_dialog->findChild<PopupWidget *>()->findChild<QPushButton *>(QStringLiteral("btn_migration")),
                      Qt::LeftButton);
    QTRY_COMPARE(migration.starts().size(), 1);
    QTRY_VERIFY(message() != nullptr);
    press(message(), CMessageBox::Yes);
    checkRunningMessage();
    QCOMPARE(requested.count(), 0);
    QVERIFY(find<QWidget>("frame_update")->isVisible());
    migration.letGo();
    QTRY_VERIFY(!m_process->isRunning());
    QCOMPARE(program.starts(), QStringList());
}

void tst_GUI_DeviceInfo::destroyingLeavesTheMigrationRunning()
{
    const StandInProgram program(migrationProgram(m_folder->path()), "wait exit 3");
    open(serverArguments());
    click("btn_migration");
    QTest::mouseClick(
        m_dialog->findChild<MigrationWidget *>()->findChild<QPushButton *>(QStringLiteral("btn_migration")),
        Qt::LeftButton);
    QTRY_COMPARE(program.starts().size(), 1);
    m_dialog.reset();
    program.letGo();
    QTRY_COMPARE(program.ends(), QStringList(QStringLiteral("3")));
}

X9_GUI_TEST(tst_GUI_DeviceInfo)
#include "tst_GUI_DeviceInfo.moc"
