#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>

/// What the viewer keeps from one run to the next, in the user's configuration folder. A damaged file is as good as
/// none.
class ViewerSettings
{
public:
    static constexpr int MaxRecent = 10;

    /// The user's own.
    ViewerSettings();
    explicit ViewerSettings(QString folder);

    /// "CN" or "EN"; where nothing is stored, that of the system.
    QString language() const;
    void setLanguage(const QString &language) const;
    /// Paths, the last one first.
    QStringList recentFiles() const;
    void addRecentFile(const QString &path) const;
    QByteArray windowGeometry() const;
    void setWindowGeometry(const QByteArray &geometry) const;
    QString bookmarkFolder() const;
    /// Of BusLoadMemory.
    QString busLoadFile() const;
    QString databaseFolder() const;
    /// Paths of databases that were added to captures, the last one first.
    QStringList recentDatabases() const;
    void addRecentDatabase(const QString &path) const;
    /// Anything else, by a name of its own.
    QVariant value(const char *key) const;
    void setValue(const char *key, const QVariant &value) const;

private:
    QString file() const;
    QStringList recent(const char *key) const;
    void addRecent(const char *key, const QString &path) const;

    QString m_folder;
};
