#include "app/Driver.h"

#include <QFileInfo>
#include <QProcess>

namespace {
constexpr int CertificateWaitMs = 60000; ///< a tool that hangs must not keep the program from starting for ever

DriverCommand installCommand(const QString &installer, const QString &hardwareId, const QString &driver)
{
    return {installer, {QStringLiteral("install"), hardwareId, driver}};
}
} // namespace

DriverCommand certificateCommand(const QString &applicationDir)
{
    return {applicationDir + QStringLiteral("/Driver/Q2/certmgr.exe"),
            {QStringLiteral("-c"), QStringLiteral("-add"), applicationDir + QStringLiteral("/Driver/Q2/korvaneQ2.crt"),
             QStringLiteral("-r"), QStringLiteral("localMachine"), QStringLiteral("-s"), QStringLiteral("root")}};
}

QString driverInstaller(const QString &wow64Folder)
{
    return QFileInfo(wow64Folder).isDir() ? QStringLiteral("Driver\\x64\\Driver64.exe")
                                          : QStringLiteral("Driver\\x86\\Driver.exe");
}

DriverCommand driverCommand(const QString &installer, const QString &applicationDir)
{
    return installCommand(installer, QStringLiteral("USB\\VID_A5A5&PID_2566"),
                          applicationDir + QStringLiteral("/Driver/Q2/korvaneQ2.inf"));
}

DriverCommand migrationDriverCommand(const QString &installer, const QString &applicationDir)
{
    return installCommand(installer, QStringLiteral("USB\\VID_A5A5&PID_2560"),
                          applicationDir + QStringLiteral("/Driver/X9/nivDrvX9.inf"));
}

bool runDriverCommands(const DriverCommand &certificate, const DriverCommand &install)
{
    QProcess tool;
    tool.start(certificate.program, certificate.arguments);
    if (tool.waitForStarted() && !tool.waitForFinished(CertificateWaitMs)) {
        tool.kill();
        tool.waitForFinished();
    }
    return startDriverCommand(install);
}

bool startDriverCommand(const DriverCommand &command)
{
    return QProcess::startDetached(command.program, command.arguments);
}
