#pragma once

#include "exchange/ByteInput.h"
#include "exchange/ExchangeFormat.h"
#include "exchange/Findings.h"

#include <QElapsedTimer>
#include <QIODevice>

/// A capture that is read: a file, or standard input.
class CaptureSource
{
public:
    struct Options
    {
        const ExchangeFormat *format = nullptr; ///< null: the kind is found out
        QDateTime date;                         ///< of the last frame; invalid: the file's last change
        bool isFollowed = false;                ///< the file grows: its end is not the capture's
        double idleSeconds = 0; ///< following ends when so long nothing has come; 0: only when interrupted
    };

    /// path: "-" for standard input. Null when it cannot be read; error says why.
    static std::unique_ptr<CaptureSource> open(const QString &path, const Options &options, QString &error);

    /// As FrameReader::read().
    int read(BusFrame *frames, int room);
    /// For a followed capture of which no more is there: waits a moment. False when following has ended; what is left
    /// must still be read then.
    bool waitForMore();
    bool isFollowed() const { return m_in.isGrowing(); }
    /// The file is left alone from now on, so that another one can take its place.
    void close() { m_device->close(); }
    /// Reading failed before the end.
    bool isBroken() const { return m_in.isBroken(); }

    const QString &path() const { return m_path; }
    const ExchangeFormat &format() const { return *m_format; }
    const CaptureInfo &info() const { return m_reader->info(); }
    Findings &findings() { return m_findings; }
    qint64 offset() const { return m_in.offset(); }
    qint64 size() const { return m_device->isSequential() ? 0 : m_device->size(); } ///< 0: not known

private:
    CaptureSource(QString path, Options options);
    bool openFile(QString &error);
    bool findFormat(QString &error);

    const QString m_path;
    const Options m_options;
    const std::unique_ptr<QIODevice> m_device;
    ByteInput m_in{*m_device};
    Findings m_findings;
    const ExchangeFormat *m_format = nullptr;
    std::unique_ptr<FrameReader> m_reader;
    QElapsedTimer m_idle;
};
