#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

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

private:
    QString file() const;

    QString m_folder;
};
