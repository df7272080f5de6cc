#pragma once

#include "capture/FrameRecord.h"
#include "capture/RealTimeSaving.h"

#include <QVector>
#include <QWidget>

#include <chrono>
#include <memory>

class CTableViewCANPrivate;

/// The live table of one CAN tab: one row per received or sent frame, up to the cache size. Frames are queued by
/// append() at any rate; every 500 ms refresh() moves them into the store, repaints the rows on screen and hands them
/// to the thread that writes the real-time file. While such a file is written, frames for which the cache has no room
/// are queued as well, numbered on and written, and dropped after that. GUI thread only.
class CTableViewCAN : public QWidget
{
    Q_OBJECT

public:
    using DataObject = FrameRecord;

    /// Longest time that realTimeSave() waits, when it ends saving, for a file that stands still. What is left is
    /// written later, if the file ever moves on.
    static constexpr std::chrono::milliseconds StopWait = RealTimeSaving::StopWait;

    explicit CTableViewCAN(QWidget *parent = nullptr);
    ~CTableViewCAN() override;

    bool isRealTimeSaving() const;
    /// Whether real-time saving takes a file of this name: it ends with .csv or .txt, in upper or lower case.
    static bool isRealTimePath(const QString &path);
    /// Most frames that the store and the queue may hold together; cuts the store to its oldest count frames.
    void setCacheSize(int count);
    int cacheSize() const;
    /// When on, each refresh that brings new rows scrolls to the bottom.
    void setAutoScroll(bool enabled);
    /// Frames with this 29-bit identifier are dropped by append() with filter on.
    void addFilterId(unsigned int id);
    void clearFilterIds();
    /// Frames in the store (the queue not counted).
    int rowCount() const;
    /// Frames since the last clear() that are not listed because the cache was full, hidden ones not counted.
    quint64 unlistedCount() const;
    /// Writes count rows from the 0-based row first on, numbered as in the table; see save().
    bool saveRange(const QString &path, int first, int count);
    /// Like realTimeSave(false), but does not wait for the file; see waitForFiles().
    void endRealTimeSaving();
    /// Waits at most so long for files whose saving has ended. True when they are complete and on the disk.
    bool waitForFiles(std::chrono::milliseconds time);
    /// What comes between real-time saving and its file from the next start on, for example one that stands still.
    void setTargetWrapper(RealTimeSaving::TargetWrapper wrapper);

signals:
    /// Frames per second transmitted (received ones excepted) and received, once a second.
    void updateRate(int rateT, int rateR);
    /// Real-time saving ended by itself because path could not be written; emitted once, saving is off by then. Also
    /// when saving had been switched off, or on to another path, before the last rows could be written.
    void sig_realTimeSaveFailed(const QString &path);
    /// unlistedCount() has grown; at most once in a refresh.
    void sig_unlistedChanged();

public slots:
    /// Queues one frame; dropped when filter is on and its identifier is hidden, or when the cache is full and nothing
    /// is saved in real time.
    void append(const CTableViewCAN::DataObject &obj, bool filter = false);
    /// Queues a batch in order; the first frame beyond the cache size ends it.
    void append(const QVector<CTableViewCAN::DataObject> &objs, bool filter = false);
    /// Empties the store. Frames still queued appear at the next refresh.
    void clear();
    /// Writes the first count rows (all when -1) in the format of the path's extension: .csv, .txt, .can, .canfd.
    /// False when the extension is another one or the file cannot be written; a file that stood there is then kept.
    bool save(const QString &path, int count = -1);
    /// Starts (after saving all rows held) or stops appending new rows to path, see isRealTimePath(). True when saving
    /// is on afterwards through this call. Stopping waits until all is on the disk, StopWait at most.
    bool realTimeSave(bool enabled, const QString &path);
    /// Timer slot, every 500 ms.
    void refresh();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    std::unique_ptr<CTableViewCANPrivate> m_p;
};
