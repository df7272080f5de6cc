#include "viewer/core/PeriodWork.h"

#include "viewer/core/FrameTimes.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr qint64 SliceRows = qint64{BusFrameStore::BlockRows} * 4;
constexpr int UsualBins = 100;
constexpr double OutliersAtEachEnd = 0.005;
/// So much of all that the bins show may be outside before they are chosen anew.
constexpr double ToleratedOutside = 0.02;
constexpr int Octaves = 58; // all that a 64-bit number has

/// The least of 1, 2, 5, 10, 20... that is not below value.
qint64 roundedUp(qint64 value)
{
    qint64 power = 1;
    while (power < value / 10) {
        power *= 10;
    }
    for (const qint64 factor : {1, 2, 5, 10, 20}) {
        if (power * factor >= value) {
            return power * factor;
        }
    }
    return value;
}

} // namespace

bool operator==(const PeriodChoice &a, const PeriodChoice &b)
{
    return a.key == b.key && a.channel == b.channel && a.width == b.width && a.leavesOutOutliers == b.leavesOutOutliers;
}

PeriodWork::PeriodWork(std::shared_ptr<const BusFrameStore> store, const PeriodChoice &choice)
    : m_store(std::move(store))
    , m_choice(choice)
    , m_survey(static_cast<std::size_t>(Octaves * StepsOfOctave), 0)
{
    m_figures.key = choice.key;
    m_figures.channel = choice.channel;
}

PeriodWork::~PeriodWork() = default;

/// Logarithmic in octaves, linear within each; exact below StepsOfOctave.
std::size_t PeriodWork::surveyIndex(qint64 period)
{
    int octave = 0;
    while (period >= qint64{2} * StepsOfOctave) {
        period /= 2;
        ++octave;
    }
    const auto index = static_cast<std::size_t>(qint64{octave} * StepsOfOctave + period);
    return index;
}

qint64 PeriodWork::surveyedPeriod(std::size_t index)
{
    const auto steps = static_cast<std::size_t>(StepsOfOctave);
    const std::size_t octave = index < 2 * steps ? 0 : index / steps - 1;
    const bool isBeyond = octave + 2 >= Octaves;
    return isBeyond ? std::numeric_limits<qint64>::max() : static_cast<qint64>(index - octave * steps) << octave;
}

void PeriodWork::survey(qint64 time, qint64 period)
{
    addTime(m_figures, time);
    if (period >= 0) {
        ++m_survey[surveyIndex(period)];
    }
}

/// Calls function(time, period) for each frame of a slice that has a time; a period of -1 is none.
template<typename Function>
void PeriodWork::take(Pass &pass, Function function) const
{
    const qint64 last = std::min(m_store->size(), pass.row + SliceRows);
    while (pass.row < last) {
        const BusFrameStore::Block &block = m_store->block(BusFrameStore::blockOf(pass.row));
        const qint64 blockEnd = (BusFrameStore::blockOf(pass.row) + 1) << BusFrameStore::BlockShift;
        for (const qint64 end = std::min(last, blockEnd); pass.row < end; ++pass.row) {
            const auto at = static_cast<std::size_t>(BusFrameStore::indexInBlock(pass.row));
            if (block.channel[at] == m_choice.channel &&
                frameKey(block.identifier[at], block.flags[at]) == m_choice.key && block.time[at] != BusFrame::NoTime) {
                function(block.time[at], periodBetween(pass.lastTime, block.time[at]));
                pass.lastTime = block.time[at];
            }
        }
    }
}

/// The period below which a share of all is, as finely as it was surveyed.
qint64 PeriodWork::surveyed(double share) const
{
    const auto wanted = static_cast<qint64>(share * static_cast<double>(m_figures.periodCount));
    qint64 count = 0;
    std::size_t index = 0;
    while (index + 1 < m_survey.size() && count + m_survey[index] <= wanted) {
        count += m_survey[index];
        ++index;
    }
    return surveyedPeriod(share < 0.5 ? index : index + 1);
}

void PeriodWork::chooseBins()
{
    m_histogram = {};
    m_binPass = {};
    m_hasBins = m_figures.periodCount > 0;
    if (!m_hasBins) {
        return;
    }
    qint64 low = m_figures.leastPeriod;
    qint64 high = m_figures.greatestPeriod;
    if (m_choice.leavesOutOutliers) {
        low = std::max(low, surveyed(OutliersAtEachEnd));
        high = std::min(high, surveyed(1 - OutliersAtEachEnd));
    }
    const qint64 range = std::max<qint64>(0, high - low);
    const qint64 wanted = m_choice.width > 0 ? m_choice.width : roundedUp(range / UsualBins + 1);
    m_histogram.width = std::max(wanted, range / MaxBins + 1);
    m_histogram.low = low - low % m_histogram.width;
    m_histogram.counts.resize(static_cast<std::size_t>((high - m_histogram.low) / m_histogram.width + 1));
}

bool PeriodWork::binsFit() const
{
    const qint64 outside = m_histogram.below + m_histogram.above;
    return m_hasBins && (m_choice.leavesOutOutliers ? static_cast<double>(outside) <=
                                                          ToleratedOutside * static_cast<double>(m_figures.periodCount)
                                                    : outside == 0);
}

bool PeriodWork::work()
{
    if (m_surveyPass.row < m_store->size()) {
        take(m_surveyPass, [this](qint64 time, qint64 period) { survey(time, period); });
        return true;
    }
    if (!m_hasBins && m_figures.periodCount > 0) {
        chooseBins();
    }
    if (m_hasBins && m_binPass.row < m_surveyPass.row) {
        take(m_binPass, [this](qint64 /*time*/, qint64 period) {
            if (period >= 0) {
                m_histogram.add(period);
            }
        });
        if (m_binPass.row >= m_surveyPass.row && !binsFit()) {
            chooseBins();
        }
        return true;
    }
    return false;
}

Periods PeriodWork::result() const
{
    return {m_figures, m_histogram, m_hasBins ? m_binPass.row : 0};
}
