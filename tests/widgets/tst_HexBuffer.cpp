#include "tests/support/TestProgram.h"
#include "widgets/HexBuffer.h"

#include <QRandomGenerator>
#include <QtTest>

namespace {
/// A buffer that counts what it reports.
struct CountingBuffer : HexBuffer
{
    explicit CountingBuffer(const QByteArray &data)
    {
        setData(data);
        QObject::connect(&history(), &QUndoStack::indexChanged, [this] { ++changes; });
    }
    void undo() { history().undo(); }
    void redo() { history().redo(); }

    int changes = 0;
};

const QByteArray Digits("\x12\x34\x56\x78");
} // namespace

class tst_HexBuffer : public QObject
{
    Q_OBJECT

private slots:
    static void typesOverDigits();
    static void typesCharacters();
    static void typesOverASelection();
    static void typesNothingBehindTheEnd();
    static void removes();
    static void pastesOver();
    static void fillsInOneStep();
    static void whatChangesNothingIsNoStep();
    static void undoBringsTheCursorBack();
    static void dataBeginsAnew();
    static void selects();
    static void overwritingNeverChangesTheSize();
    static void undoesAnything();
};

void tst_HexBuffer::typesOverDigits()
{
    CountingBuffer buffer(Digits);
    buffer.typeDigit(0xA);
    QCOMPARE(buffer.data(), QByteArray("\xA2\x34\x56\x78"));
    QCOMPARE(buffer.cursor(), 1);
    buffer.typeDigit(0xB);
    QCOMPARE(buffer.data(), QByteArray("\xAB\x34\x56\x78"));
    QCOMPARE(buffer.cursor(), 2);
    QCOMPARE(buffer.changes, 2);
}

void tst_HexBuffer::typesCharacters()
{
    CountingBuffer over(Digits);
    over.write(QByteArray("A"));
    QCOMPARE(over.data(), QByteArray("\x41\x34\x56\x78"));
    QCOMPARE(over.cursor(), 2);
}

void tst_HexBuffer::typesOverASelection()
{
    CountingBuffer over(Digits);
    over.select(1, 3);
    over.typeDigit(0xF);
    QCOMPARE(over.data(), QByteArray("\x12\xF4\x56\x78"));
    QCOMPARE(over.cursor(), 3);
    QVERIFY(over.selection().isEmpty());
    over.undo();
    QCOMPARE(over.data(), Digits);
    QCOMPARE(over.cursor(), 6);
}

void tst_HexBuffer::typesNothingBehindTheEnd()
{
    CountingBuffer buffer(Digits);
    buffer.moveTo(8, false);
    buffer.typeDigit(1);
    buffer.write(QByteArray("A"));
    buffer.write(QByteArray("\x01\x02"));
    buffer.removeForward();
    QCOMPARE(buffer.data(), Digits);
    QCOMPARE(buffer.cursor(), 8);
    QCOMPARE(buffer.changes, 0);
    CountingBuffer empty{QByteArray()};
    empty.typeDigit(1);
    empty.removeBackward();
    QCOMPARE(empty.data(), QByteArray());
}

void tst_HexBuffer::removes()
{
    CountingBuffer buffer(Digits);
    buffer.moveTo(2, false);
    buffer.removeForward();
    QCOMPARE(buffer.data(), QByteArray("\x12\x00\x56\x78", 4));
    QCOMPARE(buffer.cursor(), 2);
    buffer.removeBackward();
    QCOMPARE(buffer.data(), QByteArray("\x00\x00\x56\x78", 4));
    QCOMPARE(buffer.cursor(), 0);
    buffer.removeBackward();
    QCOMPARE(buffer.changes, 2);
    buffer.moveTo(5, false); // in the middle of a byte: that one
    buffer.removeBackward();
    QCOMPARE(buffer.data(), QByteArray("\x00\x00\x00\x78", 4));
    QCOMPARE(buffer.cursor(), 4);
    buffer.setData(Digits);
    buffer.select(0, 3);
    buffer.removeForward();
    QCOMPARE(buffer.data(), QByteArray("\x00\x00\x00\x78", 4));
}

void tst_HexBuffer::pastesOver()
{
    CountingBuffer buffer(Digits);
    buffer.moveTo(3, false);
    buffer.write(QByteArray("\xAA\xBB"));
    QCOMPARE(buffer.data(), QByteArray("\x12\xAA\xBB\x78"));
    QCOMPARE(buffer.cursor(), 6);
    buffer.write(QByteArray(100, '\xCC'));
    QCOMPARE(buffer.data(), QByteArray("\x12\xAA\xBB\xCC"));
    buffer.select(0, 2);
    buffer.write(QByteArray("\x01"));
    QCOMPARE(buffer.data(), QByteArray("\x01\xAA\xBB\xCC"));
}

