#include "device/CANReadHandle.h"

#include <QDeadlineTimer>
#include <QMutex>
#include <QMutexLocker>
#include <QWaitCondition>

#include <algorithm>
#include <array>
#include <atomic>

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

    std::atomic<bool> flagRead{false};
    ChannelFlags flagCAN{};
    ChannelFlags flagCANFD{};
    QMutex mutex; ///< guards the writing of the flags; the loop reads them without it
    QWaitCondition ended;
};

void CANReadHandlePrivate::pause()
{
    QMutexLocker lock(&mutex);
    QDeadlineTimer deadline(CANReadHandle::PollPeriodMs);
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
    const quint32 count = std::min(waiting(AdapterDeviceType, id, channel), CANReadHandle::MaxBatch);
    if (count == 0) {
        return Fetched::Nothing;
    }
    frames.clear();
    frames.resize(static_cast<int>(count)); // zeroes the records
    const quint32 received = receive(AdapterDeviceType, id, channel, frames.data(), count, AdapterReceiveWaitMs);
    if (received == AdapterReceiveError) {
        return Fetched::Error;
    }
    return received == 0 ? Fetched::Nothing : Fetched::Frames;
}

CANReadHandle::CANReadHandle(QObject *parent)
    : QObject(parent)
    , m_p(std::make_unique<CANReadHandlePrivate>())
{
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

void CANReadHandle::readHandle(quint8 id, CANAPI *api)
{
    if (api == nullptr) {
        return;
    }
    // Used again from poll to poll until a batch is handed over: from then on it belongs to its receivers, and writing
    // into it would copy it.
    QVector<VCI_CAN_OBJ> can;
    QVector<VCI_CANFD_OBJ> canFD;
    const auto handOver = [this, id](quint8 channel, auto fetched, auto &frames, auto signal) {
        if (fetched == CANReadHandlePrivate::Fetched::Frames) {
            emit(this->*signal)(id, channel, frames);
            frames = {};
        } else if (fetched == CANReadHandlePrivate::Fetched::Error) {
            emit sig_readFailed(id, channel);
        }
    };
    while (m_p->flagRead) {
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
        m_p->pause();
    }
}
