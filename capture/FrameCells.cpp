#include "capture/FrameCells.h"

#include <QByteArray>
#include <QCoreApplication>

#include <algorithm>
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

QString decimalText(quint64 number)
{
    return asciiText<FrameBytes::MaxDecimal>([number](char *to) { return FrameBytes::putDecimal(to, number); });
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

struct Cell
{
    const FrameView &frame;
    const int index;
    const FrameLabels &labels;

    const QString &word(FrameLabel label) const { return labels.word(label); }
};

struct Column
{
    const char *title; ///< translated, except the first one
    int width;         ///< pixels
    QString (*text)(const Cell &cell);
};

/// In the order of FrameColumn.
constexpr std::array<Column, FrameColumnCount> Columns = {{
    {"No.", 70,
     [](const Cell &cell) {
         return decimalText(static_cast<quint64>(cell.index) + 1);
     }},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "System Time"), 90,
     [](const Cell &cell) {
         return *cell.frame.systemTime;
     }},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "Time Stamp"), 90,
     [](const Cell &cell) {
         return cell.frame.isReceived() ? timeStampText(cell.frame.timeStamp) : cell.word(FrameLabel::None);
     }},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "Direction"), 120,
     [](const Cell &cell) {
         return cell.word(directionLabel(cell.frame));
     }},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "ID"), 80,
     [](const Cell &cell) {
         return hexNumberText(cell.frame.id);
     }},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "Protocol"), 80,
     [](const Cell &cell) {
         return cell.word(protocolLabel(cell.frame));
     }},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "Format"), 80,
     [](const Cell &cell) {
         return cell.word(formatLabel(cell.frame));
     }},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "Type"), 80,
     [](const Cell &cell) {
         return cell.word(typeLabel(cell.frame));
     }},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "Length"), 80,
     [](const Cell &cell) {
         return hexNumberText(static_cast<quint32>(cell.frame.size));
     }},
    {QT_TRANSLATE_NOOP("CTableViewCAN", "Data"), 200,
     [](const Cell &cell) {
         return payloadText(cell.frame);
     }},
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
    return Columns[static_cast<std::size_t>(column)].text({frame, index, labels});
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
