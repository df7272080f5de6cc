#pragma once

#include <QString>
#include <QStringList>

/// A program to start, with its arguments in order.
struct DriverCommand
{
    QString program;
    QStringList arguments;
};

/// Adds the driver's certificate to the machine's trusted ones. applicationDir: the folder of the executable.
DriverCommand certificateCommand(const QString &applicationDir);
/// The installer's path, relative to the working directory. wow64Folder: a folder that only 64-bit Windows has.
QString driverInstaller(const QString &wow64Folder = QStringLiteral("C:\\Windows\\SysWOW64"));
/// Installs the driver of the adapter.
DriverCommand driverCommand(const QString &installer, const QString &applicationDir);
/// Installs the driver of an adapter that waits to be migrated.
DriverCommand migrationDriverCommand(const QString &installer, const QString &applicationDir);

/// Runs the first command and waits for it, 60 s at most, then starts the second one and lets it run by itself,
/// whatever became of the first. Whether the second one was started.
bool runDriverCommands(const DriverCommand &certificate, const DriverCommand &install);
/// Starts a command and lets it run by itself. False when it cannot be started.
bool startDriverCommand(const DriverCommand &command);

/// Installs the certificate and the driver of the adapter; part of every start. Whether the installer was started. On
/// systems other than Windows nothing is to be installed: false at once.
bool installDriver();
/// Installs the driver of an adapter that waits to be migrated. Whether the installer was started; on systems other
/// than Windows false.
bool installMigrationDriver();
/// Whether this computer has never seen an adapter that waits to be migrated. On systems other than Windows true.
bool isDeviceUnregistered();
