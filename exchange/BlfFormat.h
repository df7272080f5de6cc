#pragma once

#include "exchange/ExchangeFormat.h"

/// BLF: a binary log of objects in compressed containers, as analysers of the automotive world exchange it. See
/// docs/formats.md. Functions for the table of formats.
namespace BlfFormat {

bool recognises(std::string_view head);
std::unique_ptr<FrameReader> reader(ByteInput &in, const ReadOptions &options, Findings &findings);
std::unique_ptr<FrameWriter> writer(ByteOutput &out, const WriteOptions &options, Findings &findings);

constexpr quint32 Holds = ExchangeFormat::ClassicCan | ExchangeFormat::CanFd | ExchangeFormat::RemoteFrames |
                          ExchangeFormat::ErrorFrames | ExchangeFormat::LinFrames | ExchangeFormat::Channels |
                          ExchangeFormat::Directions | ExchangeFormat::AbsoluteTime | ExchangeFormat::ErrorStateFlag;

} // namespace BlfFormat
