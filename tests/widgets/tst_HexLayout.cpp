#include "tests/support/TestProgram.h"
#include "widgets/HexLayout.h"

#include <QtTest>

namespace {
HexLayout layoutOf(int size, int bytesPerLine)
{
    HexLayout layout;
    layout.size = size;
    layout.bytesPerLine = bytesPerLine;
    return layout;
}
} // namespace

class tst_HexLayout : public QObject
{
    Q_OBJECT

private slots:
    static void lines_data();
    static void lines();
    static void columns();
    static void everyByteIsFoundWhereItStands_data();
    static void everyByteIsFoundWhereItStands();
    static void nearestPlace_data();
    static void nearestPlace();
    static void moves_data();
    static void moves();
};

void tst_HexLayout::lines_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("bytesPerLine");
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("indexBehind");
    QTest::newRow("empty") << 0 << 8 << 1 << 0;
    QTest::newRow("begun") << 1 << 8 << 1 << 1;
    QTest::newRow("full") << 8 << 8 << 1 << 8;
    QTest::newRow("second begun") << 9 << 8 << 2 << 1;
    QTest::newRow("one per line") << 64 << 1 << 64 << 1;
}

void tst_HexLayout::lines()
{
    QFETCH(int, size);
    QFETCH(int, bytesPerLine);
    QFETCH(int, lines);
    const HexLayout layout = layoutOf(size, bytesPerLine);
    QCOMPARE(layout.lines(), lines);
    QCOMPARE(layout.lineOf(size), lines - 1);
    QTEST(layout.indexInLine(size), "indexBehind");
}

// "0000  00 00  .." and the place behind.
void tst_HexLayout::columns()
{
    const HexLayout layout = layoutOf(2, 2);
    QCOMPARE(layout.columnOf(0, HexArea::Hex), 6);
    QCOMPARE(layout.columnOf(1, HexArea::Hex), 9);
    QCOMPARE(layout.columnOf(0, HexArea::Ascii), 13);
    QCOMPARE(layout.columns(), 16);
}

void tst_HexLayout::everyByteIsFoundWhereItStands_data()
{
    QTest::addColumn<int>("bytesPerLine");
    for (int count = 1; count <= 16; ++count) {
        QTest::newRow(qPrintable(QString::number(count))) << count;
    }
}

void tst_HexLayout::everyByteIsFoundWhereItStands()
{
    QFETCH(int, bytesPerLine);
    for (int size : {0, 1, 15, 16, 64}) {
        const HexLayout layout = layoutOf(size, bytesPerLine);
        for (int byte = 0; byte <= size; ++byte) {
            const int line = layout.lineOf(byte);
            const int index = layout.indexInLine(byte);
            QCOMPARE(layout.placeAt(line, layout.columnOf(index, HexArea::Hex)).nibble, 2 * byte);
            QVERIFY(layout.placeAt(line, layout.columnOf(index, HexArea::Hex)).area == HexArea::Hex);
            if (byte < size) {
                QCOMPARE(layout.placeAt(line, layout.columnOf(index, HexArea::Hex) + 1).nibble, 2 * byte + 1);
            }
            QCOMPARE(layout.placeAt(line, layout.columnOf(index, HexArea::Ascii)).nibble, 2 * byte);
            QVERIFY(layout.placeAt(line, layout.columnOf(index, HexArea::Ascii)).area == HexArea::Ascii);
        }
    }
}

void tst_HexLayout::nearestPlace_data()
{
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("nibble");
    QTest::addColumn<bool>("isHex");
    // 11 bytes in lines of 4: "0000  00 00 00 00  ....", digits from column 6, characters from column 19
    QTest::newRow("above") << -5 << 6 << 0 << true;
    QTest::newRow("in the address") << 1 << 2 << 8 << true;
    QTest::newRow("left of all") << 1 << -1 << 8 << true;
    QTest::newRow("blank behind a byte") << 0 << 8 << 1 << true;
    QTest::newRow("gap behind a full line") << 0 << 18 << 7 << true;
    QTest::newRow("right of a full line") << 0 << 99 << 6 << false;
    QTest::newRow("right of the last digits") << 2 << 16 << 22 << true;
    QTest::newRow("right of the last characters") << 2 << 99 << 22 << false;
    QTest::newRow("below") << 99 << 6 << 16 << true;
}

