#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>

/// A copy of the program that writes down its arguments (CommandRecorder.cpp), in a folder that is made if necessary.
/// False when there is none then.
inline bool makeCommandRecorder(const QString &path)
{
    return QDir().mkpath(QFileInfo(path).path()) && QFile::copy(QStringLiteral(X9_COMMAND_RECORDER), path);
}

/// The arguments that such a copy was started with; empty until it has written them.
inline QStringList recordedArguments(const QString &program)
{
    QFile file(program + QStringLiteral(".arguments"));
    return file.open(QIODevice::ReadOnly | QIODevice::Text)
               ? QString::fromLocal8Bit(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)
               : QStringList();
}
