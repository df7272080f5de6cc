#include "CaptureTestData.h"

#include "capture/CTableViewCAN.h"
#include "tests/support/StallingTarget.h"
#include "tests/support/TestProgram.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace CaptureTestData;

namespace {

QVector<FrameRecord> frames(int count, quint32 firstId = 0)
{
    QVector<FrameRecord> result;
    for (int i = 0; i < count; ++i) {
        result.append(frame(firstId + static_cast<quint32>(i)));
    }
    return result;
}

/// Takes what was appended into the table; its own timer does so only where a test runs the event loop.
void show(CTableViewCAN &table, const QVector<FrameRecord> &added)
{
    table.append(added, true);
    table.refresh();
}

/// A text file's content, whatever ends its lines.
QByteArray textOf(const QString &path)
{
    return fileContent(path).replace("\r\n", "\n");
}

/// The numbers of the lines behind the empty one that ends the first save.
QList<int> appendedNumbers(const QString &path)
{
    const QByteArray text = textOf(path);
    QList<int> numbers;
    for (const QByteArray &line : text.mid(text.indexOf("\n\n") + 2).split('\n')) {
        if (!line.isEmpty()) {
            numbers.append(line.left(line.indexOf(',')).toInt());
        }
    }
    return numbers;
}

} // namespace

class tst_TableRealTime : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void onAndOff();
    void upperCaseTxt();
    void failsToStart();
    static void takesTextFilesOnly_data();
    void takesTextFilesOnly();
    void fileVanishes();
    void fileIsCutShort();
    void goesOnAfterASaveToItsPath();
    void fileIsClosedWithTheTable();

    static void countsWhatIsNotListed();
    void fullTableGoesOnSaving();
    void numbersGoOnWhenTheTableGrows();

    void fileThatStandsStill();
    void endsWhileTheFileStandsStill();
    void failsAfterItWasEnded();
    void tooMuchWaits();

private:
    QString path(const char *name) const { return m_folder->filePath(QString::fromLatin1(name)); }
    RealTimeSaving::TargetWrapper behindTheGate() const
    {
        return [gate = m_gate](std::unique_ptr<RealTimeTarget> file) {
            return std::make_unique<StallingTarget>(std::move(file), gate);
        };
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::shared_ptr<Gate> m_gate;
};

void tst_TableRealTime::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_gate = std::make_shared<Gate>();
}

void tst_TableRealTime::onAndOff()
{
    CTableViewCAN table;
    show(table, frames(2));
    QVERIFY(!table.isRealTimeSaving());
    QVERIFY(table.realTimeSave(true, path("a.csv")));
    QVERIFY(table.isRealTimeSaving());
    const QByteArray saved = textOf(path("a.csv"));
    QCOMPARE(saved.count('\n'), 2 + 2 + 1);
    QVERIFY(!saved.contains(",\n1,"));
    show(table, frames(2, 16));
    const QByteArray line3 = "3,10:20:30.400,0:0:0.0,Revice,0x10,CAN,Data,Standard,0x0,,\n";
    const QByteArray line4 = "4,10:20:30.400,0:0:0.0,Revice,0x11,CAN,Data,Standard,0x0,,\n";
    QTRY_COMPARE(textOf(path("a.csv")), saved + line3 + line4);

    // Switching on again answers false and changes nothing.
    QVERIFY(!table.realTimeSave(true, path("b.txt")));
    QVERIFY(table.isRealTimeSaving());
    QCOMPARE(filesIn(m_folder->path()), QStringList(QStringLiteral("a.csv")));
    table.clear();
    show(table, frames(1, 17));

    // What waits for the next refresh belongs into the file, which is complete at once.
    table.append(frames(1, 16));
    QVERIFY(!table.realTimeSave(false, QString()));
    QVERIFY(!table.isRealTimeSaving());
    QCOMPARE(table.rowCount(), 2);
    const QByteArray ended =
        saved + line3 + line4 + QByteArray(line4).replace(0, 1, "1") + QByteArray(line3).replace(0, 1, "2");
    QCOMPARE(textOf(path("a.csv")), ended);
    show(table, frames(1));
    QVERIFY(!table.realTimeSave(false, QString()));
    QCOMPARE(textOf(path("a.csv")), ended);
}

