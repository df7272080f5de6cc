#include "tests/support/TestProgram.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/CaptureFile.h"
#include "viewer/core/StoreLoader.h"

#include <QPointer>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <utility>

using State = LoadProgress::State;

namespace {

/// What a scripted capture does; shared with the test.
struct Script
{
    std::atomic<qint64> available{0}; ///< frames that are there
    std::atomic<qint64> size{0};      ///< bytes, as the file system tells
    std::atomic<bool> isGrowing{false};
    std::atomic<bool> isBroken{false};
    std::atomic<bool> isHeldUp{false};
    QPointer<QThread> thread; ///< that reads; set before reads is counted
    std::atomic<int> reads{0};
    CaptureInfo::TimeBase timeBase = CaptureInfo::SinceStart;
};

class ScriptedStream : public CaptureStream
{
public:
    ScriptedStream(std::shared_ptr<Script> script, Findings &findings)
        : m_script(std::move(script))
        , m_reader(*this, findings)
    {
    }

    FrameReader &reader() override { return m_reader; }
    qint64 position() const override { return m_next; }
    qint64 size() const override { return m_script->size; }
    void setGrowing(bool growing) override { m_script->isGrowing = growing; }
    bool isBroken() const override { return m_script->isBroken; }

private:
    class Reader : public FrameReader
    {
    public:
        Reader(ScriptedStream &stream, Findings &findings)
            : m_stream(stream)
            , m_findings(findings)
        {
            m_info.timeBase = stream.m_script->timeBase;
        }

        int read(BusFrame *frames, int room) override
        {
            if (m_stream.m_script->reads == 0) {
                m_stream.m_script->thread = QThread::currentThread();
            }
            ++m_stream.m_script->reads;
            while (m_stream.m_script->isHeldUp) {
                QThread::msleep(1);
            }
            qint64 &next = m_stream.m_next;
            const qint64 count = std::min<qint64>(room, m_stream.m_script->available - next);
            for (qint64 i = 0; i < count; ++i, ++next) {
                frames[i] = numberedFrame(next + 1);
                if (next % 1000 == 0) {
                    m_findings.add(Finding::Frame, next, QStringLiteral("odd"));
                }
            }
            return static_cast<int>(count);
        }

    private:
        ScriptedStream &m_stream;
        Findings &m_findings;
    };

    std::shared_ptr<Script> m_script;
    Reader m_reader;
    qint64 m_next = 0;
};

StoreLoader::Open opening(const std::shared_ptr<Script> &script)
{
    return [script](Findings &findings, QString & /*error*/) {
        return std::make_unique<ScriptedStream>(script, findings);
    };
}

} // namespace

class tst_StoreLoader : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void loadsAllWithFindings();
    void tellsWhyItCannotOpen();
    void cancels();
    void endsSoonWhenReadingHangs();
    void followsAGrowingCapture();
    void noticesACaptureThatShrinks();
    void noticesABrokenRead();
    void stopsWhenMemoryIsUsedUp();
    void startOfAbsoluteTimes();
    static void fileOfNoKnownKind();

private:
    std::shared_ptr<Script> m_script;
    std::shared_ptr<BusFrameStore> m_store;
};

void tst_StoreLoader::init()
{
    m_script = std::make_shared<Script>();
    m_store = std::make_shared<BusFrameStore>();
}

void tst_StoreLoader::loadsAllWithFindings()
{
    m_script->available = 250000;
    m_script->size = 300000;
    const StoreLoader loader(m_store, opening(m_script), false);
    QTRY_COMPARE(loader.progress().state, State::Finished);
    QCOMPARE(m_store->size(), 250000);
    QVERIFY(isSame(m_store->frame(249999), numberedFrame(250000)));
    QCOMPARE(loader.progress().frames, 250000);
    QCOMPARE(loader.progress().bytes, 250000);
    QCOMPARE(loader.progress().size, 300000);
    QCOMPARE(loader.findingCount(), 250);
    QCOMPARE(loader.findings().size(), Findings::MaxKept);
    QVERIFY(!m_script->isGrowing);
}

