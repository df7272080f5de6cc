#include "capture/CaptureInput.h"
#include "tests/support/TestProgram.h"

#include <QBuffer>
#include <QTest>

#include <functional>

namespace {

/// A file whose reading can be watched and disturbed. Without a hook it gives all it is asked for.
class WatchedFile : public QIODevice
{
public:
    explicit WatchedFile(const QByteArray &content, qint64 announced = -1)
        : m_content(content)
        , m_announced(announced < 0 ? content.size() : announced)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    qint64 size() const override { return m_announced; }

    std::function<qint64(qint64 wanted)> onRead;
    int reads = 0;

protected:
    qint64 readData(char *data, qint64 wanted) override
    {
        ++reads;
        if (onRead) {
            wanted = onRead(wanted);
        }
        const qint64 size = std::min<qint64>(wanted, m_content.size() - m_place);
        if (size > 0) {
            memcpy(data, m_content.constData() + m_place, std::size_t(size));
            m_place += size;
        }
        return size;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_content;
    qint64 m_announced;
    qint64 m_place = 0;
};

QByteArray toBytes(std::string_view text)
{
    return {text.data(), int(text.size())};
}

QList<QByteArray> linesOf(QIODevice &file)
{
    CaptureInput in(file, nullptr);
    QList<QByteArray> lines;
    while (const auto line = in.line()) {
        lines.append(toBytes(*line));
    }
    return lines;
}

constexpr int Piece = int(CaptureInput::PieceSize);

} // namespace

class tst_CaptureInput : public QObject
{
    Q_OBJECT

private slots:
    static void lines_data();
    static void lines();
    static void linesOfAnyLengthAcrossPieces();
    static void needCountsWhatIsLeft();
    static void smallReadsAreJoined();
    static void readsNoMoreThanTheFileHeldAtFirst();
    static void fileCutMeanwhileEndsEarly();
    static void failingReadIsBroken();
    static void stopIsSeenAtTheNextPiece();
    static void longLineIsReadOnce();
};

void tst_CaptureInput::lines_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QList<QByteArray>>("expected");
    QTest::newRow("no byte") << QByteArray() << QList<QByteArray>();
    QTest::newRow("one end") << QByteArray("\n") << QList<QByteArray>{""};
    QTest::newRow("LF") << QByteArray("a\nb\n") << QList<QByteArray>{"a", "b"};
    QTest::newRow("CR LF") << QByteArray("a\r\nb\r\n\r\n") << QList<QByteArray>{"a", "b", ""};
    QTest::newRow("CR CR LF") << QByteArray("a\r\r\nb") << QList<QByteArray>{"a", "b"};
    QTest::newRow("CR inside") << QByteArray("a\rb\n") << QList<QByteArray>{"a\rb"};
    QTest::newRow("no last end") << QByteArray("a\nb") << QList<QByteArray>{"a", "b"};
    QTest::newRow("zeros") << QByteArray("\0\n\0", 3) << QList<QByteArray>{QByteArray("\0", 1), QByteArray("\0", 1)};
}

void tst_CaptureInput::lines()
{
    QFETCH(QByteArray, file);
    QFETCH(QList<QByteArray>, expected);
    WatchedFile device(file);
    QCOMPARE(linesOf(device), expected);
}

void tst_CaptureInput::linesOfAnyLengthAcrossPieces()
{
    QList<QByteArray> expected;
    for (const int size : {1, Piece - 2, Piece - 1, Piece, 7, Piece + 1, 3 * Piece + 5, 0, 2 * Piece, 20}) {
        expected.append(QByteArray(size, char('a' + expected.size())));
    }
    WatchedFile device(expected.join('\n'));
    QCOMPARE(linesOf(device), expected);
}

void tst_CaptureInput::needCountsWhatIsLeft()
{
    WatchedFile device("abcde");
    CaptureInput in(device, nullptr);
    QVERIFY(in.need(0));
    QVERIFY(in.need(5));
    QCOMPARE(toBytes(in.window()), QByteArray("abcde"));
    in.skip(3);
    QVERIFY(in.need(2));
    QVERIFY(!in.need(3));
    QCOMPARE(toBytes(in.window()), QByteArray("de"));
    QVERIFY(!in.isBroken());
}

void tst_CaptureInput::smallReadsAreJoined()
{
    WatchedFile device("first line\nsecond line\nthird");
    device.onRead = [](qint64) {
        return 1;
    };
    QCOMPARE(linesOf(device), (QList<QByteArray>{"first line", "second line", "third"}));
}

void tst_CaptureInput::readsNoMoreThanTheFileHeldAtFirst()
{
    WatchedFile device("abcdef", 4);
    QCOMPARE(linesOf(device), QList<QByteArray>{"abcd"});
}

void tst_CaptureInput::fileCutMeanwhileEndsEarly()
{
    WatchedFile device("ab\ncd", 1000);
    CaptureInput in(device, nullptr);
    QCOMPARE(toBytes(in.line().value_or("")), QByteArray("ab"));
    QCOMPARE(toBytes(in.line().value_or("")), QByteArray("cd"));
    QVERIFY(!in.line());
    QVERIFY(!in.isBroken());
}

void tst_CaptureInput::failingReadIsBroken()
{
    WatchedFile device(QByteArray(3 * Piece, 'a'));
    device.onRead = [&device](qint64 wanted) {
        return device.reads < 2 ? wanted : -1;
    };
    CaptureInput in(device, nullptr);
    QVERIFY(!in.need(2 * CaptureInput::PieceSize));
    QVERIFY(in.isBroken());
    QCOMPARE(device.reads, 2);
    QVERIFY(!in.need(2 * CaptureInput::PieceSize));
    QCOMPARE(device.reads, 2);
}

void tst_CaptureInput::stopIsSeenAtTheNextPiece()
{
    std::atomic<bool> stop{false};
    WatchedFile device(QByteArray(10 * Piece, '\n'));
    device.onRead = [&](qint64 wanted) {
        stop = device.reads == 3;
        return wanted;
    };
    CaptureInput in(device, &stop);
    while (in.line()) {
    }
    QVERIFY(in.isBroken());
    QCOMPARE(device.reads, 3);
}

void tst_CaptureInput::longLineIsReadOnce()
{
    WatchedFile device(QByteArray(40 * Piece, 'a'));
    QCOMPARE(linesOf(device).value(0).size(), 40 * Piece);
    QCOMPARE(device.reads, 40);
}

X9_PLAIN_TEST(tst_CaptureInput)
#include "tst_CaptureInput.moc"
