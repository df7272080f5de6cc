#include "viewer/ViewerSettings.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSettings>
#include <QStandardPaths>

#include <utility>

namespace {

constexpr const char *LanguageKey = "language";
constexpr const char *RecentKey = "recent";
constexpr const char *GeometryKey = "geometry";

} // namespace

ViewerSettings::ViewerSettings()
    : ViewerSettings(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                     QStringLiteral("/X9Viewer"))
{
}

ViewerSettings::ViewerSettings(QString folder)
    : m_folder(std::move(folder))
{
}

QString ViewerSettings::file() const
{
    return QDir(m_folder).filePath(QStringLiteral("X9Viewer.ini"));
}

QString ViewerSettings::bookmarkFolder() const
{
    return QDir(m_folder).filePath(QStringLiteral("bookmarks"));
}

QString ViewerSettings::busLoadFile() const
{
    return QDir(m_folder).filePath(QStringLiteral("busload.ini"));
}

QString ViewerSettings::language() const
{
    QString stored = QSettings(file(), QSettings::IniFormat).value(QLatin1String(LanguageKey)).toString();
    if (stored == QLatin1String("CN") || stored == QLatin1String("EN")) {
        return stored;
    }
    return QLocale::system().language() == QLocale::Chinese ? QStringLiteral("CN") : QStringLiteral("EN");
}

void ViewerSettings::setLanguage(const QString &language) const
{
    QSettings(file(), QSettings::IniFormat).setValue(QLatin1String(LanguageKey), language);
}

QStringList ViewerSettings::recentFiles() const
{
    return QSettings(file(), QSettings::IniFormat).value(QLatin1String(RecentKey)).toStringList().mid(0, MaxRecent);
}

void ViewerSettings::addRecentFile(const QString &path) const
{
    QStringList files = recentFiles();
    const QString absolute = QFileInfo(path).absoluteFilePath();
    files.removeAll(absolute);
    files.prepend(absolute);
    QSettings(file(), QSettings::IniFormat).setValue(QLatin1String(RecentKey), QStringList(files.mid(0, MaxRecent)));
}

QByteArray ViewerSettings::windowGeometry() const
{
    return QSettings(file(), QSettings::IniFormat).value(QLatin1String(GeometryKey)).toByteArray();
}

void ViewerSettings::setWindowGeometry(const QByteArray &geometry) const
{
    QSettings(file(), QSettings::IniFormat).setValue(QLatin1String(GeometryKey), geometry);
}
