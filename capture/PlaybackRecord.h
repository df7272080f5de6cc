#pragma once

#include "capture/CaptureFrames.h"
#include "device/AdapterRecords.h"

/// The adapter's record of a frame of a capture, to be sent on a classic channel: whatever its protocol, and at most 8
/// bytes of it. The record's length is the frame's; bytes that the payload does not hold are 0.
VCI_CAN_OBJ toCanRecord(const CaptureFrame &frame);

/// The same for a CAN FD channel, with at most 64 bytes and the frame's protocol.
VCI_CANFD_OBJ toCanFdRecord(const CaptureFrame &frame);
