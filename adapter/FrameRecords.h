#pragma once

#include "adapter/CanFrame.h"
#include "adapter/FrameQueue.h"
#include "device/AdapterRecords.h"

// Between the records of the entry points and the frames on a bus.

namespace va {

/// Reads a record to be sent; false when it describes no frame that its entry could send.
bool readRecord(const VCI_CAN_OBJ &record, CanFrame &frame);
bool readRecord(const VCI_CANFD_OBJ &record, CanFrame &frame);

/// Writes a received frame, every byte of the record.
void writeRecord(const WaitingFrame &frame, VCI_CAN_OBJ &record);
void writeRecord(const WaitingFrame &frame, VCI_CANFD_OBJ &record);

} // namespace va
