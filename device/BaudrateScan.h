#pragma once

#include "device/AdapterRecords.h"

#include <QtGlobal>

#include <bitset>
#include <optional>

/// What a scan tells of one step.
struct BaudrateScanReport
{
    enum Channel : quint8 {
        FoundBefore = 0, ///< found and reported at an earlier step
        FoundNow = 1,    ///< found, first report
        NotFound = 2,
    };

    quint8 can1 = NotFound; ///< a Channel, of channel 0
    quint8 can2 = NotFound; ///< a Channel, of channel 1
    quint8 index = 0;       ///< bit rate tried, index in canBaudrates()
    quint8 dataRate = 0;    ///< CAN FD data-rate index tried, 0 for classic CAN
};

/// The order of a scan for the bit rates of a device's two buses, without its timer and without the adapter. Each of
/// the bit rates 1000k to 10k is tried for a step of 16 ticks, first as classic CAN, then with each data rate. A tick
/// consists of looking at every channel that isToBeTried(), setFound() for those that receive, and endTick().
///
/// A channel that was found is not tried again. One that is in use is never tried and never found, so a scan beside a
/// channel in use goes through all steps.
class BaudrateScan
{
public:
    static constexpr int ChannelCount = ChannelsPerDevice;
    static constexpr int TicksPerStep = 16;
    static constexpr int BitRateCount = 9;  ///< without "Custom" and 5k
    static constexpr int DataRateCount = 6; ///< 0 to 5
    static constexpr int StepCount = BitRateCount * DataRateCount;

    using ChannelFlags = std::bitset<ChannelsPerDevice>;

    struct Outcome
    {
        std::optional<BaudrateScanReport> report;
        bool isEnd = false;
    };

    /// Bit rate of the current step, index 1 to 9 in canBaudrates().
    quint8 index() const { return static_cast<quint8>(step() % BitRateCount + 1); }
    /// CAN FD data-rate index of the current step, 0 to 5.
    quint8 dataRate() const { return static_cast<quint8>(step() / BitRateCount); }
    /// Whether the channels have to be initialised for the step.
    bool isFirstTick() const { return m_tick % TicksPerStep == 0; }
    bool isToBeTried(quint8 channel) const { return !(m_inUse | m_refused | m_found)[channel]; }
    bool areAllInUse() const { return m_inUse.all(); }

    /// These channels are not tried any more.
    void setInUse(ChannelFlags channels) { m_inUse |= channels; }
    /// The adapter refused the step's settings: what the channel receives now says nothing about this step.
    void setRefused(quint8 channel) { m_refused.set(channel); }
    void setFound(quint8 channel) { m_found.set(channel); }

    /// Moves on to the next tick, and says what is to be reported before that. After the end there is no further tick.
    Outcome endTick();

private:
    int step() const { return m_tick / TicksPerStep; }
    BaudrateScanReport takeReport();

    ChannelFlags m_inUse;
    ChannelFlags m_refused;
    ChannelFlags m_found;
    ChannelFlags m_reported;
    int m_tick = 0; ///< since the scan began
};
