#include "viewer/core/ChannelLoad.h"

#include "viewer/core/FrameTimes.h"
#include "viewer/core/SeriesRun.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace {

constexpr qint64 SliceRows = BusFrameStore::BlockRows / 2;
constexpr double Percent = 100;

constexpr int MaxEmptySteps = 1000;

auto members(const BusLoad::Rates &rates)
{
    return std::tie(rates.bitRate, rates.dataBitRate, rates.linBitRate);
}

/// The number of the step that a time is in; steps before the start have negative ones.
qint64 stepOf(qint64 since, qint64 width)
{
    return since / width - (since % width < 0 ? 1 : 0);
}

/// Steps in which no frame is: of many the first and the last only.
void addEmptySteps(Series &series, qint64 first, qint64 end, const std::function<qint64(qint64)> &middleOf)
{
    if (end - first > MaxEmptySteps) {
        series.append(middleOf(first), 0);
        first = end - 1;
    }
    for (qint64 step = first; step < end; ++step) {
        series.append(middleOf(step), 0);
    }
}

/// Figures over the steps [first, last]; those without a frame are 0.
void addFigures(ChannelLoad &load, const std::map<qint64, double> &busy, double width, double limit)
{
    auto begin = busy.begin();
    auto end = busy.end();
    qint64 steps = busy.rbegin()->first - begin->first + 1;
    if (steps > 2) {
        ++begin;
        --end;
        steps -= 2;
    }
    double sum = 0;
    qint64 filled = 0;
    load.least = std::numeric_limits<double>::max();
    for (auto it = begin; it != end; ++it, ++filled) {
        const double value = it->second / width * Percent;
        load.least = std::min(load.least, value);
        load.greatest = std::max(load.greatest, value);
        load.stepsAbove += value > limit ? 1 : 0;
        sum += value;
    }
    load.least = filled < steps ? 0 : load.least;
    load.mean = sum / static_cast<double>(steps);
}

} // namespace

BusLoad::Rates BusLoadSettings::ratesOf(quint16 channel) const
{
    const auto found = rates.find(channel);
    const BusLoad::Rates wanted = found != rates.end() ? found->second : usual;
    const auto limited = [](qint64 rate) {
        return std::max<qint64>(1, std::min(rate, MaxBitRate));
    };
    return {limited(wanted.bitRate), limited(wanted.dataBitRate), limited(wanted.linBitRate)};
}

bool operator==(const BusLoadSettings &a, const BusLoadSettings &b)
{
    const auto isSame = [](const auto &one, const auto &other) {
        return one.first == other.first && members(one.second) == members(other.second);
    };
    return a.width == b.width && !(a.limit < b.limit) && !(b.limit < a.limit) && members(a.usual) == members(b.usual) &&
           a.rates.size() == b.rates.size() && std::equal(a.rates.begin(), a.rates.end(), b.rates.begin(), isSame);
}

BusLoadWork::BusLoadWork(std::shared_ptr<const BusFrameStore> store, BusLoadSettings settings)
    : m_store(std::move(store))
    , m_settings(std::move(settings))
    , m_width(std::max(BusLoadSettings::LeastWidth, m_settings.width))
{
}

BusLoadWork::~BusLoadWork() = default;

BusLoadWork::Channel &BusLoadWork::channelOf(quint16 number)
{
    if (number >= m_channels.size()) {
        m_channels.resize(std::size_t{number} + 1);
    }
    std::unique_ptr<Channel> &channel = m_channels[number];
    if (!channel) {
        channel = std::make_unique<Channel>(m_settings.ratesOf(number));
        channel->figures.channel = number;
    }
    return *channel;
}

void BusLoadWork::add(const BusFrame &frame)
{
    const std::optional<qint64> since = timeDistance(m_store->start(), frame.time);
    if (!since) {
        return;
    }
    Channel &channel = channelOf(frame.channel);
    const bool isLin = frame.is(BusFrame::Lin);
    ++channel.figures.frames;
    channel.figures.hasLin = channel.figures.hasLin || isLin;
    channel.figures.hasCan = channel.figures.hasCan || !isLin;
    channel.figures.hasSwitched = channel.figures.hasSwitched || frame.is(BusFrame::BitRateSwitch);
    const qint64 step = stepOf(*since, m_width);
    if (channel.last == nullptr || channel.lastStep != step) {
        channel.last = &channel.busy[step];
        channel.lastStep = step;
    }
    *channel.last += static_cast<double>(channel.load.busy(frame));
    if (channel.busy.size() > MaxSteps) {
        joinSteps();
    }
}

/// Makes one of each two steps, of all channels.
void BusLoadWork::joinSteps()
{
    m_width *= 2;
    for (const std::unique_ptr<Channel> &channel : m_channels) {
        if (channel) {
            std::map<qint64, double> joined;
            for (const auto &[step, busy] : channel->busy) {
                joined[stepOf(step, 2)] += busy;
            }
            channel->busy = std::move(joined);
            channel->last = nullptr;
        }
    }
}

bool BusLoadWork::work()
{
    const qint64 end = std::min(m_store->size(), m_covered + SliceRows);
    const bool isMore = end > m_covered;
    for (; m_covered < end; ++m_covered) {
        add(m_store->frame(m_covered));
    }
    return isMore;
}

Series BusLoadWork::seriesOf(const Channel &channel) const
{
    // As unsigned numbers: the middle of a step at the end of all times is beyond them.
    const auto middleOf = [this](qint64 step) {
        return static_cast<qint64>(static_cast<quint64>(m_store->start()) +
                                   static_cast<quint64>(step) * static_cast<quint64>(m_width) +
                                   static_cast<quint64>(m_width / 2));
    };
    Series series;
    qint64 next = channel.busy.begin()->first;
    for (const auto &[step, busy] : channel.busy) {
        addEmptySteps(series, next, step, middleOf);
        series.append(middleOf(step), busy / static_cast<double>(m_width) * Percent);
        next = step + 1;
    }
    return series;
}

Series BusLoadWork::series(quint16 channel) const
{
    return channel < m_channels.size() && m_channels[channel] ? seriesOf(*m_channels[channel]) : Series();
}

ChannelLoad BusLoadWork::loadOf(const Channel &channel) const
{
    ChannelLoad load = channel.figures;
    addFigures(load, channel.busy, static_cast<double>(m_width), m_settings.limit);
    load.series = std::make_shared<const Series>(seriesOf(channel));
    return load;
}

BusLoads BusLoadWork::result() const
{
    BusLoads loads{m_width, m_covered, {}};
    for (const std::unique_ptr<Channel> &channel : m_channels) {
        if (channel) {
            loads.channels.push_back(loadOf(*channel));
        }
    }
    return loads;
}

Series busLoadSeries(const std::shared_ptr<const BusFrameStore> &store, quint16 channel,
                     const BusLoadSettings &settings, const std::atomic<bool> &stop)
{
    BusLoadWork work(store, settings);
    while (!stop && work.work()) {
    }
    return stop ? Series() : work.series(channel);
}
