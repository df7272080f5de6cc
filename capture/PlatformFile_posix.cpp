#include "capture/PlatformFile.h"

#include <QFile>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

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

bool syncFile(const QFile &file)
{
    return fdatasync(file.handle()) == 0 || errno == EINVAL || errno == ENOSYS;
}
