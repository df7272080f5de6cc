#include "app/Driver.h"
#include "tests/app/RecordedCommand.h"
#include "tests/support/TestProgram.h"

#include <QTemporaryDir>
#include <QtTest>

class tst_Driver : public QObject
{
    Q_OBJECT

private slots:
    static void certificate();
    static void driver();
    static void migrationDriver();
    static void installerByWindows();
    static void runsTheCertificateToolFirst();
    static void installsWithoutTheCertificateTool();
    static void reportsAMissingInstaller();

private:
    /// A copy of the stand-in program.
    static QString standIn(const QTemporaryDir &folder, const QString &name);
};

QString tst_Driver::standIn(const QTemporaryDir &folder, const QString &name)
{
    const QString path = folder.filePath(name);
    return makeCommandRecorder(path) ? path : QString();
}

void tst_Driver::certificate()
{
    const DriverCommand command = certificateCommand(QStringLiteral("C:/Program Files/X9CAN"));
    QCOMPARE(command.program, QStringLiteral("C:/Program Files/X9CAN/Driver/Q2/certmgr.exe"));
    const QStringList arguments{QStringLiteral("-c"),
                                QStringLiteral("-add"),
                                QStringLiteral("C:/Program Files/X9CAN/Driver/Q2/korvaneQ2.crt"),
                                QStringLiteral("-r"),
                                QStringLiteral("localMachine"),
                                QStringLiteral("-s"),
                                QStringLiteral("root")};
    QCOMPARE(command.arguments, arguments);
}

void tst_Driver::driver()
{
    const DriverCommand command = driverCommand(QStringLiteral("installer"), QStringLiteral("D:/x"));
    QCOMPARE(command.program, QStringLiteral("installer"));
    const QStringList arguments{QStringLiteral("install"), QStringLiteral("USB\\VID_A5A5&PID_2566"),
                                QStringLiteral("D:/x/Driver/Q2/korvaneQ2.inf")};
    QCOMPARE(command.arguments, arguments);
}

void tst_Driver::migrationDriver()
{
    const DriverCommand command = migrationDriverCommand(QStringLiteral("installer"), QStringLiteral("D:/x"));
    QCOMPARE(command.program, QStringLiteral("installer"));
    const QStringList arguments{QStringLiteral("install"), QStringLiteral("USB\\VID_A5A5&PID_2560"),
                                QStringLiteral("D:/x/Driver/X9/nivDrvX9.inf")};
    QCOMPARE(command.arguments, arguments);
}

void tst_Driver::installerByWindows()
{
    const QTemporaryDir folder;
    QCOMPARE(driverInstaller(folder.path()), QStringLiteral("Driver\\x64\\Driver64.exe"));
    QCOMPARE(driverInstaller(folder.filePath(QStringLiteral("missing"))), QStringLiteral("Driver\\x86\\Driver.exe"));
    QCOMPARE(driverInstaller(standIn(folder, QStringLiteral("file"))), QStringLiteral("Driver\\x86\\Driver.exe"));
}

/// The certificate tool has ended before the installer is started.
void tst_Driver::runsTheCertificateToolFirst()
{
    const QTemporaryDir folder;
    const DriverCommand tool{standIn(folder, QStringLiteral("tool.exe")),
                             {QStringLiteral("-add"), QStringLiteral("a b")}};
    const DriverCommand installer{standIn(folder, QStringLiteral("installer.exe")), {QStringLiteral("install")}};
    QVERIFY(runDriverCommands(tool, installer));
    QCOMPARE(recordedArguments(tool.program), tool.arguments);
    QTRY_VERIFY(!recordedArguments(installer.program).isEmpty());
    QCOMPARE(recordedArguments(installer.program), installer.arguments);
}

void tst_Driver::installsWithoutTheCertificateTool()
{
    const QTemporaryDir folder;
    const DriverCommand tool{folder.filePath(QStringLiteral("missing.exe")), {}};
    const DriverCommand installer{standIn(folder, QStringLiteral("installer.exe")), {QStringLiteral("install")}};
    QVERIFY(runDriverCommands(tool, installer));
    QTRY_VERIFY(!recordedArguments(installer.program).isEmpty());
}

void tst_Driver::reportsAMissingInstaller()
{
    const QTemporaryDir folder;
    const DriverCommand tool{standIn(folder, QStringLiteral("tool.exe")), {QStringLiteral("-c")}};
    const DriverCommand missing{folder.filePath(QStringLiteral("missing.exe")), {}};
    QVERIFY(!runDriverCommands(tool, missing));
    QCOMPARE(recordedArguments(tool.program), tool.arguments);
    QVERIFY(!startDriverCommand(missing));
}

X9_CORE_TEST(tst_Driver)
#include "tst_Driver.moc"
