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

/// The first line of text files, and what .canfd files begin with.
constexpr std::string_view OwnHeader = "Vantora CAN Data";
/// What .can files begin with.
constexpr std::string_view CanHeader = "Zhiyuan CAN Data";
/// One of the texts and four zeros, in binary files.
constexpr std::size_t HeaderSize = 20;
/// A received frame in binary files: SendType of the VCI_CAN_OBJ in .can ones; 0 stands for a sent one.
constexpr quint8 ReceivedMark = 0xFF;

/// A word that is read in text files, in each spelling and encoding it may have. The Chinese ones are the UTF-8 and the
/// GBK bytes of the same characters, simplified and traditional.
template<typename Meaning>
struct Word
{
    std::string_view text;
    Meaning meaning;
};

/// The frame type; true: extended.
constexpr Word<bool> TypeWords[] = {
    {"Standard", false},
    {"\xE6\xA0\x87\xE5\x87\x86\xE5\xB8\xA7", false},
    {"\xB1\xEA\xD7\xBC\xD6\xA1", false},
    {"\xE6\xA8\x99\xE6\xBA\x96\xE5\xB9\x80", false},
    {"\x98\xCB\x9C\xCA\x8E\xAC", false},
    {"Extend", true},
    {"Extended", true},
    {"\xE6\x89\xA9\xE5\xB1\x95\xE5\xB8\xA7", true},
    {"\xC0\xA9\xD5\xB9\xD6\xA1", true},
    {"\xE6\x93\xB4\xE5\xB1\x95\xE5\xB9\x80", true},
    {"\x94\x55\xD5\xB9\x8E\xAC", true},
};
/// The protocol; any other word stands for classic CAN.
constexpr Word<FrameHead::Protocol> ProtocolWords[] = {
    {"CANFD", FrameHead::CANFD},
    {"CANFD Speed", FrameHead::CANFDSpeed},
    {"CANFD\xE5\x8A\xA0\xE9\x80\x9F", FrameHead::CANFDSpeed},
    {"CANFD\xBC\xD3\xCB\xD9", FrameHead::CANFDSpeed},
};

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

} // namespace CaptureLayout
