#include "capture/SendList.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

#include <cstring>

namespace {
/// A row by its name (its identifier), send count and interval.
DataModel row(char name, int sendCount, int interval = 1)
{
    DataModel model;
    model.frame.ID = static_cast<uchar>(name);
    model.sendCount = static_cast<quint16>(sendCount);
    model.interval = static_cast<quint16>(interval);
    return model;
}

/// Sends a list to its end: the rows by name, each followed by the wait behind it.
QString runToTheEnd(SendList &list)
{
    QString text;
    while (list.isRunning() && text.size() < 1000) {
        text += QLatin1Char(static_cast<char>(list.current().frame.ID));
        const std::optional<int> wait = list.advance();
        text += wait ? QStringLiteral(" %1 ").arg(*wait) : QString();
    }
    return text;
}

QByteArray dataOf(const DataModel &model)
{
    return QByteArray(reinterpret_cast<const char *>(model.frame.Data), sizeof model.frame.Data).toHex();
}
} // namespace

using Rows = std::vector<DataModel>;
Q_DECLARE_METATYPE(Rows)
Q_DECLARE_METATYPE(SendList::Mode)
Q_DECLARE_METATYPE(DataModelCells)

class tst_SendList : public QObject
{
    Q_OBJECT

private slots:
    static void orders_data();
    static void orders();
    static void indexOfTheRow();
    static void startsAnew();
    static void stops();
    static void nothingToSend();
    static void longestCounts();
    static void identifiers_data();
    static void identifiers();
    static void payloads_data();
    static void payloads();
    static void numbers_data();
    static void numbers();
    static void everythingElseIsZero();
    static void digits_data();
    static void digits();
    static void fdRecord();
};

void tst_SendList::orders_data()
{
    QTest::addColumn<Rows>("rows");
    QTest::addColumn<int>("repeat");
    QTest::addColumn<SendList::Mode>("mode");
    QTest::addColumn<QString>("sent");
    constexpr auto Parallel = SendList::Mode::Parallel;
    constexpr auto Order = SendList::Mode::Order;

    // The list interval is 500 throughout.
    QTest::newRow("parallel, one send") << Rows{row('A', 1, 7)} << 1 << Parallel << QStringLiteral("A");
    QTest::newRow("parallel, one row") << Rows{row('A', 3, 7)} << 1 << Parallel << QStringLiteral("A 7 A 7 A");
    QTest::newRow("parallel, 2 and 1") << Rows{row('A', 2), row('B', 1)} << 1 << Parallel
                                       << QStringLiteral("A 1 B 1 A");
    QTest::newRow("parallel, the wait is that of the row sent")
        << Rows{row('A', 2, 10), row('B', 2, 20), row('C', 1, 30)} << 1 << Parallel
        << QStringLiteral("A 10 B 20 C 30 A 10 B");
    QTest::newRow("parallel, the last row alone is left")
        << Rows{row('A', 1), row('B', 1), row('C', 3)} << 1 << Parallel << QStringLiteral("A 1 B 1 C 1 C 1 C");
    QTest::newRow("parallel, exhausted rows are left out")
        << Rows{row('A', 3), row('B', 1), row('C', 2)} << 1 << Parallel << QStringLiteral("A 1 B 1 C 1 A 1 C 1 A");
    QTest::newRow("parallel does not repeat")
        << Rows{row('A', 1), row('B', 1)} << 3 << Parallel << QStringLiteral("A 1 B");

    QTest::newRow("order, one send") << Rows{row('A', 1, 7)} << 1 << Order << QStringLiteral("A");
    QTest::newRow("order, 2 and 1, twice")
        << Rows{row('A', 2), row('B', 1)} << 2 << Order << QStringLiteral("A 1 A 1 B 500 A 1 A 1 B");
    QTest::newRow("order, the wait is that of the row sent") << Rows{row('A', 2, 10), row('B', 1, 20), row('C', 2, 30)}
                                                             << 1 << Order << QStringLiteral("A 10 A 10 B 20 C 30 C");
    QTest::newRow("order, one row, three times")
        << Rows{row('A', 1, 7)} << 3 << Order << QStringLiteral("A 500 A 500 A");
    QTest::newRow("order, counts are restored each time")
        << Rows{row('A', 1), row('B', 2)} << 3 << Order << QStringLiteral("A 1 B 1 B 500 A 1 B 1 B 500 A 1 B 1 B");
}

