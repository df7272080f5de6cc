#pragma once

#include "exchange/ByteOutput.h"
#include "exchange/ExchangeFormat.h"

#include <QFileDevice>

#include <memory>

/// A capture that is written: a file, which comes to its place when it is whole, or standard output.
class CaptureSink
{
public:
    enum class Way : quint8 {
        Whole,   ///< the file appears at the end
        Growing, ///< it is there at once, for others to read while it grows
    };

    /// path: "-" for standard output. Null when it cannot be written, or stands there already and is not to be
    /// replaced; error says why.
    static std::unique_ptr<CaptureSink> open(const QString &path, bool isReplaced, Way way, QString &error);

    ByteOutput &bytes() { return m_out; }
    bool flush();
    /// The end. lastTime: in milliseconds since 1970; the file takes it as its time. Below 0: none.
    bool commit(qint64 lastTime, QString &error);

private:
    CaptureSink(QString path, std::unique_ptr<QFileDevice> file);

    const QString m_path;
    std::unique_ptr<QFileDevice> m_file;
    ByteOutput m_out;
};
