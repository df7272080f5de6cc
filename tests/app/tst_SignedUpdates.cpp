#include "app/GUI_DeviceInfo.h"
#include "app/GUI_Update.h"
#include "app/ProgramKind.h"
#include "app/SoftwareUpdate.h"
#include "app/UpgradeProcess.h"
#include "resources/Resources.h"
#include "tests/app/StandInProgram.h"
#include "tests/app/TestSigner.h"
#include "tests/app/UpdateServer.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"
#include "widgets/CMessageBox.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

#include <memory>

namespace {
const QByteArray Package = QByteArray("package").repeated(10000);
constexpr int ShortMs = 300; ///< of a server that keeps silent

QByteArray releaseComment(const char *version = "1.1.2")
{
    return "X9CAN release " + QByteArray(version) + ' ' + programKind().toLatin1();
}

QByteArray firmwareComment(const char *version = "2.06")
{
    return "X9CAN firmware X9CANFirmWare " + QByteArray(version);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What stands in a folder, the folders in it too.
QStringList allFiles(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}
} // namespace

/// With a key, through the windows: of a release of the program, and of a firmware.
class tst_SignedUpdates : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { initResources(); }
    void init();
    void cleanup();

    void releaseIsInstalled();
    static void releaseIsRefused_data() { refusals(true); }
    void releaseIsRefused();
    void releaseWithoutAVersionMustBeNewer();
    void releaseSignatureCanBeCancelled();
    void releaseCanBeTriedAgain();
    void releaseWithoutAKeyNeedsNoSignature();

    void firmwareIsHandedOver();
    static void firmwareIsRefused_data() { refusals(false); }
    void firmwareIsRefused();
    void firmwareSignatureEndsWithTheDialog();
    static void olderFirmwareIsTold_data();
    void olderFirmwareIsTold();
    void firmwareWithoutAKeyNeedsNoSignature();

private:
    static void refusals(bool isRelease);
    void place(const char *name, const QByteArray &bytes) const;
    void placeSigned(const char *name, const QByteArray &comment) const
    {
        place(name, m_signer.sign(Package, comment));
    }
    void placeBadSignatures() const;
    void serve(const QString &behaviour, const char *version);
    SoftwareUpdate *makeUpdate(const QByteArray &key, int limitMs = 60000);
    void acceptRelease(SoftwareUpdate &update);
    void openDevice(const QByteArray &key);
    void acceptFirmware();
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    /// The dialog of that kind that is on screen below a window.
    template<class Dialog>
    static Dialog *shown(const QWidget *window)
    {
        for (Dialog *dialog : window->findChildren<Dialog *>()) {
            if (dialog->isVisible()) {
                return dialog;
            }
        }
        return nullptr;
    }
    CMessageBox *message() const { return shown<CMessageBox>(m_window.get()); }
    void pressYes() const
    {
        QTest::mouseClick(message()->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Yes), Qt::LeftButton);
    }

    const TestSigner m_signer;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<UpdateServer> m_server;
    std::unique_ptr<UpgradeProcess> m_process;
    std::unique_ptr<QWidget> m_window; ///< with a firmware the dialog
};

void tst_SignedUpdates::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    for (const char *folder : {"downloads", "program/Update", "data"}) {
        QVERIFY(QDir(m_folder->path()).mkpath(QLatin1String(folder)));
    }
    QVERIFY(QFile::copy(QStringLiteral(X9_ARGUMENT_WRITER), path("program/Update/Update.exe")));
    place("a.zip", Package);
    m_process = std::make_unique<UpgradeProcess>();
    m_window = std::make_unique<QWidget>();
    m_window->show();
}

void tst_SignedUpdates::cleanup()
{
    m_window.reset();
    m_process.reset();
    m_server.reset();
    m_folder.reset();
}