void tst_SendList::orders()
{
    QFETCH(Rows, rows);
    QFETCH(int, repeat);
    QFETCH(SendList::Mode, mode);
    QFETCH(QString, sent);
    SendList list;
    list.start(rows, repeat, 500, mode);
    QVERIFY(list.isRunning());
    QCOMPARE(runToTheEnd(list), sent);
    QVERIFY(!list.isRunning());
}

void tst_SendList::indexOfTheRow()
{
    SendList list;
    list.start({row('A', 1), row('B', 1)}, 2, 1, SendList::Mode::Order);
    QCOMPARE(list.currentIndex(), std::size_t(0));
    list.advance();
    QCOMPARE(list.currentIndex(), std::size_t(1));
    list.advance();
    QCOMPARE(list.currentIndex(), std::size_t(0));
}

void tst_SendList::startsAnew()
{
    SendList list;
    list.start({row('A', 5), row('B', 5)}, 2, 500, SendList::Mode::Order);
    list.advance();
    list.start({row('C', 1), row('D', 1)}, 1, 500, SendList::Mode::Parallel);
    QCOMPARE(runToTheEnd(list), QStringLiteral("C 1 D"));
    list.start({row('A', 1)}, 2, 500, SendList::Mode::Order);
    QCOMPARE(runToTheEnd(list), QStringLiteral("A 500 A"));
}

void tst_SendList::stops()
{
    SendList list;
    list.start({row('A', 5)}, 2, 500, SendList::Mode::Order);
    list.stop();
    QVERIFY(!list.isRunning());
}

void tst_SendList::nothingToSend()
{
    SendList list;
    QVERIFY(!list.isRunning());
    list.start({}, 1, 1, SendList::Mode::Parallel);
    QVERIFY(!list.isRunning());
}

void tst_SendList::longestCounts()
{
    SendList list;
    list.start({row('A', 65535, 65535)}, 1, 1, SendList::Mode::Parallel);
    int sends = 1;
    while (const std::optional<int> wait = list.advance()) {
        QCOMPARE(*wait, 65535);
        ++sends;
    }
    QCOMPARE(sends, 65535);
    list.start({row('A', 1)}, 65535, 65535, SendList::Mode::Order);
    sends = 1;
    while (const std::optional<int> wait = list.advance()) {
        QCOMPARE(*wait, 65535);
        ++sends;
    }
    QCOMPARE(sends, 65535);
}

void tst_SendList::identifiers_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<bool>("isExtended");
    QTest::addColumn<quint32>("sentId");
    QTest::newRow("zero") << 0U << false << 0U;
    QTest::newRow("highest standard") << 0x7FFU << false << 0x7FFU;
    QTest::newRow("too high for standard") << 0x800U << false << 0x7FFU;
    QTest::newRow("switched to standard") << 0x123456U << false << 0x7FFU;
    QTest::newRow("extended") << 0x123456U << true << 0x123456U;
    QTest::newRow("highest extended") << 0x1FFFFFFFU << true << 0x1FFFFFFFU;
    QTest::newRow("above 29 bits") << 0xFFFFFFFFU << true << 0x1FFFFFFFU;
}

void tst_SendList::identifiers()
{
    QFETCH(quint32, id);
    QFETCH(bool, isExtended);
    QFETCH(quint32, sentId);
    DataModelCells cells;
    cells.id = id;
    cells.isExtended = isExtended;
    const DataModel model = dataModelOf(cells);
    QCOMPARE(quint32(model.frame.ID), sentId);
    QCOMPARE(int(model.frame.ExternFlag), isExtended ? 1 : 0);
}

void tst_SendList::payloads_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("sentLength");
    QTest::addColumn<QByteArray>("sentData");
    const auto add = [](const char *name, int length, const char *text, int sentLength, const char *data) {
        QTest::newRow(name) << length << QString::fromLatin1(text) << sentLength << QByteArray(data);
    };
    add("none", 0, "", 0, "0000000000000000");
    add("as long as the length", 3, "01 A2 FF", 3, "01a2ff0000000000");
    add("no blanks", 3, "01a2fF", 3, "01a2ff0000000000");
    add("data beyond the length", 1, "01 A2 FF", 1, "0100000000000000");
    add("data without a length", 0, "01 A2 FF", 0, "0000000000000000");
    add("missing bytes are 0", 8, "01 A2", 8, "01a2000000000000");
    add("an odd number of digits", 2, "ABC", 2, "ab0c000000000000");
    add("eight bytes", 8, "1122334455667788", 8, "1122334455667788");
    add("nine bytes", 8, "112233445566778899", 8, "1122334455667788");
    add("length above 8", 9, "112233445566778899", 8, "1122334455667788");
    add("length below 0", -1, "11", 0, "0000000000000000");
}

