#include "tests/support/ScriptedAdapter.h"

#include <algorithm>
#include <atomic>
#include <cstring>

namespace {

ScriptedAdapter *current = nullptr;

QString text(std::initializer_list<quint64> numbers)
{
    QStringList parts;
    for (const quint64 number : numbers) {
        parts.append(QString::number(number));
    }
    return parts.join(QLatin1Char(' '));
}

QString hex(const quint8 *bytes, int count)
{
    return QString::fromLatin1(QByteArray(reinterpret_cast<const char *>(bytes), count).toHex());
}

/// Of the calling thread; never used again, as the system's own numbers are.
int threadNumber()
{
    static std::atomic<int> last{0};
    thread_local const int number = ++last;
    return number;
}

QByteArray answerKey(const QByteArray &entry, int channel)
{
    return entry + ' ' + QByteArray::number(channel);
}

} // namespace

/// The functions behind the table's slots.
struct ScriptedEntries
{
    using u8 = quint8;
    using u16 = quint16;
    using u32 = quint32;
    using i32 = qint32;

    static u32 X9_ADAPTER_CALL unused() { return current->record("unused", -1, {}); }
    static u32 X9_ADAPTER_CALL openDevice(u32 type, u8 dev, u32 reserved)
    {
        return current->record("VCI_OpenDevice", -1, text({type, dev, reserved}));
    }
    static u32 X9_ADAPTER_CALL closeDevice(u32 type, u8 dev)
    {
        return current->record("VCI_CloseDevice", -1, text({type, dev}));
    }
    static u32 X9_ADAPTER_CALL initCAN(u32 type, u8 dev, u8 ch, const VCI_INIT_CONFIG *config)
    {
        const QString fields = text({config->AccCode, config->AccMask, config->Reserved, config->Filter,
                                     config->Timing0, config->Timing1, config->Mode});
        return current->record("VCI_InitCAN", ch, text({type, dev, ch}) + QStringLiteral(" {%1}").arg(fields));
    }
    static u32 X9_ADAPTER_CALL startCAN(u32 type, u8 dev, u8 ch)
    {
        return current->record("VCI_StartCAN", ch, text({type, dev, ch}));
    }
    static u32 X9_ADAPTER_CALL resetCAN(u32 type, u8 dev, u8 ch)
    {
        return current->record("VCI_ResetCAN", ch, text({type, dev, ch}));
    }
    static u32 X9_ADAPTER_CALL clearBuffer(u32 type, u8 dev, u8 ch)
    {
        return current->record("VCI_ClearBuffer", ch, text({type, dev, ch}));
    }
    template<class Frame>
    static QString keep(std::vector<Frame> &list, const Frame *frames, u32 count)
    {
        const std::lock_guard<std::mutex> lock(current->m_mutex);
        list.insert(list.end(), frames, frames + count);
        QString ids;
        for (u32 i = 0; i < count; ++i) {
            ids += QStringLiteral(" id%1").arg(frames[i].ID);
        }
        return ids;
    }
    static u32 X9_ADAPTER_CALL transmit(u32 type, u8 dev, u8 ch, const VCI_CAN_OBJ *frames, u32 count)
    {
        const QString ids = keep(current->m_frames, frames, count);
        return current->record("VCI_Transmit", ch, text({type, dev, ch, count}) + ids);
    }
    static u32 X9_ADAPTER_CALL transmitCANFD(u32 type, u8 dev, u8 ch, const VCI_CANFD_OBJ *frames, u32 count)
    {
        const QString ids = keep(current->m_fdFrames, frames, count);
        return current->record("KQ_TransmitCANFD", ch, text({type, dev, ch, count}) + ids);
    }
    static u32 X9_ADAPTER_CALL getReceiveNum(u32 type, u8 dev, u8 ch)
    {
        return waiting("VCI_GetReceiveNum", false, type, dev, ch);
    }
    static u32 X9_ADAPTER_CALL getReceiveNumCANFD(u32 type, u8 dev, u8 ch)
    {
        return waiting("KQ_GetReceiveNumCANFD", true, type, dev, ch);
    }
    static u32 waiting(const char *entry, bool isCANFD, u32 type, u8 dev, u8 ch)
    {
        current->record(entry, ch, text({type, dev, ch}), true);
        const std::lock_guard<std::mutex> lock(current->m_mutex);
        return current->m_waiting[isCANFD ? 1 : 0][ch & 1].announced;
    }
    static u32 X9_ADAPTER_CALL receive(u32 type, u8 dev, u8 ch, VCI_CAN_OBJ *frames, u32 capacity, i32 waitMs)
    {
        return deliver("VCI_Receive", false, text({type, dev, ch, capacity, quint64(waitMs)}), ch, frames, capacity);
    }
    static u32 X9_ADAPTER_CALL receiveCANFD(u32 type, u8 dev, u8 ch, VCI_CANFD_OBJ *frames, u32 capacity, i32 waitMs)
    {
        return deliver("KQ_ReceiveCANFD", true, text({type, dev, ch, capacity, quint64(waitMs)}), ch, frames, capacity);
    }
    template<class Frame>
    static u32 deliver(const char *entry, bool isCANFD, const QString &arguments, u8 ch, Frame *frames, u32 capacity)
    {
        current->record(entry, ch, arguments, true);
        const std::lock_guard<std::mutex> lock(current->m_mutex);
        auto &channel = current->m_waiting[isCANFD ? 1 : 0][ch & 1];
        if (channel.delivered != AdapterReceiveError) {
            for (u32 i = 0; i < std::min(channel.delivered, capacity); ++i) {
                frames[i].ID = ++channel.lastId;
            }
        }
        channel.announced = 0;
        return channel.delivered;
    }
    static u32 X9_ADAPTER_CALL readInfo(u32 type, u8 dev, char *serial, char *model, char *firmware, char *hardware)
    {
        const u32 result = current->record("KQ_ReadInfo", -1, text({type, dev}));
        const std::lock_guard<std::mutex> lock(current->m_mutex);
        char *buffers[4] = {serial, model, firmware, hardware};
        for (int i = 0; i < 4; ++i) {
            const QByteArray &content = current->m_texts[i];
            std::memcpy(buffers[i], content.constData(), std::min(AdapterInfoSize, size_t(content.size())));
        }
        return result;
    }
    static u32 X9_ADAPTER_CALL openCANGateWay(u32 type, u8 dev, u8 operation, u32 *state)
    {
        // The operation stands where other entries have the channel: answers can be set for one operation.
        const u32 result = current->record("KQ_OpenCANGateWay", operation, text({type, dev, operation}));
        const std::lock_guard<std::mutex> lock(current->m_mutex);
        if (operation != AdapterGatewayQuery && !current->m_isGatewayStuck) {
            current->m_gateway = operation;
        }
        *state = current->m_gateway;
        return result;
    }
    static u32 X9_ADAPTER_CALL setCANGateWayIDFilter(u32 type, u8 dev, u8 ch, const u32 *ids, u32 count)
    {
        const u32 result = current->record("KQ_SetCANGateWayIDFilter", ch, text({type, dev, ch, count}));
        const std::lock_guard<std::mutex> lock(current->m_mutex);
        current->m_gatewayWords.assign(ids, ids + count);
        return result;
    }
    static u32 X9_ADAPTER_CALL getCANGateWayIDFilter(u32 type, u8 dev, u8 ch, u32 *ids, u32 *count)
    {
        const u32 result = current->record("KQ_GetCANGateWayIDFilter", ch, text({type, dev, ch}));
        const std::lock_guard<std::mutex> lock(current->m_mutex);
        std::copy(current->m_gatewayWords.cbegin(), current->m_gatewayWords.cend(), ids);
        *count = current->m_gatewayCount;
        return result;
    }
    static u32 X9_ADAPTER_CALL openLIN(u32 type, u8 dev, u8 ch, u16 baudRate, u8 checksum)
    {
        return current->record("KQ_OpenLIN", ch, text({type, dev, ch, baudRate, checksum}));
    }
    static u32 X9_ADAPTER_CALL closeLIN(u32 type, u8 dev, u8 ch)
    {
        return current->record("KQ_CloseLIN", ch, text({type, dev, ch}));
    }
    static u32 X9_ADAPTER_CALL transmitLIN(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ frame)
    {
        const QString fields = text({frame.DataLen, frame.ID}) + QLatin1Char(' ') + hex(frame.Data, 8) +
                               QLatin1Char(' ') + text({frame.Checksum});
        return current->record("KQ_TransmitLIN", ch, text({type, dev, ch}) + QStringLiteral(" {%1}").arg(fields));
    }
    static u32 X9_ADAPTER_CALL receiveLIN(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ *frame)
    {
        return fillLIN("KQ_ReceiveLIN", type, dev, ch, frame);
    }
    static u32 X9_ADAPTER_CALL receiveLINBySlave(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ *frame)
    {
        return fillLIN("KQ_ReceiveLINBySlave", type, dev, ch, frame);
    }
    static u32 fillLIN(const char *entry, u32 type, u8 dev, u8 ch, VCI_LIN_OBJ *frame)
    {
        const QString before = QStringLiteral(" {%1}").arg(hex(reinterpret_cast<const u8 *>(frame), sizeof *frame));
        const u32 result = current->record(entry, ch, text({type, dev, ch}) + before);
        const std::lock_guard<std::mutex> lock(current->m_mutex);
        if (result == AdapterSuccess) {
            *frame = current->m_linFrame;
        }
        return result;
    }
    static u32 X9_ADAPTER_CALL changeLINMode(u32 type, u8 dev, u8 ch, u8 mode)
    {
        return current->record("KQ_ChangeLINMode", ch, text({type, dev, ch, mode}));
    }

