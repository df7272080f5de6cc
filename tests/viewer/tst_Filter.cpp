#include "tests/support/TestProgram.h"
#include "tests/viewer/TestSignals.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/Filter.h"

#include <QtTest>

namespace {

const std::shared_ptr<const SignalSource> Database = std::make_shared<TestSignals>();

/// Row, from 0: what is special about it.
std::vector<BusFrame> frames()
{
    std::vector<BusFrame> list;
    list.push_back(canFrame(0, 0x123, "DEAD01EF"));                             // 0
    list.push_back(canFrame(1000000000, 0x100, "F0000701"));                    // 1: Speed 120, State 7
    list.push_back(canFrame(1500000000, 0x100, "F2000700"));                    // 2: Speed 121, no State
    list.push_back(canFrame(2000000000, 0x1FF, "80"));                          // 3
    list.push_back(canFrame(2000000001, 0x18FF1234, "3C", BusFrame::Extended)); // 4: Temp 20
    list.push_back(
        canFrame(3000000000, 0x200, "000102030405060708090A0B", BusFrame::Fd | BusFrame::BitRateSwitch)); // 5
    list.push_back(canFrame(4000000000, 0x123, "0000", BusFrame::Remote));                                // 6
    list.push_back(canFrame(5000000000, 0x4, "0000000000000000", BusFrame::Error));                       // 7
    list.push_back(canFrame(6000000000, 0x3C, "01", BusFrame::Lin));                                      // 8
    list.push_back(canFrame(BusFrame::NoTime, 0x100, ""));                                                // 9
    list[3].direction = BusFrame::Sent;
    list[5].direction = BusFrame::Refused;
    list[5].channel = 1;
    list[5].set(BusFrame::ErrorStateIndicator);
    return list;
}

/// A row of the table of filters: the rows that pass.
void row(const char *text, const char *rows)
{
    QTest::newRow(text) << QString::fromUtf8(text) << QString::fromLatin1(rows);
}

} // namespace

class tst_Filter : public QObject
{
    Q_OBJECT

private slots:
    static void passes_data();
    static void passes();
    static void errors_data();
    static void errors();
    static void completion_data();
    static void completion();
    static void completesNothingInNumbers();
    static void passingCrossesBatches();
    static void firstPassing();
    static void samples();
    static void withoutDatabase();
    static void anythingCanBeTyped();
    static void hostileTexts_data();
    static void hostileTexts();

private:
    static void addComparisons();
    static void addSignalsAndWords();
    static void addArithmetic();
};

void tst_Filter::passes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("rows");
    addComparisons();
    addSignalsAndWords();
    addArithmetic();
}

void tst_Filter::addComparisons()
{
    row("", "0123456789");
    row("  ", "0123456789");
    row("id == 0x123", "06");
    row("id = 0x123", "06");
    row("ID == 291", "06");
    row("id == 0b100100011", "06");
    row("id != 0x123", "1234589"); // an error frame has no identifier
    row("id in 0x100..0x1FF", "012369");
    row("id not in 0x100..0x1FF", "4578");
    row("id in {0x100, 0x200..0x300}", "1259");
    row("id in -1..5", "");
    row("dir == tx", "3");
    row("dir != rx", "35");
    row("tx or refused", "35");
    row("dir == refused", "5");
    row("len > 8", "5");
    row("len <= 1", "3489");
    row("len >= 8", "57");
    row("len < 1", "9");
    row("data[0] & 0x80", "0123");
    row("data[0] & 0x80 == 0x80", "0123");
    row("(data[0] & 0x80) == 0", "4578");
    row("data[11] == 0x0B", "5");
    row("data[63] == 0", "");
    row("!(data[63] == 0)", "0123456789");
    row("data[0] == 0", "57"); // a remote frame has no data
    row("data ~ \"DE AD ?? EF\"", "0");
    row("data ~ 'de ad'", "0");
    row("data ~ \"0A0B\"", "5");
    row("data ~ \"0?\"", "012578");
    row("data ~ \"^0?\"", "578");
    row("data !~ \"0?\"", "3469");
    row("data == \"80\"", "3");
    row("data == \"8?\"", "3");
    row("data != \"80\"", "012456789");
    row("name ~ \"engine\"", "1249");
    row("name == \"Engine\"", "129");
    row("name != \"Engine\"", "0345678");
}