void tst_SendList::payloads()
{
    QFETCH(int, length);
    QFETCH(QString, text);
    QFETCH(int, sentLength);
    QFETCH(QByteArray, sentData);
    DataModelCells cells;
    cells.length = length;
    cells.data = text;
    const DataModel model = dataModelOf(cells);
    QCOMPARE(int(model.frame.DataLen), sentLength);
    QCOMPARE(dataOf(model), sentData);
}

void tst_SendList::numbers_data()
{
    QTest::addColumn<int>("cell");
    QTest::addColumn<int>("number");
    QTest::newRow("lowest") << 1 << 1;
    QTest::newRow("highest") << 65535 << 65535;
    QTest::newRow("zero") << 0 << 1;
    QTest::newRow("negative") << -1 << 1;
    QTest::newRow("too high") << 65536 << 65535;
}

void tst_SendList::numbers()
{
    QFETCH(int, cell);
    QFETCH(int, number);
    DataModelCells cells;
    cells.frameCount = cell;
    QCOMPARE(int(dataModelOf(cells).frameCount), number);
    QCOMPARE(int(dataModelOf(cells).sendCount), 1);
    QCOMPARE(int(dataModelOf(cells).interval), 1);
    cells = {};
    cells.sendCount = cell;
    QCOMPARE(int(dataModelOf(cells).sendCount), number);
    QCOMPARE(int(dataModelOf(cells).frameCount), 1);
    cells = {};
    cells.interval = cell;
    QCOMPARE(int(dataModelOf(cells).interval), number);
    QCOMPARE(int(dataModelOf(cells).sendCount), 1);
}

void tst_SendList::everythingElseIsZero()
{
    const DataModelCells cells{0x1ABCDEF, true, 8, QStringLiteral("FFFFFFFFFFFFFFFF"), 2, 3, 4};
    VCI_CAN_OBJ expected{};
    expected.ID = 0x1ABCDEF;
    expected.ExternFlag = 1;
    expected.DataLen = 8;
    std::memset(expected.Data, 0xFF, sizeof expected.Data);
    const DataModel model = dataModelOf(cells);
    QCOMPARE(std::memcmp(&model.frame, &expected, sizeof expected), 0);
}

void tst_SendList::digits_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("digits");
    QTest::addColumn<QString>("text");
    const auto add = [](const char *typed, const char *digits, const char *text) {
        QTest::newRow(typed) << QString::fromLatin1(typed) << QString::fromLatin1(digits) << QString::fromLatin1(text);
    };
    add("", "", "");
    add("  \t ", "", "");
    add("01a2ff", "01A2FF", "01 A2 FF");
    add(" 01 A2\tFF ", "01A2FF", "01 A2 FF");
    add("0 1a 2ff", "01A2FF", "01 A2 FF");
    add("a", "0A", "0A");
    add("ABC", "AB0C", "AB 0C");
    add("1122334455667788", "1122334455667788", "11 22 33 44 55 66 77 88");
    add("11223344556677889", "1122334455667788", "11 22 33 44 55 66 77 88");
    add("0x1g-2", "0102", "01 02");
}

void tst_SendList::digits()
{
    QFETCH(QString, typed);
    QFETCH(QString, digits);
    QFETCH(QString, text);
    QCOMPARE(payloadDigits(typed), digits);
    QCOMPARE(payloadDigits(text), digits);
}

void tst_SendList::fdRecord()
{
    const DataModelCells cells{0x1ABCDEF, true, 3, QStringLiteral("01A2FF"), 1, 1, 1};
    VCI_CANFD_OBJ expected{};
    expected.ID = 0x1ABCDEF;
    expected.ExternFlag = 1;
    expected.DataLen = 3;
    expected.Data[0] = 0x01;
    expected.Data[1] = 0xA2;
    expected.Data[2] = 0xFF;
    const VCI_CANFD_OBJ record = toCanFdRecord(dataModelOf(cells).frame);
    QCOMPARE(std::memcmp(&record, &expected, sizeof expected), 0);

    VCI_CAN_OBJ tooLong{};
    tooLong.DataLen = 255;
    QCOMPARE(int(toCanFdRecord(tooLong).DataLen), 8);
}

X9_PLAIN_TEST(tst_SendList)
#include "tst_SendList.moc"