void tst_SignedUpdates::place(const char *name, const QByteArray &bytes) const
{
    QFile file(path("downloads/") + QLatin1String(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

/// A release and a firmware under one address, at which the server behaves as named.
void tst_SignedUpdates::serve(const QString &behaviour, const char *version)
{
    const QString record =
        QString::fromLatin1(R"(={"name": "", "summary": "", "versionNo": "%1",
                                                  "url": "http://127.0.0.1:{port}%2/downloads/a.zip"})")
            .arg(QLatin1String(version), behaviour.isEmpty() ? QString() : QStringLiteral("/behave/") + behaviour);
    m_server = std::make_unique<UpdateServer>(
        QStringList{QStringLiteral("--record"), QStringLiteral("Korvane_CAN") + record, QStringLiteral("--record"),
                    QStringLiteral("X9CANFirmWare") + record, QStringLiteral("--downloads"), path("downloads")});
    QVERIFY(!m_server->url().isEmpty());
}

/// Swapped with good signatures of other things, and signed by others.
void tst_SignedUpdates::placeBadSignatures() const
{
    const QByteArray otherKind = programKind() == QLatin1String("windows-32bit") ? "windows-64bit" : "windows-32bit";
    placeSigned("of-release", releaseComment());
    placeSigned("of-firmware", firmwareComment());
    placeSigned("of-other-firmware", "X9CAN firmware X9770CANFirmWare 2.06");
    placeSigned("of-older-release", releaseComment("1.1.0"));
    placeSigned("of-this-release", releaseComment("1.1.1"));
    placeSigned("of-older-firmware", firmwareComment("2.04"));
    placeSigned("of-other-kind", "X9CAN release 1.1.2 " + otherKind);
    place("of-other-file-release", m_signer.sign("other", releaseComment()));
    place("of-other-file-firmware", m_signer.sign("other", firmwareComment()));
    place("of-other-key", TestSigner(2, 2).sign(Package, releaseComment()));
    place("forged", TestSigner(2, 1).sign(Package, firmwareComment()));
}

void tst_SignedUpdates::refusals(bool isRelease)
{
    QTest::addColumn<QString>("behaviour");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const char *behaviour, const char *reason) {
        QTest::newRow(name) << QString::fromLatin1(behaviour) << QString::fromLatin1(reason);
    };
    row("missing", "sig-404", "Its signature cannot be downloaded: ");
    row("without an answer", "sig-no-answer", "Its signature cannot be downloaded: ");
    row("empty", "sig-nothing", "What the server sends as its signature is not one.");
    row("cut off", "sig-cut", "What the server sends as its signature is not one.");
    row("too long", "sig-rubbish-chunked", "What the server sends as its signature is not one.");
    row("binary", "sig-as-a.zip", "What the server sends as its signature is not one.");
    row("line ends of Windows", "sig-cr-lf", "What the server sends as its signature is not one.");
    row("wrong", "sig-spoiled", "Its signature was changed or forged.");
    row("of another key", "sig-as-of-other-key", "It was signed with another key.");
    row("forged", "sig-as-forged", "Its signature was changed or forged.");
    row("package changed", "pack-spoiled", "The file on the server is not the one that was signed.");
    row("package cut off", "pack-cut", "The file on the server is not the one that was signed.");
    if (isRelease) {
        row("of another file", "sig-as-of-other-file-release",
            "The file on the server is not the one that was signed.");
        row("of a firmware", "sig-as-of-firmware", "Its signature is for something else: X9CAN firmware ");
        row("of an older release", "sig-as-of-older-release",
            "It is version 1.1.0; what was offered is version 1.1.2.");
        row("of the other kind", "sig-as-of-other-kind", "It is the package for windows-");
    } else {
        row("of another file", "sig-as-of-other-file-firmware",
            "The file on the server is not the one that was signed.");
        row("of a release", "sig-as-of-release", "Its signature is for something else: X9CAN release ");
        row("of another device", "sig-as-of-other-firmware",
            "Its signature is for something else: X9CAN firmware X9770CANFirmWare 2.06");
        row("of an older firmware", "sig-as-of-older-firmware",
            "It is version 2.04; what was offered is version 2.06.");
    }
}

SoftwareUpdate *tst_SignedUpdates::makeUpdate(const QByteArray &key, int limitMs)
{
    SoftwareUpdateSetup setup;
    setup.baseUrl = m_server->url();
    setup.applicationDir = path("program");
    setup.packageFolder = path("data");
    setup.updateKey = key;
    setup.stallLimitMs = limitMs;
    return new SoftwareUpdate(m_window.get(), setup);
}

/// As the user does.
void tst_SignedUpdates::acceptRelease(SoftwareUpdate &update)
{
    update.request(false);
    QTRY_VERIFY(shown<GUI_Update>(m_window.get()) != nullptr);
    auto *button = shown<GUI_Update>(m_window.get())->findChild<QToolButton *>(QStringLiteral("btn_update"));
    QVERIFY(button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
}

void tst_SignedUpdates::releaseIsInstalled()
{
    serve({}, "1.1.2");
    placeSigned("a.zip.minisig", releaseComment());
    SoftwareUpdate *update = makeUpdate(m_signer.publicKey());
    QSignalSpy close(update, &SoftwareUpdate::sig_closeProgram);
    acceptRelease(*update);
    QVERIFY(shown<QProgressDialog>(m_window.get()) != nullptr);
    QTRY_COMPARE(close.count(), 1);
    QCOMPARE(message(), nullptr);
    QCOMPARE(contentOf(path("data/X9CAN_Install/Install.zip")), Package);
    QTRY_VERIFY(QFile::exists(path("program/Update/arguments.txt")));
    QCOMPARE(m_server->requests().count(), 3);
}

void tst_SignedUpdates::releaseIsRefused()
{
    QFETCH(QString, behaviour);
    QFETCH(QString, reason);
    serve(behaviour, "1.1.2");
    placeSigned("a.zip.minisig", releaseComment());
    placeBadSignatures();
    SoftwareUpdate *update =
        makeUpdate(m_signer.publicKey(), behaviour == QLatin1String("sig-no-answer") ? ShortMs : 60000);
    QSignalSpy close(update, &SoftwareUpdate::sig_closeProgram);
    acceptRelease(*update);
    QTRY_VERIFY(message() != nullptr);
    QCOMPARE(shown<QProgressDialog>(m_window.get()), nullptr);
    QCOMPARE(message()->icon(), CMessageBox::Critical);
    const QString expected = QStringLiteral("The new version was refused and not installed.\n") + reason;
    QVERIFY2(message()->text().startsWith(expected), qPrintable(message()->text()));
    QTRY_COMPARE(allFiles(path("data")), QStringList());
    letTicksPass(20);
    QCOMPARE(close.count(), 0);
    QVERIFY(!QFile::exists(path("program/Update/arguments.txt")));
}

/// The main window is told an address only.
void tst_SignedUpdates::releaseWithoutAVersionMustBeNewer()
{
    serve({}, "1.1.2");
    placeSigned("a.zip.minisig", releaseComment("1.1.1"));
    SoftwareUpdate *update = makeUpdate(m_signer.publicKey());
    QSignalSpy close(update, &SoftwareUpdate::sig_closeProgram);
    const QString address = m_server->url() + QStringLiteral("/downloads/a.zip");
    update->update(address);
    QTRY_VERIFY(message() != nullptr);
    QVERIFY(message()->text().endsWith(
        QLatin1String("It is version 1.1.1, which is not newer than this program, version 1.1.1.")));
    QCOMPARE(close.count(), 0);
    placeSigned("a.zip.minisig", releaseComment("1.2"));
    update->update(address);
    QTRY_COMPARE(close.count(), 1);
}

void tst_SignedUpdates::releaseSignatureCanBeCancelled()
{
    serve(QStringLiteral("sig-no-answer"), "1.1.2");
    SoftwareUpdate *update = makeUpdate(m_signer.publicKey());
    acceptRelease(*update);
    QTRY_COMPARE(m_server->requests().count(), 2);
    QVERIFY(update->isBusy());
    QTest::mouseClick(shown<QProgressDialog>(m_window.get())->findChild<QPushButton *>(), Qt::LeftButton);
    QVERIFY(!update->isBusy());
    letTicksPass(50);
    QCOMPARE(message(), nullptr);
    QCOMPARE(m_server->requests().count(), 2);
    QCOMPARE(allFiles(path("data")), QStringList());
}

void tst_SignedUpdates::releaseCanBeTriedAgain()
{
    serve({}, "1.1.2");
    SoftwareUpdate *update = makeUpdate(m_signer.publicKey());
    QSignalSpy close(update, &SoftwareUpdate::sig_closeProgram);
    acceptRelease(*update);
    QTRY_VERIFY(message() != nullptr); // there is no signature yet
    message()->close();
    placeSigned("a.zip.minisig", releaseComment());
    acceptRelease(*update);
    QTRY_COMPARE(close.count(), 1);
}

void tst_SignedUpdates::releaseWithoutAKeyNeedsNoSignature()
{
    serve({}, "1.1.2");
    SoftwareUpdate *update = makeUpdate({});
    QSignalSpy close(update, &SoftwareUpdate::sig_closeProgram);
    acceptRelease(*update);
    QTRY_COMPARE(close.count(), 1);
    QCOMPARE(m_server->requests().count(), 2);
}

void tst_SignedUpdates::openDevice(const QByteArray &key)
{
    DeviceInfoSetup setup;
    setup.applicationDir = path("program");
    setup.updateServer = m_server->url();
    setup.updateKey = key;
    setup.startDelayMs = 20;
    auto dialog = std::make_unique<GUI_DeviceInfo>(*m_process, setup);
    dialog->setDevice(QStringLiteral("SN123"), QStringLiteral("X9EC-2"), QStringLiteral("V2.05"));
    dialog->show();
    m_window = std::move(dialog);
}

/// As the user does.
void tst_SignedUpdates::acceptFirmware()
{
    QTest::mouseClick(m_window->findChild<QPushButton *>(QStringLiteral("btn_update")), Qt::LeftButton);
    QTRY_VERIFY(message() != nullptr);
    pressYes();
}

void tst_SignedUpdates::firmwareIsHandedOver()
{
    const StandInProgram program(path("program/UpgradeCAN.exe"));
    serve({}, "2.06");
    placeSigned("a.zip.minisig", firmwareComment());
    openDevice(m_signer.publicKey());
    acceptFirmware();
    QTRY_COMPARE(program.starts(), QStringList(path("program/UpCode/a.zip")));
    QCOMPARE(contentOf(path("program/UpCode/a.zip")), Package);
    QCOMPARE(m_server->requests().count(), 3);
}

/// All but the one without an answer, which takes as long as a download may stall.
void tst_SignedUpdates::firmwareIsRefused()
{
    QFETCH(QString, behaviour);
    QFETCH(QString, reason);
    if (behaviour == QLatin1String("sig-no-answer")) {
        behaviour = QStringLiteral("sig-short");
    }
    const StandInProgram program(path("program/UpgradeCAN.exe"));
    serve(behaviour, "2.06");
    placeSigned("a.zip.minisig", firmwareComment());
    placeBadSignatures();
    openDevice(m_signer.publicKey());
    acceptFirmware();
    QTRY_VERIFY(message() != nullptr);
    QCOMPARE(message()->icon(), CMessageBox::Critical);
    const QString expected = QStringLiteral("The firmware was refused and not installed.\n") + reason;
    QVERIFY2(message()->text().startsWith(expected), qPrintable(message()->text()));
    QVERIFY(m_window->findChild<QPushButton *>(QStringLiteral("btn_update"))->isVisible());
    QTRY_COMPARE(allFiles(path("program/UpCode")), QStringList());
    letTicksPass(40); // more than the delay of the start
    QCOMPARE(program.starts(), QStringList());
}

void tst_SignedUpdates::firmwareSignatureEndsWithTheDialog()
{
    serve(QStringLiteral("sig-no-answer"), "2.06");
    openDevice(m_signer.publicKey());
    acceptFirmware();
    QTRY_COMPARE(m_server->requests().count(), 2);
    m_window->close();
    m_window->show();
    QVERIFY(m_window->findChild<QPushButton *>(QStringLiteral("btn_update"))->isVisible());
    letTicksPass(20);
    QCOMPARE(message(), nullptr);
    QCOMPARE(m_server->requests().count(), 2);
}

void tst_SignedUpdates::olderFirmwareIsTold_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<bool>("hasKey");
    QTest::addColumn<bool>("isTold");
    QTest::newRow("older") << QByteArray("1.99") << true << true;
    QTest::newRow("newer") << QByteArray("2.06") << true << false;
    QTest::newRow("another spelling") << QByteArray("2.5") << true << false;
    QTest::newRow("no number") << QByteArray("V1.99") << true << false;
    QTest::newRow("older, without a key") << QByteArray("1.99") << false << false;
}

void tst_SignedUpdates::olderFirmwareIsTold()
{
    QFETCH(QByteArray, version);
    QFETCH(bool, hasKey);
    QFETCH(bool, isTold);
    const StandInProgram program(path("program/UpgradeCAN.exe"));
    serve({}, version.constData());
    placeSigned("a.zip.minisig", firmwareComment(version.constData()));
    openDevice(hasKey ? m_signer.publicKey() : QByteArray());
    QTest::mouseClick(m_window->findChild<QPushButton *>(QStringLiteral("btn_update")), Qt::LeftButton);
    QTRY_VERIFY(message() != nullptr);
    QCOMPARE(message()->text(),
             QStringLiteral("New version detected V%1<br>%2Do you wish to update it now?")
                 .arg(QString::fromLatin1(version),
                      isTold ? QStringLiteral("It is older than V2.05, which the device has.<br>") : QString()));
    pressYes();
    QTRY_COMPARE(program.starts().size(), 1); // whoever says so may have it
}

void tst_SignedUpdates::firmwareWithoutAKeyNeedsNoSignature()
{
    const StandInProgram program(path("program/UpgradeCAN.exe"));
    serve({}, "2.06");
    openDevice({});
    acceptFirmware();
    QTRY_COMPARE(program.starts().size(), 1);
    QCOMPARE(m_server->requests().count(), 2);
}

X9_GUI_TEST(tst_SignedUpdates)
#include "tst_SignedUpdates.moc"
