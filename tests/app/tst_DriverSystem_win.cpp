// The driver functions on Windows: they start what lies beside the program, and look into the registry.

#include "app/Driver.h"
#include "tests/app/RecordedCommand.h"
#include "tests/support/TestProgram.h"

#include <QSettings>
#include <QtTest>

class tst_DriverSystem : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void installsCertificateAndDriver();
    void installsWithoutTheCertificateTool();
    void installsNothingWithoutItsInstaller();
    void installsTheMigrationDriver();
    void deviceNeverSeen();
    void deviceSeenBefore();
    void keyWithoutDevices();
    void otherDevicesDoNotCount();

private:
    static QString programFile(const char *name);
    QString workingFile(const char *name) const { return m_folder->filePath(QLatin1String(name)); }

    QString m_before;
    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace {
const QString UsbDevices = QStringLiteral("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\USB");
/// For the Windows that this is, and for the other one. A 32-bit program runs on both.
const bool Is64Bit = QFileInfo(QStringLiteral("C:\\Windows\\SysWOW64")).isDir();
const char *const Installer = Is64Bit ? "Driver/x64/Driver64.exe" : "Driver/x86/Driver.exe";
const char *const OtherInstaller = Is64Bit ? "Driver/x86/Driver.exe" : "Driver/x64/Driver64.exe";
const QString InMigration = QStringLiteral("VID_A5A5&PID_2560");

/// What Windows writes when a device is plugged in for the first time: a key of the device's kind, and one for each
/// device below it.
void plugIn(const QString &device)
{
    QSettings usb(UsbDevices, QSettings::NativeFormat);
    usb.setValue(device + QStringLiteral("/5&1a2b3c4d&0&1/DeviceDesc"), QStringLiteral("adapter"));
}

void forget(const QString &device)
{
    QSettings(UsbDevices, QSettings::NativeFormat).remove(device);
}
} // namespace

QString tst_DriverSystem::programFile(const char *name)
{
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + QLatin1String(name);
}

void tst_DriverSystem::initTestCase()
{
    QVERIFY2(!QFile::exists(programFile("Driver")), "is in the way");
    QVERIFY(Is64Bit || QT_POINTER_SIZE == 4); // a 64-bit program runs on 64-bit Windows only
}

void tst_DriverSystem::init()
{
    m_before = QDir::currentPath();
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir::setCurrent(m_folder->path()));
    forget(InMigration);
}

void tst_DriverSystem::cleanup()
{
    forget(InMigration);
    QVERIFY(QDir::setCurrent(m_before));
    QTRY_VERIFY(QDir(programFile("Driver")).removeRecursively()); // a stand-in may still be ending
    QTRY_VERIFY(QDir(m_folder->path()).removeRecursively());
}

void tst_DriverSystem::installsCertificateAndDriver()
{
    const QString tool = programFile("Driver/Q2/certmgr.exe");
    const QString installer = workingFile(Installer);
    QVERIFY(makeCommandRecorder(tool) && makeCommandRecorder(installer));
    QVERIFY(installDriver());
    QCOMPARE(recordedArguments(tool),
             QStringList({QStringLiteral("-c"), QStringLiteral("-add"), programFile("Driver/Q2/korvaneQ2.crt"),
                          QStringLiteral("-r"), QStringLiteral("localMachine"), QStringLiteral("-s"),
                          QStringLiteral("root")}));
    QTRY_COMPARE(recordedArguments(installer),
                 QStringList({QStringLiteral("install"), QStringLiteral("USB\\VID_A5A5&PID_2566"),
                              programFile("Driver/Q2/korvaneQ2.inf")}));
}

void tst_DriverSystem::installsWithoutTheCertificateTool()
{
    const QString installer = workingFile(Installer);
    QVERIFY(makeCommandRecorder(installer));
    QVERIFY(installDriver());
    QTRY_COMPARE(recordedArguments(installer).size(), 3);
}

void tst_DriverSystem::installsNothingWithoutItsInstaller()
{
    QVERIFY(makeCommandRecorder(workingFile(OtherInstaller)));
    QVERIFY(!installDriver());
    QVERIFY(!installMigrationDriver());
}

void tst_DriverSystem::installsTheMigrationDriver()
{
    const QString tool = programFile("Driver/Q2/certmgr.exe");
    const QString installer = workingFile(Installer);
    QVERIFY(makeCommandRecorder(tool) && makeCommandRecorder(installer));
    QVERIFY(installMigrationDriver());
    QTRY_COMPARE(recordedArguments(installer),
                 QStringList({QStringLiteral("install"), QStringLiteral("USB\\VID_A5A5&PID_2560"),
                              programFile("Driver/X9/nivDrvX9.inf")}));
    QCOMPARE(recordedArguments(tool), QStringList());
}

void tst_DriverSystem::deviceNeverSeen()
{
    QVERIFY(isDeviceUnregistered());
}

void tst_DriverSystem::deviceSeenBefore()
{
    plugIn(InMigration);
    QVERIFY(!isDeviceUnregistered());
    forget(InMigration);
    QVERIFY(isDeviceUnregistered());
}

void tst_DriverSystem::keyWithoutDevices()
{
    QSettings(UsbDevices, QSettings::NativeFormat).setValue(InMigration + QStringLiteral("/value"), 1);
    QVERIFY(isDeviceUnregistered());
}

void tst_DriverSystem::otherDevicesDoNotCount()
{
    const QString adapter = QStringLiteral("VID_A5A5&PID_2566"); // the one in normal use
    plugIn(adapter);
    const bool isUnregistered = isDeviceUnregistered();
    forget(adapter);
    QVERIFY(isUnregistered);
}

X9_CORE_TEST(tst_DriverSystem)
#include "tst_DriverSystem_win.moc"
