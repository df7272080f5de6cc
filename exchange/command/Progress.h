#pragma once

#include <QElapsedTimer>
#include <QtGlobal>

/// How far the command is, on the terminal, when it takes longer than a second.
class Progress
{
public:
    Progress();
    ~Progress();
    Q_DISABLE_COPY_MOVE(Progress)

    /// bytes read of size ones; size 0: it is not known.
    void tell(qint64 bytes, qint64 size);

private:
    bool m_isShown;
    bool m_isWritten = false;
    qint64 m_next = 1000; ///< milliseconds
    QElapsedTimer m_clock;
};
