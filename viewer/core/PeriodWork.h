#pragma once

#include "viewer/core/PeriodHistogram.h"
#include "viewer/core/SliceRun.h"

#include <memory>
#include <vector>

/// Which periods a histogram shows, and how finely.
struct PeriodChoice
{
    FrameKey key = 0;
    quint16 channel = 0;
    qint64 width = 0;              ///< nanoseconds of a bin; 0: as it fits, about a hundred of them
    bool leavesOutOutliers = true; ///< shows what 99 of 100 periods are in, otherwise all
};

bool operator==(const PeriodChoice &a, const PeriodChoice &b);

/// The periods of an identifier.
struct Periods
{
    IdentifierStatistics figures; ///< its periods and times; frames without a time do not count
    PeriodHistogram histogram;    ///< empty until it is known which periods there are
    qint64 covered = 0;           ///< rows that the histogram has
};

/// Goes over the rows twice: first for which periods there are, then to count them in bins. When the store grows and
/// many periods come that the bins do not show, they are counted anew.
class PeriodWork : public SliceWork<Periods>
{
public:
    static constexpr int MaxBins = 5000;

    PeriodWork(std::shared_ptr<const BusFrameStore> store, const PeriodChoice &choice);
    ~PeriodWork() override;

    bool work() override;
    Periods result() const override;

private:
    static constexpr int StepsOfOctave = 64; ///< so finely is it known where the outliers begin

    /// Goes over the rows once.
    struct Pass
    {
        qint64 row = 0;
        qint64 lastTime = BusFrame::NoTime;
    };

    template<typename Function>
    void take(Pass &pass, Function function) const;
    void survey(qint64 time, qint64 period);
    void chooseBins();
    bool binsFit() const;
    qint64 surveyed(double share) const;
    static std::size_t surveyIndex(qint64 period);
    static qint64 surveyedPeriod(std::size_t index);

    std::shared_ptr<const BusFrameStore> m_store;
    PeriodChoice m_choice;
    IdentifierStatistics m_figures;
    std::vector<qint64> m_survey; ///< how many periods there are, by surveyIndex()
    PeriodHistogram m_histogram;
    Pass m_surveyPass;
    Pass m_binPass;
    bool m_hasBins = false;
};
