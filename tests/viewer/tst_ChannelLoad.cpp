#include "viewer/core/ChannelLoad.h"

#include "tests/support/TestProgram.h"
#include "tests/viewer/ViewerFrames.h"

#include <QtTest>

#include <limits>

namespace {

constexpr qint64 Ms = 1000000;

/// Each of these takes 50 bits: 100 us at 500 kbit/s.
BusFrame shortFrame(qint64 time, quint16 channel = 0)
{
    BusFrame frame = canFrame(time, 0x7FF);
    frame.channel = channel;
    return frame;
}

BusLoads loadsOf(const std::shared_ptr<BusFrameStore> &store, const BusLoadSettings &settings)
{
    BusLoadWork work(store, settings);
    while (work.work()) {
    }
    return work.result();
}

std::vector<double> values(const Series &series)
{
    std::vector<double> found;
    for (std::size_t i = 0; i < series.size(); ++i) {
        found.push_back(qRound(series.at(i).value * 1000) / 1000.0);
    }
    return found;
}

BusLoadSettings settingsOf(qint64 width)
{
    BusLoadSettings settings;
    settings.width = width;
    return settings;
}

} // namespace

class tst_ChannelLoad : public QObject
{
    Q_OBJECT

private slots:
    static void loadOverTime();
    static void ratesOfChannels();
    static void figuresLeaveOutTheEnds();
    static void longGaps();
    static void wildTimes();
    static void tooManySteps();
    static void seriesOfAChannel();
    static void runFollowsTheStore();
};

void tst_ChannelLoad::loadOverTime()
{
    const auto store = std::make_shared<BusFrameStore>();
    store->setStart(100 * Ms);
    for (int i = 0; i < 5; ++i) {
        fill(*store, {shortFrame(100 * Ms + i * Ms / 10)});
    }
    fill(*store, {shortFrame(BusFrame::NoTime), shortFrame(102 * Ms), shortFrame(101 * Ms), // jumped back
                  shortFrame(99 * Ms)});                                                    // before the start
    const BusLoads loads = loadsOf(store, settingsOf(Ms));
    QCOMPARE(loads.channels.size(), std::size_t(1));
    QCOMPARE(loads.covered, 9);
    const ChannelLoad &load = loads.channels.front();
    QCOMPARE(load.frames, 8);
    QCOMPARE(load.series->at(0).time, 99 * Ms + Ms / 2);
    QCOMPARE(values(*load.series), (std::vector<double>{10, 50, 10, 10}));
}

void tst_ChannelLoad::ratesOfChannels()
{
    const auto store = std::make_shared<BusFrameStore>();
    BusFrame lin = canFrame(0, 1, "", BusFrame::Lin); // 34 bits
    lin.channel = 5;
    BusFrame switched = canFrame(0, 0x123, "", BusFrame::Fd | BusFrame::BitRateSwitch); // 29 and 33 bits
    switched.channel = 2;
    fill(*store, {shortFrame(0), shortFrame(0, 1), switched, lin});
    BusLoadSettings settings = settingsOf(10 * Ms);
    settings.rates[1] = {1000000, 0, 0};
    settings.rates[2] = {500000, 1000000, 0};
    settings.rates[5] = {0, 0, 34000};
    const BusLoads loads = loadsOf(store, settings);
    QCOMPARE(loads.channels.size(), std::size_t(4));
    QCOMPARE(loads.channels[0].mean, 1.0);
    QCOMPARE(loads.channels[1].mean, 0.5);
    QCOMPARE(loads.channels[2].mean, (58 + 33) / 100.0);
    QVERIFY(loads.channels[2].hasSwitched && loads.channels[2].hasCan && !loads.channels[2].hasLin);
    QCOMPARE(loads.channels[3].mean, 10.0);
    QCOMPARE(loads.channels[3].channel, quint16(5));
    QVERIFY(loads.channels[3].hasLin && !loads.channels[3].hasCan);
}

