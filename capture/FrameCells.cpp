#include "capture/FrameCells.h"

#include <QByteArray>

#include <cstring>

namespace {

constexpr char HexDigits[] = "0123456789ABCDEF";

/// 00 to 99, two characters each.
constexpr std::array<char, 200> decimalPairs()
{
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}

/// Every byte as two digits and a blank, each in four characters so that one copy of a fixed size writes it.
constexpr std::array<char, 1024> payloadPairs()
{
    std::array<char, 1024> pairs{};
    for (std::size_t i = 0; i < 256; ++i) {
        pairs[4 * i] = HexDigits[i >> 4U];
        pairs[4 * i + 1] = HexDigits[i & 15U];
        pairs[4 * i + 2] = ' ';
        pairs[4 * i + 3] = ' ';
    }
    return pairs;
}

constexpr std::array<char, 200> DecimalPairs = decimalPairs();
constexpr std::array<char, 1024> PayloadPairs = payloadPairs();

template<std::size_t Size, typename Put>
QString asciiText(Put put)
{
    std::array<char, Size> buffer;
    const char *end = put(buffer.data());
    return QString::fromLatin1(buffer.data(), static_cast<int>(end - buffer.data()));
}

QString hexNumberText(quint32 number)
{
    return asciiText<FrameBytes::MaxHexNumber>([number](char *to) { return FrameBytes::putHexNumber(to, number); });
}

QString timeStampText(quint32 milliseconds)
{
    return asciiText<FrameBytes::MaxTimeStamp>(
        [milliseconds](char *to) { return FrameBytes::putTimeStamp(to, milliseconds); });
}

QString payloadText(const FrameView &frame)
{
    QByteArray buffer(frame.size * 3 + 1, Qt::Uninitialized);
    FrameBytes::putPayload(buffer.data(), frame.data, frame.size);
    return QString::fromLatin1(buffer.constData(), frame.size * 3);
}

} // namespace

FrameLabel directionLabel(const FrameView &frame)
{
    if (frame.isReceived()) {
        return FrameLabel::Received;
    }
    return frame.direction == FrameRecord::SendFailure ? FrameLabel::SendFailure : FrameLabel::SendSuccess;
}

FrameLabel protocolLabel(const FrameView &frame)
{
    if (frame.protocol == FrameRecord::CAN) {
        return FrameLabel::Can;
    }
    return frame.protocol == FrameRecord::CANFD ? FrameLabel::CanFd : FrameLabel::CanFdSpeed;
}

FrameLabel formatLabel(const FrameView &frame)
{
    return frame.remote ? FrameLabel::Remote : FrameLabel::Data;
}

FrameLabel typeLabel(const FrameView &frame)
{
    return frame.extended ? FrameLabel::Extend : FrameLabel::Standard;
}

QString frameCell(const FrameView &frame, FrameColumn column, const FrameLabels &labels)
{
    switch (column) {
    case FrameColumn::Number:
        break;
    case FrameColumn::SystemTime:
        return *frame.systemTime;
    case FrameColumn::TimeStamp:
        return frame.isReceived() ? timeStampText(frame.timeStamp) : labels.word(FrameLabel::None);
    case FrameColumn::Direction:
        return labels.word(directionLabel(frame));
    case FrameColumn::Id:
        return hexNumberText(frame.id);
    case FrameColumn::Protocol:
        return labels.word(protocolLabel(frame));
    case FrameColumn::Format:
        return labels.word(formatLabel(frame));
    case FrameColumn::Type:
        return labels.word(typeLabel(frame));
    case FrameColumn::Length:
        return hexNumberText(static_cast<quint32>(frame.size));
    case FrameColumn::Data:
        return payloadText(frame);
    }
    return {};
}

QString frameNumber(int index)
{
    const quint32 number = static_cast<quint32>(index) + 1;
    return asciiText<FrameBytes::MaxDecimal>([number](char *to) { return FrameBytes::putDecimal(to, number); });
}

namespace FrameBytes {

char *putDecimal(char *to, quint64 number)
{
    std::array<char, MaxDecimal> digits;
    std::size_t first = digits.size();
    while (number >= 100) {
        first -= 2;
        std::memcpy(&digits[first], &DecimalPairs[2 * static_cast<std::size_t>(number % 100)], 2);
        number /= 100;
    }
    if (number >= 10) {
        first -= 2;
        std::memcpy(&digits[first], &DecimalPairs[2 * static_cast<std::size_t>(number)], 2);
    } else {
        digits[--first] = static_cast<char>('0' + number);
    }
    const std::size_t count = digits.size() - first;
    std::memcpy(to, &digits[first], count);
    return to + count;
}

char *putHexNumber(char *to, quint32 number)
{
    *to++ = '0';
    *to++ = 'x';
    int shift = 28;
    while (shift > 0 && number >> shift == 0) {
        shift -= 4;
    }
    for (; shift >= 0; shift -= 4) {
        *to++ = HexDigits[(number >> shift) & 15U];
    }
    return to;
}

char *putTimeStamp(char *to, quint32 milliseconds)
{
    to = putDecimal(to, milliseconds / 3600000 % 24);
    *to++ = ':';
    to = putDecimal(to, milliseconds / 60000 % 60);
    *to++ = ':';
    to = putDecimal(to, milliseconds / 1000 % 60);
    *to++ = '.';
    return putDecimal(to, milliseconds % 1000);
}

char *putPayload(char *to, const uchar *data, int size)
{
    for (int i = 0; i < size; ++i) {
        std::memcpy(to, &PayloadPairs[4 * std::size_t{data[i]}], 4);
        to += 3;
    }
    return to;
}

} // namespace FrameBytes
