#pragma once

#include "exchange/ExchangeFormat.h"

/// Logs of candump, from can-utils, and what it shows on a screen; logs are written. docs/formats.md describes both.
namespace CandumpFormat {

constexpr quint32 Holds = ExchangeFormat::ClassicCan | ExchangeFormat::CanFd | ExchangeFormat::RemoteFrames |
                          ExchangeFormat::ErrorFrames | ExchangeFormat::Channels | ExchangeFormat::Directions |
                          ExchangeFormat::AbsoluteTime | ExchangeFormat::ErrorStateFlag;

bool recognises(std::string_view head);
std::unique_ptr<FrameReader> reader(ByteInput &in, const ReadOptions &options, Findings &findings);
std::unique_ptr<FrameWriter> writer(ByteOutput &out, const WriteOptions &options, Findings &findings);

} // namespace CandumpFormat
