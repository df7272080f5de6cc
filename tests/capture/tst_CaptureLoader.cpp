#include "capture/CaptureLoader.h"
#include "tests/support/TestProgram.h"

#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <QtTest>

#include <condition_variable>
#include <memory>
#include <mutex>

namespace {
/// A file that takes its time: readings wait until it is opened.
class Gate
{
public:
    void open()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isOpen = true;
        m_changed.notify_all();
    }
    void pass()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        ++m_arrived;
        m_changed.wait(lock, [this] { return m_isOpen; });
    }
    int arrived()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_arrived;
    }

private:
    std::mutex m_mutex; ///< guards everything below
    std::condition_variable m_changed;
    bool m_isOpen = false;
    int m_arrived = 0;
};

CaptureContent contentOf(int frames)
{
    CaptureContent content;
    for (int i = 0; i < frames; ++i) {
        const uchar byte = 0;
        content.frames.append(static_cast<quint32>(i), CaptureFrame::toAttributes(1, 0), &byte, 1);
    }
    return content;
}

/// A drive that does not answer: nothing ends the reading but the gate. Reads as many frames as the path has
/// characters.
CaptureLoader::Reader readerBehind(const std::shared_ptr<Gate> &gate)
{
    return [gate](const QString &path, const std::atomic<bool> & /*stop*/) {
        gate->pass();
        return contentOf(path.size());
    };
}

/// What was handed over, by number of frames; -1 for nothing.
CaptureLoader::Done noteIn(QVector<qint64> &results)
{
    return [&results](std::optional<CaptureContent> content) {
        results.append(content ? content->frames.size() : -1);
    };
}
} // namespace

class tst_CaptureLoader : public QObject
{
    Q_OBJECT

private slots:
    static void readsAFile();
    static void tellsOfAFileThatCannotBeRead();
    void theEventLoopRunsMeanwhile();
    void readsOnAThreadOfItsOwn();
    static void isSilentAfterStop();
    static void isSilentWhenStoppedAfterTheEnd();
    static void aNewReadingTakesThePlaceOfAnother();
    static void canStartWithinDone();
    static void destructorWaitsForAReadingThatStops();
    static void destructorDoesNotWaitForEver();
    static void refusesWhenTooManyHang();
};

void tst_CaptureLoader::readsAFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.can"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("Zhiyuan CAN Data") + QByteArray(4 + 3 * 24, '\0'));
    file.close();

    CaptureLoader loader;
    QVector<qint64> results;
    QVERIFY(!loader.isLoading());
    QVERIFY(loader.start(path, noteIn(results)));
    QVERIFY(loader.isLoading());
    QTRY_COMPARE(results, QVector<qint64>{3});
    QVERIFY(!loader.isLoading());
}

void tst_CaptureLoader::tellsOfAFileThatCannotBeRead()
{
    CaptureLoader loader;
    QVector<qint64> results;
    QVERIFY(loader.start(QStringLiteral("/no/such/file.can"), noteIn(results)));
    QVERIFY(results.isEmpty());
    QTRY_COMPARE(results, QVector<qint64>{-1});
}

void tst_CaptureLoader::theEventLoopRunsMeanwhile()
{
    const auto gate = std::make_shared<Gate>();
    CaptureLoader loader(readerBehind(gate));
    QVector<qint64> results;
    QVERIFY(loader.start(QStringLiteral("12"), noteIn(results)));
    bool isHandled = false;
    QTimer::singleShot(0, this, [&isHandled] { isHandled = true; });
    QTRY_VERIFY(isHandled);
    QTRY_COMPARE(gate->arrived(), 1);
    QVERIFY(results.isEmpty());
    gate->open();
    QTRY_COMPARE(results, QVector<qint64>{2});
}

void tst_CaptureLoader::readsOnAThreadOfItsOwn()
{
    std::atomic<QThread *> readIn{nullptr};
    CaptureLoader loader([&readIn](const QString &, const std::atomic<bool> &) {
        readIn = QThread::currentThread();
        return std::optional<CaptureContent>();
    });
    QThread *handedOverIn = nullptr;
    loader.start(QString(), [&](std::optional<CaptureContent>) { handedOverIn = QThread::currentThread(); });
    QTRY_VERIFY(handedOverIn != nullptr);
    QCOMPARE(handedOverIn, thread());
    QVERIFY(readIn != nullptr && readIn != thread());
}

