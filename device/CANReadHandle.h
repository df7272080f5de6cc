#pragma once

#include "device/AdapterRecords.h"
#include "device/CANAPI.h"
#include "device/DeviceWatch.h"

#include <QElapsedTimer>
#include <QObject>
#include <QVector>

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

/// Polls one open device for received frames and hands them over in batches; between two polls it may also ask a silent
/// device whether it is still there. readHandle() runs on a thread of its own; the flags may be set from any thread.
class CANReadHandle : public QObject
{
    Q_OBJECT

public:
    /// Pause between two polls, in milliseconds.
    static constexpr int PollPeriodMs = 250;
    /// Most frames fetched from one channel in one poll, whatever the adapter announces: 80 MB of CAN FD records,
    /// several times what an adapter buffers and hundreds of times what a bus carries in a period. What is left waits
    /// in the adapter for the next poll.
    static constexpr std::uint32_t MaxBatch = 1'000'000;

    explicit CANReadHandle(int periodMs = PollPeriodMs);

    /// Clears all four channel flags, then lets the polling run or ends it. Ending wakes a loop that pauses; a loop
    /// inside an adapter call ends after that call, which waits for frames 3000 ms at most.
    void setFlagRead(bool state);
    /// Polls channel 0 when canInd is 0, channel 1 otherwise, with the classic CAN entries.
    void setFlagCAN(std::uint8_t canInd, bool state);
    /// The same with the CAN FD entries.
    void setFlagCANFD(std::uint8_t canInd, bool state);

    /// Watches the device for sig_deviceLost (DeviceWatch), from readHandle() on, which must not have been called yet.
    /// The device is not asked while isScanning is set; a call that has begun before may still be under way then.
    void watchDevice(std::shared_ptr<const std::atomic<bool>> isScanning, std::chrono::milliseconds silence);
    /// For the watch: a frame that is not received by the polls has come, or the device has told its texts to somebody
    /// else. From any thread.
    void noteFrame() { m_hasOtherFrames = true; }
    void noteTexts() { m_hasToldTexts = true; }

public slots:
    /// The polling loop over device id; returns when setFlagRead(false) is called. api must outlive the loop. Channels
    /// whose entries are missing from the table are not polled.
    void readHandle(quint8 id, CANAPI *api);

signals:
    /// Everything that waited on a channel at the time of the poll: as many records as the adapter announced, zeroed
    /// ones at the end when it then delivered fewer.
    void sig_readResultCallback(quint8 devInd, quint8 canInd, const QVector<VCI_CAN_OBJ> &obj);
    void sig_readResultCallbackCANFD(quint8 devInd, quint8 canInd, const QVector<VCI_CANFD_OBJ> &obj);
    /// The device does not answer any more. Once in a run of readHandle(), and only when it is watched.
    void sig_deviceLost(quint8 devInd);
    /// The adapter reported an error instead of how many frames wait, or instead of delivering them.
    void sig_readFailed(quint8 devInd, quint8 canInd);

private:
    using ChannelFlags = std::array<std::atomic<bool>, ChannelsPerDevice>;

    /// Fetches what waits on one channel into frames; false when nothing does.
    template<class Frame, class Receive>
    bool read(quint8 id, quint8 channel, AdapterEntry::Channel waiting, Receive receive, QVector<Frame> &frames);
    /// After each round of polls; asks the device if that is due. True once, when it is gone.
    bool isLost(quint8 id, const CANAPI &api, bool hasFrames);
    /// Sleeps one period, less when the polling is to end.
    void pause();

    const std::chrono::milliseconds m_period;
    std::atomic<bool> m_flagRead{false};
    ChannelFlags m_flagCAN{};
    ChannelFlags m_flagCANFD{};
    std::mutex m_mutex; ///< guards the writing of the flags; the loop reads them without it
    std::condition_variable m_ended;
    std::shared_ptr<const std::atomic<bool>> m_isScanning;
    std::optional<DeviceWatch> m_watch; ///< only when the device is watched; of the loop's thread, as the clock
    QElapsedTimer m_clock;
    std::atomic<bool> m_hasOtherFrames{false};
    std::atomic<bool> m_hasToldTexts{false};
};
