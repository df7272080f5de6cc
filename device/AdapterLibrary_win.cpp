#include "device/AdapterLibrary.h"

#include <QDir>
#include <QFileInfo>

#include <windows.h>

namespace AdapterLibrary {

void *open(const QString &path, QString &message)
{
    // Where it is missing, some systems would go on searching in the folders of the PATH.
    if (!QFileInfo::exists(path)) {
        message = qt_error_string(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    const HMODULE library = LoadLibraryA(QDir::toNativeSeparators(path).toLocal8Bit().constData());
    if (library == nullptr) {
        message = qt_error_string(static_cast<int>(GetLastError()));
    }
    return library;
}

Symbol resolve(void *library, const char *name)
{
    return reinterpret_cast<Symbol>(GetProcAddress(static_cast<HMODULE>(library), name));
}

void close(void *library)
{
    FreeLibrary(static_cast<HMODULE>(library));
}

QString defaultPath()
{
    return QStringLiteral(".\\ControlCAN.dll");
}

} // namespace AdapterLibrary