void tst_TableRealTime::upperCaseTxt()
{
    CTableViewCAN table;
    show(table, frames(1));
    QVERIFY(table.realTimeSave(true, path("a.TXT")));
    show(table, frames(1));
    table.realTimeSave(false, QString());
    const QList<QByteArray> lines = textOf(path("a.TXT")).split('\n');
    QVERIFY(lines[2].startsWith("1     10:20:30.400     "));
    QCOMPARE(lines[3], QByteArray());
    QVERIFY(lines[4].startsWith("2,10:20:30.400,"));
}

void tst_TableRealTime::failsToStart()
{
    CTableViewCAN table;
    QSignalSpy failures(&table, &CTableViewCAN::sig_realTimeSaveFailed);
    QVERIFY(!table.realTimeSave(true, path("gone/a.csv")));
    QVERIFY(!table.isRealTimeSaving());
    QCOMPARE(filesIn(m_folder->path()), QStringList());
    show(table, frames(1));
    QCOMPARE(failures.count(), 0);
    QVERIFY(table.realTimeSave(true, path("a.csv")));
}

void tst_TableRealTime::takesTextFilesOnly_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isTaken");
    for (const char *name : {"a.csv", "a.CSV", "a.txt", "a.Txt"}) {
        QTest::newRow(name) << QString::fromLatin1(name) << true;
    }
    for (const char *name : {"a.can", "a.canfd", "a.CAN", "a.bin", "a", "csv"}) {
        QTest::newRow(name) << QString::fromLatin1(name) << false;
    }
}

void tst_TableRealTime::takesTextFilesOnly()
{
    QFETCH(QString, name);
    QFETCH(bool, isTaken);
    QCOMPARE(CTableViewCAN::isRealTimePath(name), isTaken);
    CTableViewCAN table;
    show(table, frames(1));
    QCOMPARE(table.realTimeSave(true, m_folder->filePath(name)), isTaken);
    QCOMPARE(table.isRealTimeSaving(), isTaken);
    QCOMPARE(filesIn(m_folder->path()), isTaken ? QStringList(name) : QStringList());
}

void tst_TableRealTime::fileVanishes()
{
    CTableViewCAN table;
    QSignalSpy failures(&table, &CTableViewCAN::sig_realTimeSaveFailed);
    bool wasOnWhenTold = true;
    connect(&table, &CTableViewCAN::sig_realTimeSaveFailed, this, [&] { wasOnWhenTold = table.isRealTimeSaving(); });
    QVERIFY(table.realTimeSave(true, path("a.csv")));
#ifdef Q_OS_WIN // an open file stays, and saving goes on
    QVERIFY(!QFile::remove(path("a.csv")));
    show(table, frames(1));
    table.realTimeSave(false, QString());
    QCOMPARE(failures.count(), 0);
    QVERIFY(wasOnWhenTold);
    return;
#endif
    QVERIFY(QFile::remove(path("a.csv")));
    table.refresh(); // nothing to write
    QCOMPARE(failures.count(), 0);
    show(table, frames(1));
    QTRY_COMPARE(failures.count(), 1);
    QCOMPARE(failures[0][0].toString(), path("a.csv"));
    QVERIFY(!wasOnWhenTold);
    QVERIFY(!table.isRealTimeSaving());
    show(table, frames(1));
    QCOMPARE(failures.count(), 1);
    QCOMPARE(table.rowCount(), 2);
    QCOMPARE(filesIn(m_folder->path()), QStringList());
    QVERIFY(table.realTimeSave(true, path("a.csv")));
}

void tst_TableRealTime::fileIsCutShort()
{
    CTableViewCAN table;
    QSignalSpy failures(&table, &CTableViewCAN::sig_realTimeSaveFailed);
    QVERIFY(table.realTimeSave(true, path("a.csv")));
    QVERIFY(QFile::resize(path("a.csv"), 20));
    show(table, frames(1));
    QTRY_COMPARE(failures.count(), 1);
    QVERIFY(!table.isRealTimeSaving());
    QCOMPARE(QFileInfo(path("a.csv")).size(), qint64(20));
}

void tst_TableRealTime::goesOnAfterASaveToItsPath()
{
    CTableViewCAN table;
    QSignalSpy failures(&table, &CTableViewCAN::sig_realTimeSaveFailed);
    QVERIFY(table.realTimeSave(true, path("a.csv")));
    show(table, frames(3));
    QVERIFY(table.save(path("a.csv"), 1));
    QCOMPARE(fileContent(path("a.csv")).count('\n'), 2 + 1 + 1);
    show(table, frames(1));
    QVERIFY(table.isRealTimeSaving());
    QTRY_COMPARE(appendedNumbers(path("a.csv")), QList<int>({4}));
    // Another path is no concern of it.
    QVERIFY(table.save(path("b.csv")));
    show(table, frames(1));
    QTRY_COMPARE(appendedNumbers(path("a.csv")), QList<int>({4, 5}));
    QCOMPARE(failures.count(), 0);
}

