#include "CaptureTestData.h"

#include "capture/RealTimeWriter.h"
#include "tests/support/StallingTarget.h"
#include "tests/support/TestProgram.h"

#include <QStringList>
#include <QTest>

#include <atomic>
#include <mutex>
#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <sys/resource.h>
#endif

using namespace CaptureTestData;

namespace {

using Rows = std::vector<FrameRecord>;

constexpr std::chrono::milliseconds AnyTime{30000};
constexpr std::chrono::hours Never{1};

/// How soon the calling thread gets a processor beside others; larger is sooner.
int ownPriority()
{
#ifdef Q_OS_WIN
    return GetThreadPriority(GetCurrentThread());
#else
    return -getpriority(PRIO_PROCESS, 0);
#endif
}

/// What a target was asked for, and what it answers.
struct Record
{
    void note(const QString &what)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        calls.append(what);
    }
    QStringList all() const
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return calls;
    }

    Gate gate;
    QString failing;              ///< the call that fails; set before the writer is made
    std::atomic<int> priority{0}; ///< of the thread that called last
    mutable std::mutex mutex;     ///< guards calls
    QStringList calls;
};

class RecordingTarget : public RealTimeTarget
{
public:
    explicit RecordingTarget(std::shared_ptr<Record> record)
        : m_record(std::move(record))
    {
    }
    ~RecordingTarget() override { m_record->note(QStringLiteral("gone")); }

    bool append(const std::vector<FrameRecord> &rows, quint64 firstNumber) override
    {
        return call(QStringLiteral("%1+%2").arg(firstNumber).arg(rows.size()));
    }
    bool sync() override { return call(QStringLiteral("sync")); }

private:
    bool call(const QString &what)
    {
        m_record->gate.pass();
        m_record->priority = ownPriority();
        m_record->note(what);
        return what != m_record->failing;
    }

    std::shared_ptr<Record> m_record;
};

RealTimeWriter::Limits limits(std::chrono::milliseconds syncAfter)
{
    RealTimeWriter::Limits result;
    result.syncAfter = syncAfter;
    return result;
}

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

} // namespace

class tst_RealTimeWriter : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_record = std::make_shared<Record>(); }

    void writesInOrderAndSyncsAtTheEnd();
    void syncsWhenNothingFollows();
    void syncsBetweenBatches();
    void keepsNobodyWaiting();
    void boundsWhatWaits();
    void takesWhatComesInSeconds();
    void takesALargeBatchAlone();
    void letsTheWindowGoFirst();
    void failedWrite();
    void failedSync();
    void endsByItself();

private:
    std::unique_ptr<RealTimeWriter> writer(RealTimeWriter::Limits limits = {}) const
    {
        return std::make_unique<RealTimeWriter>(QStringLiteral("a.csv"), std::make_unique<RecordingTarget>(m_record),
                                                limits);
    }

    std::shared_ptr<Record> m_record;
};

void tst_RealTimeWriter::writesInOrderAndSyncsAtTheEnd()
{
    const auto writer = this->writer(limits(Never));
    QCOMPARE(writer->path(), QStringLiteral("a.csv"));
    QVERIFY(writer->append(Rows(3), 1));
    QVERIFY(writer->append(Rows(1), 4));
    QTRY_COMPARE(m_record->all(), words("1+3 4+1"));
    QVERIFY(!writer->waitFinished(std::chrono::milliseconds(0)));
    QVERIFY(writer->append(Rows(2), 5));
    writer->finish();
    QVERIFY(writer->waitFinished(AnyTime));
    QCOMPARE(m_record->all(), words("1+3 4+1 5+2 sync gone"));
    QVERIFY(!writer->hasFailed());
}

/// Once, and not again until there is something new.
void tst_RealTimeWriter::syncsWhenNothingFollows()
{
    const auto writer = this->writer(limits(std::chrono::milliseconds(20)));
    QVERIFY(writer->append(Rows(1), 1));
    QTRY_COMPARE(m_record->all(), words("1+1 sync"));
    QVERIFY(writer->append(Rows(1), 2));
    QTRY_COMPARE(m_record->all(), words("1+1 sync 2+1 sync"));
    writer->finish();
    QVERIFY(writer->waitFinished(AnyTime));
    QCOMPARE(m_record->all(), words("1+1 sync 2+1 sync gone"));
}

/// Rows that keep coming do not put the sync off; by default it is due within five seconds.
void tst_RealTimeWriter::syncsBetweenBatches()
{
    QVERIFY(RealTimeWriter::Limits().syncAfter < std::chrono::seconds(5));
    m_record->gate.close();
    const auto writer = this->writer(limits(std::chrono::milliseconds(0)));
    for (quint64 number = 1; number <= 3; ++number) {
        QVERIFY(writer->append(Rows(1), number));
    }
    writer->finish();
    m_record->gate.open();
    QVERIFY(writer->waitFinished(AnyTime));
    QCOMPARE(m_record->all(), words("1+1 sync 2+1 sync 3+1 sync gone"));
}

