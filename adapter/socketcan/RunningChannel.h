#pragma once

#include "adapter/AcceptanceFilter.h"
#include "adapter/FrameQueue.h"
#include "adapter/GatewayList.h"
#include "adapter/socketcan/CanPort.h"
#include "adapter/socketcan/ChannelCounts.h"
#include "adapter/socketcan/Link.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

namespace socketcan {

/// The same moment on two clocks.
struct Moment
{
    std::uint64_t systemNs = 0; ///< the clock of the kernel's time stamps, which may be set forward and back
    std::uint64_t steadyNs = 0; ///< never goes back

    static Moment now();
};

/// A CAN channel that has been started: its port, and the frames that wait in it. The receiver's thread fills it, any
/// thread empties it and sends.
class RunningChannel
{
public:
    static constexpr std::size_t BufferFrames = 1000000;
    /// How long send() waits for room in a full transmit queue, all frames of the call together.
    static constexpr std::chrono::milliseconds SendPatience{10};
    /// Frames that wait for room in the other channel's transmit queue before they are given up.
    static constexpr std::size_t MaxForwards = 10000;

    struct Settings
    {
        Link link;
        va::AcceptanceFilter filter;
        bool isFd = false;
        bool listenOnly = false;
    };
    RunningChannel(Settings settings, std::unique_ptr<CanPort> port, const Moment &start,
                   std::size_t bufferFrames = BufferFrames);

    const Link &link() const { return m_settings.link; }
    bool isFd() const { return m_settings.isFd; }
    int descriptor() const { return m_port->descriptor(); }
    /// The interface is gone: nothing comes through this channel any more.
    bool isLost() const { return m_isLost; }

    // Of any thread.

    std::size_t waiting() const;
    /// Hands up to most frames to take(WaitingFrame), oldest first; answers how many.
    template<class Take>
    std::size_t receive(std::size_t most, Take &&take);
    void clear();
    /// Sends a frame; waits for room until the deadline. Counts a frame that was refused.
    bool send(const va::CanFrame &frame, std::chrono::steady_clock::time_point deadline);
    void countRefused(std::uint64_t frames);
    ChannelCounts counts() const;
    /// Sends on to peer what is received and passes the list; null: no longer.
    void setForwarding(std::shared_ptr<RunningChannel> peer);
    void setGatewayList(const va::GatewayList &list);

    // Of the receiver's thread.

    /// Reads once. False when there is nothing more to read for now.
    bool readOnce(Batch &scratch);
    /// Takes a batch that was read at this moment.
    void take(const Batch &batch, const Moment &now);
    /// Sends what was forwarded to this channel and had to wait; false while something still waits.
    bool sendForwards();
    /// Whether the controller went off the bus since the last call and does not come back by itself.
    bool takeNeedsRestart();

private:
    /// Frames handed out under one lock.
    static constexpr std::size_t FramesPerLock = 4096;

    void takeArrival(const Arrival &arrival, const Moment &now, std::vector<va::CanFrame> &forwards);
    void takeError(const va::CanFrame &report);
    void forward(const std::vector<va::CanFrame> &frames);
    std::uint32_t timeMs(std::uint64_t stampNs, const Moment &now);

    const Settings m_settings;
    const bool m_kernelFiltersAll;
    const std::unique_ptr<CanPort> m_port;
    const Moment m_start;
    std::atomic<bool> m_isLost{false};
    bool m_needsRestart = false;          ///< receiver's thread only
    std::uint32_t m_kernelDropped = 0;    ///< receiver's thread only: as the kernel told last
    std::uint64_t m_lastNs = 0;           ///< receiver's thread only: stamp of the last frame, since the start
    std::vector<va::CanFrame> m_forwards; ///< receiver's thread only: kept for its memory

    mutable std::mutex m_mutex; ///< guards everything below
    va::FrameQueue m_queue;
    ChannelCounts m_counts;
    std::shared_ptr<RunningChannel> m_peer; ///< null while the gateway is off
    va::GatewayList m_list;
    std::deque<va::CanFrame> m_waitingForwards; ///< to be sent by this channel
};

template<class Take>
std::size_t RunningChannel::receive(std::size_t most, Take &&take)
{
    std::size_t count = 0;
    for (bool isMore = true; isMore && count < most;) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const std::size_t end = std::min(most, count + FramesPerLock);
        for (; count < end && m_queue.size() > 0; ++count) {
            take(m_queue.front());
            m_queue.pop();
        }
        isMore = m_queue.size() > 0;
    }
    return count;
}

} // namespace socketcan
