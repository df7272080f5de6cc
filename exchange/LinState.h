#pragma once

#include "exchange/BusFrame.h"

/// What the frame's checksum byte says of its identifier and data, for captures that do not say it themselves:
/// ChecksumV1, also where both match, ChecksumV2, or NoLinState where neither matches.
BusFrame::LinState linStateOfChecksum(const BusFrame &frame);
