#include "app/SingleInstance.h"

#include <QDir>
#include <QFileInfo>

namespace {
constexpr int LockWaitMs = 100;
constexpr int SegmentBytes = 1;
constexpr uint NoOwner = uint(-2); ///< what Qt answers where files have no owner's number
} // namespace

SingleInstance::SingleInstance(const QString &key)
    : m_lock(QDir::temp().filePath(key + QStringLiteral(".lock")))
    , m_segment(key)
    , m_isHeld(hold())
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
    if (m_isHeld) {
        m_segment.detach();
        m_lock.unlock();
        m_isHeld = false;
    }
}

bool SingleInstance::hold()
{
    if (!m_lock.tryLock(LockWaitMs)) {
        if (m_lock.error() != QLockFile::LockFailedError) {
            qWarning("The program cannot start: no lock file can be written in %s", qPrintable(QDir::tempPath()));
        }
        return false;
    }
    if (createSegment()) {
        return true;
    }
    m_lock.unlock();
    return false;
}

/// On Unix a segment survives a process that did not end by itself, until the last one that is attached detaches.
bool SingleInstance::createSegment()
{
    if (m_segment.create(SegmentBytes)) {
        return true;
    }
    if (m_segment.error() == QSharedMemory::AlreadyExists && m_segment.attach()) {
        m_segment.detach();
    }
    return m_segment.create(SegmentBytes);
}
