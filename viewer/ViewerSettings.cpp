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
constexpr const char *DatabasesKey = "databases";
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

QString ViewerSettings::databaseFolder() const
{
    return QDir(m_folder).filePath(QStringLiteral("databases"));
}

QStringList ViewerSettings::recentDatabases() const
{
    return recent(DatabasesKey);
}

void ViewerSettings::addRecentDatabase(const QString &path) const
{
    addRecent(DatabasesKey, path);
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
    return recent(RecentKey);
}

void ViewerSettings::addRecentFile(const QString &path) const
{
    addRecent(RecentKey, path);
}

QStringList ViewerSettings::recent(const char *key) const
{
    return QSettings(file(), QSettings::IniFormat).value(QLatin1String(key)).toStringList().mid(0, MaxRecent);
}

void ViewerSettings::addRecent(const char *key, const QString &path) const
{
    QStringList files = recent(key);
    const QString absolute = QFileInfo(path).absoluteFilePath();
    files.removeAll(absolute);
    files.prepend(absolute);
    QSettings(file(), QSettings::IniFormat).setValue(QLatin1String(key), QStringList(files.mid(0, MaxRecent)));
}

QByteArray ViewerSettings::windowGeometry() const
{
    return QSettings(file(), QSettings::IniFormat).value(QLatin1String(GeometryKey)).toByteArray();
}

void ViewerSettings::setWindowGeometry(const QByteArray &geometry) const
{
    QSettings(file(), QSettings::IniFormat).setValue(QLatin1String(GeometryKey), geometry);
}

QVariant ViewerSettings::value(const char *key) const
{
    return QSettings(file(), QSettings::IniFormat).value(QLatin1String(key));
}

void ViewerSettings::setValue(const char *key, const QVariant &value) const
{
    QSettings(file(), QSettings::IniFormat).setValue(QLatin1String(key), value);
}
