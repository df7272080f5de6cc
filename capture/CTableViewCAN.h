#pragma once

#include "capture/FrameRecord.h"

#include <QVector>
#include <QWidget>

#include <memory>

class CTableViewCANPrivate;

/// The live table of one CAN tab: one row per received or sent frame, up to the cache size. Frames are queued by
/// append() at any rate; every 500 ms refresh() moves them into the store, repaints the rows on screen and writes them
/// to the real-time file. GUI thread only.
class CTableViewCAN : public QWidget
{
    Q_OBJECT

public:
    using DataObject = FrameRecord;

    explicit CTableViewCAN(QWidget *parent = nullptr);
    ~CTableViewCAN() override;

    bool isRealTimeSaving() const;
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
    /// Writes count rows from the 0-based row first on, numbered as in the table; see save().
    bool saveRange(const QString &path, int first, int count);

signals:
    /// Frames per second transmitted (received ones excepted) and received, once a second.
    void updateRate(int rateT, int rateR);
    /// Real-time saving ended by itself because path could not be written; emitted once, saving is off by then.
    void sig_realTimeSaveFailed(const QString &path);

public slots:
    /// Queues one frame; dropped when filter is on and its identifier is hidden, or when the cache is full.
    void append(const CTableViewCAN::DataObject &obj, bool filter = false);
    /// Queues a batch in order; the first frame beyond the cache size ends it.
    void append(const QVector<CTableViewCAN::DataObject> &objs, bool filter = false);
    /// Empties the store. Frames still queued appear at the next refresh.
    void clear();
    /// Writes the first count rows (all when -1) in the format of the path's extension: .csv, .txt, .can, .canfd.
    /// False when the extension is another one or the file cannot be written; a file that stood there is then kept.
    bool save(const QString &path, int count = -1);
    /// Starts (after saving all rows held) or stops appending new rows to path. True when saving is on afterwards
    /// through this call.
    bool realTimeSave(bool enabled, const QString &path);
    /// Timer slot, every 500 ms.
    void refresh();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    std::unique_ptr<CTableViewCANPrivate> m_p;
};
