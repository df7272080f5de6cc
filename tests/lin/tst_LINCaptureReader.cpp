#include "lin/LINCaptureReader.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <vector>

#if defined(Q_OS_UNIX)
#include <sys/stat.h>
#endif

namespace {
constexpr int Million = 1000000;
const QByteArray Titles("titles\n");
const QByteArray Line("1,12:34:56.789,Revice,12[92],8,00 11 22 33 44 55 66 77 ,5C,V1\n");

/// What came from the reader.
struct Result
{
    int count = 0;
    bool isCapture = false;
    std::vector<CTableViewLIN::DataObject> frames;
};
} // namespace

class tst_LINCaptureReader : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void readsASmallFileAtOnce();
    void refusesWhatCannotBeOpened();
    void doesNotWaitForAPipe();
    void failsOnAnEmptyFile();
    void keepsTheEventLoopRunning();
    void readsALineOfMegabytes();
    void stopsAtTheFirstDamage();
    void cancels();
    void givesUpOneForAnother();
    void goesAwayWhileReading();

private:
    QString write(const QString &name, const QByteArray &bytes) const;
    void listenTo(LINCaptureReader &reader);

    std::unique_ptr<QTemporaryDir> m_folder;
    Result m_result;
};

QString tst_LINCaptureReader::write(const QString &name, const QByteArray &bytes) const
{
    const QString path = m_folder->filePath(name);
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? path : QString();
}

void tst_LINCaptureReader::listenTo(LINCaptureReader &reader)
{
    connect(&reader, &LINCaptureReader::sig_finished, this,
            [this](const QVector<CTableViewLIN::DataObject> &frames, bool isCapture) {
                ++m_result.count;
                m_result.frames.assign(frames.begin(), frames.end());
                m_result.isCapture = isCapture;
            });
}

void tst_LINCaptureReader::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_result.count = 0;
    m_result.isCapture = false;
    m_result.frames.clear();
}

void tst_LINCaptureReader::readsASmallFileAtOnce()
{
    LINCaptureReader reader;
    listenTo(reader);
    QVERIFY(reader.start(write(QStringLiteral("a.csv"), Titles + Line + Line)));
    QCOMPARE(m_result.count, 1);
    QVERIFY(m_result.isCapture);
    QCOMPARE(m_result.frames.size(), std::size_t{2});
    QCOMPARE(m_result.frames.at(1).ID, quint8(0x12));
    QCOMPARE(m_result.frames.at(1).data, QByteArray::fromHex("0011223344556677"));
    QVERIFY(!reader.isReading());
}

void tst_LINCaptureReader::refusesWhatCannotBeOpened()
{
    LINCaptureReader reader;
    listenTo(reader);
    QVERIFY(!reader.start(m_folder->filePath(QStringLiteral("none.csv"))));
    QVERIFY(!reader.start(m_folder->path()));
    QVERIFY(!reader.start(QString()));
    QVERIFY(!reader.isReading());
    QCOMPARE(m_result.count, 0);
}

void tst_LINCaptureReader::doesNotWaitForAPipe()
{
#if defined(Q_OS_UNIX)
    const QString path = m_folder->filePath(QStringLiteral("pipe.csv"));
    QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    LINCaptureReader reader;
    QVERIFY(!reader.start(path));
    QVERIFY(!reader.start(QStringLiteral("/dev/zero")));
#endif
}

void tst_LINCaptureReader::failsOnAnEmptyFile()
{
    LINCaptureReader reader;
    listenTo(reader);
    QVERIFY(reader.start(write(QStringLiteral("a.csv"), QByteArray())));
    QCOMPARE(m_result.count, 1);
    QVERIFY(!m_result.isCapture);
    QVERIFY(reader.start(write(QStringLiteral("b.csv"), Titles)));
    QCOMPARE(m_result.count, 2);
    QVERIFY(!m_result.isCapture);
}

/// A million lines take several slices, between which timers tick.
void tst_LINCaptureReader::keepsTheEventLoopRunning()
{
    LINCaptureReader reader;
    listenTo(reader);
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] { ticks += reader.isReading() ? 1 : 0; });
    timer.start(1);
    QVERIFY(reader.start(write(QStringLiteral("a.csv"), Titles + Line.repeated(Million))));
    QVERIFY(reader.isReading());
    QCOMPARE(m_result.count, 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_result.count, 1, 60000);
    QVERIFY(ticks >= 3);
    QVERIFY(m_result.isCapture);
    QCOMPARE(m_result.frames.size(), std::size_t(Million));
    QVERIFY(!reader.isReading());
}

void tst_LINCaptureReader::readsALineOfMegabytes()
{
    LINCaptureReader reader;
    listenTo(reader);
    const QByteArray large(20000000, 'x');
    QVERIFY(reader.start(write(QStringLiteral("a.csv"), large + '\n' + Line + ",,,01,1,11," + large)));
    QTRY_COMPARE_WITH_TIMEOUT(m_result.count, 1, 60000);
    QVERIFY(m_result.isCapture);
    QCOMPARE(m_result.frames.size(), std::size_t{2});
}

/// The frames read until then are not handed over, and the rest is not read.
void tst_LINCaptureReader::stopsAtTheFirstDamage()
{
    LINCaptureReader reader;
    listenTo(reader);
    QVERIFY(reader.start(write(QStringLiteral("a.csv"), Titles + Line + "damage\n" + Line.repeated(Million))));
    QCOMPARE(m_result.count, 1);
    QVERIFY(!m_result.isCapture);
    QVERIFY(m_result.frames.empty());
}

void tst_LINCaptureReader::cancels()
{
    LINCaptureReader reader;
    listenTo(reader);
    QVERIFY(reader.start(write(QStringLiteral("a.csv"), Titles + Line.repeated(Million))));
    QVERIFY(reader.isReading());
    reader.cancel();
    QVERIFY(!reader.isReading());
    QVERIFY(reader.start(write(QStringLiteral("b.csv"), Titles + Line)));
    QCOMPARE(m_result.count, 1);
    QCOMPARE(m_result.frames.size(), std::size_t{1});
    QCoreApplication::processEvents();
    QCOMPARE(m_result.count, 1);
}

void tst_LINCaptureReader::givesUpOneForAnother()
{
    LINCaptureReader reader;
    listenTo(reader);
    QVERIFY(reader.start(write(QStringLiteral("a.csv"), Titles + Line.repeated(Million))));
    QVERIFY(!reader.start(m_folder->filePath(QStringLiteral("none.csv"))));
    QVERIFY(!reader.isReading());
    QVERIFY(reader.start(m_folder->filePath(QStringLiteral("a.csv"))));
    QVERIFY(reader.start(write(QStringLiteral("b.csv"), Titles + Line)));
    QCOMPARE(m_result.count, 1);
    QCOMPARE(m_result.frames.size(), std::size_t{1});
}

void tst_LINCaptureReader::goesAwayWhileReading()
{
    auto reader = std::make_unique<LINCaptureReader>();
    listenTo(*reader);
    QVERIFY(reader->start(write(QStringLiteral("a.csv"), Titles + Line.repeated(Million))));
    reader.reset();
    QCoreApplication::processEvents();
    QCOMPARE(m_result.count, 0);
}

X9_CORE_TEST(tst_LINCaptureReader)
#include "tst_LINCaptureReader.moc"