    using Symbol = void (*)();
    template<class Entry>
    static Symbol symbol(Entry entry)
    {
        return reinterpret_cast<Symbol>(entry);
    }
    static QHash<QByteArray, Symbol> all()
    {
        return {
            {"VCI_OpenDevice", symbol(openDevice)},
            {"VCI_CloseDevice", symbol(closeDevice)},
            {"VCI_InitCAN", symbol(initCAN)},
            {"VCI_ReadBoardInfo", symbol(unused)},
            {"VCI_ReadErrInfo", symbol(unused)},
            {"VCI_ReadCANStatus", symbol(unused)},
            {"VCI_GetReference", symbol(unused)},
            {"VCI_SetReference", symbol(unused)},
            {"VCI_StartCAN", symbol(startCAN)},
            {"VCI_ResetCAN", symbol(resetCAN)},
            {"VCI_GetReceiveNum", symbol(getReceiveNum)},
            {"VCI_ClearBuffer", symbol(clearBuffer)},
            {"VCI_Transmit", symbol(transmit)},
            {"VCI_Receive", symbol(receive)},
            {"KQ_ReadInfo", symbol(readInfo)},
            {"KQ_OpenCANGateWay", symbol(openCANGateWay)},
            {"KQ_SetCANGateWayIDFilter", symbol(setCANGateWayIDFilter)},
            {"KQ_GetCANGateWayIDFilter", symbol(getCANGateWayIDFilter)},
            {"KQ_OpenLIN", symbol(openLIN)},
            {"KQ_CloseLIN", symbol(closeLIN)},
            {"KQ_TransmitLIN", symbol(transmitLIN)},
            {"KQ_ReceiveLIN", symbol(receiveLIN)},
            {"KQ_ChangeLINMode", symbol(changeLINMode)},
            {"KQ_TransmitLINBySlave", symbol(unused)},
            {"KQ_ReceiveLINBySlave", symbol(receiveLINBySlave)},
            {"KQ_GetReceiveNumCANFD", symbol(getReceiveNumCANFD)},
            {"KQ_TransmitCANFD", symbol(transmitCANFD)},
            {"KQ_ReceiveCANFD", symbol(receiveCANFD)},
        };
    }
};

