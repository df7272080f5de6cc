#include "capture/PlatformFile.h"

#include <QFile>

#include <sys/stat.h>

QByteArray platformLineEnd()
{
    return QByteArrayLiteral("\n");
}

bool isFileAt(const QFile &file, const QString &path)
{
    struct stat opened = {};
    struct stat standing = {};
    return fstat(file.handle(), &opened) == 0 && stat(QFile::encodeName(path).constData(), &standing) == 0 &&
           opened.st_dev == standing.st_dev && opened.st_ino == standing.st_ino;
}
