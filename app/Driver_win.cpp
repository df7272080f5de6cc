#include "app/Driver.h"

#include <QCoreApplication>
#include <QSettings>

bool installDriver()
{
    const QString folder = QCoreApplication::applicationDirPath();
    return runDriverCommands(certificateCommand(folder), driverCommand(driverInstaller(), folder));
}

bool installMigrationDriver()
{
    return startDriverCommand(migrationDriverCommand(driverInstaller(), QCoreApplication::applicationDirPath()));
}

bool isDeviceUnregistered()
{
    const QSettings devices(
        QStringLiteral("\\HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\USB\\VID_A5A5&PID_2560"),
        QSettings::NativeFormat);
    return devices.childGroups().isEmpty();
}