void tst_HexBuffer::fillsInOneStep()
{
    CountingBuffer buffer(Digits);
    buffer.typeDigit(0xA);
    buffer.fill('\0');
    QCOMPARE(buffer.data(), QByteArray(4, '\0'));
    buffer.undo();
    QCOMPARE(buffer.data(), QByteArray("\xA2\x34\x56\x78"));
    buffer.undo();
    QCOMPARE(buffer.data(), Digits);
    buffer.redo();
    buffer.redo();
    QCOMPARE(buffer.data(), QByteArray(4, '\0'));
}

void tst_HexBuffer::whatChangesNothingIsNoStep()
{
    CountingBuffer buffer(Digits);
    buffer.typeDigit(1);
    QCOMPARE(buffer.cursor(), 1);
    buffer.typeDigit(2);
    buffer.write(QByteArray(R"(4V)"));
    QCOMPARE(buffer.cursor(), 6);
    QCOMPARE(buffer.changes, 0);
    QVERIFY(!buffer.history().canUndo());
}

void tst_HexBuffer::undoBringsTheCursorBack()
{
    CountingBuffer buffer(Digits);
    buffer.moveTo(3, false);
    buffer.typeDigit(0xF);
    buffer.moveTo(0, false);
    buffer.undo();
    QCOMPARE(buffer.cursor(), 3);
    buffer.moveTo(0, false);
    buffer.redo();
    QCOMPARE(buffer.cursor(), 4);
}

void tst_HexBuffer::dataBeginsAnew()
{
    CountingBuffer buffer(Digits);
    buffer.typeDigit(0xF);
    buffer.select(1, 3);
    buffer.setData(QByteArray("\x01"));
    QVERIFY(!buffer.history().canUndo());
    QCOMPARE(buffer.cursor(), 0);
    QVERIFY(buffer.selection().isEmpty());
}

void tst_HexBuffer::selects()
{
    CountingBuffer buffer(Digits);
    QVERIFY(buffer.selection().isEmpty());
    buffer.moveTo(3, false);
    buffer.moveTo(6, true);
    QCOMPARE(buffer.selection().first, 1);
    QCOMPARE(buffer.selection().end, 3);
    QCOMPARE(buffer.selectedBytes(), QByteArray("\x34\x56"));
    buffer.moveTo(0, true);
    QCOMPARE(buffer.selectedBytes(), QByteArray("\x12"));
    buffer.moveTo(99, true);
    QCOMPARE(buffer.selectedBytes(), QByteArray("\x34\x56\x78"));
    buffer.moveTo(-1, false);
    QCOMPARE(buffer.cursor(), 0);
    QVERIFY(buffer.selection().isEmpty());
}

namespace {
void editAnyhow(HexBuffer &buffer, QRandomGenerator &random)
{
    const int place = random.bounded(-3, 2 * buffer.size() + 3);
    switch (random.bounded(9)) {
    case 0:
        buffer.typeDigit(random.bounded(16));
        break;
    case 1:
        buffer.write(QByteArray(1, static_cast<char>(random.bounded(256))));
        break;
    case 2:
        buffer.removeForward();
        break;
    case 3:
        buffer.removeBackward();
        break;
    case 4:
        buffer.write(QByteArray(random.bounded(12), static_cast<char>(random.bounded(256))));
        break;
    case 5:
        buffer.fill(static_cast<char>(random.bounded(2)));
        break;
    case 6:
        buffer.select(place, random.bounded(-3, buffer.size() + 3));
        break;
    default:
        buffer.moveTo(place, random.bounded(3) == 0);
        break;
    }
}
} // namespace

void tst_HexBuffer::overwritingNeverChangesTheSize()
{
    QRandomGenerator random(1);
    for (int size : {0, 1, 8, 64}) {
        CountingBuffer buffer(QByteArray(size, '\x11'));
        for (int i = 0; i < 3000; ++i) {
            editAnyhow(buffer, random);
            QCOMPARE(buffer.size(), size);
            QVERIFY(buffer.cursor() >= 0 && buffer.cursor() <= 2 * size);
        }
    }
}

void tst_HexBuffer::undoesAnything()
{
    QRandomGenerator random(2);
    CountingBuffer buffer(Digits);
    QVector<QByteArray> states{Digits};
    for (int i = 0; i < 2000; ++i) {
        editAnyhow(buffer, random);
        if (buffer.data() != states.last()) {
            states.append(buffer.data());
        }
    }
    QCOMPARE(buffer.history().count(), states.size() - 1);
    for (int i = states.size() - 2; i >= 0; --i) {
        buffer.undo();
        QCOMPARE(buffer.data(), states.at(i));
    }
    for (int i = 1; i < states.size(); ++i) {
        buffer.redo();
        QCOMPARE(buffer.data(), states.at(i));
    }
}

X9_CORE_TEST(tst_HexBuffer)
#include "tst_HexBuffer.moc"
