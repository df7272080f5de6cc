#include "device/CANReadHandle.h"

#include "device/AdapterCalls.h"

#include <algorithm>
#include <utility>

CANReadHandle::CANReadHandle(int periodMs)
    : m_period(periodMs)
{
}

void CANReadHandle::setFlagRead(bool state)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (std::size_t channel = 0; channel < ChannelsPerDevice; ++channel) {
        m_flagCAN[channel] = false;
        m_flagCANFD[channel] = false;
    }
    m_flagRead = state;
    m_ended.notify_all();
}

void CANReadHandle::setFlagCAN(std::uint8_t canInd, bool state)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_flagCAN[canInd == 0 ? 0 : 1] = state;
}

void CANReadHandle::setFlagCANFD(std::uint8_t canInd, bool state)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_flagCANFD[canInd == 0 ? 0 : 1] = state;
}

void CANReadHandle::watchDevice(std::shared_ptr<const std::atomic<bool>> isScanning, std::chrono::milliseconds silence)
{
    m_isScanning = std::move(isScanning);
    m_watch.emplace(silence);
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
    m_clock.start();
    bool hasFrames = false;
    const auto poll = [&](const ChannelFlags &flags, auto waiting, auto receive, auto &frames, auto signal) {
        for (quint8 channel = 0; channel < ChannelsPerDevice; ++channel) {
            if (flags[channel] && read(id, channel, waiting, receive, frames)) {
                emit(this->*signal)(id, channel, frames);
                frames = {};
                hasFrames = true;
            }
        }
    };
    while (m_flagRead) {
        hasFrames = m_hasOtherFrames.exchange(false);
        poll(m_flagCAN, api->VCI_GetReceiveNum, api->VCI_Receive, can, &CANReadHandle::sig_readResultCallback);
        poll(m_flagCANFD, api->KQ_GetReceiveNumCANFD, api->KQ_ReceiveCANFD, canFD,
             &CANReadHandle::sig_readResultCallbackCANFD);
        if (isLost(id, *api, hasFrames)) {
            emit sig_deviceLost(id);
        }
        pause();
    }
}

template<class Frame, class Receive>
bool CANReadHandle::read(quint8 id, quint8 channel, AdapterEntry::Channel waiting, Receive receive,
                         QVector<Frame> &frames)
{
    if (waiting == nullptr || receive == nullptr) {
        return false;
    }
    quint32 count = waiting(AdapterDeviceType, id, channel);
    if (count != 0 && count != AdapterReceiveError) {
        count = std::min(count, MaxBatch);
        frames.clear();
        frames.resize(static_cast<int>(count)); // zeroes the records
        count = receive(AdapterDeviceType, id, channel, frames.data(), count, AdapterReceiveWaitMs);
    }
    if (count == AdapterReceiveError) {
        emit sig_readFailed(id, channel);
        return false;
    }
    return count != 0;
}

bool CANReadHandle::isLost(quint8 id, const CANAPI &api, bool hasFrames)
{
    if (!m_watch || api.KQ_ReadInfo == nullptr) {
        return false;
    }
    if (m_hasToldTexts) {
        m_watch->noteKnown();
    }
    const DeviceWatch::Time now(m_clock.elapsed());
    m_watch->notePoll(now, hasFrames);
    if (m_watch->takeLost()) {
        return true;
    }
    if (m_watch->isToBeAsked(now) && !*m_isScanning && m_flagRead) {
        const bool answers = readInfo(api, id).has_value();
        m_watch->noteAnswer(DeviceWatch::Time(m_clock.elapsed()), answers);
    }
    return false;
}

void CANReadHandle::pause()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_ended.wait_for(lock, m_period, [this] { return !m_flagRead; });
}
