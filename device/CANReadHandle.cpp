#include "device/CANReadHandle.h"

#include "device/DeviceInfo.h"
#include "device/DeviceWatch.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QMutex>
#include <QMutexLocker>
#include <QWaitCondition>

#include <algorithm>
#include <array>
#include <atomic>
#include <optional>
#include <utility>

class CANReadHandlePrivate
{
public:
    using ChannelFlags = std::array<std::atomic<bool>, 2>;
    enum class Fetched : quint8 { Nothing, Frames, Error };

    /// Sleeps one period, less when the polling is to end.
    void pause();
    /// Fetches what waits on one channel into frames.
    template<class Frame, class Receive>
    Fetched read(quint8 id, quint8 channel, AdapterEntry::Channel waiting, Receive receive, QVector<Frame> &frames);
    /// After each round of polls; asks the device if that is due. True once, when it is gone.
    bool isLost(quint8 id, const CANAPI &api, bool hasFrames);

    int periodMs = CANReadHandle::PollPeriodMs;
    std::atomic<bool> flagRead{false};
    ChannelFlags flagCAN{};
    ChannelFlags flagCANFD{};
    QMutex mutex; ///< guards the writing of the flags; the loop reads them without it
    QWaitCondition ended;
    std::shared_ptr<const std::atomic<bool>> isScanning;
    std::optional<DeviceWatch> watch; ///< only when the device is watched; of the loop's thread, as the clock
    QElapsedTimer clock;
    std::atomic<bool> hasOtherFrames{false};
    std::atomic<bool> hasToldTexts{false};
};

void CANReadHandlePrivate::pause()
{
    QMutexLocker lock(&mutex);
    QDeadlineTimer deadline(periodMs);
    while (flagRead && !deadline.hasExpired()) {
        ended.wait(&mutex, deadline);
    }
}

template<class Frame, class Receive>
CANReadHandlePrivate::Fetched CANReadHandlePrivate::read(quint8 id, quint8 channel, AdapterEntry::Channel waiting,
                                                         Receive receive, QVector<Frame> &frames)
{
    if (waiting == nullptr || receive == nullptr) {
        return Fetched::Nothing;
    }
    const quint32 announced = waiting(AdapterDeviceType, id, channel);
    if (announced == AdapterReceiveError) {
        return Fetched::Error;
    }
    if (announced == 0) {
        return Fetched::Nothing;
    }
    const quint32 count = std::min(announced, CANReadHandle::MaxBatch);
    frames.clear();
    frames.resize(static_cast<int>(count)); // zeroes the records
    const quint32 received = receive(AdapterDeviceType, id, channel, frames.data(), count, AdapterReceiveWaitMs);
    if (received == AdapterReceiveError) {
        return Fetched::Error;
    }
    return received == 0 ? Fetched::Nothing : Fetched::Frames;
}

bool CANReadHandlePrivate::isLost(quint8 id, const CANAPI &api, bool hasFrames)
{
    if (!watch || api.KQ_ReadInfo == nullptr) {
        return false;
    }
    if (hasToldTexts) {
        watch->noteKnown();
    }
    const DeviceWatch::Time now(clock.elapsed());
    watch->notePoll(now, hasFrames);
    if (watch->takeLost()) {
        return true;
    }
    if (watch->isToBeAsked(now) && !*isScanning && flagRead) {
        const bool answers = readInfo(api, id).has_value();
        watch->noteAnswer(DeviceWatch::Time(clock.elapsed()), answers);
    }
    return false;
}

CANReadHandle::CANReadHandle(int periodMs)
    : m_p(std::make_unique<CANReadHandlePrivate>())
{
    m_p->periodMs = periodMs;
}

CANReadHandle::~CANReadHandle() = default;

void CANReadHandle::setFlagRead(bool state)
{
    const QMutexLocker lock(&m_p->mutex);
    for (std::size_t channel = 0; channel < m_p->flagCAN.size(); ++channel) {
        m_p->flagCAN[channel] = false;
        m_p->flagCANFD[channel] = false;
    }
    m_p->flagRead = state;
    m_p->ended.wakeAll();
}

void CANReadHandle::setFlagCAN(std::uint8_t canInd, bool state)
{
    const QMutexLocker lock(&m_p->mutex);
    m_p->flagCAN[canInd == 0 ? 0 : 1] = state;
}

void CANReadHandle::setFlagCANFD(std::uint8_t canInd, bool state)
{
    const QMutexLocker lock(&m_p->mutex);
    m_p->flagCANFD[canInd == 0 ? 0 : 1] = state;
}

void CANReadHandle::watchDevice(std::shared_ptr<const std::atomic<bool>> isScanning, std::chrono::milliseconds silence)
{
    m_p->isScanning = std::move(isScanning);
    m_p->watch.emplace(silence);
}

void CANReadHandle::noteFrame()
{
    m_p->hasOtherFrames = true;
}

void CANReadHandle::noteTexts()
{
    m_p->hasToldTexts = true;
}

void CANReadHandle::readHandle(quint8 id, CANAPI *api)
{
    if (api == nullptr) {
        return;
    }
    // Used again from poll to poll until a batch is handed over: from then on it belongs to its receivers, and writing
    // into it would copy it.
    QVector<VCI_CAN_OBJ> can;
    QVector<VCI_CANFD_OBJ> canFD;
    m_p->clock.start();
    bool hasFrames = false;
    const auto handOver = [this, id, &hasFrames](quint8 channel, auto fetched, auto &frames, auto signal) {
        if (fetched == CANReadHandlePrivate::Fetched::Frames) {
            emit(this->*signal)(id, channel, frames);
            frames = {};
            hasFrames = true;
        } else if (fetched == CANReadHandlePrivate::Fetched::Error) {
            emit sig_readFailed(id, channel);
        }
    };
    while (m_p->flagRead) {
        hasFrames = m_p->hasOtherFrames.exchange(false);
        for (const quint8 channel : {quint8(0), quint8(1)}) {
            if (m_p->flagCAN[channel]) {
                const auto fetched = m_p->read(id, channel, api->VCI_GetReceiveNum, api->VCI_Receive, can);
                handOver(channel, fetched, can, &CANReadHandle::sig_readResultCallback);
            }
        }
        for (const quint8 channel : {quint8(0), quint8(1)}) {
            if (m_p->flagCANFD[channel]) {
                const auto fetched = m_p->read(id, channel, api->KQ_GetReceiveNumCANFD, api->KQ_ReceiveCANFD, canFD);
                handOver(channel, fetched, canFD, &CANReadHandle::sig_readResultCallbackCANFD);
            }
        }
        if (m_p->isLost(id, *api, hasFrames)) {
            emit sig_deviceLost(id);
        }
        m_p->pause();
    }
}