void tst_RealTimeWriter::keepsNobodyWaiting()
{
    m_record->gate.close();
    const auto writer = this->writer(limits(Never));
    QVERIFY(writer->append(Rows(1), 1));
    QTRY_VERIFY(m_record->gate.isHolding());
    QVERIFY(writer->append(Rows(1), 2));
    writer->finish();
    QVERIFY(!writer->waitFinished(std::chrono::milliseconds(1)));
    QVERIFY(m_record->gate.isHolding());
    QCOMPARE(m_record->all(), QStringList());
    QVERIFY(!writer->hasFailed());
    m_record->gate.open();
    QVERIFY(writer->waitFinished(AnyTime));
    QCOMPARE(m_record->all(), words("1+1 2+1 sync gone"));
}

/// The batch that is being written waits, too. What was taken is written in the end.
void tst_RealTimeWriter::boundsWhatWaits()
{
    const Rows batch(100, frame(1, QByteArray(64, 'x')));
    RealTimeWriter::Limits small = limits(Never);
    small.waitingBytes = 3 * batch.size() * (sizeof(FrameRecord) + 120);
    m_record->gate.close();
    const auto writer = this->writer(small);
    quint64 taken = 0;
    while (taken < 100 && writer->append(batch, taken * 100 + 1)) {
        ++taken;
        if (taken == 1) {
            QTRY_VERIFY(m_record->gate.isHolding());
        }
    }
    QVERIFY2(taken == 3, qPrintable(QString::number(taken)));
    QVERIFY(!writer->append(batch, 1));
    m_record->gate.open();
    bool isTaken = false;
    QTRY_VERIFY(isTaken = isTaken || writer->append(batch, 301)); // there is room again
    writer->finish();
    QVERIFY(writer->waitFinished(AnyTime));
    QCOMPARE(m_record->all(), words("1+100 101+100 201+100 301+100 sync gone"));
    QVERIFY(!writer->hasFailed());
}

/// 27,000 frames per second of the longest kind, handed over every half second, for five seconds. Not forever.
void tst_RealTimeWriter::takesWhatComesInSeconds()
{
    const Rows batch(13500, frame(1, QByteArray(64, 'x')));
    m_record->gate.close();
    const auto writer = this->writer();
    std::size_t taken = 0;
    while (taken < 1000 && writer->append(batch, 1)) {
        ++taken;
    }
    QVERIFY2(taken >= 10, qPrintable(QString::number(taken)));
    const std::size_t bytes = taken * batch.size() * (sizeof(FrameRecord) + 64);
    QVERIFY2(bytes < 64'000'000, qPrintable(QString::number(bytes)));
    m_record->gate.open();
}

void tst_RealTimeWriter::takesALargeBatchAlone()
{
    RealTimeWriter::Limits small = limits(Never);
    small.waitingBytes = 10;
    const auto writer = this->writer(small);
    QVERIFY(writer->append(Rows(100), 1));
    writer->finish();
    QVERIFY(writer->waitFinished(AnyTime));
    QCOMPARE(m_record->all(), words("1+100 sync gone"));
}

void tst_RealTimeWriter::letsTheWindowGoFirst()
{
    const auto writer = this->writer();
    QVERIFY(writer->append(Rows(1), 1));
    QTRY_COMPARE(m_record->all(), words("1+1"));
    QVERIFY(m_record->priority < ownPriority());
}

void tst_RealTimeWriter::failedWrite()
{
    m_record->failing = QStringLiteral("3+1");
    m_record->gate.close();
    const auto writer = this->writer(limits(Never));
    for (quint64 number = 1; number <= 5; ++number) {
        QVERIFY(writer->append(Rows(1), number));
    }
    m_record->gate.open();
    QTRY_VERIFY(writer->hasFailed());
    QVERIFY(!writer->append(Rows(1), 6));
    QVERIFY(writer->waitFinished(AnyTime)); // without being asked to
    QCOMPARE(m_record->all(), words("1+1 2+1 3+1 gone"));
}

void tst_RealTimeWriter::failedSync()
{
    m_record->failing = QStringLiteral("sync");
    const auto writer = this->writer(limits(std::chrono::milliseconds(0)));
    QVERIFY(writer->append(Rows(1), 1));
    QTRY_VERIFY(writer->hasFailed());
    QVERIFY(!writer->append(Rows(1), 2));
    QVERIFY(writer->waitFinished(AnyTime));
    QCOMPARE(m_record->all(), words("1+1 sync gone"));
}

/// Destroyed while the target stands still: nobody waits, and what was handed over is still written.
void tst_RealTimeWriter::endsByItself()
{
    m_record->gate.close();
    auto writer = this->writer(limits(Never));
    QVERIFY(writer->append(Rows(1), 1));
    QVERIFY(writer->append(Rows(1), 2));
    QTRY_VERIFY(m_record->gate.isHolding());
    writer.reset();
    QVERIFY(m_record->gate.isHolding());
    m_record->gate.open();
    QTRY_COMPARE(m_record->all(), words("1+1 2+1 sync gone"));
}

X9_CORE_TEST(tst_RealTimeWriter)
#include "tst_RealTimeWriter.moc"
