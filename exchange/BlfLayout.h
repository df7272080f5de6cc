#pragma once

#include <QtGlobal>

#include <string_view>

/// Numbers of BLF files. All are little-endian.
namespace BlfLayout {

constexpr std::string_view FileSignature = "LOGG";
constexpr std::string_view ObjectSignature = "LOBJ";

enum ObjectType : quint32 {
    CanMessage = 1,
    CanError = 2,
    Container = 10,
    LinMessage = 11,
    LinCrcError = 12,
    LinReceiveError = 14,
    LinSendError = 15,
    LinMessage2 = 57,
    LinSendError2 = 58,
    LinCrcError2 = 60,
    LinReceiveError2 = 61,
    CanErrorExt = 73,
    CanMessage2 = 86,
    CanFdMessage = 100,
    CanFdMessage64 = 101,
    CanFdError64 = 104
};

/// What the times of objects count.
enum TimeUnit : quint32 { TenMicroseconds = 1, Nanoseconds = 2 };

enum Compression : quint16 { Stored = 0, Deflated = 2 };

// An object: signature, size of its header (2 bytes), version of that (2), its whole size (4), its type (4), and,
// except for containers, the unit of its time (4), other things (4), its time (8), and what may follow in the header's
// size.
constexpr std::size_t BaseHeaderSize = 16;
constexpr std::size_t HeaderSize = 32;
constexpr std::size_t HeaderSizeAt = 4;
constexpr std::size_t SizeAt = 8;
constexpr std::size_t TypeAt = 12;
constexpr std::size_t TimeUnitAt = 16;
constexpr std::size_t TimeAt = 24;
// A container: the base header, the compression (2), 6 bytes, the size of what is in it (4), 4 bytes, the content.
constexpr std::size_t CompressionAt = 16;
constexpr std::size_t ContentSizeAt = 24;
constexpr std::size_t ContainerHeaderSize = 32;

constexpr quint32 ExtendedFlag = 0x80000000;
constexpr quint32 IdentifierMask = 0x1FFFFFFF;

// CAN_MESSAGE, CAN_MESSAGE2 and CAN_FD_MESSAGE: channel from 1 (2 bytes), flags, length code, identifier (4).
constexpr uchar DirectionMask = 0x0F;
constexpr uchar DirectionSent = 1;
constexpr uchar DirectionRequest = 2;
constexpr uchar RemoteFlag = 0x80;
// Then, of CAN_FD_MESSAGE: 4 bytes, 1 byte, flags of CAN FD, bytes of data, 5 bytes, the data.
constexpr uchar FdFormat = 1;
constexpr uchar FdBitRateSwitch = 2;
constexpr uchar FdErrorStateIndicator = 4;

// LIN_MESSAGE2: what kind of checksum it has.
constexpr uchar ClassicChecksum = 0;
constexpr uchar EnhancedChecksum = 1;
constexpr uchar UnknownChecksum = 0xFF;

/// No object is larger: what says so is damaged.
constexpr quint32 MaxObjectSize = 1U << 24U;

/// Objects are filled up to a multiple of 4 bytes, by different programs in different ways.
constexpr qint64 MaxPadding = 7;

/// Moves bytes (which has window(), need() and skip()) to the next signature of an object and adds what it passed over
/// to passed; false when none is there as yet.
template<typename Bytes>
bool findObject(Bytes &bytes, qint64 &passed)
{
    for (;;) {
        const std::string_view window = bytes.window();
        if (window.substr(0, ObjectSignature.size()) == ObjectSignature) { // as it should be
            return true;
        }
        const std::size_t at = window.find(ObjectSignature);
        const bool isFound = at != std::string_view::npos;
        const std::size_t kept = window.size() < ObjectSignature.size() ? window.size() : ObjectSignature.size() - 1;
        const std::size_t now = isFound ? at : window.size() - kept;
        bytes.skip(now);
        passed += static_cast<qint64>(now);
        if (isFound) {
            return true;
        }
        if (!bytes.need(kept + 1)) {
            return false;
        }
    }
}

} // namespace BlfLayout
