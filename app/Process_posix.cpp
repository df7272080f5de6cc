#include "app/Process.h"

#include <QFile>

#include <cstdlib>

QString processName(qint64 processId)
{
    // Unlike the link to the program it can be read for the processes of other users, too.
    QFile file(QStringLiteral("/proc/%1/comm").arg(processId));
    return file.open(QIODevice::ReadOnly) ? QFile::decodeName(file.readAll()).trimmed() : QString();
}

void endProcessNow(int exitCode)
{
    std::_Exit(exitCode);
}
