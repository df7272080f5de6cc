#include "capture/FrameRecord.h"

#include <algorithm>
#include <type_traits>

// Queues of hundreds of thousands of records are copied and moved around.
static_assert(sizeof(void *) != 8 || sizeof(FrameRecord) <= 32);
static_assert(std::is_nothrow_move_constructible_v<FrameRecord> && std::is_nothrow_move_assignable_v<FrameRecord>);

namespace {

template<typename AdapterFrame>
FrameRecord record(const AdapterFrame &frame, FrameRecord::Direction direction, const QString &systemTime)
{
    FrameRecord result;
    result.systemTime = systemTime;
    const std::size_t size = std::min<std::size_t>(frame.DataLen, sizeof frame.Data);
    result.data = QByteArray(reinterpret_cast<const char *>(frame.Data), static_cast<int>(size));
    result.id = frame.ID & 0x1FFFFFFFU;
    result.timeFlag = frame.TimeFlag & 1U;
    result.extended = frame.ExternFlag & 1U;
    result.direction = direction;
    result.sendType = frame.SendType;
    return result;
}

FrameRecord classicRecord(const VCI_CAN_OBJ &frame, FrameRecord::Direction direction, const QString &systemTime)
{
    FrameRecord result = record(frame, direction, systemTime);
    result.remote = frame.RemoteFlag & 1U;
    return result;
}

// A CAN FD record is always a data frame, whatever its remote flag says.
FrameRecord fdRecord(const VCI_CANFD_OBJ &frame, FrameRecord::Direction direction, const QString &systemTime)
{
    FrameRecord result = record(frame, direction, systemTime);
    result.protocol = std::min<quint8>(frame.FDFlag, FrameRecord::CANFDSpeed);
    return result;
}

FrameRecord::Direction sentDirection(bool accepted)
{
    return accepted ? FrameRecord::SendSuccess : FrameRecord::SendFailure;
}

} // namespace

FrameRecord FrameRecord::received(const VCI_CAN_OBJ &frame, const QString &systemTime)
{
    FrameRecord result = classicRecord(frame, Received, systemTime);
    result.timeStamp = frame.TimeStamp;
    return result;
}

FrameRecord FrameRecord::received(const VCI_CANFD_OBJ &frame, const QString &systemTime)
{
    FrameRecord result = fdRecord(frame, Received, systemTime);
    result.timeStamp = frame.TimeStamp;
    return result;
}

FrameRecord FrameRecord::sent(const VCI_CAN_OBJ &frame, bool accepted, const QString &systemTime)
{
    return classicRecord(frame, sentDirection(accepted), systemTime);
}

FrameRecord FrameRecord::sent(const VCI_CANFD_OBJ &frame, bool accepted, const QString &systemTime)
{
    return fdRecord(frame, sentDirection(accepted), systemTime);
}
