#include "tests/exchange/DatabaseTestData.h"
#include "tests/support/TestProgram.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/LastSignals.h"

#include <QSemaphore>
#include <QtTest>

#include <array>

namespace {

std::shared_ptr<const DatabaseSignals> signalsOf(std::vector<DatabaseSignals::Part> parts)
{
    return std::make_shared<const DatabaseSignals>(std::move(parts));
}

std::shared_ptr<const DatabaseSignals> golden(const char *name)
{
    return signalsOf({{std::make_shared<const Database>(parseDatabase(goldenDatabase(QString::fromLatin1(name)))),
                       QString::fromLatin1(name),
                       {}}});
}

/// A search as the viewer makes it, over an overview of the store.
class Searched
{
public:
    explicit Searched(const BusFrameStore &store)
        : m_store(store)
        , m_search(store, [this] { m_news.release(); })
    {
    }

    LastSignals::Rows at(const std::shared_ptr<const DatabaseSignals> &source, qint64 row)
    {
        m_overview.add(m_store, m_store.size());
        m_search.find(source, row, m_overview.lastRows(m_store, row));
        LastSignals::Rows rows;
        while ((!rows.isComplete || rows.row != row || rows.source != source) && m_news.tryAcquire(1, 20000)) {
            rows = m_search.take();
        }
        return rows;
    }

private:
    const BusFrameStore &m_store;
    QSemaphore m_news;
    Overview m_overview;
    LastSignals m_search;
};

/// What a look at each row from the last on finds.
LastSignals::Rows byHand(const BusFrameStore &store, const DatabaseSignals &source, qint64 row)
{
    LastSignals::Rows rows;
    rows.ofMessages.assign(static_cast<std::size_t>(source.messageCount()), -1);
    rows.ofSignals.assign(static_cast<std::size_t>(source.signalCount()), -1);
    const auto note = [](qint64 &found, qint64 at) {
        found = found < 0 ? at : found;
    };
    for (; row >= 0; --row) {
        const BusFrame frame = store.frame(row);
        const int message = source.messageOf(frame);
        if (message < 0 || !hasSoundData(frame)) {
            continue;
        }
        note(rows.ofMessages[static_cast<std::size_t>(message)], row);
        const auto ofSignals = rows.ofSignals.begin() + source.firstSignal(message);
        for (int i = 0; i < source.message(message).content.size(); ++i) {
            if (source.decoder(message).has(i, frame.data.data(), frame.length)) {
                note(ofSignals[i], row);
            }
        }
    }
    return rows;
}

QString rowsOf(const LastSignals::Rows &rows, const DatabaseSignals &source, const QStringList &names)
{
    QStringList texts;
    for (const QString &name : names) {
        texts.append(QString::number(rows.ofSignals[static_cast<std::size_t>(source.signalNumber(name))]));
    }
    return texts.join(QLatin1Char(' '));
}

} // namespace

class tst_LastSignals : public QObject
{
    Q_OBJECT

private slots:
    static void multiplexed_data();
    static void multiplexed();
    static void unsoundFrames();
    static void eventTriggered();
    static void severalChannels();
    static void random();
    static void partialFirst();
    static void endsAtOnce();
};

void tst_LastSignals::multiplexed_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("expected");
    // Select, Always, WithOne, WithTwo
    QTest::newRow("first") << 0 << "0 0 0 -1";
    QTest::newRow("between, of another message") << 1 << "0 0 0 -1";
    QTest::newRow("the other page") << 2 << "2 2 0 2";
    QTest::newRow("neither") << 3 << "3 3 0 2";
    QTest::newRow("cut, the frame before has what it lacks") << 4 << "4 3 0 2";
    QTest::newRow("remote") << 5 << "4 3 0 2";
    QTest::newRow("first page again") << 6 << "6 6 6 2";
}

void tst_LastSignals::multiplexed()
{
    BusFrameStore store;
    fill(store, {canFrame(0, 1, "0105070000000000"), canFrame(1, 0x99, "00"), canFrame(2, 1, "0205070000000000"),
                 canFrame(3, 1, "0305070000000000"), canFrame(4, 1, "02"), canFrame(5, 1, "", BusFrame::Remote),
                 canFrame(6, 1, "0105070000000000")});
    QFETCH(int, row);
    QFETCH(QString, expected);
    const auto source = golden("multiplexed.dbc");
    Searched search(store);
    const QStringList names{QStringLiteral("Select"), QStringLiteral("Always"), QStringLiteral("WithOne"),
                            QStringLiteral("WithTwo")};
    QCOMPARE(rowsOf(search.at(source, row), *source, names), expected);
    // The same after a look at an earlier row, and from a later one back.
    search.at(source, 0);
    QCOMPARE(rowsOf(search.at(source, row), *source, names), expected);
    search.at(source, 6);
    QCOMPARE(rowsOf(search.at(source, row), *source, names), expected);
}

void tst_LastSignals::unsoundFrames()
{
    BusFrameStore store;
    BusFrame refused = canFrame(2, 291, "FF0F000000000000");
    refused.direction = BusFrame::Refused;
    fill(store, {canFrame(0, 291, "A00F000000000000"), canFrame(1, 0x99, "00"), refused, refused, refused});
    const auto source = golden("vehicle.dbc");
    const LastSignals::Rows rows = Searched(store).at(source, 4);
    QCOMPARE(rowsOf(rows, *source, {QStringLiteral("EngineSpeed"), QStringLiteral("Single")}), QStringLiteral("0 -1"));
}