ScriptedAdapter::ScriptedAdapter()
{
    Q_ASSERT(current == nullptr);
    current = this;
    m_gui = threadNumber();
    setTexts("SN0001", "X9FC-2", "V2.05");
}

ScriptedAdapter::~ScriptedAdapter()
{
    current = nullptr;
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): there is no table without an adapter
std::unique_ptr<CANAPI> ScriptedAdapter::table(const QStringList &without) const
{
    const CANAPI::EntryLookUp lookUp = [&without](const char *name) -> ScriptedEntries::Symbol {
        return without.contains(QString::fromLatin1(name)) ? nullptr : ScriptedEntries::all().value(name);
    };
    return std::make_unique<CANAPI>(lookUp);
}

QStringList ScriptedAdapter::takeCalls()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_calls, {});
}

QStringList ScriptedAdapter::takePolls()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_polls, {});
}

std::vector<VCI_CAN_OBJ> ScriptedAdapter::takeFrames()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_frames, {});
}

std::vector<VCI_CANFD_OBJ> ScriptedAdapter::takeFdFrames()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_fdFrames, {});
}

void ScriptedAdapter::noteMonitor()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_monitor = threadNumber();
}

QStringList ScriptedAdapter::callers() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QStringList callers;
    for (const auto &[thread, entries] : m_entries) {
        QString kind = QLatin1String(thread == m_gui ? "GUI" : thread == m_monitor ? "monitor" : "worker");
        const std::set<QString> &devices = m_devices.at(thread);
        const bool isOutside = thread == m_monitor ? devices != std::set<QString>{QStringLiteral("0")}
                                                   : thread != m_gui && devices.size() > 1;
        for (const QString &device : isOutside ? devices : std::set<QString>()) {
            kind += QLatin1String(" of device ") + device;
        }
        for (const QString &entry : entries) {
            callers.append(entry + QLatin1Char(' ') + kind);
        }
    }
    callers.removeDuplicates();
    callers.sort();
    return callers;
}

