#include "tests/exchange/ExchangeTestData.h"
#include "tests/support/TestProgram.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/CaptureSaver.h"

#include <QTemporaryDir>
#include <QtTest>

#include <atomic>

using namespace ExchangeTestData;
using End = SaveResult::End;

namespace {

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_CaptureSaver : public QObject
{
    Q_OBJECT

private slots:
    void init();
    static void everyKindHoldsWhatIsShown_data();
    void everyKindHoldsWhatIsShown();
    void filteredRows();
    void rowsAcrossBlocks();
    void tryingOutTellsTheSame();
    void replacesAtTheEndOnly();
    void whatCannotBeWrittenIsTold();
    void cancelledLeavesWhatWasThere();
    void anotherOneTakesOver();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    SaveOrder order(const char *kind, const char *name) const;
    SaveResult save(const SaveOrder &order);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::shared_ptr<BusFrameStore> m_store;
    std::atomic<int> m_ends{0};
    CaptureSaver m_saver{[this] {
        ++m_ends;
    }};
};

void tst_CaptureSaver::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_shared<BusFrameStore>();
}

SaveOrder tst_CaptureSaver::order(const char *kind, const char *name) const
{
    SaveOrder made;
    made.store = m_store;
    made.endRow = m_store->size();
    made.info.timeBase = CaptureInfo::SinceStart;
    made.info.start = 1715934600000000000;
    made.format = &format(kind);
    made.path = name == nullptr ? QString() : path(name);
    return made;
}

SaveResult tst_CaptureSaver::save(const SaveOrder &order)
{
    m_saver.start(order);
    if (!QTest::qWaitFor([this] { return m_saver.result().has_value(); }, 60000)) {
        QTest::qFail("saving does not end", __FILE__, __LINE__);
        return {};
    }
    return *m_saver.result();
}

void tst_CaptureSaver::everyKindHoldsWhatIsShown_data()
{
    QTest::addColumn<QByteArray>("kind");
    for (const ExchangeFormat &format : exchangeFormats()) {
        if (format.writer != nullptr && (format.holds & ExchangeFormat::ClassicCan) != 0) {
            QTest::newRow(format.name) << QByteArray(format.name);
        }
    }
}

void tst_CaptureSaver::everyKindHoldsWhatIsShown()
{
    QFETCH(const QByteArray, kind);
    std::vector<BusFrame> frames;
    frames.reserve(3000);
    for (int i = 0; i < 3000; ++i) {
        frames.push_back(canFrame(qint64{i} * 1000000, static_cast<quint32>(i % 2048), "0102030405060708"));
    }
    fill(*m_store, frames);
    const SaveResult result = save(order(kind.constData(), "a"));
    QCOMPARE(result.end, End::Done);
    QCOMPARE(result.frames, 3000);
    QCOMPARE(result.lossCount, 0);
    const QByteArray bytes = bytesOf(path("a"));
    QCOMPARE(result.bytes, qint64{bytes.size()});
    const Reading reading = readBytes(format(kind.constData()), bytes);
    QCOMPARE(reading.frames.size(), std::size_t{3000});
    QCOMPARE(reading.frames[2047].identifier, 2047U);
    QCOMPARE(reading.frames[2999].data, frames[2999].data);
}

void tst_CaptureSaver::filteredRows()
{
    fillNumbered(*m_store, 5000);
    SaveOrder wanted = order("candump", "a.log");
    FilterError error{};
    wanted.filter = Filter::parse(QStringLiteral("id == 7"), {}, error).value_or(Filter());
    wanted.firstRow = 8;
    const SaveResult result = save(wanted);
    QCOMPARE(result.frames, 2); // 7 + 2048 and 7 + 4096; 7 itself is before the first row
    const Reading reading = readBytes(format("candump"), bytesOf(wanted.path));
    for (const BusFrame &frame : reading.frames) {
        QCOMPARE(frame.identifier, 7U);
    }
    QVERIFY(!reading.frames.empty());
}

void tst_CaptureSaver::rowsAcrossBlocks()
{
    fillNumbered(*m_store, 200000);
    SaveOrder wanted = order("candump", "a.log");
    wanted.firstRow = 65000;
    wanted.endRow = 132000;
    const SaveResult all = save(wanted);
    QCOMPARE(all.frames, 67000);
    QCOMPARE(m_saver.progress(), 1.0);
    FilterError error{};
    wanted.filter = Filter::parse(QStringLiteral("len >= 0"), {}, error).value_or(Filter());
    const QByteArray whole = bytesOf(wanted.path);
    QCOMPARE(save(wanted).frames, 67000);
    QCOMPARE(bytesOf(wanted.path), whole);
}

void tst_CaptureSaver::tryingOutTellsTheSame()
{
    fillNumbered(*m_store, 1000);
    const SaveResult trial = save(order("can", nullptr));
    QCOMPARE(trial.end, End::Done);
    QVERIFY(trial.lossCount > 0);
    const SaveResult saved = save(order("can", "a.can"));
    QCOMPARE(saved.lossCount, trial.lossCount);
    QCOMPARE(saved.losses.size(), trial.losses.size());
    QCOMPARE(saved.frames, trial.frames);
    QCOMPARE(saved.bytes, trial.bytes);
    // Also a kind that goes back to complete its header.
    QCOMPARE(save(order("blf", "a.blf")).bytes, save(order("blf", nullptr)).bytes);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 2);
}

void tst_CaptureSaver::replacesAtTheEndOnly()
{
    fillNumbered(*m_store, 1000);
    QFile old(path("a.csv"));
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    QCOMPARE(save(order("csv", "a.csv")).end, End::Done);
    QVERIFY(bytesOf(path("a.csv")).size() > 10000);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList{QStringLiteral("a.csv")});
}

void tst_CaptureSaver::whatCannotBeWrittenIsTold()
{
    fillNumbered(*m_store, 10);
    const SaveResult result = save(order("csv", "no folder/a.csv"));
    QCOMPARE(result.end, End::Failed);
    QVERIFY(result.error.contains(QStringLiteral("cannot be written")));
    QVERIFY(QDir().mkdir(path("folder.csv")));
    QCOMPARE(save(order("csv", "folder.csv")).end, End::Failed);
}

void tst_CaptureSaver::cancelledLeavesWhatWasThere()
{
    fillNumbered(*m_store, 2000000);
    QFile old(path("a.csv"));
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    m_saver.start(order("csv", "a.csv"));
    QTRY_VERIFY(m_saver.progress() > 0);
    m_saver.cancel();
    QTRY_VERIFY(m_saver.result().has_value());
    QCOMPARE(m_saver.result()->end, End::Cancelled);
    QVERIFY(m_saver.progress() < 1);
    QCOMPARE(bytesOf(path("a.csv")), QByteArray("old"));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 1);
}

void tst_CaptureSaver::anotherOneTakesOver()
{
    fillNumbered(*m_store, 1000000);
    const int before = m_ends;
    m_saver.start(order("csv", "first.csv"));
    SaveOrder second = order("csv", "second.csv");
    second.endRow = 10;
    m_saver.start(second);
    QTRY_VERIFY(m_saver.result().has_value());
    QCOMPARE(m_saver.result()->frames, 10);
    QTRY_COMPARE(int(m_ends), before + 1);
    QVERIFY(!QFile::exists(path("first.csv")));
}

X9_CORE_TEST(tst_CaptureSaver)
#include "tst_CaptureSaver.moc"
