#pragma once

#include "exchange/ExchangeFormat.h"

/// What list and monitor mode of the LIN tab save, in both languages and their encodings; docs/formats.md tells what it
/// looks like.
namespace LinCsvFormat {

constexpr quint32 Holds = ExchangeFormat::LinFrames | ExchangeFormat::Directions | ExchangeFormat::ClockTime;

bool recognises(std::string_view head);
std::unique_ptr<FrameReader> reader(ByteInput &in, const ReadOptions &options, Findings &findings);
std::unique_ptr<FrameWriter> writer(ByteOutput &out, const WriteOptions &options, Findings &findings);

} // namespace LinCsvFormat
