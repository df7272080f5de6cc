#include "viewer/ViewerSettings.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSettings>
#include <QStandardPaths>

#include <utility>

namespace {

constexpr QLatin1String LanguageKey("language");
constexpr QLatin1String RecentKey("recent");
constexpr QLatin1String GeometryKey("geometry");

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

QString ViewerSettings::language() const
{
    const QString stored = QSettings(file(), QSettings::IniFormat).value(LanguageKey).toString();
    if (stored == QLatin1String("CN") || stored == QLatin1String("EN")) {
        return stored;
    }
    return QLocale::system().language() == QLocale::Chinese ? QStringLiteral("CN") : QStringLiteral("EN");
}

void ViewerSettings::setLanguage(const QString &language) const
{
    QSettings(file(), QSettings::IniFormat).setValue(LanguageKey, language);
}

QStringList ViewerSettings::recentFiles() const
{
    return QSettings(file(), QSettings::IniFormat).value(RecentKey).toStringList().mid(0, MaxRecent);
}

void ViewerSettings::addRecentFile(const QString &path) const
{
    QStringList files = recentFiles();
    const QString absolute = QFileInfo(path).absoluteFilePath();
    files.removeAll(absolute);
    files.prepend(absolute);
    QSettings(file(), QSettings::IniFormat).setValue(RecentKey, QStringList(files.mid(0, MaxRecent)));
}

QByteArray ViewerSettings::windowGeometry() const
{
    return QSettings(file(), QSettings::IniFormat).value(GeometryKey).toByteArray();
}

void ViewerSettings::setWindowGeometry(const QByteArray &geometry) const
{
    QSettings(file(), QSettings::IniFormat).setValue(GeometryKey, geometry);
}
