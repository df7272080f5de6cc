#include "device/AdapterLibrary.h"

#include <QFile>

#include <dlfcn.h>

namespace AdapterLibrary {

void *open(const QString &path, QString &message)
{
    void *library = dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        message = QString::fromLocal8Bit(dlerror()); // NOLINT(concurrency-mt-unsafe): glibc has one for each thread
    }
    return library;
}

Symbol resolve(void *library, const char *name)
{
    return reinterpret_cast<Symbol>(dlsym(library, name));
}

void close(void *library)
{
    dlclose(library);
}

QString defaultPath()
{
    return QStringLiteral("./libControlCAN.so");
}

} // namespace AdapterLibrary