void tst_Filter::addSignalsAndWords()
{
    row("Speed > 120", "2");
    row("Speed >= 120", "12");
    row("Engine.Speed == 120.0", "1");
    row("State == 7", "1");
    row("State != 8", "1");
    row("State", "1");
    row("State == \"Open\"", "1");
    row("State == \"On\"", "");
    row("State != \"Open\"", "");
    row("State != \"On\"", "1"); // the others do not have the signal
    row("not State == \"On\"", "0123456789");
    row("State ~ 'PEN'", "1");
    row("State ~ \"n\"", "1"); // one of three texts
    row("State !~ \"off\"", "1");
    row("State !~ \"o\"", "");
    row("(State) == 'Open' and Speed > 1", "1");
    row("Temp == 20", "4");
    row("Temp == -20 or Temp == 2e1", "4");
    row("channel == 1 && !remote", "01234789");
    row("channel == 2", "5");
    row("ext", "4");
    row("remote", "6");
    row("error", "7");
    row("fd", "5");
    row("brs", "5");
    row("esi", "5");
    row("lin", "8");
    row("ext == 1", "4");
    row("lin and id == 0x3C", "8");
    row("time >= 1.5 and time < 3", "234");
    row("time > 2s", "45678");
    row("time == 1500ms", "2");
    row("time in 1000000us .. 1500000000ns", "12");
    row("time < 0.1min", "01234567");
    row("number == 4", "3");
    row("number % 2 == 0", "13579");
}

void tst_Filter::addArithmetic()
{
    row("not fd and not error", "01234689");
    row("! ! fd", "5");
    row("id == 0x123 or id == 0x100 and len == 4", "0126"); // "and" binds closer
    row("(id == 0x123 || id == 0x100) && len == 4", "012");
    row("data[0] << 8 | data[1] == 0xDEAD", "0");
    row("data[1] + data[2] * 2 == 5", "5");
    row("data[2] - data[1] == 1", "5");
    row("data[0] ^ 0xFF == 0x21", "0");
    row("data[0] / 2 == 60", "");
    row("data[0] / 0 == 1 or data[0] % 0 == 1", "");
    row("data[0] >> 4 == 0xF", "12");
    row("-data[0] == -128", "3");
    row("1 << 100 == 0", "");
}

void tst_Filter::passes()
{
    QFETCH(const QString, text);
    QFETCH(const QString, rows);
    BusFrameStore store;
    fill(store, frames());
    FilterError error{};
    const std::optional<Filter> filter = Filter::parse(text, Database, error);
    QVERIFY2(filter, qPrintable(error.text));
    QString found;
    for (qint64 row = 0; row < store.size(); ++row) {
        found += filter->passes(store, row) ? QString::number(row) : QString();
    }
    QCOMPARE(found, rows);
}

void tst_Filter::errors_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("length");
    const auto row = [](const char *text, int position, int length) {
        QTest::newRow(text) << QString::fromUtf8(text) << position << length;
    };
    row("id ==", 5, 0);
    row("id == == 5", 6, 2);
    row("Sped > 120", 0, 4);
    row("id == 0x", 6, 2);
    row("id == 0xGG", 6, 4);
    row("id == 12abc", 6, 5);
    row("(id == 1", 8, 0);
    row("id == 1)", 7, 1);
    row("id == 1 id == 2", 8, 2);
    row("dir == 5", 7, 1);
    row("dir < rx", 4, 1);
    row("dir", 0, 3);
    row("name", 0, 4);
    row("len > 1 and data", 12, 4);
    row("data ~ DE", 7, 2);
    row("data ~ \"D\"", 7, 3);
    row("data ~ \"XY\"", 7, 4);
    row("data ~ \"\"", 7, 2);
    row("data ~ \"DE AD", 7, 6);
    row("data[64]", 5, 2);
    row("data[0.5]", 5, 3);
    row("data[id]", 5, 2);
    row("data[0", 6, 0);
    row("id ~ \"5\"", 3, 1);
    row("id in 5..1", 6, 1);
    row("id in", 5, 0);
    row("id in {1, }", 10, 1);
    row("id in {1", 8, 0);
    row("name ~ 5", 7, 1);
    row("State == \"open\"", 9, 6);
    row("State ~ \"x\"", 8, 3);
    row("State ~ 5", 8, 1);
    row("State < \"Open\"", 8, 6);
    row("State + 0 == \"Open\"", 13, 6);
    row("-State ~ \"Open\"", 7, 1);
    row("Speed == \"Open\"", 9, 6);
    row("id == #", 6, 1);
    row("name + 1", 0, 4);
    row("1 < len < 5", 8, 1);
    row("and", 0, 3);
}

void tst_Filter::errors()
{
    QFETCH(const QString, text);
    QFETCH(const int, position);
    QFETCH(const int, length);
    FilterError error{-1, -1, QString()};
    QVERIFY(!Filter::parse(text, Database, error));
    QCOMPARE(error.position, position);
    QCOMPARE(error.length, length);
    QVERIFY(!error.text.isEmpty());
}

