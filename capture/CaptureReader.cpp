#include "capture/CaptureReader.h"

#include "capture/CaptureInput.h"
#include "capture/CaptureLine.h"
#include "capture/FrameRecord.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>

namespace {

/// The record that the input has at hand; with zeros behind its first size bytes.
template<typename Record>
Record recordAt(const CaptureInput &in, std::size_t size = sizeof(Record))
{
    Record record{};
    std::memcpy(&record, in.window().data(), size);
    return record;
}

/// A payload is best read where it stands, not from the record's copy.
const uchar *bytesAt(const CaptureInput &in, std::size_t place)
{
    return reinterpret_cast<const uchar *>(in.window().data()) + place;
}

quint32 idWordOf(quint32 id, quint8 remote, quint8 extended)
{
    return CaptureFrame::toIdWord(qFromLittleEndian(id), (remote & 1U) != 0, (extended & 1U) != 0);
}

quint32 attributesOf(int length, quint32 protocol)
{
    return CaptureFrame::toAttributes(std::min(length, CaptureFrame::MaxLength), protocol);
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
        const auto record = recordAt<VCI_CAN_OBJ>(in);
        // All eight bytes belong to the payload, whatever the length says.
        frames.append(idWordOf(record.ID, record.RemoteFlag, record.ExternFlag),
                      attributesOf(record.DataLen, FrameRecord::CAN), bytesAt(in, offsetof(VCI_CAN_OBJ, Data)),
                      sizeof record.Data);
        in.skip(sizeof record);
    }
}

void readOtherCanRecords(CaptureInput &in, CaptureFrames &frames)
{
    using CaptureLayout::OtherCanRecord;
    using CaptureLayout::OtherRecordLeast;
    while (in.need(OtherRecordLeast)) {
        const std::size_t length = recordAt<OtherCanRecord>(in, OtherRecordLeast).length;
        in.need(sizeof(OtherCanRecord) + length);
        const std::size_t left = in.window().size(); // less than that where the last record is cut
        const auto record = recordAt<OtherCanRecord>(in, std::min(sizeof(OtherCanRecord), left));
        frames.append(qFromLittleEndian(record.idWord), attributesOf(record.length, FrameRecord::CAN), record.data,
                      sizeof record.data);
        in.skip(std::min(sizeof record + length, left));
    }
}

} // namespace

bool readCan(CaptureInput &in, const CaptureFormat & /*format*/, CaptureContent &content)
{
    if (takeHeader(in, CaptureLayout::CanHeader, CaptureLayout::HeaderSize)) {
        readCanRecords(in, content.frames);
        return true;
    }
    if (takeHeader(in, CaptureLayout::OtherCanHeader, CaptureLayout::OtherCanHeader.size())) {
        readOtherCanRecords(in, content.frames);
        return true;
    }
    return false;
}

bool readCanFd(CaptureInput &in, const CaptureFormat & /*format*/, CaptureContent &content)
{
    using CaptureLayout::CanFdRecord;
    if (!takeHeader(in, CaptureLayout::OwnHeader, CaptureLayout::HeaderSize)) {
        return false;
    }
    while (in.need(sizeof(CanFdRecord))) {
        const auto record = recordAt<CanFdRecord>(in);
        if (!in.need(sizeof record + record.length)) {
            break;
        }
        const quint32 protocol = std::min<quint32>(record.protocol & 3U, FrameRecord::CANFDSpeed);
        content.frames.append(idWordOf(record.id, record.remote, record.extended),
                              attributesOf(record.length, protocol), bytesAt(in, sizeof record),
                              std::min<int>(record.length, CaptureFrame::MaxLength));
        in.skip(sizeof record + record.length);
    }
    return true;
}

bool readText(CaptureInput &in, const CaptureFormat &format, CaptureContent &content)
{
    takeHeader(in, CaptureLayout::ByteOrderMark, CaptureLayout::ByteOrderMark.size());
    const bool isOwn = in.line() == CaptureLayout::OwnHeader;
    if (isOwn) {
        in.line(); // the titles
    }
    const std::string_view separator = format.separator;
    while (const std::optional<std::string_view> text = in.line()) {
        const std::optional<CaptureLine> line =
            isOwn ? CaptureLine::own(*text, separator) : CaptureLine::foreign(*text, separator);
        if (line) {
            content.frames.append(line->idWord, line->attributes, line->data.data(), line->size);
        } else if (!text->empty()) {
            ++content.droppedLines;
        }
    }
    return true;
}

std::optional<CaptureContent> readCapture(QIODevice &in, const CaptureFormat &format, const std::atomic<bool> *stop)
{
    CaptureInput input(in, stop);
    CaptureContent content;
    if (!format.read(input, format, content) || input.isBroken()) {
        return std::nullopt;
    }
    return content;
}

std::optional<CaptureContent> readCapture(const QString &path, const std::atomic<bool> *stop)
{
    const CaptureFormat *format = captureFormat(path);
    // Opening a pipe or a device could wait for ever.
    if (format == nullptr || !QFileInfo(path).isFile()) {
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
