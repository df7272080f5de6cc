#pragma once

#include "exchange/ExchangeFormat.h"

/// Packet captures of CAN interfaces as tcpdump and network analysers have them: pcap, and pcapng with its interfaces.
/// See docs/formats.md. Functions for the table of formats.
namespace PcapFormat {

bool recognises(std::string_view head);
std::unique_ptr<FrameReader> reader(ByteInput &in, const ReadOptions &options, Findings &findings);
std::unique_ptr<FrameWriter> writer(ByteOutput &out, const WriteOptions &options, Findings &findings);

constexpr quint32 Holds = ExchangeFormat::ClassicCan | ExchangeFormat::CanFd | ExchangeFormat::RemoteFrames |
                          ExchangeFormat::ErrorFrames | ExchangeFormat::AbsoluteTime | ExchangeFormat::ErrorStateFlag;

} // namespace PcapFormat

namespace PcapngFormat {

bool recognises(std::string_view head);
std::unique_ptr<FrameReader> reader(ByteInput &in, const ReadOptions &options, Findings &findings);
std::unique_ptr<FrameWriter> writer(ByteOutput &out, const WriteOptions &options, Findings &findings);

constexpr quint32 Holds = PcapFormat::Holds | ExchangeFormat::Channels | ExchangeFormat::Directions;

} // namespace PcapngFormat
