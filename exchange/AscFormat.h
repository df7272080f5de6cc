#pragma once

#include "exchange/ExchangeFormat.h"

/// ASC: a text log of CAN, CAN FD and LIN events, one a line, as analysers of the automotive world exchange it. See
/// docs/formats.md. Functions for the table of formats.
namespace AscFormat {

bool recognises(std::string_view head);
std::unique_ptr<FrameReader> reader(ByteInput &in, const ReadOptions &options, Findings &findings);
std::unique_ptr<FrameWriter> writer(ByteOutput &out, const WriteOptions &options, Findings &findings);

constexpr quint32 Holds = ExchangeFormat::ClassicCan | ExchangeFormat::CanFd | ExchangeFormat::RemoteFrames |
                          ExchangeFormat::ErrorFrames | ExchangeFormat::LinFrames | ExchangeFormat::Channels |
                          ExchangeFormat::Directions | ExchangeFormat::AbsoluteTime | ExchangeFormat::ErrorStateFlag;

} // namespace AscFormat
