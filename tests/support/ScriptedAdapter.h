#pragma once

#include "device/CANAPI.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <vector>

/// An adapter made of static functions: it fills a CANAPI, records every call with its arguments and answers what the
/// test has set. Without further settings every call succeeds and nothing is received. One at a time, because entry
/// points carry no context; any thread may call in.
class ScriptedAdapter
{
public:
    ScriptedAdapter();
    ~ScriptedAdapter();
    ScriptedAdapter(const ScriptedAdapter &) = delete;
    ScriptedAdapter &operator=(const ScriptedAdapter &) = delete;

    /// A table of all entries but some.
    std::unique_ptr<CANAPI> table(const QStringList &without = {}) const;

    /// Calls of the manager since the last time, in order: "VCI_OpenDevice 4 0 0". Text and output buffers are left
    /// out, records are written field by field.
    QStringList takeCalls();
    /// The same for the four entries that the receive worker polls with.
    QStringList takePolls();
    /// The records handed over to VCI_Transmit and KQ_TransmitCANFD since the last time, in order.
    std::vector<VCI_CAN_OBJ> takeFrames();
    std::vector<VCI_CANFD_OBJ> takeFdFrames();

    /// To be called by the manager's firmware query: the calling thread is the firmware monitor's.
    void noteMonitor();
    /// Who has called so far, as "VCI_Receive worker": GUI is the thread that this object was made on, a worker any
    /// other thread but the monitor's. A worker that called for more than one device, and a monitor for another than
    /// device 0, are named with the devices. Sorted.
    QStringList callers() const;

    /// What an entry answers from now on instead of success.
    void answer(const char *entry, quint32 result);
    /// What an entry answers for one channel.
    void answerChannel(const char *entry, quint8 channel, quint32 result);
    /// Runs in the calling thread at the start of every call of an entry.
    void onCall(const char *entry, std::function<void()> hook);

    /// The device's four texts, copied into the 80-byte buffers as they are, without a zero behind them.
    void setTexts(const QByteArray &serial, const QByteArray &model, const QByteArray &firmware);
    /// State of the gateway as the adapter reports it; switching changes it unless it is stuck.
    void setGateway(quint32 state, bool isStuck = false);
    /// What the gateway's list holds, and the count reported with it.
    void setGatewayWords(const std::vector<quint32> &words, quint32 count);
    /// The words handed over by the last KQ_SetCANGateWayIDFilter.
    std::vector<quint32> gatewayWords() const;
    /// What the LIN receive entries write.
    void setLINFrame(const VCI_LIN_OBJ &frame);

    /// The next poll of a channel is told of announced frames; the following receive fills as many records as it
    /// answers (identifiers counting from 1 over the channel's life) and answers delivered.
    void announce(bool isCANFD, quint8 channel, quint32 announced, quint32 delivered);

private:
    friend struct ScriptedEntries;

    struct Waiting
    {
        quint32 announced = 0;
        quint32 delivered = 0;
        quint32 lastId = 0;
    };

    /// Records a call and gives its answer.
    quint32 record(const QByteArray &entry, int channel, const QString &arguments, bool isPoll = false);

    mutable std::mutex m_mutex; ///< guards everything below
    QStringList m_calls;
    QStringList m_polls;
    std::vector<VCI_CAN_OBJ> m_frames;
    std::vector<VCI_CANFD_OBJ> m_fdFrames;
    QHash<QByteArray, quint32> m_answers;
    QHash<QByteArray, std::function<void()>> m_hooks;
    QByteArray m_texts[4];
    quint32 m_gateway = 0;
    bool m_isGatewayStuck = false;
    std::vector<quint32> m_gatewayWords;
    quint32 m_gatewayCount = 0;
    VCI_LIN_OBJ m_linFrame{};
    Waiting m_waiting[2][2];                    ///< by CAN FD, channel
    std::map<int, std::set<QString>> m_entries; ///< called by a thread, by its number
    std::map<int, std::set<QString>> m_devices; ///< that a thread called for, likewise
    int m_gui = 0;
    int m_monitor = -1;
};
