#include "capture/PlatformFile.h"

#include <QDir>
#include <QFile>

#include <windows.h>

QByteArray platformLineEnd()
{
    return QByteArrayLiteral("\r\n");
}

// A file that is open cannot be deleted, moved or replaced here; it can only vanish together with its drive.
bool isFileAt(const QFile &, const QString &path)
{
    return QFile::exists(path);
}

// What is flushed is the file, by whichever handle; asking QFile for its own would make a new descriptor each time.
bool syncFile(const QFile &file)
{
    const QString path = QDir::toNativeSeparators(file.fileName());
    HANDLE handle = CreateFileW(reinterpret_cast<const wchar_t *>(path.utf16()), GENERIC_WRITE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return true; // a path too long for this call, or another program holds the file: no news of the disk
    }
    const bool isFlushed = FlushFileBuffers(handle) != 0;
    CloseHandle(handle);
    return isFlushed;
}

void lowerThreadPriority()
{
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
}
