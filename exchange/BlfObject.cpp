#include "exchange/BlfObject.h"

#include "exchange/BlfLayout.h"
#include "exchange/CanLength.h"
#include "exchange/LinState.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace {

using namespace BlfLayout;
using BlfObject::Content;

constexpr int MaxClassicLength = 8;

template<typename Number>
Number number(std::string_view body, std::size_t at)
{
    return qFromLittleEndian<Number>(body.data() + at);
}

uchar byte(std::string_view body, std::size_t at)
{
    return static_cast<uchar>(body[at]);
}

template<typename Number>
void put(char *body, std::size_t at, Number number)
{
    qToLittleEndian(number, body + at);
}

void setChannel(BusFrame &frame, unsigned fromOne)
{
    frame.channel = static_cast<quint16>(fromOne > 0 ? fromOne - 1 : 0);
}

unsigned channelFromOne(const BusFrame &frame)
{
    return std::min(frame.channel + 1U, 0xFFFFU);
}

void setIdentifier(BusFrame &frame, quint32 word)
{
    frame.identifier = word & IdentifierMask;
    frame.set(BusFrame::Extended, (word & ExtendedFlag) != 0);
}

quint32 identifierWord(const BusFrame &frame)
{
    return frame.identifier | (frame.is(BusFrame::Extended) ? ExtendedFlag : 0U);
}

/// False when the body has fewer.
bool setData(BusFrame &frame, std::string_view body, std::size_t at, int length)
{
    const auto size = static_cast<std::size_t>(length);
    if (length > BusFrame::MaxLength || at + size > body.size()) {
        return false;
    }
    frame.length = static_cast<quint8>(length);
    std::memcpy(frame.data.data(), body.data() + at, size);
    return true;
}

/// CAN_MESSAGE, CAN_MESSAGE2.
struct CanLayout
{
    static constexpr std::size_t Flags = 2;
    static constexpr std::size_t Code = 3;
    static constexpr std::size_t Identifier = 4;
    static constexpr std::size_t Data = 8;
    static constexpr std::size_t Size = 16;
};

/// What CAN_MESSAGE and CAN_FD_MESSAGE begin with.
Content parseCanBegin(std::string_view body, BusFrame &frame)
{
    const uchar flags = byte(body, CanLayout::Flags);
    const uchar direction = flags & DirectionMask;
    setChannel(frame, number<quint16>(body, 0));
    setIdentifier(frame, number<quint32>(body, CanLayout::Identifier));
    frame.direction = direction == DirectionSent ? BusFrame::Sent : BusFrame::Received;
    frame.set(BusFrame::Remote, (flags & RemoteFlag) != 0);
    return direction == DirectionRequest ? Content::Request : Content::Frame;
}

Content parseRemote(BusFrame &frame, int code)
{
    frame.set(BusFrame::Remote);
    frame.length = static_cast<quint8>(std::min(code, MaxClassicLength));
    return Content::Frame;
}

Content parseCan(std::string_view body, BusFrame &frame)
{
    if (body.size() < CanLayout::Data) {
        return Content::BadLength;
    }
    const Content content = parseCanBegin(body, frame);
    const int code = byte(body, CanLayout::Code);
    if (content != Content::Frame || frame.is(BusFrame::Remote)) {
        return content != Content::Frame ? content : parseRemote(frame, code);
    }
    return setData(frame, body, CanLayout::Data, std::min(code, MaxClassicLength)) ? Content::Frame
                                                                                   : Content::BadLength;
}

struct FdLayout
{
    static constexpr std::size_t FdFlags = 13;
    static constexpr std::size_t Length = 14;
    static constexpr std::size_t Data = 20;
    static constexpr std::size_t Size = 84;
};

