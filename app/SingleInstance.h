#pragma once

#include <QLockFile>
#include <QSharedMemory>
#include <QString>

/// Holds, as long as it lives, what only one process of a user may hold: a lock file in the temporary folder and a
/// shared memory segment of one byte, both named after the key. What a process left behind that crashed or was killed
/// is taken over.
class SingleInstance
{
public:
    explicit SingleInstance(const QString &key = userKey());
    ~SingleInstance();
    SingleInstance(const SingleInstance &) = delete;
    SingleInstance &operator=(const SingleInstance &) = delete;

    /// "X9CAN"; on systems whose temporary folder is shared between users, with the user's number behind it, as what
    /// one user left behind there cannot be removed by another.
    static QString userKey();

    /// False when another process holds it, or when it cannot be held at all.
    bool isHeld() const { return m_isHeld; }
    /// Lets another process have it.
    void release();

private:
    bool hold();
    bool createSegment();

    QLockFile m_lock;
    QSharedMemory m_segment;
    bool m_isHeld = false;
};