void tst_TableRealTime::fileIsClosedWithTheTable()
{
    {
        CTableViewCAN table;
        QVERIFY(table.realTimeSave(true, path("a.csv")));
        show(table, frames(1));
    }
    QCOMPARE(fileContent(path("a.csv")).count('\n'), 4);
    QVERIFY(QFile::remove(path("a.csv")));
}

void tst_TableRealTime::countsWhatIsNotListed()
{
    CTableViewCAN table;
    QSignalSpy changes(&table, &CTableViewCAN::sig_unlistedChanged);
    table.setCacheSize(3);
    table.addFilterId(1);
    show(table, frames(4)); // one is hidden
    QCOMPARE(table.unlistedCount(), quint64(0));
    QCOMPARE(changes.count(), 0);
    show(table, frames(4));
    QCOMPARE(table.unlistedCount(), quint64(3));
    QCOMPARE(changes.count(), 1);
    table.clearFilterIds();
    table.append(frame(1));
    table.append(frames(4));
    QCOMPARE(table.unlistedCount(), quint64(8));
    table.refresh();
    QCOMPARE(changes.count(), 2);
    table.refresh();
    QCOMPARE(changes.count(), 2);
    QCOMPARE(table.rowCount(), 3);
    table.clear();
    QCOMPARE(table.unlistedCount(), quint64(0));
    show(table, frames(4));
    QCOMPARE(table.unlistedCount(), quint64(1));
}

/// Frames for which the table has no room are counted, numbered on and saved; and not listed.
void tst_TableRealTime::fullTableGoesOnSaving()
{
    CTableViewCAN table;
    QSignalSpy rates(&table, &CTableViewCAN::updateRate);
    QSignalSpy changes(&table, &CTableViewCAN::sig_unlistedChanged);
    table.setCacheSize(3);
    table.addFilterId(0x77);
    show(table, frames(2));
    QVERIFY(table.realTimeSave(true, path("a.csv")));
    QVector<FrameRecord> mixed = frames(5, 0x10);
    mixed[3] = sentFrame(0x13);
    mixed[4] = frame(0x77); // hidden
    show(table, mixed);
    QCOMPARE(rates.count(), 1);
    QCOMPARE(rates[0], (QVariantList{1, 5}));
    QCOMPARE(table.rowCount(), 3);
    QCOMPARE(table.unlistedCount(), quint64(3));
    QCOMPARE(changes.count(), 1);
    for (quint32 id = 0x20; id < 0x25; ++id) {
        table.append(frame(id));
    }
    table.refresh();
    QCOMPARE(table.unlistedCount(), quint64(8));
    QTRY_COMPARE(appendedNumbers(path("a.csv")), QList<int>({3, 4, 5, 6, 7, 8, 9, 10, 11}));
    QVERIFY(textOf(path("a.csv")).contains("\n11,10:20:30.400,0:0:0.0,Revice,0x24,CAN,"));

    table.clear();
    QCOMPARE(table.unlistedCount(), quint64(0));
    show(table, frames(4));
    table.append(frames(1)); // waits for the next refresh
    table.realTimeSave(false, QString());
    QCOMPARE(appendedNumbers(path("a.csv")).mid(9), QList<int>({1, 2, 3, 4, 5}));
    QCOMPARE(table.rowCount(), 3);

    // Without real-time saving the full table takes no more.
    const QByteArray ended = textOf(path("a.csv"));
    table.refresh();
    table.refresh();
    rates.clear();
    table.append(frames(5));
    table.refresh();
    table.refresh();
    QCOMPARE(rates.last(), (QVariantList{0, 0}));
    QCOMPARE(table.rowCount(), 3);
    QCOMPARE(textOf(path("a.csv")), ended);
    QCOMPARE(table.unlistedCount(), quint64(7));
}

