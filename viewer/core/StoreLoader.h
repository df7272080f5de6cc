#pragma once

#include "exchange/CaptureInfo.h"
#include "exchange/Findings.h"
#include "viewer/core/BusFrameStore.h"
#include "viewer/core/CaptureStream.h"

#include <QPointer>
#include <QString>
#include <QVector>

#include <functional>
#include <memory>

class QThread;

/// How far a capture has been loaded.
struct LoadProgress
{
    enum class State {
        Loading,
        Following, ///< all was read, and the capture is looked at for more
        Finished,
        Cancelled,
        Failed,    ///< with a text in StoreLoader::error(); what was read before is there
        MemoryFull ///< what was read before is there
    };

    State state = State::Loading;
    qint64 frames = 0;
    qint64 bytes = 0; ///< read
    qint64 size = 0;  ///< bytes of the capture; 0: not known

    bool isRunning() const { return state == State::Loading || state == State::Following; }
};

/// Reads a capture into a store on a thread of its own. All functions are for the thread that made it, and none waits
/// for the file.
class StoreLoader
{
public:
    /// Runs on the loader's thread. findings outlives the stream. Null with a text for the user in error.
    using Open = std::function<std::unique_ptr<CaptureStream>(Findings &findings, QString &error)>;

    /// How often a capture that grows is looked at.
    static constexpr int FollowMs = 500;
    /// Longest time the destructor waits for the thread.
    static constexpr int StopWaitMs = 1000;

    /// Begins to load. follow: stay at the capture's end and read what is added to it.
    StoreLoader(std::shared_ptr<BusFrameStore> store, Open open, bool follow);
    /// Cancels, and takes StopWaitMs at most: a thread that hangs in a call of the system is left to itself.
    ~StoreLoader();
    StoreLoader(const StoreLoader &) = delete;
    StoreLoader &operator=(const StoreLoader &) = delete;

    void cancel();
    /// Has an effect while the loader runs.
    void setFollowing(bool follow);

    LoadProgress progress() const;
    QString error() const;
    /// Complete as soon as frames are in the store.
    CaptureInfo info() const;
    /// What was left out or found wrong so far; of each text the first Findings::MaxKept.
    QVector<Finding> findings() const;
    qint64 findingCount() const;

private:
    struct Load;

    std::shared_ptr<Load> m_load; ///< the thread's, too
    QPointer<QThread> m_thread;
};
