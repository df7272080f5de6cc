#include "app/SingleInstance.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QStringList>

namespace {
constexpr int LockWaitMs = 100;
constexpr int SegmentBytes = 1;
constexpr int SegmentAttempts = 20;
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

/// On Unix a segment survives a process that did not end by itself, until the last one that is attached detaches. Its
/// key is made from 16 bits of the number of a file of its own: where that file was not there before, a segment with
/// the same key is another program's, and a file with another number is taken. The one with the number that cannot be
/// used stays until then, so that the next file gets another.
bool SingleInstance::createSegment()
{
    QStringList taken;
    const auto removeTaken = qScopeGuard([&taken] {
        for (const QString &name : taken) {
            QFile::remove(name);
        }
    });
    const QString keyFile = m_segment.nativeKey();
    for (int attempt = 0; attempt < SegmentAttempts; ++attempt) {
        const bool wasThere = QFile::exists(keyFile);
        if (m_segment.create(SegmentBytes)) {
            return true;
        }
        if (m_segment.error() != QSharedMemory::AlreadyExists) {
            return false;
        }
        if (wasThere) {
            if (!m_segment.attach() || !m_segment.detach() || QFile::exists(keyFile)) {
                return false; // somebody uses it
            }
        } else {
            const QString aside = keyFile + QStringLiteral(".%1").arg(attempt);
            if (!QFile::rename(keyFile, aside)) {
                return false;
            }
            taken.append(aside);
        }
    }
    return false;
}
