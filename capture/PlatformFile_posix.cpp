#include "capture/PlatformFile.h"

#include <QFile>

#include <cerrno>

#include <sys/resource.h>
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

// The caller's own, as far as the system has that: elsewhere a thread's priority is its process's.
void lowerThreadPriority()
{
#ifdef __linux__
    constexpr int Niceness = 5;
    setpriority(PRIO_PROCESS, 0, Niceness);
#endif
}
