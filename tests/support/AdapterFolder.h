#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

/// A working directory of its own with a virtual-adapter.json: the virtual adapter, loaded while this exists, works by
/// that file. The old working directory comes back at the end.
class AdapterFolder
{
public:
    /// Ends the program when the folder or the file cannot be made.
    explicit AdapterFolder(const QByteArray &json);
    ~AdapterFolder();
    AdapterFolder(const AdapterFolder &) = delete;
    AdapterFolder &operator=(const AdapterFolder &) = delete;

    QString filePath(const QString &name) const { return m_folder.filePath(name); }

private:
    QString m_previous;
    QTemporaryDir m_folder;
};
