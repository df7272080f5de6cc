#include "adapter/FrameRecords.h"

#include <cstring>

namespace va {

namespace {

template<class Record>
bool readCommon(const Record &record, CanFrame &frame)
{
    if (record.RemoteFlag > 1 || record.ExternFlag > 1) {
        return false;
    }
    frame.id = record.ID;
    frame.remote = record.RemoteFlag == 1;
    frame.extended = record.ExternFlag == 1;
    frame.length = record.DataLen;
    if (frame.id > (frame.extended ? MaxExtendedId : MaxStandardId) || frame.length > frame.maxLength() ||
        (frame.isFd() && frame.remote)) {
        return false;
    }
    std::memcpy(frame.data.data(), record.Data, frame.dataSize());
    return true;
}

template<class Record>
void writeCommon(const WaitingFrame &frame, Record &record)
{
    record.ID = frame.id;
    record.TimeStamp = frame.timeMs;
    record.TimeFlag = 1;
    record.RemoteFlag = frame.remote ? 1 : 0;
    record.ExternFlag = frame.extended ? 1 : 0;
    record.DataLen = frame.length;
    std::memcpy(record.Data, frame.data, frame.dataSize());
}

} // namespace

bool readRecord(const VCI_CAN_OBJ &record, CanFrame &frame)
{
    frame.format = FrameFormat::Classic;
    return readCommon(record, frame);
}

bool readRecord(const VCI_CANFD_OBJ &record, CanFrame &frame)
{
    if (record.FDFlag > static_cast<std::uint8_t>(FrameFormat::FdBitRateSwitch)) {
        return false;
    }
    frame.format = static_cast<FrameFormat>(record.FDFlag);
    return readCommon(record, frame);
}

void writeRecord(const WaitingFrame &frame, VCI_CAN_OBJ &record)
{
    record = VCI_CAN_OBJ{};
    writeCommon(frame, record);
}

void writeRecord(const WaitingFrame &frame, VCI_CANFD_OBJ &record)
{
    record = VCI_CANFD_OBJ{};
    record.FDFlag = static_cast<std::uint8_t>(frame.format);
    writeCommon(frame, record);
}

} // namespace va
