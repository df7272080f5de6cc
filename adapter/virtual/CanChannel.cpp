#include "adapter/virtual/CanChannel.h"

#include "adapter/AdapterAnswers.h"

namespace va {

namespace {

constexpr std::uint64_t NsPerMs = 1000000;

} // namespace

CanChannel::CanChannel(const CanBusConfig *bus, std::size_t bufferFrames)
    : m_bus(bus)
    , m_queue(bufferFrames)
{
}

void CanChannel::init(const VCI_INIT_CONFIG &config)
{
    stop();
    m_filter = {config.AccCode, config.AccMask};
    m_acceptsAll = m_filter.acceptsEverything();
    m_timing0 = config.Timing0;
    m_timing1 = config.Timing1;
    m_dataRate = dataRateIndex(config);
    m_listenOnly = isListenOnly(config);
    m_initialised = true;
}

bool CanChannel::start(std::uint64_t nowNs)
{
    if (!m_initialised) {
        return false;
    }
    if (!m_started) {
        m_started = true;
        m_startNs = nowNs;
        m_overflow = 0;
        m_seesClassic = matchesBus();
        m_seesFd = m_seesClassic && isFd();
    }
    return true;
}

void CanChannel::stop()
{
    m_started = false;
    m_seesClassic = false;
    m_seesFd = false;
    m_queue.clear();
}

void CanChannel::close()
{
    stop();
    m_initialised = false;
    m_dataRate = 0;
}

void CanChannel::store(const CanFrame &frame, std::uint64_t timeNs)
{
    if (m_queue.isFull()) {
        ++m_overflow;
        return;
    }
    m_queue.push(frame, static_cast<std::uint32_t>((timeNs - m_startNs) / NsPerMs));
}

bool CanChannel::matchesBus() const
{
    return m_bus != nullptr && m_timing0 == m_bus->timing0 && m_timing1 == m_bus->timing1 &&
           (!isFd() || m_dataRate == m_bus->dataRate);
}

} // namespace va