void tst_ChannelLoad::figuresLeaveOutTheEnds()
{
    const auto store = std::make_shared<BusFrameStore>();
    for (const auto &[step, frames] : {std::make_pair(0, 1), {1, 5}, {2, 8}, {4, 2}, {5, 9}}) {
        fill(*store, std::vector<BusFrame>(static_cast<std::size_t>(frames), shortFrame(step * Ms)));
    }
    BusLoadSettings settings = settingsOf(Ms);
    settings.limit = 49;
    const ChannelLoad load = loadsOf(store, settings).channels.front();
    QCOMPARE(values(*load.series), (std::vector<double>{10, 50, 80, 0, 20, 90}));
    QCOMPARE(load.least, 0.0); // the step without a frame
    QCOMPARE(load.greatest, 80.0);
    QCOMPARE(load.mean, (50.0 + 80 + 0 + 20) / 4);
    QCOMPARE(load.stepsAbove, 2);
}

void tst_ChannelLoad::longGaps()
{
    const auto store = std::make_shared<BusFrameStore>();
    fill(*store, {shortFrame(0), shortFrame(1000000 * Ms)});
    const BusLoads loads = loadsOf(store, settingsOf(Ms));
    const Series &series = *loads.channels.front().series;
    QCOMPARE(series.size(), std::size_t(4)); // the gap's first and last step
    QCOMPARE(series.at(2).time, 999999 * Ms + Ms / 2);
}

void tst_ChannelLoad::wildTimes()
{
    constexpr qint64 Most = std::numeric_limits<qint64>::max();
    const auto store = std::make_shared<BusFrameStore>();
    fill(*store, {shortFrame(-Most), shortFrame(Most), shortFrame(0)});
    const BusLoads loads = loadsOf(store, settingsOf(0));
    QCOMPARE(loads.width, BusLoadSettings::LeastWidth);
    QCOMPARE(loads.channels.front().frames, 3);
    QVERIFY(loads.channels.front().series->size() <= 7);
}

void tst_ChannelLoad::tooManySteps()
{
    constexpr qint64 Steps = BusLoadWork::MaxSteps + 10;
    const auto store = std::make_shared<BusFrameStore>();
    std::vector<BusFrame> frames;
    for (qint64 i = 0; i < Steps; ++i) {
        frames.push_back(shortFrame(i * Ms));
    }
    fill(*store, frames);
    const BusLoads loads = loadsOf(store, settingsOf(Ms));
    QCOMPARE(loads.width, 2 * Ms);
    QCOMPARE(loads.channels.front().series->size(), std::size_t(Steps / 2));
    QCOMPARE(loads.channels.front().greatest, 10.0);
    QCOMPARE(loads.channels.front().least, 10.0);
}

void tst_ChannelLoad::seriesOfAChannel()
{
    const auto store = std::make_shared<BusFrameStore>();
    fill(*store, {shortFrame(0), shortFrame(Ms, 1), shortFrame(2 * Ms, 1)});
    std::atomic<bool> stop{false};
    QCOMPARE(values(busLoadSeries(store, 1, settingsOf(Ms), stop)), (std::vector<double>{10, 10}));
    QVERIFY(busLoadSeries(store, 3, settingsOf(Ms), stop).isEmpty());
    stop = true;
    QVERIFY(busLoadSeries(store, 1, settingsOf(Ms), stop).isEmpty());
}

void tst_ChannelLoad::runFollowsTheStore()
{
    const auto store = std::make_shared<BusFrameStore>();
    std::atomic<int> announced{0};
    SliceRun<BusLoads> run([&announced] { ++announced; });
    QVERIFY(!run.result());
    run.extend(); // nothing was started
    run.start(std::make_unique<BusLoadWork>(store, settingsOf(Ms)));
    QTRY_VERIFY(run.result() != nullptr);
    QVERIFY(run.result()->channels.empty());
    qint64 total = 0;
    for (const int count : {100000, 1, 200000}) {
        fill(*store, std::vector<BusFrame>(static_cast<std::size_t>(count), shortFrame(0)));
        total += count;
        QTRY_VERIFY(!run.isRunning());
        run.extend();
        QTRY_COMPARE(run.result()->covered, total);
        QCOMPARE(run.result()->channels.front().frames, total);
    }
    QVERIFY(announced >= 3);
    run.start(std::make_unique<BusLoadWork>(store, settingsOf(10 * Ms)));
    QTRY_VERIFY(run.result() != nullptr && run.result()->width == 10 * Ms);
    run.cancel();
    QVERIFY(!run.result() && !run.isRunning());
}

X9_CORE_TEST(tst_ChannelLoad)
#include "tst_ChannelLoad.moc"