/// What was on the bus as a classic frame says so in its flags.
Content parseFd(std::string_view body, BusFrame &frame)
{
    if (body.size() < FdLayout::Data) {
        return Content::BadLength;
    }
    const Content content = parseCanBegin(body, frame);
    if (content != Content::Frame) {
        return content;
    }
    const uchar flags = byte(body, FdLayout::FdFlags);
    if (frame.is(BusFrame::Remote)) {
        return parseRemote(frame, byte(body, CanLayout::Code));
    }
    frame.set(BusFrame::Fd, (flags & FdFormat) != 0 || byte(body, FdLayout::Length) > MaxClassicLength);
    frame.set(BusFrame::BitRateSwitch, frame.is(BusFrame::Fd) && (flags & FdBitRateSwitch) != 0);
    frame.set(BusFrame::ErrorStateIndicator, frame.is(BusFrame::Fd) && (flags & FdErrorStateIndicator) != 0);
    return setData(frame, body, FdLayout::Data, byte(body, FdLayout::Length)) ? Content::Frame : Content::BadLength;
}

/// CAN_FD_MESSAGE_64: only as many bytes of data as there are.
struct Fd64Layout
{
    static constexpr std::size_t Code = 1;
    static constexpr std::size_t Length = 2;
    static constexpr std::size_t Identifier = 4;
    static constexpr std::size_t Flags = 12;
    static constexpr std::size_t Direction = 34;
    static constexpr std::size_t Data = 40;

    static constexpr quint32 RemoteFlag = 0x10;
    static constexpr quint32 FdFlag = 0x1000;
    static constexpr quint32 BitRateSwitchFlag = 0x2000;
    static constexpr quint32 ErrorStateIndicatorFlag = 0x4000;
};

Content parseFd64(std::string_view body, BusFrame &frame)
{
    if (body.size() < Fd64Layout::Data) {
        return Content::BadLength;
    }
    const auto flags = number<quint32>(body, Fd64Layout::Flags);
    const uchar direction = byte(body, Fd64Layout::Direction);
    const int length = byte(body, Fd64Layout::Length);
    setChannel(frame, byte(body, 0));
    setIdentifier(frame, number<quint32>(body, Fd64Layout::Identifier));
    frame.direction = direction == DirectionSent ? BusFrame::Sent : BusFrame::Received;
    if (direction == DirectionRequest) {
        return Content::Request;
    }
    if ((flags & Fd64Layout::RemoteFlag) != 0) {
        return parseRemote(frame, byte(body, Fd64Layout::Code));
    }
    frame.set(BusFrame::Fd, (flags & Fd64Layout::FdFlag) != 0 || length > MaxClassicLength);
    frame.set(BusFrame::BitRateSwitch, frame.is(BusFrame::Fd) && (flags & Fd64Layout::BitRateSwitchFlag) != 0);
    frame.set(BusFrame::ErrorStateIndicator,
              frame.is(BusFrame::Fd) && (flags & Fd64Layout::ErrorStateIndicatorFlag) != 0);
    return setData(frame, body, Fd64Layout::Data, length) ? Content::Frame : Content::BadLength;
}

/// CAN_ERROR_EXT.
struct ErrorLayout
{
    static constexpr std::size_t Flags = 4;
    static constexpr std::size_t Code = 8;
    static constexpr std::size_t Length = 10;
    static constexpr std::size_t Identifier = 16;
    static constexpr std::size_t ExtendedFlags = 20;
    static constexpr std::size_t Data = 24;
    static constexpr std::size_t Size = 32;
};

/// An object without any controller's code holds, as public programs write it, an error frame of Linux. One with a code
/// holds the frame in which the error was, which is none.
Content parseErrorExt(std::string_view body, BusFrame &frame)
{
    frame.set(BusFrame::Error);
    if (body.size() < ErrorLayout::Size) {
        return Content::BadLength;
    }
    setChannel(frame, number<quint16>(body, 0));
    const bool hasCode = number<quint32>(body, ErrorLayout::Flags) != 0 || byte(body, ErrorLayout::Code) != 0 ||
                         number<quint16>(body, ErrorLayout::ExtendedFlags) != 0;
    if (!hasCode) {
        frame.identifier = number<quint32>(body, ErrorLayout::Identifier) & IdentifierMask;
        setData(frame, body, ErrorLayout::Data, std::min<int>(byte(body, ErrorLayout::Length), MaxClassicLength));
    }
    return Content::Frame;
}

/// CAN_ERROR and CAN_FD_ERROR_64, of which nothing else than the channel is taken.
Content parseError(std::string_view body, BusFrame &frame, std::size_t channelSize)
{
    frame.set(BusFrame::Error);
    if (body.size() < channelSize) {
        return Content::BadLength;
    }
    setChannel(frame, channelSize == 1 ? byte(body, 0) : number<quint16>(body, 0));
    return Content::Frame;
}

