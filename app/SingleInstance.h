#pragma once

#include <QCoreApplication>
#include <QLockFile>
#include <QSharedMemory>
#include <QString>

#include <optional>

/// Holds, as long as it lives, what only one process of a user may hold: a lock file in the temporary folder and a
/// shared memory segment of one byte, both named after the key. What a process left behind that crashed or was killed
/// is taken over.
class SingleInstance
{
    Q_DECLARE_TR_FUNCTIONS(SingleInstance)

public:
    enum class State {
        Held,
        Running, ///< another process of the same program holds it
        Blocked, ///< it cannot be held, see problem()
        Released
    };

    explicit SingleInstance(const QString &key = userKey());
    ~SingleInstance();
    Q_DISABLE_COPY_MOVE(SingleInstance)

    /// "X9CAN"; on systems whose temporary folder is shared between users, with the user's number behind it, as what
    /// one user left behind there cannot be removed by another.
    static QString userKey();

    State state() const { return m_state; }
    bool isHeld() const { return m_state == State::Held; }
    /// In the user's language: why it cannot be held and what to do about it. Only while it is blocked.
    QString problem() const;
    /// Lets another process have it.
    void release();

private:
    State hold(const QString &key);
    State takeLock();
    State createSegment(const QString &keyFile);

    QString m_lockFile;
    QLockFile m_lock;
    std::optional<QSharedMemory> m_segment;
    State m_state;
};
