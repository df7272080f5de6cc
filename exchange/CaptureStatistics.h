#pragma once

#include "exchange/BusFrame.h"

#include <array>
#include <bitset>
#include <unordered_map>
#include <vector>

/// Mean and standard deviation of numbers that come one by one.
class RunningMean
{
public:
    void add(double number)
    {
        ++m_count;
        const double from = number - m_mean;
        m_mean += from / static_cast<double>(m_count);
        m_squares += from * (number - m_mean);
    }
    qint64 count() const { return m_count; }
    double mean() const { return m_mean; }
    /// Of the population; 0 with fewer than two numbers.
    double standardDeviation() const;

private:
    qint64 m_count = 0;
    double m_mean = 0;
    double m_squares = 0;
};

/// What a capture's frames of one identifier, on one channel, have in common.
struct IdentifierStatistics
{
    quint16 channel = 0;
    quint16 kind = 0; ///< of BusFrame::Flag: Extended, Error, Lin
    quint32 identifier = 0;
    qint64 frames = 0;
    qint64 remoteFrames = 0;
    RunningMean period; ///< in nanoseconds, between frames that have a time and do not go back
    qint64 shortestPeriod = 0;
    qint64 longestPeriod = 0;
    quint8 shortest = 0; ///< bytes of data
    quint8 longest = 0;
    std::bitset<BusFrame::MaxLength> changing; ///< bytes that are not the same in all frames

    std::array<uchar, BusFrame::MaxLength> data{}; ///< of the last frame
    qint64 lastTime = BusFrame::NoTime;
};

/// Counts the frames of a capture, altogether and by identifier. Takes memory for each identifier, for MaxRows at most.
class CaptureStatistics
{
public:
    static constexpr std::size_t MaxRows = 100000;

    struct Totals
    {
        qint64 frames = 0;
        qint64 classic = 0;
        qint64 fd = 0;
        qint64 remote = 0;
        qint64 error = 0;
        qint64 lin = 0;
        qint64 sent = 0;
        qint64 refused = 0;
        qint64 firstTime = BusFrame::NoTime; ///< the earliest
        qint64 lastTime = BusFrame::NoTime;  ///< the latest
    };
    struct Channel
    {
        qint64 frames = 0;
        double busySeconds = 0; ///< added by the caller, see BusLoad
    };

    /// busyNanoseconds: for which the bus was busy with it; refused frames take none.
    void add(const BusFrame &frame, qint64 busyNanoseconds = 0);

    const Totals &totals() const { return m_totals; }
    /// By number; those without frames, too.
    const std::vector<Channel> &channels() const { return m_channels; }
    /// By channel, then by identifier, standard ones first.
    std::vector<IdentifierStatistics> rows() const;
    /// Frames of identifiers for which there was no room.
    qint64 notListed() const { return m_notListed; }

    /// By time of frames: by the device's clock where there is one, for its times are the finer ones.
    static qint64 timeOf(const BusFrame &frame)
    {
        return frame.deviceTime != BusFrame::NoTime ? frame.deviceTime : frame.time;
    }

private:
    void addTotals(const BusFrame &frame);

    Totals m_totals;
    std::vector<Channel> m_channels;
    std::unordered_map<quint64, IdentifierStatistics> m_rows;
    qint64 m_notListed = 0;
};
