#pragma once

#include "exchange/BusLoad.h"
#include "viewer/core/BusFrameStore.h"
#include "viewer/core/Series.h"
#include "viewer/core/SliceRun.h"

#include <map>
#include <memory>
#include <vector>

/// How the load of the buses is worked out.
struct BusLoadSettings
{
    static constexpr qint64 MaxBitRate = 100000000;
    static constexpr qint64 LeastWidth = 1000;

    std::map<quint16, BusLoad::Rates> rates; ///< by channel, from 0
    BusLoad::Rates usual;                    ///< of all other channels
    qint64 width = 100000000;                ///< nanoseconds of a step, at least LeastWidth
    double limit = 70;                       ///< percent; steps above it are counted

    /// 1 to MaxBitRate, whatever the settings have.
    BusLoad::Rates ratesOf(quint16 channel) const;
};

bool operator==(const BusLoadSettings &a, const BusLoadSettings &b);

/// The load of one channel over time, in percent: above 100 when a bit rate is wrong. Figures leave out the first and
/// the last step, which frames may fill in part only, when there are more than these.
struct ChannelLoad
{
    quint16 channel = 0; ///< from 0
    bool hasCan = false;
    bool hasSwitched = false; ///< CAN FD frames with bit rate switch
    bool hasLin = false;
    qint64 frames = 0;
    std::shared_ptr<const Series> series; ///< a point in the middle of each step
    double least = 0;
    double mean = 0;
    double greatest = 0;
    qint64 stepsAbove = 0; ///< above the limit
};

struct BusLoads
{
    qint64 width = 0;   ///< of a step: the wanted one, or, where that were too many steps, a multiple
    qint64 covered = 0; ///< rows
    std::vector<ChannelLoad> channels;
};

/// Adds up how long the frames of each channel keep its bus. Frames without a time are left out; one that jumps back
/// counts in the step where its time is, and each counts as a whole in the step of its time. Steps begin at the store's
/// start.
class BusLoadWork : public SliceWork<BusLoads>
{
public:
    static constexpr std::size_t MaxSteps = 1000000; ///< with frames, of a channel; above that steps are joined

    BusLoadWork(std::shared_ptr<const BusFrameStore> store, BusLoadSettings settings);
    ~BusLoadWork() override;

    bool work() override;
    BusLoads result() const override;
    /// The load so far; empty where the channel has no frames.
    Series series(quint16 channel) const;

private:
    struct Channel
    {
        explicit Channel(const BusLoad::Rates &rates)
            : load(rates)
        {
        }

        BusLoad load;
        ChannelLoad figures;
        std::map<qint64, double> busy; ///< nanoseconds by number of the step; steps in which no frame is are not there
        double *last = nullptr;        ///< the one that came last, of lastStep
        qint64 lastStep = 0;
    };

    Channel &channelOf(quint16 number);
    void add(const BusFrame &frame);
    void joinSteps();
    ChannelLoad loadOf(const Channel &channel) const;
    Series seriesOf(const Channel &channel) const;

    std::shared_ptr<const BusFrameStore> m_store;
    BusLoadSettings m_settings;
    qint64 m_width;
    qint64 m_covered = 0;
    std::vector<std::unique_ptr<Channel>> m_channels; ///< by number; null where there are no frames
};

/// The load of one channel, from 0, over all frames of a store; empty when stop is set meanwhile.
Series busLoadSeries(const std::shared_ptr<const BusFrameStore> &store, quint16 channel,
                     const BusLoadSettings &settings, const std::atomic<bool> &stop);