void tst_CaptureLoader::isSilentAfterStop()
{
    const auto gate = std::make_shared<Gate>();
    CaptureLoader loader(readerBehind(gate)); // keeps a copy of the reader, as does each reading
    const long users = gate.use_count();
    QVector<qint64> results;
    loader.start(QStringLiteral("1"), noteIn(results));
    QTRY_COMPARE(gate->arrived(), 1);
    loader.stop(); // returns although the reading hangs
    QVERIFY(!loader.isLoading());
    gate->open();
    QTRY_COMPARE(gate.use_count(), users); // the thread has gone with all it had
    QVERIFY(results.isEmpty());
}

void tst_CaptureLoader::isSilentWhenStoppedAfterTheEnd()
{
    const auto gate = std::make_shared<Gate>();
    gate->open();
    const auto reader = readerBehind(gate);
    std::atomic<bool> isRead{false};
    CaptureLoader loader([&isRead, reader](const QString &path, const std::atomic<bool> &stop) {
        auto content = reader(path, stop);
        isRead = true;
        return content;
    });
    const long users = gate.use_count();
    QVector<qint64> results;
    loader.start(QStringLiteral("1"), noteIn(results));
    while (!isRead) { // the event loop must not run: the end of the reading is still to be told
        QThread::yieldCurrentThread();
    }
    loader.stop();
    QTRY_COMPARE(gate.use_count(), users);
    QVERIFY(results.isEmpty());
}

void tst_CaptureLoader::aNewReadingTakesThePlaceOfAnother()
{
    const auto gate = std::make_shared<Gate>();
    CaptureLoader loader(readerBehind(gate));
    const long users = gate.use_count();
    QVector<qint64> results;
    loader.start(QStringLiteral("1"), noteIn(results));
    loader.start(QStringLiteral("12"), noteIn(results));
    QTRY_COMPARE(gate->arrived(), 2);
    gate->open();
    QTRY_COMPARE(gate.use_count(), users);
    QCOMPARE(results, QVector<qint64>{2});
}

void tst_CaptureLoader::canStartWithinDone()
{
    const auto gate = std::make_shared<Gate>();
    gate->open();
    CaptureLoader loader(readerBehind(gate));
    QVector<qint64> results;
    loader.start(QStringLiteral("1"), [&](std::optional<CaptureContent> content) {
        results.append(content->frames.size());
        loader.start(QStringLiteral("12"), noteIn(results));
    });
    QTRY_COMPARE(results, (QVector<qint64>{1, 2}));
}

void tst_CaptureLoader::destructorWaitsForAReadingThatStops()
{
    const auto token = std::make_shared<int>();
    std::atomic<bool> isReading{false};
    std::atomic<bool> hasEnded{false};
    {
        CaptureLoader loader([&, token](const QString &, const std::atomic<bool> &stop) {
            isReading = true;
            while (!stop) {
                QThread::yieldCurrentThread();
            }
            hasEnded = true;
            return std::optional<CaptureContent>(contentOf(1));
        });
        loader.start(QString(), [](std::optional<CaptureContent>) { QFAIL("the loader is gone"); });
        QTRY_VERIFY(isReading);
    }
    QVERIFY(hasEnded);
    QCOMPARE(token.use_count(), 1L); // nothing is left, though the event loop has not run
}

void tst_CaptureLoader::destructorDoesNotWaitForEver()
{
    const auto gate = std::make_shared<Gate>();
    {
        CaptureLoader loader(readerBehind(gate));
        loader.start(QStringLiteral("1"), [](std::optional<CaptureContent>) { QFAIL("the loader is gone"); });
        QTRY_COMPARE(gate->arrived(), 1);
    }
    QVERIFY(gate.use_count() > 1); // still reading, with all it needs
    gate->open();
    QTRY_COMPARE(gate.use_count(), 1L);
}

void tst_CaptureLoader::refusesWhenTooManyHang()
{
    const auto gate = std::make_shared<Gate>();
    CaptureLoader loader(readerBehind(gate));
    const long users = gate.use_count();
    QVector<qint64> results;
    for (int i = 0; i < CaptureLoader::MaxLetGo; ++i) {
        QVERIFY(loader.start(QStringLiteral("1"), noteIn(results)));
        loader.stop();
    }
    QVERIFY(!loader.start(QStringLiteral("1"), noteIn(results)));
    QVERIFY(!loader.isLoading());
    gate->open();
    QTRY_COMPARE(gate.use_count(), users);
    QVERIFY(loader.start(QStringLiteral("12"), noteIn(results)));
    QTRY_COMPARE(results, QVector<qint64>{2});
}

X9_CORE_TEST(tst_CaptureLoader)
#include "tst_CaptureLoader.moc"
