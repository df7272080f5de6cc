#pragma once

#include "exchange/ExchangeFormat.h"

/// The program's ".canfd" files; docs/formats.md gives each byte.
namespace CanFdFormat {

constexpr quint32 Holds = ExchangeFormat::ClassicCan | ExchangeFormat::CanFd | ExchangeFormat::RemoteFrames |
                          ExchangeFormat::Directions | ExchangeFormat::DeviceTime;

bool recognises(std::string_view head);
std::unique_ptr<FrameReader> reader(ByteInput &in, const ReadOptions &options, Findings &findings);
std::unique_ptr<FrameWriter> writer(ByteOutput &out, const WriteOptions &options, Findings &findings);

} // namespace CanFdFormat
