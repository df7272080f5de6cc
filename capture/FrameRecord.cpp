#include "capture/FrameRecord.h"

#include "device/FrameIdentifier.h"

#include <algorithm>
#include <type_traits>

// Queues of hundreds of thousands of records are copied and moved around.
static_assert(sizeof(void *) != 8 || sizeof(FrameRecord) <= 32);
static_assert(std::is_nothrow_move_constructible_v<FrameRecord> && std::is_nothrow_move_assignable_v<FrameRecord>);

namespace {

template<typename AdapterFrame>
FrameRecord recordOf(const AdapterFrame &frame, FrameRecord::Direction direction, const QString &systemTime)
{
    FrameRecord result;
    result.systemTime = systemTime;
    const std::size_t size = std::min<std::size_t>(frame.DataLen, sizeof frame.Data);
    result.data = QByteArray(reinterpret_cast<const char *>(frame.Data), static_cast<int>(size));
    result.timeStamp = direction == FrameRecord::Received ? frame.TimeStamp : 0;
    result.id = frame.ID & MaxExtendedFrameId;
    result.timeFlag = frame.TimeFlag & 1U;
    result.extended = frame.ExternFlag & 1U;
    result.direction = direction;
    result.sendType = frame.SendType;
    // A CAN FD record is always a data frame, whatever its remote flag says.
    if constexpr (std::is_same_v<AdapterFrame, VCI_CANFD_OBJ>) {
        result.protocol = std::min<quint8>(frame.FDFlag, FrameRecord::CANFDSpeed);
    } else {
        result.remote = frame.RemoteFlag & 1U;
    }
    return result;
}

} // namespace

template<typename AdapterFrame>
FrameRecord FrameRecord::received(const AdapterFrame &frame, const QString &systemTime)
{
    return recordOf(frame, Received, systemTime);
}

template<typename AdapterFrame>
FrameRecord FrameRecord::sent(const AdapterFrame &frame, bool accepted, const QString &systemTime)
{
    return recordOf(frame, accepted ? SendSuccess : SendFailure, systemTime);
}

template FrameRecord FrameRecord::received(const VCI_CAN_OBJ &frame, const QString &systemTime);
template FrameRecord FrameRecord::received(const VCI_CANFD_OBJ &frame, const QString &systemTime);
template FrameRecord FrameRecord::sent(const VCI_CAN_OBJ &frame, bool accepted, const QString &systemTime);
template FrameRecord FrameRecord::sent(const VCI_CANFD_OBJ &frame, bool accepted, const QString &systemTime);
