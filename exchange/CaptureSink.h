#pragma once

#include "exchange/ByteOutput.h"

#include <QFileDevice>
#include <QString>

#include <memory>

/// A capture that is written: a file, which comes to its place when it is whole, or what is open already.
class CaptureSink
{
public:
    enum class Way : quint8 {
        Whole,   ///< the file appears at the end, in place of one that stood there
        Growing, ///< it is there at once, for others to read while it grows
    };

    /// Null when it cannot be written; error says why, in the user's language.
    static std::unique_ptr<CaptureSink> open(const QString &path, Way way, QString &error);
    /// On a file that is open for writing, such as standard output. name: for messages.
    CaptureSink(QString name, std::unique_ptr<QFileDevice> file);

    ByteOutput &bytes() { return m_out; }
    /// False when what was written so far did not get through.
    bool flush();
    /// The end. lastTime: in milliseconds since 1970; the file takes it as its time. Below 0: none.
    bool commit(qint64 lastTime, QString &error);

private:
    const QString m_name;
    std::unique_ptr<QFileDevice> m_file;
    ByteOutput m_out;
    bool m_takesTime = false;
};