/// Where the objects of LIN have what.
struct LinLayout
{
    std::size_t channel;
    std::size_t identifier;
    std::size_t length;
    std::size_t model; ///< of the checksum; 0: nowhere
    std::size_t data;  ///< 0: nowhere
    std::size_t checksum;
    std::size_t direction; ///< 0: nowhere
    std::size_t size;
};
constexpr LinLayout LinMessageLayout = {0, 2, 3, 0, 4, 16, 18, 20};
constexpr LinLayout LinMessage2Layout = {12, 37, 38, 39, 112, 120, 122, 132};
constexpr LinLayout LinErrorLayout = {0, 2, 3, 0, 0, 0, 0, 8};
constexpr LinLayout LinError2Layout = {12, 37, 38, 39, 0, 0, 0, 40};

Content parseLin(const LinLayout &layout, std::string_view body, BusFrame &frame)
{
    frame.set(BusFrame::Lin);
    frame.linState = BusFrame::LinError;
    if (body.size() < std::max(layout.direction, layout.identifier) + 1) {
        return Content::BadLength;
    }
    setChannel(frame, number<quint16>(body, layout.channel));
    frame.identifier = byte(body, layout.identifier) & 0x3FU;
    if (layout.data == 0) {
        return Content::Frame;
    }
    setData(frame, body, layout.data, std::min<int>(byte(body, layout.length), MaxClassicLength));
    frame.checksum = static_cast<quint8>(number<quint16>(body, layout.checksum));
    const uchar direction = byte(body, layout.direction);
    frame.direction = direction == DirectionSent ? BusFrame::Sent : BusFrame::Received;
    const uchar model = layout.model != 0 ? byte(body, layout.model) : UnknownChecksum;
    if (model == ClassicChecksum || model == EnhancedChecksum) {
        frame.linState = model == ClassicChecksum ? BusFrame::ChecksumV1 : BusFrame::ChecksumV2;
    } else {
        frame.linState = layout.model == 0 ? linStateOfChecksum(frame) : BusFrame::NoLinState;
    }
    return direction == DirectionRequest ? Content::Request : Content::Frame;
}

Content parseWrongChecksum(const LinLayout &layout, std::string_view body, BusFrame &frame)
{
    const Content content = parseLin(layout, body, frame);
    frame.linState = frame.linState == BusFrame::ChecksumV1 ? BusFrame::WrongChecksumV1 : BusFrame::WrongChecksumV2;
    return content;
}

std::size_t writeCan(const BusFrame &frame, char *body)
{
    const bool isSent = frame.direction == BusFrame::Sent;
    put(body, 0, static_cast<quint16>(channelFromOne(frame)));
    put(body, CanLayout::Flags,
        static_cast<uchar>((isSent ? DirectionSent : 0U) | (frame.is(BusFrame::Remote) ? RemoteFlag : 0U)));
    put(body, CanLayout::Code, static_cast<uchar>(canLengthCode(frame.length)));
    put(body, CanLayout::Identifier, identifierWord(frame));
    if (!frame.is(BusFrame::Fd)) {
        std::memcpy(body + CanLayout::Data, frame.data.data(), MaxClassicLength);
        return CanLayout::Size;
    }
    put(body, FdLayout::FdFlags,
        static_cast<uchar>(FdFormat | (frame.is(BusFrame::BitRateSwitch) ? FdBitRateSwitch : 0U) |
                           (frame.is(BusFrame::ErrorStateIndicator) ? FdErrorStateIndicator : 0U)));
    put(body, FdLayout::Length, frame.length);
    std::memcpy(body + FdLayout::Data, frame.data.data(), BusFrame::MaxLength);
    return FdLayout::Size;
}

std::size_t writeError(const BusFrame &frame, char *body)
{
    const std::size_t length = std::min<std::size_t>(frame.length, MaxClassicLength);
    put(body, 0, static_cast<quint16>(channelFromOne(frame)));
    put(body, ErrorLayout::Length, static_cast<uchar>(length));
    put(body, ErrorLayout::Identifier, frame.identifier & IdentifierMask);
    std::memcpy(body + ErrorLayout::Data, frame.data.data(), length);
    return ErrorLayout::Size;
}

