#include "device/SaveTarget.h"

#include <QFileInfo>
#include <QSaveFile>

bool isFileTarget(const QString &path)
{
    const QFileInfo target(path);
    return target.isFile() || !target.exists();
}

bool openForSaving(QSaveFile &file, QIODevice::OpenMode mode)
{
    file.setDirectWriteFallback(true);
    return isFileTarget(file.fileName()) && file.open(mode);
}
