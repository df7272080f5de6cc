#pragma once

#include "exchange/BusFrame.h"

#include <string_view>

/// The objects of BLF files that are frames.
namespace BlfObject {

/// What an object is.
enum class Content {
    Frame,
    Request,   ///< what was to be sent, besides what was
    BadLength, ///< it has fewer bytes than it says
    Damaged,   ///< an identifier that is none
    Other
};

/// type: BlfLayout::ObjectType, body: what is behind the object's header. frame holds nothing else yet than its time.
Content parse(quint32 type, std::string_view body, BusFrame &frame);

constexpr std::size_t MaxBodySize = 256;

/// Writes the body of the object that holds the frame, with the type that it has; at most MaxBodySize bytes, and gives
/// how many. body: zeros.
std::size_t write(const BusFrame &frame, char *body, quint32 &type);

} // namespace BlfObject