uchar checksumModel(BusFrame::LinState state)
{
    switch (state) {
    case BusFrame::ChecksumV1:
    case BusFrame::WrongChecksumV1:
        return ClassicChecksum;
    case BusFrame::ChecksumV2:
    case BusFrame::WrongChecksumV2:
        return EnhancedChecksum;
    case BusFrame::NoLinState:
    case BusFrame::LinError:
        break;
    }
    return UnknownChecksum;
}

std::size_t writeLin(const LinLayout &layout, const BusFrame &frame, char *body)
{
    put(body, layout.channel, static_cast<quint16>(channelFromOne(frame)));
    put(body, layout.identifier, static_cast<uchar>(frame.identifier));
    put(body, layout.length, frame.length);
    if (layout.model != 0) {
        put(body, layout.model, checksumModel(frame.linState));
    }
    if (layout.data != 0) {
        std::memcpy(body + layout.data, frame.data.data(), MaxClassicLength);
        put(body, layout.checksum, quint16(frame.checksum));
        put(body, layout.direction, frame.direction == BusFrame::Sent ? DirectionSent : uchar(0));
    }
    return layout.size;
}

Content parseKind(quint32 type, std::string_view body, BusFrame &frame)
{
    switch (type) {
    case CanMessage:
    case CanMessage2:
        return parseCan(body, frame);
    case CanFdMessage:
        return parseFd(body, frame);
    case CanFdMessage64:
        return parseFd64(body, frame);
    case CanErrorExt:
        return parseErrorExt(body, frame);
    case CanError:
        return parseError(body, frame, 2);
    case CanFdError64:
        return parseError(body, frame, 1);
    case LinMessage:
        return parseLin(LinMessageLayout, body, frame);
    case LinMessage2:
        return parseLin(LinMessage2Layout, body, frame);
    case LinCrcError:
        return parseWrongChecksum(LinMessageLayout, body, frame);
    case LinCrcError2:
        return parseWrongChecksum(LinMessage2Layout, body, frame);
    case LinSendError:
    case LinSendError2:
        frame.direction = BusFrame::Sent;
        return parseLin(type == LinSendError ? LinErrorLayout : LinError2Layout, body, frame);
    case LinReceiveError:
    case LinReceiveError2:
        return parseLin(type == LinReceiveError ? LinErrorLayout : LinError2Layout, body, frame);
    default:
        return Content::Other;
    }
}

} // namespace

Content BlfObject::parse(quint32 type, std::string_view body, BusFrame &frame)
{
    constexpr quint32 StandardMask = 0x7FF;
    const Content content = parseKind(type, body, frame);
    const bool isStandard = !frame.is(BusFrame::Extended) && !frame.is(BusFrame::Error);
    return content == Content::Frame && isStandard && frame.identifier > StandardMask ? Content::Damaged : content;
}

std::size_t BlfObject::write(const BusFrame &frame, char *body, quint32 &type)
{
    if (frame.is(BusFrame::Error)) {
        type = CanErrorExt;
        return writeError(frame, body);
    }
    if (!frame.is(BusFrame::Lin)) {
        type = frame.is(BusFrame::Fd) ? CanFdMessage : CanMessage;
        return writeCan(frame, body);
    }
    switch (frame.linState) {
    case BusFrame::LinError:
        type = frame.direction == BusFrame::Sent ? LinSendError : LinReceiveError;
        return writeLin(LinErrorLayout, frame, body) + (type == LinReceiveError ? 4 : 0);
    case BusFrame::WrongChecksumV1:
    case BusFrame::WrongChecksumV2:
        type = LinCrcError2;
        return writeLin(LinMessage2Layout, frame, body);
    case BusFrame::NoLinState:
    case BusFrame::ChecksumV1:
    case BusFrame::ChecksumV2:
        break;
    }
    // The older object is the one that more programs know, and has no place for the kind of checksum.
    const bool isClear = linStateOfChecksum(frame) == frame.linState;
    type = isClear ? LinMessage : LinMessage2;
    return writeLin(isClear ? LinMessageLayout : LinMessage2Layout, frame, body);
}