void tst_LastSignals::eventTriggered()
{
    BusFrameStore store;
    fill(store, {canFrame(0, 33, "003412", BusFrame::Lin), canFrame(1, 34, "E13412", BusFrame::Lin),
                 canFrame(2, 34, "993412", BusFrame::Lin)});
    const auto source = golden("body.ldf");
    Searched search(store);
    QCOMPARE(rowsOf(search.at(source, 2), *source, {QStringLiteral("Mileage")}), QStringLiteral("1"));
    QCOMPARE(rowsOf(search.at(source, 0), *source, {QStringLiteral("Mileage")}), QStringLiteral("0"));
}

void tst_LastSignals::severalChannels()
{
    const auto frame = [](qint64 time, int channel, const char *data) {
        BusFrame made = canFrame(time, 1, data);
        made.channel = static_cast<quint16>(channel);
        return made;
    };
    BusFrameStore store;
    // The second channel's last frame has WithOne, but one of the first channel's before its last has it later.
    fill(store, {frame(0, 1, "0105070000000000"), frame(1, 0, "0105070000000000"), frame(2, 0, "0205070000000000")});
    const auto source = golden("multiplexed.dbc");
    QCOMPARE(rowsOf(Searched(store).at(source, 2), *source, {QStringLiteral("WithOne"), QStringLiteral("WithTwo")}),
             QStringLiteral("1 2"));
    const auto onSecond = signalsOf({{source->partOf(0).database, QStringLiteral("a"), {1}}});
    QCOMPARE(rowsOf(Searched(store).at(onSecond, 2), *onSecond, {QStringLiteral("WithOne"), QStringLiteral("WithTwo")}),
             QStringLiteral("0 -1"));
}

void tst_LastSignals::random()
{
    const auto source = signalsOf({{golden("multiplexed.dbc")->partOf(0).database, QStringLiteral("a"), {}},
                                   {golden("body.ldf")->partOf(0).database, QStringLiteral("b"), {}},
                                   {golden("vehicle.dbc")->partOf(0).database, QStringLiteral("c"), {0}}});
    constexpr int Frames = 200000; // over several checkpoints of the overview
    quint32 state = 7;
    const auto next = [&state](quint32 end) {
        state = state * 1664525U + 1013904223U;
        return (state >> 16U) % end;
    };
    BusFrameStore store;
    std::vector<BusFrame> frames;
    constexpr std::array<quint32, 10> Identifiers{1, 2, 291, 0x10, 17, 32, 33, 34, 60, 5};
    for (int i = 0; i < Frames; ++i) {
        BusFrame frame = canFrame(i, Identifiers[next(i < Frames / 2 ? 10 : 3)]);
        frame.set(BusFrame::Lin, next(2) == 0);
        frame.set(BusFrame::Remote, next(20) == 0);
        frame.direction = next(10) == 0 ? BusFrame::Refused : BusFrame::Received;
        frame.channel = static_cast<quint16>(next(3));
        frame.length = static_cast<quint8>(next(9));
        for (std::size_t at = 0; at < frame.length; ++at) {
            frame.data[at] = static_cast<uchar>(next(at == 0 ? 5 : 256));
        }
        frames.push_back(frame);
    }
    fill(store, frames);
    Searched search(store);
    for (const qint64 row : {Frames - 1, 10, 70000, 70005, 70100, 130000, 129999, Frames - 1, 0}) {
        const LastSignals::Rows expected = byHand(store, *source, row);
        const LastSignals::Rows found = search.at(source, row);
        QVERIFY(found.isComplete);
        QCOMPARE(found.ofMessages, expected.ofMessages);
        QCOMPARE(found.ofSignals, expected.ofSignals);
    }
}

/// A signal that is in no frame is looked for in all of them; what the last frames have is there before that.
void tst_LastSignals::partialFirst()
{
    BusFrameStore store;
    constexpr int Frames = 5 << 18;
    const std::vector<BusFrame> batch(1 << 16, canFrame(0, 1, "0105070000000000"));
    for (int i = 0; i < Frames; i += static_cast<int>(batch.size())) {
        fill(store, batch);
    }
    const auto source = golden("multiplexed.dbc");
    Overview overview;
    overview.add(store, Frames);
    QSemaphore news;
    LastSignals search(store, [&news] { news.release(); });
    search.find(source, Frames - 1, overview.lastRows(store, Frames - 1));
    QVERIFY(news.tryAcquire(2, 20000)); // once on the way, once at the end
    const LastSignals::Rows rows = search.take();
    QVERIFY(rows.isComplete);
    QCOMPARE(rowsOf(rows, *source, {QStringLiteral("WithOne"), QStringLiteral("WithTwo")}),
             QStringLiteral("%1 -1").arg(Frames - 1));
}

void tst_LastSignals::endsAtOnce()
{
    BusFrameStore store;
    fillNumbered(store, 500000);
    const auto source = golden("multiplexed.dbc");
    Overview overview;
    overview.add(store, store.size());
    const std::vector<Overview::LastRows> lastRows = overview.lastRows(store, store.size() - 1);
    for (int i = 0; i < 50; ++i) {
        LastSignals search(store, [] {});
        for (int round = 0; round < 20; ++round) {
            search.find(source, store.size() - 1, lastRows);
        }
    }
    LastSignals search(store, [] {});
    search.find(signalsOf({}), 5, {});
    QVERIFY(search.take().ofSignals.empty());
}

X9_PLAIN_TEST(tst_LastSignals)
#include "tst_LastSignals.moc"
