#pragma once

#include "exchange/ExchangeFormat.h"

/// The program's ".csv" and ".txt" files, saved and in real time, in both languages and their encodings;
/// docs/formats.md tells what they look like. Both readers read either.
namespace OwnTextFormat {

constexpr quint32 Holds = ExchangeFormat::ClassicCan | ExchangeFormat::CanFd | ExchangeFormat::RemoteFrames |
                          ExchangeFormat::Directions | ExchangeFormat::RefusedFrames | ExchangeFormat::ClockTime |
                          ExchangeFormat::DeviceTime;

bool recognisesCsv(std::string_view head);
bool recognisesTxt(std::string_view head);
std::unique_ptr<FrameReader> csvReader(ByteInput &in, const ReadOptions &options, Findings &findings);
std::unique_ptr<FrameReader> txtReader(ByteInput &in, const ReadOptions &options, Findings &findings);
std::unique_ptr<FrameWriter> csvWriter(ByteOutput &out, const WriteOptions &options, Findings &findings);
std::unique_ptr<FrameWriter> txtWriter(ByteOutput &out, const WriteOptions &options, Findings &findings);

} // namespace OwnTextFormat
