#include "app/SingleInstance.h"
#include "tests/support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QSharedMemory>
#include <QTemporaryDir>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <sys/ipc.h>
#include <sys/shm.h>
#endif

class tst_SingleInstance : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    static void isNamedAfterTheProgram();
    static void holdsOnce();
    static void isFreeAfterRelease();
    static void holdsTheSegmentToo();
#ifdef Q_OS_UNIX
    void holdsBesideForeignSegments();
    void needsNoSemaphore();
#endif
    static void cannotHoldWithoutATemporaryFolder();

private:
    QTemporaryDir m_folder;
};

void tst_SingleInstance::initTestCase()
{
    qputenv("TMPDIR", QFile::encodeName(m_folder.path())); // apart from programs that run
}

void tst_SingleInstance::isNamedAfterTheProgram()
{
    QVERIFY(SingleInstance::userKey().startsWith(QLatin1String("X9CAN")));
#ifdef Q_OS_WIN
    QCOMPARE(SingleInstance::userKey(), QStringLiteral("X9CAN"));
#endif
}

void tst_SingleInstance::holdsOnce()
{
    const SingleInstance first;
    QVERIFY(first.isHeld());
    const SingleInstance second;
    QCOMPARE(second.state(), SingleInstance::State::Running);
    const SingleInstance other(QStringLiteral("another"));
    QVERIFY(other.isHeld());
}

void tst_SingleInstance::isFreeAfterRelease()
{
    SingleInstance first;
    first.release();
    QVERIFY(!first.isHeld());
    SingleInstance second;
    QVERIFY(second.isHeld());
    first.release(); // not its any more
    const SingleInstance third;
    QVERIFY(!third.isHeld());
}

/// Also when somebody has taken the lock file away.
void tst_SingleInstance::holdsTheSegmentToo()
{
    QSharedMemory segment(SingleInstance::userKey());
    QVERIFY(segment.create(1));
    {
        const SingleInstance instance;
        QCOMPARE(instance.state(), SingleInstance::State::Running);
    }
    QVERIFY(segment.detach());
    const SingleInstance instance;
    QVERIFY(instance.isHeld());
    QVERIFY(!segment.create(1));
    QCOMPARE(segment.error(), QSharedMemory::AlreadyExists);
}

#ifdef Q_OS_UNIX
/// A segment's key is made from 16 bits of a file's number, so another program's segment can have the same one.
void tst_SingleInstance::holdsBesideForeignSegments()
{
    constexpr int Files = 12; // more than the guard makes
    QVector<int> segments;
    {
        QVector<QString> names;
        for (int i = 0; i < Files; ++i) {
            QFile file(m_folder.filePath(QString::number(i)));
            QVERIFY(file.open(QIODevice::WriteOnly));
            names.append(file.fileName());
        }
        // Their numbers are given to the next files.
        for (const QString &name : names) {
            segments.append(::shmget(::ftok(QFile::encodeName(name).constData(), 'Q'), 1, 0600 | IPC_CREAT | IPC_EXCL));
        }
        for (const QString &name : names) {
            QVERIFY(QFile::remove(name));
        }
    }
    const auto removeAll = qScopeGuard([&segments] {
        for (const int segment : segments) {
            ::shmctl(segment, IPC_RMID, nullptr);
        }
    });
    QVector<void *> attached; // somebody uses them
    for (const int segment : segments) {
        attached.append(::shmat(segment, nullptr, 0));
    }
    const auto detachAll = qScopeGuard([&attached] {
        for (const void *address : attached) {
            ::shmdt(address);
        }
    });
    const SingleInstance first;
    QVERIFY(first.isHeld());
    const SingleInstance second;
    QVERIFY(!second.isHeld());
}

/// A semaphore's key is made in the same way. Where another user's has it, nothing is given, and one that stays behind
/// after a crash stays until the computer is switched off.
void tst_SingleInstance::needsNoSemaphore()
{
    const SingleInstance instance;
    QVERIFY(instance.isHeld());
    const QStringList files = QDir(m_folder.path()).entryList({QStringLiteral("qipc_*")}, QDir::Files | QDir::System);
    QCOMPARE(files.size(), 1);
    QVERIFY2(files.first().startsWith(QLatin1String("qipc_sharedmemory_")), qPrintable(files.first()));
}
#endif

void tst_SingleInstance::cannotHoldWithoutATemporaryFolder()
{
    const SingleInstance instance(QStringLiteral("missing/folder"));
    QCOMPARE(instance.state(), SingleInstance::State::Blocked);
    QVERIFY(instance.problem().contains(QLatin1String("folder.lock cannot be written")));
}

X9_CORE_TEST(tst_SingleInstance)
#include "tst_SingleInstance.moc"