/// No number stands twice in the file.
void tst_TableRealTime::numbersGoOnWhenTheTableGrows()
{
    CTableViewCAN table;
    table.setCacheSize(2);
    QVERIFY(table.realTimeSave(true, path("a.csv")));
    show(table, frames(4));
    table.setCacheSize(10);
    show(table, frames(2));
    QCOMPARE(table.rowCount(), 4);
    QTRY_COMPARE(appendedNumbers(path("a.csv")), QList<int>({1, 2, 3, 4, 5, 6}));
    QVERIFY(table.save(path("a.csv"))); // a new file, and nothing missing between its rows and those that follow
    show(table, frames(1));
    QTRY_COMPARE(appendedNumbers(path("a.csv")), QList<int>({5}));
}

/// The table goes on, and so does the file once it moves again.
void tst_TableRealTime::fileThatStandsStill()
{
    CTableViewCAN table;
    QSignalSpy failures(&table, &CTableViewCAN::sig_realTimeSaveFailed);
    table.setTargetWrapper(behindTheGate());
    QVERIFY(table.realTimeSave(true, path("a.csv")));
    m_gate->close();
    show(table, frames(1));
    QTRY_VERIFY(m_gate->isHolding());
    for (int i = 0; i < 3; ++i) {
        show(table, frames(2));
    }
    QVERIFY(m_gate->isHolding());
    QCOMPARE(table.rowCount(), 7);
    QCOMPARE(appendedNumbers(path("a.csv")), QList<int>());
    m_gate->open();
    QTRY_COMPARE(appendedNumbers(path("a.csv")), QList<int>({1, 2, 3, 4, 5, 6, 7}));
    QVERIFY(table.isRealTimeSaving());
    QCOMPARE(failures.count(), 0);
}

/// Ending it takes StopWait at most; what is left is written later.
void tst_TableRealTime::endsWhileTheFileStandsStill()
{
    CTableViewCAN table;
    QSignalSpy failures(&table, &CTableViewCAN::sig_realTimeSaveFailed);
    table.setTargetWrapper(behindTheGate());
    QVERIFY(table.realTimeSave(true, path("a.csv")));
    m_gate->close();
    show(table, frames(2));
    table.append(frames(1));
    QVERIFY(!table.realTimeSave(false, QString()));
    QVERIFY(m_gate->isHolding());
    QVERIFY(!table.isRealTimeSaving());
    QCOMPARE(table.rowCount(), 3);
    QVERIFY(!table.waitForFiles(std::chrono::milliseconds(1)));
    m_gate->open();
    QVERIFY(table.waitForFiles(std::chrono::seconds(30)));
    QCOMPARE(appendedNumbers(path("a.csv")), QList<int>({1, 2, 3}));
    QCOMPARE(failures.count(), 0);
}

/// Also while another file is being saved.
void tst_TableRealTime::failsAfterItWasEnded()
{
    CTableViewCAN table;
    QSignalSpy failures(&table, &CTableViewCAN::sig_realTimeSaveFailed);
    table.setTargetWrapper(behindTheGate());
    QVERIFY(table.realTimeSave(true, path("a.csv")));
    m_gate->close();
    show(table, frames(2));
    QTRY_VERIFY(m_gate->isHolding());
    table.endRealTimeSaving();
    table.setTargetWrapper({});
    QVERIFY(table.realTimeSave(true, path("b.csv")));
    QVERIFY(QFile::resize(path("a.csv"), 3));
    m_gate->open();
    QTRY_COMPARE(failures.count(), 1);
    QCOMPARE(failures[0][0].toString(), path("a.csv"));
    QVERIFY(table.isRealTimeSaving());
    table.refresh();
    QCOMPARE(failures.count(), 1);
}

/// Saving ends with one word about it; what was handed over before is written whole.
void tst_TableRealTime::tooMuchWaits()
{
    CTableViewCAN table;
    QSignalSpy failures(&table, &CTableViewCAN::sig_realTimeSaveFailed);
    table.setCacheSize(1);
    table.setTargetWrapper(behindTheGate());
    QVERIFY(table.realTimeSave(true, path("a.csv")));
    m_gate->close();
    show(table, frames(2));
    const QVector<FrameRecord> large(1000, frame(1, QByteArray(65000, 'x')));
    show(table, large); // 65 MB
    QCOMPARE(failures.count(), 1);
    QCOMPARE(failures[0][0].toString(), path("a.csv"));
    QVERIFY(!table.isRealTimeSaving());
    show(table, frames(1));
    m_gate->open();
    QTRY_COMPARE(appendedNumbers(path("a.csv")), QList<int>({1, 2}));
    QCOMPARE(failures.count(), 1);
}

X9_GUI_TEST(tst_TableRealTime)
#include "tst_TableRealTime.moc"
