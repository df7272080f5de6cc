#pragma once

#include "viewer/core/DatabaseChoices.h"
#include "viewer/core/DatabaseSignals.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QThread>

class OpenCapture;

/// The databases of a capture that is open. They are read on a thread, and what they describe becomes the capture's
/// SignalSource. A file that cannot be read keeps its place and says why; the others work.
class CaptureDatabases : public QObject
{
    Q_OBJECT

public:
    struct Entry
    {
        DatabaseChoice choice;
        std::shared_ptr<const Database> database; ///< null while it is read, and where it cannot be
        QString error;                            ///< in the user's language; why there is none
        QStringList hidden; ///< messages whose frames are taken to be another one's, in the user's language

        bool isLoading() const { return database == nullptr && error.isEmpty(); }
    };

    /// capture must outlive this.
    explicit CaptureDatabases(OpenCapture &capture, QObject *parent = nullptr);
    /// Waits 1000 ms at most; a thread that hangs in the system is left to itself.
    ~CaptureDatabases() override;

    /// Takes those that the capture had the last time, and keeps what changes from now on in a file of folder.
    void remember(const QString &folder);

    const std::vector<Entry> &entries() const { return m_entries; }
    /// Null without a database that could be read.
    const std::shared_ptr<const DatabaseSignals> &source() const { return m_source; }
    bool isLoading() const { return m_thread != nullptr; }

    /// A file that is there already is read again. Files above DatabaseChoices::MaxCount are left out.
    void add(const QStringList &paths);
    void remove(int index);
    void setChannels(int index, QVector<int> channels);
    /// Reads all files again.
    void reload();
    /// Whether a file's name is one of a database.
    static bool isDatabase(const QString &path);

signals:
    /// Also while entries are being read.
    void sig_changed();
    /// All were read: the index of an entry that failed since the last time, -1: none.
    void sig_loaded(int failed);
    void sig_notKept(); ///< the file that remembers them cannot be written

private:
    struct Job;

    int indexOf(const QString &path) const;
    void change();
    void begin();
    void slot_finished();

    OpenCapture &m_capture;
    QString m_folder;
    std::vector<Entry> m_entries;
    std::shared_ptr<const DatabaseSignals> m_source;
    std::shared_ptr<Job> m_job;
    QPointer<QThread> m_thread;
    bool m_isChanged = false; ///< since the job began
};
