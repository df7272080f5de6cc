#include "capture/PlatformFile.h"

#include <QFile>

QByteArray platformLineEnd()
{
    return QByteArrayLiteral("\r\n");
}

// A file that is open cannot be deleted, moved or replaced here; it can only vanish together with its drive.
bool isFileAt(const QFile &, const QString &path)
{
    return QFile::exists(path);
}
