#pragma once

#include "app/HttpClient.h"
#include "app/Release.h"
#include "device/FirmwareQuery.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <optional>

/// The product code under which this program itself is published.
QString programProductCode();

/// Asks the update server for the newest release under a product code, as HttpClient fetches an address. A query also
/// fails on an answer of more than 1 MiB or that is no JSON object, and when it takes longer than its limit.
class HttpServer : public QObject
{
    Q_OBJECT

public:
    static constexpr int LimitMs = 30000;

    /// baseUrl: http or https, with or without a path; with any other one every query fails at once.
    explicit HttpServer(QString baseUrl, QObject *parent = nullptr);

    /// Asks and returns at once; sig_finished tells the outcome, never from within this call. A query that still runs
    /// is aborted, as at the end of this object. An answer that comes after the limit is dropped.
    void start(const QString &productCode, int limitMs = LimitMs);
    /// Ends a query and returns at once; sig_finished is not emitted for it any more.
    void abort() { m_client.cancel(); }
    bool isRunning() const { return m_client.isRunning(); }

    /// Asks and waits for the answer in an event loop of its own: for threads other than the GUI's, also such that Qt
    /// does not know. Nothing when the query failed, and within 500 ms of isCancelled becoming true. May be called on
    /// any thread, also while a query of start() runs.
    std::optional<Release> query(const QString &productCode, const std::atomic<bool> &isCancelled) const;

signals:
    /// release: empty unless ok; keys that the answer lacks, or that are no texts, are empty.
    void sig_finished(bool ok, const Release &release);

private:
    const QString m_baseUrl;
    HttpClient m_client;
};

/// The query that the firmware monitor is given.
FirmwareQuery firmwareQuery(const QString &baseUrl);
