#pragma once

#include "device/CallQueue.h"
#include "viewer/core/Bookmarks.h"
#include "viewer/core/Filter.h"
#include "viewer/core/FilterRun.h"
#include "viewer/core/OverviewRun.h"
#include "viewer/core/RowSet.h"
#include "viewer/core/StoreLoader.h"
#include "viewer/core/WorkerThreads.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>

/// A capture that is open: what was loaded of it, the rows that its filter passes and its overview, which all grow on
/// threads of their own. Lives on the GUI thread, which never waits for them.
class OpenCapture : public QObject
{
    Q_OBJECT

public:
    OpenCapture(QString path, const StoreLoader::Open &open, bool follow, QObject *parent = nullptr);
    ~OpenCapture() override;

    const QString &path() const { return m_path; }
    const BusFrameStore &store() const { return *m_store; }
    /// For threads that may outlive this.
    std::shared_ptr<const BusFrameStore> sharedStore() const { return m_store; }
    CaptureInfo info() const { return m_loader->info(); }
    StoreLoader &loader() { return *m_loader; }
    const StoreLoader &loader() const { return *m_loader; }
    OverviewRun &overview() { return *m_overview; }
    const OverviewRun &overview() const { return *m_overview; }

    /// Shows the rows that pass, as far as they are known; they come back with sig_rowsAdded.
    void setFilter(const Filter &filter);
    const Filter &filter() const { return m_filter; }
    bool isFiltered() const { return !m_filter.passesAll(); }
    bool isFiltering() const { return isFiltered() && m_filterRun->covered() < m_store->size(); }

    /// The rows that are shown: places 0 to rowCount() - 1. rowCount() changes only right before sig_rowsReset and
    /// sig_rowsAdded.
    qint64 rowCount() const { return m_rowCount; }
    qint64 rowAt(qint64 place) const { return isFiltered() ? m_rows.at(place) : place; }
    /// Of the first row that is shown from row on; rowCount() when there is none.
    qint64 placeOf(qint64 row) const;

    /// Looks from row on, on a thread; sig_found tells. A search that is going on ends.
    void find(const Filter &filter, qint64 row, bool isBackward);

    /// The row that times since the mark count from; -1: none.
    qint64 mark() const { return m_mark; }
    void setMark(qint64 row) { m_mark = row; }
    /// Names and values of signals; null without a database. Filters that were made of the one before go on with it.
    const std::shared_ptr<const SignalSource> &signalSource() const { return m_signalSource; }
    void setSignalSource(std::shared_ptr<const SignalSource> source);
    Bookmarks &bookmarks() { return m_bookmarks; }
    const Bookmarks &bookmarks() const { return m_bookmarks; }

    /// Seconds that loading still takes, by what it took so far; -1 in the first second, and where that
    /// cannot be told.
    int secondsLeft() const;

signals:
    void sig_rowsReset();
    /// Behind those that were there, of which there were before.
    void sig_rowsAdded(qint64 before);
    void sig_progressChanged();
    void sig_overviewChanged();
    void sig_signalSourceChanged();
    void sig_found(qint64 row); ///< -1: there is none

private slots:
    void slot_look();

private:
    void takeRows();

    QString m_path;
    std::shared_ptr<BusFrameStore> m_store;
    Filter m_filter;
    RowSet m_rows;
    qint64 m_rowCount = 0;
    qint64 m_mark = -1;
    std::shared_ptr<const SignalSource> m_signalSource;
    Bookmarks m_bookmarks;
    QElapsedTimer m_sinceBegin;
    QTimer m_timer;
    CallQueue m_calls; ///< from the threads below
    std::shared_ptr<std::atomic<bool>> m_stopFinding;
    // Below what their threads use.
    std::unique_ptr<StoreLoader> m_loader;
    std::unique_ptr<FilterRun> m_filterRun;
    std::unique_ptr<OverviewRun> m_overview;
    WorkerThreads m_findThread; ///< the last member: it ends before the others go
};