void tst_Filter::completion_data()
{
    QTest::addColumn<QString>("text"); // "|" is the place
    QTest::addColumn<QString>("candidates");
    const auto row = [](const char *text, const char *candidates) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromLatin1(candidates);
    };
    const char *operands = "id channel len time number dir data name ext remote error fd brs esi lin rx tx refused not "
                           "Speed State Engine.Speed Temp";
    row("|", operands);
    row("id == 1 and |", operands);
    row("(|", operands);
    row("re|", "remote refused");
    row("RE|", "remote refused");
    row("sp|", "Speed");
    row("Engine.S|", "Engine.Speed");
    row("dir == |", "rx tx refused");
    row("dir == r|x", "rx refused");
    row("dir |", "== !=");
    row("data |", "[ ~ == !=");
    row("name |", "~ == !=");
    row("State |", "== != < <= > >= in & and or ~");
    row("State ~ |", R"("Off" "On" "Open" 'Open "again"')");
    row("State == \"O|", R"("Off" "On" "Open")");
    row("State == 'On' and State != 'O|", R"('Open "again"')");
    row("State < |", operands);
    row("id |", "== != < <= > >= in & and or");
    row("id == 1 |", "and or");
    row("fd o|", "or");
    row("(id == 1|", "");
    row("id == 1 or ) |", "");
    row("name ~ \"|", "");
}

void tst_Filter::completion()
{
    QFETCH(QString, text);
    QFETCH(const QString, candidates);
    const int cursor = text.indexOf(QLatin1Char('|'));
    text.remove(cursor, 1);
    const FilterCompletion completion = Filter::complete(text, cursor, Database.get());
    QCOMPARE(completion.candidates.join(QLatin1Char(' ')), candidates);
    QCOMPARE(completion.position + completion.length, cursor);
}

void tst_Filter::completesNothingInNumbers()
{
    QVERIFY(Filter::complete(QStringLiteral("id == 0x1"), 9, nullptr).candidates.isEmpty());
    const FilterCompletion completion = Filter::complete(QStringLiteral("len > 1 an"), 10, nullptr);
    QCOMPARE(completion.position, 8);
    QCOMPARE(completion.length, 2);
    QCOMPARE(completion.candidates, QStringList{QStringLiteral("and")});
}

void tst_Filter::passingCrossesBatches()
{
    BusFrameStore store;
    fillNumbered(store, qint64{2} * BusFrameStore::BlockRows);
    FilterError error{};
    const std::optional<Filter> filter = Filter::parse(QStringLiteral("id in 100..101 and not ext"), {}, error);
    QVERIFY(filter);
    constexpr qint64 First = BusFrameStore::BlockRows + 77;
    constexpr int Count = 30000;
    std::vector<quint16> indices;
    filter->passing(store, First, Count, indices);
    std::vector<quint16> expected;
    for (qint64 row = First; row < First + Count; ++row) {
        const BusFrame frame = numberedFrame(row);
        if ((frame.identifier == 100 || frame.identifier == 101) && !frame.is(BusFrame::Extended)) {
            expected.push_back(static_cast<quint16>(BusFrameStore::indexInBlock(row)));
        }
    }
    QVERIFY(expected.size() > 10);
    QCOMPARE(indices, expected);
}

void tst_Filter::firstPassing()
{
    BusFrameStore store;
    fillNumbered(store, 10000);
    FilterError error{};
    const std::optional<Filter> filter = Filter::parse(QStringLiteral("id == 7"), {}, error);
    QVERIFY(filter);
    QCOMPARE(filter->firstPassing(store, 8, 9992, false).value_or(-1), 2048 + 7);
    QCOMPARE(filter->firstPassing(store, 0, 9000, true).value_or(-1), 4 * 2048 + 7);
    QVERIFY(!filter->firstPassing(store, 8, 2047, false));
}

void tst_Filter::samples()
{
    BusFrameStore store;
    fill(store, frames());
    FilterError error{};
    const std::optional<FrameValue> value = FrameValue::parse(QStringLiteral("Speed * 2"), Database, error);
    QVERIFY(value);
    std::vector<FrameValue::Sample> found;
    value->samples(store, {}, 0, 10, found);
    QCOMPARE(found.size(), std::size_t(2));
    QCOMPARE(found[0].index, quint16(1));
    QCOMPARE(found[0].value, 240.0);
    QCOMPARE(found[1].value, 242.0);
    found.clear();
    value->samples(store, Filter::parse(QStringLiteral("number != 2"), {}, error).value_or(Filter()), 0, 10, found);
    QCOMPARE(found.size(), std::size_t(1));
    QVERIFY(!FrameValue::parse(QStringLiteral("dir"), Database, error));
    QVERIFY(!FrameValue::parse(QString(), Database, error));
}

