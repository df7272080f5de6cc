#include "capture/FrameCells.h"

#include <QByteArray>
#include <QCoreApplication>

#include <algorithm>

namespace {

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