void ScriptedAdapter::answer(const char *entry, quint32 result)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_answers[entry] = result;
}

void ScriptedAdapter::answerChannel(const char *entry, quint8 channel, quint32 result)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_answers[answerKey(entry, channel)] = result;
}

void ScriptedAdapter::onCall(const char *entry, std::function<void()> hook)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_hooks[entry] = std::move(hook);
}

void ScriptedAdapter::setTexts(const QByteArray &serial, const QByteArray &model, const QByteArray &firmware)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_texts[0] = serial;
    m_texts[1] = model;
    m_texts[2] = firmware;
    m_texts[3] = "H1.0";
}

void ScriptedAdapter::setGateway(quint32 state, bool isStuck)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_gateway = state;
    m_isGatewayStuck = isStuck;
}

void ScriptedAdapter::setGatewayWords(const std::vector<quint32> &words, quint32 count)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_gatewayWords = words;
    m_gatewayCount = count;
}

std::vector<quint32> ScriptedAdapter::gatewayWords() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_gatewayWords;
}

void ScriptedAdapter::setLINFrame(const VCI_LIN_OBJ &frame)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_linFrame = frame;
}

void ScriptedAdapter::announce(bool isCANFD, quint8 channel, quint32 announced, quint32 delivered)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Waiting &waiting = m_waiting[isCANFD ? 1 : 0][channel & 1];
    waiting.announced = announced;
    waiting.delivered = delivered;
}

quint32 ScriptedAdapter::record(const QByteArray &entry, int channel, const QString &arguments, bool isPoll)
{
    std::function<void()> hook;
    quint32 result = AdapterSuccess;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        (isPoll ? m_polls : m_calls).append(QString::fromLatin1(entry) + QLatin1Char(' ') + arguments);
        m_entries[threadNumber()].insert(QString::fromLatin1(entry));
        m_devices[threadNumber()].insert(arguments.section(QLatin1Char(' '), 1, 1));
        hook = m_hooks.value(entry);
        result = m_answers.value(answerKey(entry, channel), m_answers.value(entry, AdapterSuccess));
    }
    if (hook) {
        hook();
    }
    return result;
}
