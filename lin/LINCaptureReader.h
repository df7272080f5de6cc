#pragma once

#include "lin/LINCapture.h"

#include <QFile>
#include <QObject>
#include <QTimer>

/// Reads a capture file on the event loop, SliceMs at a time, so that the window stays alive however large the file is.
/// One file at a time; what is appended to it meanwhile is not read.
class LINCaptureReader : public QObject
{
    Q_OBJECT

public:
    static constexpr int SliceMs = 20;

    explicit LINCaptureReader(QObject *parent = nullptr);

    /// False when the file cannot be opened for reading, or is no regular file; nothing is emitted then. Otherwise
    /// sig_finished() comes once, for a file that takes no longer than a slice before this returns. A reading under way
    /// is given up.
    bool start(const QString &path);
    /// sig_finished() will not come.
    void cancel();
    bool isReading() const { return m_timer.isActive(); }

signals:
    /// isCapture false: the file is no capture, or reading it failed; frames is empty then.
    void sig_finished(const QVector<CTableViewLIN::DataObject> &frames, bool isCapture);

private:
    void readSlice();

    QFile m_file;
    LINCaptureParser m_parser;
    qint64 m_unread = 0; ///< bytes, of those that the file had at the beginning
    QTimer m_timer;      ///< runs while a file is read
};