void tst_HexLayout::nearestPlace()
{
    QFETCH(int, line);
    QFETCH(int, column);
    QFETCH(bool, isHex);
    const HexPlace place = layoutOf(11, 4).placeAt(line, column);
    QTEST(place.nibble, "nibble");
    QCOMPARE(place.area == HexArea::Hex, isHex);
}

void tst_HexLayout::moves_data()
{
    QTest::addColumn<int>("move");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("digits");     // in the hexadecimal area
    QTest::addColumn<int>("characters"); // in the other area
    QTest::addColumn<int>("extending");
    const auto row = [](const char *name, HexMove move, int from, int digits, int characters, int extending) {
        QTest::newRow(name) << static_cast<int>(move) << from << digits << characters << extending;
    };
    // 22 bytes in lines of 8: lines begin at nibble 0, 16 and 32, behind the last byte is 44; a page has 2 lines
    row("left", HexMove::Left, 4, 3, 2, 2);
    row("left from a second digit", HexMove::Left, 5, 4, 4, 4);
    row("left at the start", HexMove::Left, 0, 0, 0, 0);
    row("right", HexMove::Right, 4, 5, 6, 6);
    row("right at the last digit", HexMove::Right, 43, 44, 44, 44);
    row("right at the end", HexMove::Right, 44, 44, 44, 44);
    row("up", HexMove::Up, 21, 5, 5, 5);
    row("up in the first line", HexMove::Up, 5, 5, 5, 5);
    row("down", HexMove::Down, 5, 21, 21, 21);
    row("down to a shorter line", HexMove::Down, 30, 44, 44, 44);
    row("down in the last line", HexMove::Down, 33, 33, 33, 33);
    row("page up", HexMove::PageUp, 36, 4, 4, 4);
    row("page up near the top", HexMove::PageUp, 18, 2, 2, 2);
    row("page down", HexMove::PageDown, 4, 36, 36, 36);
    row("page down near the bottom", HexMove::PageDown, 18, 34, 34, 34);
    row("home", HexMove::LineStart, 21, 16, 16, 16);
    row("home at the end", HexMove::LineStart, 44, 32, 32, 32);
    row("end", HexMove::LineEnd, 21, 30, 30, 32);
    row("end in the last line", HexMove::LineEnd, 33, 44, 44, 44);
    row("start", HexMove::Start, 33, 0, 0, 0);
    row("end of all", HexMove::End, 5, 44, 44, 44);
}

void tst_HexLayout::moves()
{
    QFETCH(int, move);
    QFETCH(int, from);
    const HexLayout layout = layoutOf(22, 8);
    const auto way = static_cast<HexMove>(move);
    constexpr int page = 2;
    QTEST(layout.moved(way, {HexArea::Hex, from}, false, page), "digits");
    QTEST(layout.moved(way, {HexArea::Ascii, from}, false, page), "characters");
    QTEST(layout.moved(way, {HexArea::Hex, from}, true, page), "extending");

    // Behind a full last line the cursor stands in that line.
    const HexLayout full = layoutOf(16, 8);
    QCOMPARE(full.moved(HexMove::Up, {HexArea::Hex, 32}, false, page), 14);
    QCOMPARE(full.moved(HexMove::LineStart, {HexArea::Hex, 32}, false, page), 16);
    QCOMPARE(full.moved(HexMove::Down, {HexArea::Hex, 32}, false, page), 32);
    QCOMPARE(full.moved(HexMove::PageDown, {HexArea::Ascii, 32}, false, page), 32);
    // Nothing to move over.
    QCOMPARE(layoutOf(0, 8).moved(way, {HexArea::Hex, 0}, false, page), 0);
}

X9_PLAIN_TEST(tst_HexLayout)
#include "tst_HexLayout.moc"
