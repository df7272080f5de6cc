#pragma once

#include "device/AdapterCalls.h"
#include "device/CANError.h"
#include "device/ChannelParam.h"

#include <QString>

class CANAPI;

/// In the user's language: why the adapter library cannot be used and what to do about it. Empty when it can.
QString adapterLibraryProblem(const CANAPI &api);

/// In the user's language: why a channel could not be opened. error is what opening it answered, anything but CAN_OK;
/// reason is what the library tells of it.
QString channelOpenProblem(CANError error, const ChannelParam &param, const ChannelProblem &reason);

/// In the user's language: an open device does not answer any more, and what to do about it.
QString deviceLostProblem(quint8 device);
