#include "viewer/core/CaptureDatabases.h"

#include "exchange/database/DatabaseFile.h"
#include "viewer/core/FrameColumns.h"
#include "viewer/core/OpenCapture.h"

#include <QFileInfo>
#include <QThread>

#include <algorithm>
#include <utility>

namespace {

constexpr int StopWaitMs = 1000;
constexpr int MaxHidden = 100; ///< of a database that are told

} // namespace

/// What the thread works on; it shares nothing else.
struct CaptureDatabases::Job
{
    std::vector<Entry> entries;
    std::shared_ptr<const DatabaseSignals> source;

    void run()
    {
        std::vector<DatabaseSignals::Part> parts;
        for (Entry &entry : entries) {
            if (entry.isLoading()) {
                read(entry);
            }
            if (entry.database) {
                parts.push_back(
                    {entry.database, QFileInfo(entry.choice.path).completeBaseName(), entry.choice.channels});
            }
        }
        if (!parts.empty()) {
            source = std::make_shared<const DatabaseSignals>(std::move(parts));
            tellHidden();
        }
    }

private:
    static void read(Entry &entry)
    {
        std::optional<Database> database = readDatabase(entry.choice.path, QString(), entry.error);
        if (database) {
            entry.database = std::make_shared<const Database>(std::move(*database));
        }
    }

    void tellHidden()
    {
        for (Entry &entry : entries) {
            entry.hidden.clear();
        }
        for (const DatabaseSignals::Hidden &hidden : source->hidden()) {
            const auto &part = source->partOf(hidden.message);
            const auto found = std::find_if(entries.begin(), entries.end(),
                                            [&part](const Entry &entry) { return entry.database == part.database; });
            if (found != entries.end() && found->hidden.size() < MaxHidden) {
                found->hidden.append(CaptureDatabases::tr("%1 is not used: frames %2 are %3 of %4")
                                         .arg(source->message(hidden.message).name,
                                              FrameColumns::identifierText(source->keys(hidden.message).first()),
                                              source->message(hidden.by).name, source->partOf(hidden.by).name));
            }
        }
    }
};

CaptureDatabases::CaptureDatabases(OpenCapture &capture, QObject *parent)
    : QObject(parent)
    , m_capture(capture)
{
}

CaptureDatabases::~CaptureDatabases()
{
    if (m_thread != nullptr) {
        m_thread->disconnect(this);
        if (m_thread->wait(StopWaitMs)) {
            delete m_thread.data();
        }
    }
}

void CaptureDatabases::remember(const QString &folder)
{
    const QVector<DatabaseChoice> choices = DatabaseChoices::load(folder, m_capture.path());
    for (const DatabaseChoice &choice : choices) {
        if (indexOf(choice.path) < 0) {
            m_entries.push_back({choice, nullptr, QString(), {}});
        }
    }
    m_folder = folder;
    if (!m_entries.empty()) {
        begin();
    }
}

bool CaptureDatabases::isDatabase(const QString &path)
{
    return path.endsWith(QLatin1String(".dbc"), Qt::CaseInsensitive) ||
           path.endsWith(QLatin1String(".ldf"), Qt::CaseInsensitive);
}

int CaptureDatabases::indexOf(const QString &path) const
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&path](const Entry &entry) { return entry.choice.path == path; });
    return found != m_entries.end() ? static_cast<int>(found - m_entries.begin()) : -1;
}

void CaptureDatabases::add(const QStringList &paths)
{
    for (const QString &path : paths) {
        const QString absolute = QFileInfo(path).absoluteFilePath();
        const int index = indexOf(absolute);
        if (index >= 0) {
            m_entries[static_cast<std::size_t>(index)].database = nullptr;
            m_entries[static_cast<std::size_t>(index)].error.clear();
        } else if (m_entries.size() < DatabaseChoices::MaxCount) {
            m_entries.push_back({{absolute, {}}, nullptr, QString(), {}});
        }
    }
    change();
}

void CaptureDatabases::remove(int index)
{
    m_entries.erase(m_entries.begin() + index);
    change();
}

void CaptureDatabases::setChannels(int index, QVector<int> channels)
{
    m_entries[static_cast<std::size_t>(index)].choice.channels = std::move(channels);
    change();
}

void CaptureDatabases::reload()
{
    for (Entry &entry : m_entries) {
        entry.database = nullptr;
        entry.error.clear();
    }
    begin();
}

void CaptureDatabases::change()
{
    QVector<DatabaseChoice> choices;
    for (const Entry &entry : m_entries) {
        choices.append(entry.choice);
    }
    if (!m_folder.isEmpty() && !DatabaseChoices::save(m_folder, m_capture.path(), choices)) {
        emit sig_notKept();
    }
    begin();
}

void CaptureDatabases::begin()
{
    m_isChanged = m_thread != nullptr;
    if (!m_isChanged) {
        m_job = std::make_shared<Job>(Job{m_entries, nullptr});
        m_thread = QThread::create([job = m_job] { job->run(); });
        connect(m_thread, &QThread::finished, this, &CaptureDatabases::slot_finished);
        m_thread->start();
    }
    emit sig_changed();
}

void CaptureDatabases::slot_finished()
{
    m_thread->wait(); // its last steps behind the signal
    delete m_thread.data();
    if (m_isChanged) { // what was read may be of a file that is to be read again
        begin();
        return;
    }
    int failed = -1;
    for (Entry &read : m_job->entries) {
        const int index = indexOf(read.choice.path);
        if (index < 0) {
            continue;
        }
        Entry &entry = m_entries[static_cast<std::size_t>(index)];
        failed = entry.isLoading() && !read.error.isEmpty() ? index : failed;
        entry.database = read.database;
        entry.error = read.error;
        entry.hidden = read.hidden;
    }
    m_source = m_job->source;
    m_job.reset();
    m_capture.setSignalSource(m_source);
    emit sig_changed();
    emit sig_loaded(failed);
}
