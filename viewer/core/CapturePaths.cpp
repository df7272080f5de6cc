#include "viewer/core/CapturePaths.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

namespace CapturePaths {

QString absolute(const QString &capture)
{
    const QFileInfo file(capture);
    const QString canonical = file.canonicalFilePath();
    return canonical.isEmpty() ? file.absoluteFilePath() : canonical;
}

QString fileOf(const QString &folder, const QString &capture)
{
    const QByteArray name = QCryptographicHash::hash(absolute(capture).toUtf8(), QCryptographicHash::Sha1).toHex();
    return QDir(folder).filePath(QString::fromLatin1(name) + QStringLiteral(".json"));
}

} // namespace CapturePaths
