#pragma once

#include "capture/CANFile.h"
#include "capture/FrameRecord.h"

#include <string_view>
#include <vector>

class CaptureInput;
class CapturePieces;
struct CaptureContent;
struct CaptureRows;

/// A file type that captures are saved in and read from; docs/formats.md gives each byte by byte. A further one is a
/// row of the table, a CANFile::FileType and the two functions of the row.
struct CaptureFormat
{
    CANFile::FileType type; ///< the row's place in the table
    const char *ending;     ///< of paths, in any case
    // The file type in a dialog, translated by captureFilter().
    const char *saveFilter;
    const char *realTimeFilter; ///< null: no file that grows while frames arrive
    const char *sendFilter;     ///< of the file sender
    // For text files.
    const char *separator;      ///< between the cells; null: a binary file
    const char *titleSeparator; ///< between the column titles
    bool isLastSeparated;       ///< a separator stands behind the last cell and title, too

    /// False when the file does not begin as it should.
    bool (*read)(CaptureInput &in, const CaptureFormat &format, CaptureContent &content);
    void (*write)(CapturePieces &out, const CaptureFormat &format, const CaptureRows &rows);
};

/// In the order of CANFile::FileType, which is the order in dialogs.
const std::vector<CaptureFormat> &captureFormats();
const CaptureFormat &captureFormat(CANFile::FileType type);
/// The format of a path by its ending; null for any other.
const CaptureFormat *captureFormat(const QString &path);

/// A format's file type in the user's language.
QString captureFilter(const char *filter);
/// What the dialogs offer that ask for a file to save to: all formats, and those for saving in real time.
QString captureSaveFilters();
QString captureRealTimeFilters();

/// What files are made of.
namespace CaptureLayout {

/// May stand before the first line of text files; never written.
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
/// The first line of text files, and what .canfd files begin with.
constexpr std::string_view OwnHeader = "Vantora CAN Data";
/// What .can files begin with.
constexpr std::string_view CanHeader = "Zhiyuan CAN Data";
/// One of the texts and four zeros, in binary files.
constexpr std::size_t HeaderSize = 20;
/// A received frame in binary files: SendType of the VCI_CAN_OBJ in .can ones; 0 stands for a sent one.
constexpr quint8 ReceivedMark = 0xFF;

#pragma pack(push, 1)
/// What stands before a payload of length bytes in .canfd files, little-endian.
struct CanFdRecord
{
    quint32 id;
    quint32 timeStamp; ///< milliseconds
    quint8 protocol;   ///< a FrameRecord::Protocol
    quint8 received;   ///< ReceivedMark or 0
    quint8 remote;     ///< 0 or 1
    quint8 extended;   ///< 0 or 1
    quint8 length;
};
#pragma pack(pop)
static_assert(sizeof(CanFdRecord) == 13);

/// Another program's layout of .can files: this header, then records of 27 bytes and as many as their length byte says.
constexpr std::string_view OtherCanHeader("\xFF\xFF\xFF\xFF\x01\x00\x00\x00\x01\x00\x00\x00", 12);
constexpr std::size_t OtherRecordLeast = 17; ///< with fewer bytes left there is no record any more

#pragma pack(push, 1)
struct OtherCanRecord
{
    quint8 unknown[11];
    quint32 idWord; ///< little-endian; bits 30 and 31 tell remote and extended
    quint8 length;
    quint8 unknownToo[3];
    quint8 data[8];
};
#pragma pack(pop)
static_assert(sizeof(OtherCanRecord) == 27);

} // namespace CaptureLayout
