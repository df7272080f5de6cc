#include "capture/FrameCells.h"

#include <QByteArray>
#include <QCoreApplication>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace {

constexpr char HexDigits[] = "0123456789ABCDEF";

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

struct Column
{
    const char *title; ///< translated, except the first one
    int width;         ///< pixels
};

/// In the order of FrameColumn.
constexpr std::array<Column, FrameColumnCount> Columns = {{
    {"No.", 70},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "System Time"), 90},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "Time Stamp"), 90},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "Direction"), 120},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "ID"), 80},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "Protocol"), 80},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "Format"), 80},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "Type"), 80},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "Length"), 80},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "Data"), 200},
}};

} // namespace

FrameLabels FrameLabels::translated()
{
    using App = QCoreApplication;
    FrameLabels labels;
    labels.titles[0] = QLatin1String(Columns[0].title);
    std::transform(Columns.begin() + 1, Columns.end(), labels.titles.begin() + 1,
                   [](const Column &column) { return App::translate("CTableViewCAN", column.title); });
    labels.words = {
        App::translate("CTableViewCAN", "None"),
        App::translate("CTableViewCAN", "Revice"),
        App::translate("CTableViewCAN", "Send successfully"),
        App::translate("CTableViewCAN", "Send failure"),
        QStringLiteral("CAN"),
        QStringLiteral("CANFD"),
        App::translate("CTableViewCAN", "CANFD Speed"),
        App::translate("CTableViewCAN", "Data", "frame format"),
        App::translate("CTableViewCAN", "Remote"),
        App::translate("CTableViewCAN", "Standard"),
        App::translate("CTableViewCAN", "Extend"),
    };
    return labels;
}

std::array<int, FrameColumnCount> frameColumnWidths()
{
    std::array<int, FrameColumnCount> widths{};
    std::transform(Columns.begin(), Columns.end(), widths.begin(), [](const Column &column) { return column.width; });
    return widths;
}

FrameLabel directionLabel(const FrameHead &frame)
{
    if (frame.isReceived()) {
        return FrameLabel::Received;
    }
    return frame.direction == FrameHead::SendFailure ? FrameLabel::SendFailure : FrameLabel::SendSuccess;
}

FrameLabel protocolLabel(const FrameHead &frame)
{
    if (frame.protocol == FrameHead::CAN) {
        return FrameLabel::Can;
    }
    return frame.protocol == FrameHead::CANFD ? FrameLabel::CanFd : FrameLabel::CanFdSpeed;
}

FrameLabel formatLabel(const FrameHead &frame)
{
    return frame.remote != 0 ? FrameLabel::Remote : FrameLabel::Data;
}

FrameLabel typeLabel(const FrameHead &frame)
{
    return frame.extended != 0 ? FrameLabel::Extend : FrameLabel::Standard;
}

QString frameCell(const FrameView &frame, int index, FrameColumn column, const FrameLabels &labels)
{
    switch (column) {
    case FrameColumn::Number:
        return QString::number(index + qint64(1));
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

namespace FrameBytes {

char *putDecimal(char *to, quint64 number)
{
    return std::to_chars(to, to + MaxDecimal, number).ptr;
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
