#pragma once

#include "device/CallQueue.h"
#include "viewer/core/SeriesCsv.h"
#include "viewer/core/WorkerThreads.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

class PlotArea;

/// Writes what a plot shows into files. A file that cannot be written whole is not left behind, and one that was there
/// stays.
class PlotExport : public QObject
{
    Q_OBJECT

public:
    struct Curve
    {
        QString name;
        std::shared_ptr<const Series> series;
    };

    explicit PlotExport(QObject *parent = nullptr);
    /// Ends a file that is being written, which is not left behind.
    ~PlotExport() override;

    // Each draws or copies at once what it needs, and writes on a thread of its own; sig_finished tells the end. One
    // that is still being written is stopped.

    /// As wide as the area on the screen, with twice as many pixels.
    void savePng(PlotArea &area, const QString &path, bool isWhole);
    /// On a page of A4, landscape.
    void savePdf(PlotArea &area, const QString &path, bool isWhole);
    /// The series must not change until the end.
    void saveCsv(std::vector<Curve> curves, const QString &path, const SeriesCsvSection &section);
    bool isRunning() const { return m_running > 0; }
    void cancel();

signals:
    /// error: empty when all was written.
    void sig_finished(const QString &path, const QString &error);

private:
    /// Writes into a device; false when that did not work, with or without a text in error.
    using Writer = std::function<bool(QIODevice &out, const std::atomic<bool> &stop, QString &error)>;
    void save(const QString &path, Writer writer);
    void finish(const QString &path, const QString &error);

    int m_running = 0; ///< with those that are being stopped
    std::shared_ptr<std::atomic<bool>> m_stop;
    CallQueue m_calls;      ///< from the threads below
    WorkerThreads m_thread; ///< the last member: it ends before the others go
};
