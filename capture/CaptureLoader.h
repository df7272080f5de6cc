#pragma once

#include "capture/CaptureReader.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QVector>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

class QThread;

/// Reads captures on a thread of their own, one at a time, so that the event loop of the thread it lives on keeps
/// running. A reading that is stopped is let go: its thread ends by itself, at the latest when the system call it is in
/// returns (a file on a drive that does not answer), and nothing of it is heard of again.
class CaptureLoader : public QObject
{
    Q_OBJECT

public:
    /// Runs on the thread; must end soon after stop is set.
    using Reader = std::function<std::optional<CaptureContent>(const QString &path, const std::atomic<bool> &stop)>;
    using Done = std::function<void(std::optional<CaptureContent> content)>;

    /// Longest time the destructor waits for threads that were let go.
    static constexpr int StopWaitMs = 1000;
    /// With as many threads that were let go and still run, nothing new is read.
    static constexpr int MaxLetGo = 4;

    explicit CaptureLoader(Reader reader = [](const QString &path, const std::atomic<bool> &stop) {
        return readCapture(path, &stop);
    });
    /// Stops, and takes StopWaitMs at most: a thread that has not ended by then is left to itself with all it needs.
    ~CaptureLoader() override;

    /// Reads a file in place of one that is being read. done is called from the event loop, with nothing when the file
    /// cannot be read. False, and done is not called, when MaxLetGo is reached.
    bool start(const QString &path, Done done);
    /// Returns at once; done will not be called.
    void stop();
    bool isLoading() const { return m_load != nullptr; }

private:
    struct Load;

    void finish(const std::shared_ptr<Load> &load);

    Reader m_reader;
    Done m_done;
    std::shared_ptr<Load> m_load; ///< the one that runs; its thread's, too
    QPointer<QThread> m_thread;   ///< of that; goes by itself when it has finished
    QVector<QPointer<QThread>> m_letGo;
};
