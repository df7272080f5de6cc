#include "capture/PlaybackRecord.h"

#include <algorithm>

namespace {
template<typename Record>
Record toRecord(const CaptureFrame &frame)
{
    constexpr int Capacity = sizeof(Record::Data);
    Record record{};
    record.ID = frame.id();
    record.RemoteFlag = frame.isRemote() ? 1 : 0;
    record.ExternFlag = frame.isExtended() ? 1 : 0;
    record.DataLen = static_cast<quint8>(std::min(frame.length(), Capacity));
    // The whole payload, also where the length says less: the record of a .can file always holds eight bytes.
    std::copy_n(frame.data.cbegin(), std::min(frame.data.size(), Capacity), record.Data);
    return record;
}
} // namespace

VCI_CAN_OBJ toCanRecord(const CaptureFrame &frame)
{
    return toRecord<VCI_CAN_OBJ>(frame);
}

VCI_CANFD_OBJ toCanFdRecord(const CaptureFrame &frame)
{
    auto record = toRecord<VCI_CANFD_OBJ>(frame);
    record.FDFlag = frame.protocol();
    return record;
}
