#pragma once

#include "adapter/virtual/AdapterClock.h"
#include "adapter/virtual/ConfigReader.h"
#include "adapter/virtual/VirtualAdapter.h"
#include "device/AdapterRecords.h"

#include <QByteArray>
#include <QtGlobal>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

/// A clock that the test moves. sleepMs() moves it too and remembers for how long.
class FakeClock final : public va::AdapterClock
{
public:
    std::uint64_t nowNs() override { return m_nowNs; }
    void sleepMs(std::uint32_t milliseconds) override
    {
        m_sleptMs += milliseconds;
        m_nowNs += std::uint64_t{milliseconds} * 1000000U;
    }
    void advanceUs(std::uint64_t microseconds) { m_nowNs += microseconds * 1000U; }
    void advanceMs(std::uint64_t milliseconds) { advanceUs(milliseconds * 1000U); }
    std::uint64_t sleptMs() const { return m_sleptMs; }

private:
    std::atomic<std::uint64_t> m_nowNs{5000000000U}; // not 0: nothing may count from the clock's own start
    std::atomic<std::uint64_t> m_sleptMs{0};
};

constexpr std::uint8_t Timing500k0 = 0x00;
constexpr std::uint8_t Timing500k1 = 0x1C;

/// A virtual adapter on a clock of its own, with short ways to do what the tests do all the time.
class AdapterBench
{
public:
    using u8 = std::uint8_t;
    using u32 = std::uint32_t;
    static constexpr u32 Type = AdapterDeviceType;

    /// config as in virtual-adapter.json; single quotes stand for double ones.
    explicit AdapterBench(QByteArray config)
        : m_adapter(std::make_unique<va::VirtualAdapter>(parsed(config.replace('\'', '"')), m_clock))
    {
    }

    va::VirtualAdapter *operator->() { return m_adapter.get(); }
    FakeClock &clock() { return m_clock; }

    static VCI_INIT_CONFIG settings(u8 dataRate = 0, bool listenOnly = false)
    {
        VCI_INIT_CONFIG config{};
        config.AccMask = 0xFFFFFFFFU;
        config.Timing0 = Timing500k0;
        config.Timing1 = Timing500k1;
        config.Mode = static_cast<u8>((dataRate << AdapterModeDataRateShift) | AdapterModeAlways |
                                      (listenOnly ? AdapterModeListenOnly : 0));
        return config;
    }
    /// Opens the device if need be, initialises and starts the channel.
    bool start(u8 dev, u8 ch, const VCI_INIT_CONFIG &config = settings())
    {
        m_adapter->openDevice(Type, dev);
        return m_adapter->initCan(Type, dev, ch, &config) == 1 && m_adapter->startCan(Type, dev, ch) == 1;
    }

    std::vector<VCI_CAN_OBJ> receive(u8 dev, u8 ch, u32 most = 1000000)
    {
        std::vector<VCI_CAN_OBJ> frames(std::min(most, m_adapter->receiveNum(Type, dev, ch)));
        const u32 count = m_adapter->receive(Type, dev, ch, frames.data(), static_cast<u32>(frames.size()));
        return count == frames.size() ? frames : std::vector<VCI_CAN_OBJ>();
    }
    std::vector<VCI_CANFD_OBJ> receiveFd(u8 dev, u8 ch)
    {
        std::vector<VCI_CANFD_OBJ> frames(m_adapter->receiveNum<VCI_CANFD_OBJ>(Type, dev, ch));
        const u32 count = m_adapter->receive(Type, dev, ch, frames.data(), static_cast<u32>(frames.size()));
        return count == frames.size() ? frames : std::vector<VCI_CANFD_OBJ>();
    }
    u32 waiting(u8 dev, u8 ch) { return m_adapter->receiveNum(Type, dev, ch); }
    u32 send(u8 dev, u8 ch, const VCI_CAN_OBJ &frame) { return m_adapter->transmit(Type, dev, ch, &frame, 1); }
    u32 sendFd(u8 dev, u8 ch, const VCI_CANFD_OBJ &frame) { return m_adapter->transmit(Type, dev, ch, &frame, 1); }

    static va::AdapterConfig parsed(const QByteArray &text)
    {
        auto result = va::readConfig(text.toStdString());
        if (const auto *error = std::get_if<va::ConfigError>(&result)) {
            qFatal("%s", error->message("test").c_str());
        }
        return std::get<va::AdapterConfig>(std::move(result));
    }

private:
    FakeClock m_clock;
    std::unique_ptr<va::VirtualAdapter> m_adapter;
};

inline VCI_CAN_OBJ classicFrame(std::uint32_t id, std::uint8_t length = 8, bool extended = false, bool remote = false)
{
    VCI_CAN_OBJ frame{};
    frame.ID = id;
    frame.ExternFlag = extended ? 1 : 0;
    frame.RemoteFlag = remote ? 1 : 0;
    frame.DataLen = length;
    for (std::uint8_t i = 0; i < 8 && i < length; ++i) {
        frame.Data[i] = static_cast<std::uint8_t>(0xA0 + i);
    }
    return frame;
}

inline VCI_CANFD_OBJ fdFrame(std::uint32_t id, std::uint8_t length, std::uint8_t fdFlag)
{
    VCI_CANFD_OBJ frame{};
    frame.ID = id;
    frame.FDFlag = fdFlag;
    frame.DataLen = length;
    for (std::uint8_t i = 0; i < 64 && i < length; ++i) {
        frame.Data[i] = static_cast<std::uint8_t>(0x80 + i);
    }
    return frame;
}

/// The little-endian number in the first bytes of a payload.
template<class Record>
std::uint64_t counterOf(const Record &frame)
{
    std::uint64_t counter = 0;
    for (unsigned i = 0; i < 8 && i < frame.DataLen; ++i) {
        counter |= std::uint64_t{frame.Data[i]} << (8U * i);
    }
    return counter;
}
