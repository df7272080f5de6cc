#pragma once

#include "exchange/ExchangeFormat.h"

/// TRC: the text traces of a maker of USB adapters. See docs/formats.md. Functions for the table of formats.
namespace TrcFormat {

bool recognises(std::string_view head);
std::unique_ptr<FrameReader> reader(ByteInput &in, const ReadOptions &options, Findings &findings);
std::unique_ptr<FrameWriter> writer(ByteOutput &out, const WriteOptions &options, Findings &findings);

constexpr quint32 Holds = ExchangeFormat::ClassicCan | ExchangeFormat::CanFd | ExchangeFormat::RemoteFrames |
                          ExchangeFormat::ErrorFrames | ExchangeFormat::Channels | ExchangeFormat::Directions |
                          ExchangeFormat::AbsoluteTime | ExchangeFormat::ErrorStateFlag;

} // namespace TrcFormat
