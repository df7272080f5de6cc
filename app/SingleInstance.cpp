#include "app/SingleInstance.h"

#include "app/Process.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QStringList>
#include <QSysInfo>

namespace {
constexpr int LockWaitMs = 100;
constexpr int SegmentBytes = 1;
constexpr int SegmentAttempts = 20;
constexpr uint NoOwner = uint(-2); ///< what Qt answers where files have no owner's number

/// Also where it does not exist: Qt then means the working directory, which no two programs need have in common.
QString temporaryFolder()
{
    const QString folder = QDir::tempPath();
    return folder.isEmpty() ? qEnvironmentVariable("TMPDIR") : folder;
}
} // namespace

SingleInstance::SingleInstance(const QString &key)
    : m_lockFile(QDir(temporaryFolder()).filePath(key + QStringLiteral(".lock")))
    , m_lock(m_lockFile)
    , m_state(hold(key))
{
}

SingleInstance::~SingleInstance()
{
    release();
}

QString SingleInstance::userKey()
{
    const QString name = QStringLiteral("X9CAN");
    const uint user = QFileInfo(QDir::homePath()).ownerId();
    return user == NoOwner ? name : name + QLatin1Char('-') + QString::number(user);
}

void SingleInstance::release()
{
    if (isHeld()) {
        m_segment->detach();
        m_lock.unlock();
        m_state = State::Released;
    }
}

QString SingleInstance::problem() const
{
    const QString file = QDir::toNativeSeparators(m_lockFile);
    if (m_lock.error() == QLockFile::NoError) {
        return tr("The system gives no shared memory.") + QLatin1Char('\n') + m_segment->errorString();
    }
    if (m_lock.error() != QLockFile::LockFailedError) {
        return tr("The lock file %1 cannot be written.").arg(file) + QLatin1Char('\n') +
               tr("Check that the folder for temporary files exists and that you may write to it.");
    }
    return tr("The lock file %1 stands in the way, and no running X9CAN holds it.").arg(file) + QLatin1Char('\n') +
           tr("Remove it and start the program again.");
}

SingleInstance::State SingleInstance::hold(const QString &key)
{
    State state = takeLock();
    if (state == State::Held) {
        state = createSegment(QSharedMemory(key).nativeKey());
        if (state != State::Held) {
            m_lock.unlock();
        }
    }
    return state;
}

SingleInstance::State SingleInstance::takeLock()
{
    if (m_lock.tryLock(LockWaitMs)) {
        return State::Held;
    }
    qint64 holder = 0;
    QString host;
    QString name;
    if (m_lock.error() != QLockFile::LockFailedError || !m_lock.getLockInfo(&holder, &host, &name)) {
        return State::Blocked;
    }
    const QString program = processName(holder);
    // Another program's process may have got the number that stands in the lock. QLockFile sees that by itself only
    // where the system tells it the names of processes.
    const bool isStrangers = !program.isEmpty() && host == QSysInfo::machineHostName() && !name.startsWith(program);
    if (isStrangers && m_lock.removeStaleLockFile()) {
        return takeLock();
    }
    const bool isOurs = !program.isEmpty() && program == processName(QCoreApplication::applicationPid());
    return isOurs ? State::Running : State::Blocked;
}

/// On Unix a segment survives a process that did not end by itself, until the last one that is attached detaches. Its
/// key is made from 16 bits of the number of a file of its own: where that file was not there before, a segment with
/// the same key is another program's, and a file with another number is taken. The one with the number that cannot be
/// used stays until then, so that the next file gets another.
/// The key is a native one: with others, Qt guards the segment, which the lock file does already, with a System V
/// semaphore, and where another user has one with the same key, the segment is refused for good.
SingleInstance::State SingleInstance::createSegment(const QString &keyFile)
{
    QStringList taken;
    const auto removeTaken = qScopeGuard([&taken] {
        for (const QString &name : taken) {
            QFile::remove(name);
        }
    });
    for (int attempt = 0; attempt < SegmentAttempts; ++attempt) {
        const bool wasThere = QFile::exists(keyFile);
        m_segment.emplace().setNativeKey(keyFile); // one that failed once fails again
        if (m_segment->create(SegmentBytes)) {
            return State::Held;
        }
        if (m_segment->error() != QSharedMemory::AlreadyExists) {
            return State::Blocked;
        }
        if (wasThere) {
            m_segment.emplace().setNativeKey(keyFile);
            if (!m_segment->attach() || !m_segment->detach() || QFile::exists(keyFile)) {
                return State::Running; // somebody uses it
            }
        } else {
            const QString aside = keyFile + QStringLiteral(".%1").arg(attempt);
            if (!QFile::rename(keyFile, aside)) {
                return State::Running; // no file: the key is the name itself
            }
            taken.append(aside);
        }
    }
    return State::Blocked;
}