void tst_StoreLoader::tellsWhyItCannotOpen()
{
    const StoreLoader loader(
        m_store,
        [](Findings & /*findings*/, QString &error) {
            error = QStringLiteral("no");
            return std::unique_ptr<CaptureStream>();
        },
        true);
    QTRY_COMPARE(loader.progress().state, State::Failed);
    QCOMPARE(loader.error(), QStringLiteral("no"));
}

void tst_StoreLoader::cancels()
{
    m_script->available = 1000;
    StoreLoader loader(m_store, opening(m_script), true);
    QTRY_COMPARE(loader.progress().state, State::Following);
    loader.cancel();
    QTRY_COMPARE(loader.progress().state, State::Cancelled);
    QCOMPARE(m_store->size(), 1000);
}

void tst_StoreLoader::endsSoonWhenReadingHangs()
{
    m_script->isHeldUp = true;
    auto loader = std::make_unique<StoreLoader>(m_store, opening(m_script), false);
    QTRY_VERIFY(m_script->reads > 0);
    QElapsedTimer clock;
    clock.start();
    loader.reset();
    QVERIFY(clock.elapsed() < qint64{2} * StoreLoader::StopWaitMs);
    QVERIFY(!m_script->thread.isNull());
    m_script->isHeldUp = false;
    QTRY_COMPARE(m_script.use_count(), 1);  // the thread has gone
    QTRY_VERIFY(m_script->thread.isNull()); // and so has what the toolkit has of it
}

void tst_StoreLoader::followsAGrowingCapture()
{
    m_script->available = 10;
    StoreLoader loader(m_store, opening(m_script), true);
    QTRY_COMPARE(loader.progress().state, State::Following);
    QVERIFY(m_script->isGrowing);
    m_script->available = 5000;
    QTRY_COMPARE(m_store->size(), 5000);
    m_script->available = 5001;
    loader.setFollowing(false); // what is there at the end is read
    QTRY_COMPARE(loader.progress().state, State::Finished);
    QCOMPARE(m_store->size(), 5001);
    QVERIFY(!m_script->isGrowing);
    for (qint64 row = 0; row < m_store->size(); ++row) {
        QVERIFY(isSame(m_store->frame(row), numberedFrame(row + 1)));
    }
}

void tst_StoreLoader::noticesACaptureThatShrinks()
{
    m_script->available = 100;
    m_script->size = 100;
    const StoreLoader loader(m_store, opening(m_script), true);
    QTRY_COMPARE(loader.progress().state, State::Following);
    m_script->size = 50;
    QTRY_COMPARE(loader.progress().state, State::Failed);
    QVERIFY(!loader.error().isEmpty());
    QCOMPARE(m_store->size(), 100);
}

void tst_StoreLoader::noticesABrokenRead()
{
    m_script->available = 100;
    m_script->isBroken = true;
    const StoreLoader loader(m_store, opening(m_script), false);
    QTRY_COMPARE(loader.progress().state, State::Failed);
    QVERIFY(!loader.error().isEmpty());
    QCOMPARE(m_store->size(), 100);
}

void tst_StoreLoader::stopsWhenMemoryIsUsedUp()
{
    m_script->available = 1000000;
    m_store->setMemoryLimit(10000000);
    const StoreLoader loader(m_store, opening(m_script), false);
    QTRY_COMPARE(loader.progress().state, State::MemoryFull);
    QVERIFY(m_store->size() > 100000);
    QCOMPARE(loader.progress().frames, m_store->size());
}

void tst_StoreLoader::startOfAbsoluteTimes()
{
    m_script->available = 1;
    m_script->timeBase = CaptureInfo::Absolute;
    const StoreLoader loader(m_store, opening(m_script), false);
    QTRY_COMPARE(loader.progress().state, State::Finished);
    QCOMPARE(loader.info().timeBase, CaptureInfo::Absolute);
    QCOMPARE(m_store->start(), numberedFrame(1).time);
}

void tst_StoreLoader::fileOfNoKnownKind()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("a.unknown")));
    Findings findings;
    QString error;
    QVERIFY(!CaptureFile::open(file.fileName(), findings, error));
    QVERIFY(!error.isEmpty());
    error.clear();
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QVERIFY(!CaptureFile::open(file.fileName(), findings, error));
    QVERIFY(!error.isEmpty());
}

X9_CORE_TEST(tst_StoreLoader)
#include "tst_StoreLoader.moc"
