#pragma once

#include "adapter/AcceptanceFilter.h"
#include "adapter/CanFrame.h"
#include "adapter/FrameQueue.h"
#include "adapter/virtual/AdapterConfig.h"
#include "device/AdapterRecords.h"

#include <cstddef>
#include <cstdint>

namespace va {

/// One CAN channel of a device: how it was initialised, what it therefore sees, and the frames that wait in it.
class CanChannel
{
public:
    /// bus may be null (connected to nothing) and must outlive the channel.
    CanChannel(const CanBusConfig *bus, std::size_t bufferFrames);

    /// Takes the settings; stops the channel and drops what waits.
    void init(const VCI_INIT_CONFIG &config);
    /// Starts receiving, with time stamps counted from nowNs. False before the first init(); no effect when started.
    bool start(std::uint64_t nowNs);
    /// Stops receiving and drops what waits. The settings stay.
    void stop();
    /// stop(), and forgets the settings.
    void close();

    bool isStarted() const { return m_started; }
    /// Initialised with a data-rate index other than 0.
    bool isFd() const { return m_dataRate != 0; }

    /// Would get this frame from its bus: started, same timing, the format fits, the filter passes.
    bool receives(const CanFrame &frame) const { return sees(frame) && (m_acceptsAll || m_filter.accepts(frame)); }
    /// The same for the frame with any other payload.
    bool receivesIdentifier(const CanFrame &frame) const { return sees(frame) && m_filter.acceptsIdentifier(frame); }
    /// May put this frame on its bus.
    bool canSend(const CanFrame &frame) const { return sees(frame) && !m_listenOnly; }

    bool isFull() const { return m_queue.isFull(); }
    /// Stores a received frame, or counts it as overflowed when the buffer is full: the oldest frames are kept.
    void store(const CanFrame &frame, std::uint64_t timeNs);
    void countOverflow(std::uint64_t frames) { m_overflow += frames; }
    /// Frames lost to a full buffer since the channel was started.
    std::uint64_t overflow() const { return m_overflow; }
    FrameQueue &queue() { return m_queue; }
    const FrameQueue &queue() const { return m_queue; }

private:
    bool sees(const CanFrame &frame) const { return frame.isFd() ? m_seesFd : m_seesClassic; }
    bool matchesBus() const;

    const CanBusConfig *m_bus;
    AcceptanceFilter m_filter;
    std::uint8_t m_timing0 = 0;
    std::uint8_t m_timing1 = 0;
    std::uint8_t m_dataRate = 0;
    bool m_listenOnly = false;
    bool m_initialised = false;
    bool m_started = false;
    bool m_acceptsAll = false;
    bool m_seesClassic = false; ///< started on a bus with the same timing
    bool m_seesFd = false;
    std::uint64_t m_startNs = 0;
    std::uint64_t m_overflow = 0;
    FrameQueue m_queue;
};

} // namespace va
