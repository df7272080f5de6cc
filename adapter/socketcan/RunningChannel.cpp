#include "adapter/socketcan/RunningChannel.h"

#include "adapter/socketcan/KernelFilter.h"

#include <linux/can/error.h>

#include <cerrno>
#include <ctime>
#include <thread>
#include <utility>

namespace socketcan {

namespace {

constexpr std::uint64_t NsPerS = 1000000000;
constexpr std::uint64_t NsPerMs = 1000000;
/// A full transmit queue tells nobody when it has room again.
constexpr std::chrono::microseconds RoomPollInterval{200};

std::uint64_t clockNs(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<std::uint64_t>(time.tv_sec) * NsPerS + static_cast<std::uint64_t>(time.tv_nsec);
}

bool isFull(int error)
{
    return error == ENOBUFS || error == EAGAIN;
}

/// The interface itself is gone; one that is only down comes back.
bool isGone(int error)
{
    return error == ENODEV || error == ENXIO || error == EBADF;
}

} // namespace

Moment Moment::now()
{
    return {clockNs(CLOCK_REALTIME), clockNs(CLOCK_MONOTONIC)};
}

RunningChannel::RunningChannel(Settings settings, std::unique_ptr<CanPort> port, const Moment &start,
                               std::size_t bufferFrames)
    : m_settings(std::move(settings))
    , m_kernelFiltersAll(isExact(m_settings.filter))
    , m_port(std::move(port))
    , m_start(start)
    , m_queue(bufferFrames)
{
}

std::size_t RunningChannel::waiting() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_queue.size();
}

void RunningChannel::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_queue.clear();
}

bool RunningChannel::send(const va::CanFrame &frame, std::chrono::steady_clock::time_point deadline)
{
    if (m_settings.listenOnly || (frame.isFd() && !m_settings.isFd)) {
        countRefused(1);
        return false;
    }
    int error = m_port->write(frame);
    while (isFull(error) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(RoomPollInterval);
        error = m_port->write(frame);
    }
    if (error != 0) {
        countRefused(1);
    }
    return error == 0;
}

void RunningChannel::countRefused(std::uint64_t frames)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_counts.refused += frames;
}

ChannelCounts RunningChannel::counts() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_counts;
}

void RunningChannel::setForwarding(std::shared_ptr<RunningChannel> peer)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_peer = std::move(peer);
}

void RunningChannel::setGatewayList(const va::GatewayList &list)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_list = list;
}

bool RunningChannel::readOnce(Batch &scratch)
{
    const int error = m_port->read(scratch);
    if (error != 0) {
        m_isLost = m_isLost || isGone(error);
        return error == EINTR;
    }
    take(scratch, Moment::now());
    return scratch.size == Batch::Most;
}

void RunningChannel::take(const Batch &batch, const Moment &now)
{
    std::shared_ptr<RunningChannel> peer;
    m_forwards.clear();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (batch.dropped) {
            m_counts.systemLost += *batch.dropped - m_kernelDropped; // the kernel's number wraps like this difference
            m_kernelDropped = *batch.dropped;
        }
        peer = m_peer;
        for (std::size_t i = 0; i < batch.size; ++i) {
            takeArrival(batch.arrivals[i], now, m_forwards);
        }
    }
    if (peer && !m_forwards.empty()) {
        peer->forward(m_forwards);
    }
}

void RunningChannel::takeArrival(const Arrival &arrival, const Moment &now, std::vector<va::CanFrame> &forwards)
{
    const va::CanFrame &frame = arrival.frame;
    if (arrival.isError) {
        takeError(frame);
        return;
    }
    if (arrival.isOwn || (frame.isFd() && !m_settings.isFd) ||
        !(m_kernelFiltersAll || m_settings.filter.accepts(frame))) {
        return;
    }
    if (m_queue.isFull()) {
        ++m_counts.bufferLost;
    } else {
        m_queue.push(frame, timeMs(arrival.stampNs, now));
    }
    if (m_peer && m_list.passes(frame)) {
        forwards.push_back(frame);
    }
}

void RunningChannel::takeError(const va::CanFrame &report)
{
    ++m_counts.errorFrames;
    if ((report.id & CAN_ERR_BUSOFF) != 0) {
        ++m_counts.busOff;
        m_needsRestart = m_settings.link.hasBitTiming && m_settings.link.restartMs == 0;
    }
    if ((report.id & CAN_ERR_RESTARTED) != 0) {
        ++m_counts.restarts;
    }
    if ((report.id & CAN_ERR_CRTL) != 0 && (report.data[1] & CAN_ERR_CRTL_RX_OVERFLOW) != 0) {
        ++m_counts.systemLost;
    }
}

/// Milliseconds since the start. The age of the frame is taken off the steady clock, so that setting the system's clock
/// moves no time stamp but those of the frames just waiting.
std::uint32_t RunningChannel::timeMs(std::uint64_t stampNs, const Moment &now)
{
    const std::uint64_t ageNs = stampNs != 0 && stampNs < now.systemNs ? now.systemNs - stampNs : 0;
    const std::uint64_t elapsedNs = now.steadyNs - m_start.steadyNs;
    m_lastNs = std::max(m_lastNs, elapsedNs - std::min(ageNs, elapsedNs));
    return static_cast<std::uint32_t>(m_lastNs / NsPerMs);
}

/// By the thread of the other channel's reading, which is that of this one's, too.
void RunningChannel::forward(const std::vector<va::CanFrame> &frames)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (const va::CanFrame &frame : frames) {
            if (m_settings.listenOnly || (frame.isFd() && !m_settings.isFd)) {
                continue;
            }
            if (m_waitingForwards.size() < MaxForwards) {
                m_waitingForwards.push_back(frame);
            } else {
                ++m_counts.gatewayLost;
            }
        }
    }
    sendForwards();
}

bool RunningChannel::sendForwards()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    while (!m_waitingForwards.empty()) {
        const int error = m_port->write(m_waitingForwards.front());
        if (isFull(error)) {
            return false;
        }
        m_counts.gatewayLost += error == 0 ? 0U : 1U;
        m_waitingForwards.pop_front();
    }
    return true;
}

bool RunningChannel::takeNeedsRestart()
{
    return std::exchange(m_needsRestart, false);
}

} // namespace socketcan
