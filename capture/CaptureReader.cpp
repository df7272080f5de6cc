#include "capture/CaptureReader.h"

#include "capture/CaptureInput.h"
#include "capture/CaptureLine.h"
#include "device/AdapterRecords.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <new>

namespace {

constexpr std::string_view OwnHeader = "Vantora CAN Data";
constexpr std::string_view CanHeader = "Zhiyuan CAN Data";
constexpr std::size_t BinaryHeaderSize = 20; ///< one of the texts and four bytes
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

constexpr std::size_t CanFdRecordSize = 13;

/// Another program's layout of .can files: this header, then records of 27 bytes and as many as their length byte says.
constexpr std::string_view OtherCanHeader("\xFF\xFF\xFF\xFF\x01\x00\x00\x00\x01\x00\x00\x00", 12);
constexpr std::size_t OtherRecordSize = 27;
constexpr std::size_t OtherRecordLeast = 17; ///< with fewer bytes left there is no record any more
constexpr std::size_t OtherIdOffset = 11;
constexpr std::size_t OtherLengthOffset = 15;
constexpr std::size_t OtherDataOffset = 19;
constexpr std::size_t ClassicData = 8;

uchar byteAt(std::string_view bytes, std::size_t place)
{
    return static_cast<uchar>(bytes[place]);
}

bool flagAt(std::string_view bytes, std::size_t place)
{
    return (byteAt(bytes, place) & 1U) != 0;
}

const uchar *addressOf(std::string_view bytes, std::size_t place)
{
    return reinterpret_cast<const uchar *>(bytes.data() + place);
}

int cappedLength(uchar length)
{
    return std::min<int>(length, CaptureFrame::MaxLength);
}

/// Moves behind the header when the file begins with it.
bool takeHeader(CaptureInput &in, std::string_view header, std::size_t size)
{
    if (!in.need(header.size()) || in.window().substr(0, header.size()) != header) {
        return false;
    }
    in.need(size);
    in.skip(std::min(size, in.window().size()));
    return true;
}

void readCanRecords(CaptureInput &in, CaptureFrames &frames)
{
    while (in.need(sizeof(VCI_CAN_OBJ))) {
        const std::string_view record = in.window();
        const quint32 idWord = CaptureFrame::toIdWord(
            qFromLittleEndian<quint32>(addressOf(record, offsetof(VCI_CAN_OBJ, ID))),
            flagAt(record, offsetof(VCI_CAN_OBJ, RemoteFlag)), flagAt(record, offsetof(VCI_CAN_OBJ, ExternFlag)));
        const int length = cappedLength(byteAt(record, offsetof(VCI_CAN_OBJ, DataLen)));
        // All eight bytes belong to the payload, whatever the length says.
        frames.append(idWord, CaptureFrame::toAttributes(length, FrameRecord::CAN),
                      addressOf(record, offsetof(VCI_CAN_OBJ, Data)), ClassicData);
        in.skip(sizeof(VCI_CAN_OBJ));
    }
}

void readOtherCanRecords(CaptureInput &in, CaptureFrames &frames)
{
    while (in.need(OtherRecordLeast)) {
        const std::size_t length = byteAt(in.window(), OtherLengthOffset);
        in.need(OtherRecordSize + length);
        const std::string_view record = in.window().substr(0, OtherRecordSize + length);
        // Not masked: bits 30 and 31 tell remote and extended.
        const auto idWord = qFromLittleEndian<quint32>(addressOf(record, OtherIdOffset));
        std::array<uchar, ClassicData> data{}; // zeros where the last record is cut
        if (record.size() > OtherDataOffset) {
            std::memcpy(data.data(), addressOf(record, OtherDataOffset),
                        std::min(data.size(), record.size() - OtherDataOffset));
        }
        frames.append(idWord, CaptureFrame::toAttributes(cappedLength(static_cast<uchar>(length)), FrameRecord::CAN),
                      data.data(), ClassicData);
        in.skip(record.size());
    }
}

bool readCan(CaptureInput &in, CaptureFrames &frames)
{
    if (takeHeader(in, CanHeader, BinaryHeaderSize)) {
        readCanRecords(in, frames);
        return true;
    }
    if (takeHeader(in, OtherCanHeader, OtherCanHeader.size())) {
        readOtherCanRecords(in, frames);
        return true;
    }
    return false;
}

bool readCanFd(CaptureInput &in, CaptureFrames &frames)
{
    if (!takeHeader(in, OwnHeader, BinaryHeaderSize)) {
        return false;
    }
    while (in.need(CanFdRecordSize)) {
        const std::size_t length = byteAt(in.window(), 12);
        if (!in.need(CanFdRecordSize + length)) {
            break;
        }
        const std::string_view record = in.window();
        const quint32 idWord = CaptureFrame::toIdWord(qFromLittleEndian<quint32>(addressOf(record, 0)),
                                                      flagAt(record, 10), flagAt(record, 11));
        const quint32 protocol = std::min<quint32>(byteAt(record, 8) & 3U, FrameRecord::CANFDSpeed);
        const int size = cappedLength(static_cast<uchar>(length));
        frames.append(idWord, CaptureFrame::toAttributes(size, protocol), addressOf(record, CanFdRecordSize), size);
        in.skip(CanFdRecordSize + length);
    }
    return true;
}

void readText(CaptureInput &in, const QByteArray &separatorBytes, CaptureContent &content)
{
    const std::string_view separator(separatorBytes.constData(), static_cast<std::size_t>(separatorBytes.size()));
    takeHeader(in, ByteOrderMark, ByteOrderMark.size());
    const bool isOwn = in.line() == OwnHeader;
    if (isOwn) {
        in.line(); // the titles
    }
    while (const std::optional<std::string_view> text = in.line()) {
        const std::optional<CaptureLine> line =
            isOwn ? CaptureLine::own(*text, separator) : CaptureLine::foreign(*text, separator);
        if (line) {
            content.frames.append(line->idWord, line->attributes, line->data.data(), line->size);
        } else if (!text->empty()) {
            ++content.droppedLines;
        }
    }
}

} // namespace

std::optional<CaptureContent> readCapture(QIODevice &in, CaptureFormat format, const std::atomic<bool> *stop)
{
    CaptureInput input(in, stop);
    CaptureContent content;
    bool isRead = true;
    switch (format) {
    case CaptureFormat::Csv:
    case CaptureFormat::Text:
        readText(input, CaptureLines::separator(format), content);
        break;
    case CaptureFormat::Can:
        isRead = readCan(input, content.frames);
        break;
    case CaptureFormat::CanFd:
        isRead = readCanFd(input, content.frames);
        break;
    }
    if (!isRead || input.isBroken()) {
        return std::nullopt;
    }
    return content;
}

std::optional<CaptureContent> readCapture(const QString &path, const std::atomic<bool> *stop)
{
    const std::optional<CaptureFormat> format = captureFormat(path);
    // Opening a pipe or a device could wait for ever.
    if (!format || !QFileInfo(path).isFile()) {
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return std::nullopt;
    }
    try {
        return readCapture(file, *format, stop);
    } catch (const std::bad_alloc &) {
        return std::nullopt;
    }
}