void tst_Filter::withoutDatabase()
{
    BusFrameStore store;
    fill(store, frames());
    FilterError error{};
    const std::optional<Filter> filter = Filter::parse(QStringLiteral("name ~ \"e\""), {}, error);
    QVERIFY(filter);
    QVERIFY(!filter->passes(store, 1));
    QVERIFY(!Filter::parse(QStringLiteral("Speed > 1"), {}, error));
}

void tst_Filter::anythingCanBeTyped()
{
    const QStringList pieces{
        QStringLiteral("id"),   QStringLiteral("("),      QStringLiteral(")"),    QStringLiteral("=="),
        QStringLiteral("not"),  QStringLiteral("data"),   QStringLiteral("["),    QStringLiteral("]"),
        QStringLiteral("12"),   QStringLiteral("\"A?\""), QStringLiteral("in"),   QStringLiteral(".."),
        QStringLiteral("{"),    QStringLiteral(","),      QStringLiteral("}"),    QStringLiteral("Speed"),
        QStringLiteral("-"),    QStringLiteral("or"),     QStringLiteral("&"),    QStringLiteral("dir"),
        QStringLiteral("name"), QStringLiteral("~"),      QStringLiteral("\xe4"), QStringLiteral("<<")};
    BusFrameStore store;
    fill(store, frames());
    quint32 state = 1;
    int right = 0;
    for (int round = 0; round < 20000; ++round) {
        QString text;
        for (int i = 0; i < 1 + round % 7; ++i) {
            state = state * 1664525U + 1013904223U;
            text +=
                pieces.at(static_cast<int>((state >> 16U) % static_cast<quint32>(pieces.size()))) + QLatin1Char(' ');
        }
        FilterError error{-1, -1, QString()};
        if (const std::optional<Filter> filter = Filter::parse(text, Database, error)) {
            filter->passes(store, round % store.size());
            ++right;
        } else {
            QVERIFY2(error.position >= 0 && error.position + error.length <= text.size(), qPrintable(text));
        }
        Filter::complete(text, round % text.size(), Database.get());
    }
    QVERIFY(right > 100);
    FilterError error{};
    QVERIFY(!Filter::parse(QString(5000, QLatin1Char('(')), {}, error));
    QVERIFY(!Filter::parse(QString(9000, QLatin1Char('-')) + QLatin1Char('1'), {}, error));
    QVERIFY(!Filter::parse(QString(20000, QLatin1Char('1')), {}, error));
    QVERIFY(!Filter::parse(QStringLiteral("1") + QStringLiteral("+1").repeated(4000), {}, error));
    QVERIFY(Filter::parse(QStringLiteral("fd") + QStringLiteral(" or fd").repeated(1000), {}, error));
}

void tst_Filter::hostileTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("rows"); // "-": it is wrong
    const auto row = [](const char *name, const QString &text, const char *rows) {
        QTest::newRow(name) << text << QString::fromLatin1(rows);
    };
    row("brackets", QString(Filter::MaxLength, QLatin1Char('(')), "-");
    row("closed brackets", QString(4999, QLatin1Char('(')) + QStringLiteral("fd") + QString(4999, QLatin1Char(')')),
        "-");
    row("a huge number", QStringLiteral("id < 1e308 and id < ") + QString(300, QLatin1Char('9')), "012345689");
    row("more than a number holds", QStringLiteral("id == 1e999999"), "-");
    row("a huge hexadecimal number", QStringLiteral("id == 0x") + QString(5000, QLatin1Char('F')), "-");
    row("a huge index", QStringLiteral("data[99999999999999999999] == 0"), "-");
    row("a huge shift", QStringLiteral("data[0] << 4294967297 == 0 or data[0] >> -1 == 0"), "");
    row("a pattern of letters", QStringLiteral("name ~ \"(a+)+$(.*)*[^x]{1000,}\""), "");
    row("a pattern of bytes", QStringLiteral("data ~ \"(0?)+.*\""), "-");
    row("many signs", QString(9000, QLatin1Char('!')) + QStringLiteral("fd"), "5");
}

void tst_Filter::hostileTexts()
{
    QFETCH(const QString, text);
    QFETCH(const QString, rows);
    BusFrameStore store;
    fill(store, frames());
    FilterError error{-1, -1, QString()};
    const std::optional<Filter> filter = Filter::parse(text, Database, error);
    QString found;
    for (qint64 row = 0; filter && row < store.size(); ++row) {
        found += filter->passes(store, row) ? QString::number(row) : QString();
    }
    QCOMPARE(filter ? found : QStringLiteral("-"), rows);
    QVERIFY(filter || (error.position >= 0 && error.position + error.length <= text.size()));
    Filter::complete(text, text.size(), Database.get());
}

X9_PLAIN_TEST(tst_Filter)
#include "tst_Filter.moc"
