#include "viewer/core/FrameColumns.h"

#include <algorithm>
#include <array>

namespace {

constexpr int GroupBytes = 8;
constexpr int ByteCharacters = 3; ///< two digits and a blank

constexpr std::array<const char *, FrameColumnCount> Titles{
    QT_TRANSLATE_NOOP("FrameColumns", "No."),          QT_TRANSLATE_NOOP("FrameColumns", "Date and time"),
    QT_TRANSLATE_NOOP("FrameColumns", "Time [s]"),     QT_TRANSLATE_NOOP("FrameColumns", "Since shown [s]"),
    QT_TRANSLATE_NOOP("FrameColumns", "Since ID [s]"), QT_TRANSLATE_NOOP("FrameColumns", "Since mark [s]"),
    QT_TRANSLATE_NOOP("FrameColumns", "Channel"),      QT_TRANSLATE_NOOP("FrameColumns", "Direction"),
    QT_TRANSLATE_NOOP("FrameColumns", "ID"),           QT_TRANSLATE_NOOP("FrameColumns", "Name"),
    QT_TRANSLATE_NOOP("FrameColumns", "Type"),         QT_TRANSLATE_NOOP("FrameColumns", "Length"),
    QT_TRANSLATE_NOOP("FrameColumns", "Data")};

TimeColumn timeColumn(FrameColumn column)
{
    return static_cast<TimeColumn>(static_cast<int>(column) - static_cast<int>(FrameColumn::Absolute));
}
static_assert(static_cast<int>(FrameColumn::SinceMark) - static_cast<int>(FrameColumn::Absolute) ==
              static_cast<int>(TimeColumn::SinceMark));

QString hexadecimal(quint32 value, int digits)
{
    return QString::number(value, 16).toUpper().rightJustified(digits, QLatin1Char('0'));
}

QString typeFilter(const BusFrame &frame)
{
    if (frame.is(BusFrame::Lin)) {
        return QStringLiteral("lin");
    }
    if (frame.is(BusFrame::Error)) {
        return QStringLiteral("error");
    }
    const QString fd = frame.is(BusFrame::Fd) ? QStringLiteral("fd") : QStringLiteral("not fd");
    const QString remote = frame.is(BusFrame::Remote) ? QStringLiteral("remote") : QStringLiteral("not remote");
    return fd + QStringLiteral(" and ") + remote + QStringLiteral(" and not error and not lin");
}

} // namespace

QString FrameColumns::title(FrameColumn column)
{
    return tr(Titles[static_cast<std::size_t>(column)]);
}

bool FrameColumns::isTime(FrameColumn column)
{
    return column >= FrameColumn::Absolute && column <= FrameColumn::SinceMark;
}

bool FrameColumns::isRightAligned(FrameColumn column)
{
    return (isTime(column) && column != FrameColumn::Absolute) || column == FrameColumn::Number ||
           column == FrameColumn::Channel || column == FrameColumn::Identifier || column == FrameColumn::Length;
}

QString FrameColumns::identifierText(FrameKey key)
{
    if ((key & ErrorKey) != 0) {
        return {};
    }
    return hexadecimal(key & KeyIdentifier, (key & ExtendedKey) != 0 ? 8 : (key & LinKey) != 0 ? 2 : 3);
}

QString FrameColumns::identifierFilter(FrameKey key)
{
    if ((key & ErrorKey) != 0) {
        return QStringLiteral("error");
    }
    const QString kind = (key & ExtendedKey) != 0 ? QStringLiteral("ext")
                         : (key & LinKey) != 0    ? QStringLiteral("lin")
                                                  : QStringLiteral("not ext and not lin");
    return QStringLiteral("id == 0x%1 and %2").arg(identifierText(key), kind);
}

QString FrameColumns::dataText(const BusFrame &frame)
{
    if (frame.is(BusFrame::Remote)) {
        return {};
    }
    const QByteArray data = QByteArray::fromRawData(reinterpret_cast<const char *>(frame.data.data()), frame.length);
    return QString::fromLatin1(data.toHex(' ')).toUpper();
}

QString FrameColumns::groupedData(QString dataText)
{
    constexpr int Group = GroupBytes * ByteCharacters;
    for (int at = (dataText.size() - 1) / Group * Group; at > 0; at -= Group) {
        dataText.insert(at, QLatin1Char(' '));
    }
    return dataText;
}

QString FrameColumns::dataLines(const BusFrame &frame)
{
    QStringList lines;
    const QString bytes = dataText(frame);
    for (int first = 0; first < bytes.size() / ByteCharacters + 1 && !bytes.isEmpty(); first += GroupBytes) {
        const int count = std::min(GroupBytes, frame.length - first);
        QString letters;
        for (int i = first; i < first + count; ++i) {
            const uchar byte = frame.data[static_cast<std::size_t>(i)];
            letters += QLatin1Char(byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.');
        }
        const QString part = bytes.mid(first * ByteCharacters, GroupBytes * ByteCharacters - 1);
        lines.append(QStringLiteral("%1  %2").arg(first, 2).arg(part, -(GroupBytes * ByteCharacters)) + letters);
    }
    return lines.join(QLatin1Char('\n'));
}

QString FrameColumns::directionText(BusFrame::Direction direction)
{
    switch (direction) {
    case BusFrame::Received:
        return tr("Rx");
    case BusFrame::Sent:
        return tr("Tx");
    case BusFrame::Refused:
        return tr("Refused");
    }
    return {};
}

QString FrameColumns::typeText(const BusFrame &frame)
{
    if (frame.is(BusFrame::Error)) {
        return tr("Error");
    }
    if (frame.is(BusFrame::Lin)) {
        return QStringLiteral("LIN");
    }
    if (frame.is(BusFrame::Remote)) {
        return tr("Remote");
    }
    if (!frame.is(BusFrame::Fd)) {
        return QStringLiteral("CAN");
    }
    return QStringLiteral("CAN FD") + (frame.is(BusFrame::BitRateSwitch) ? QStringLiteral(" BRS") : QString()) +
           (frame.is(BusFrame::ErrorStateIndicator) ? QStringLiteral(" ESI") : QString());
}

QString FrameColumns::text(FrameColumn column, qint64 row, const BusFrame &frame, const Names &names)
{
    const FrameKey key = frameKey(frame.identifier, frame.flags);
    switch (column) {
    case FrameColumn::Number:
        return QString::number(row + 1);
    case FrameColumn::Channel:
        return QString::number(frame.channel + 1);
    case FrameColumn::Direction:
        return directionText(frame.direction);
    case FrameColumn::Identifier:
        return identifierText(key);
    case FrameColumn::Name:
        return names.of(key, frame.channel);
    case FrameColumn::Type:
        return typeText(frame);
    case FrameColumn::Length:
        return QString::number(frame.length);
    case FrameColumn::Data:
        return dataText(frame);
    case FrameColumn::Absolute:
    case FrameColumn::SinceStart:
    case FrameColumn::SinceShown:
    case FrameColumn::SinceIdentifier:
    case FrameColumn::SinceMark:
        break;
    }
    return {};
}

QString FrameColumns::text(FrameColumn column, const BusFrameStore &store, const CaptureInfo &info, qint64 row,
                           const TimeReferences &references, const Names &names)
{
    if (!isTime(column)) {
        return text(column, row, store.frame(row), names);
    }
    const std::optional<qint64> time = timeOfCell(timeColumn(column), store, info, row, references);
    if (!time) {
        return {};
    }
    return column == FrameColumn::Absolute ? absoluteTimeText(*time) : durationText(*time);
}

/// Texts of the language end with the quotation mark that they begin with.
QString FrameColumns::nameFilter(const QString &name)
{
    const QChar quote = name.contains(QLatin1Char('"')) ? QLatin1Char('\'') : QLatin1Char('"');
    return name.isEmpty() || name.contains(quote) ? QString() : QStringLiteral("name == ") + quote + name + quote;
}

QString FrameColumns::sameTime(const BusFrameStore &store, qint64 row)
{
    const std::optional<qint64> time = timeDistance(store.start(), store.time(row));
    return time ? QStringLiteral("time == %1").arg(durationText(*time))
                : QStringLiteral("not (time < 0 or time >= 0)"); // without a time every comparison is false
}

QString FrameColumns::sameName(FrameKey key, const QString &name)
{
    if (name.isEmpty()) {
        return QStringLiteral("name !~ \"\"");
    }
    const QString filter = nameFilter(name);
    return filter.isEmpty() ? identifierFilter(key) : filter;
}

QString FrameColumns::sameData(const BusFrame &frame)
{
    if (frame.is(BusFrame::Remote)) {
        return QStringLiteral("remote");
    }
    return frame.length == 0 ? QStringLiteral("len == 0 and not remote")
                             : QStringLiteral("data == \"%1\"").arg(dataText(frame));
}

QString FrameColumns::sameCell(FrameColumn column, const BusFrameStore &store, qint64 row, const Names &names)
{
    const BusFrame frame = store.frame(row);
    const FrameKey key = frameKey(frame.identifier, frame.flags);
    switch (column) {
    case FrameColumn::Number:
        return QStringLiteral("number == %1").arg(row + 1);
    case FrameColumn::Absolute:
    case FrameColumn::SinceStart:
    case FrameColumn::SinceShown:
    case FrameColumn::SinceIdentifier:
    case FrameColumn::SinceMark:
        return sameTime(store, row);
    case FrameColumn::Channel:
        return QStringLiteral("channel == %1").arg(frame.channel + 1);
    case FrameColumn::Direction:
        return frame.direction == BusFrame::Received ? QStringLiteral("dir == rx")
               : frame.direction == BusFrame::Sent   ? QStringLiteral("dir == tx")
                                                     : QStringLiteral("dir == refused");
    case FrameColumn::Identifier:
        return identifierFilter(key);
    case FrameColumn::Name:
        return sameName(key, names.of(key, frame.channel));
    case FrameColumn::Type:
        return typeFilter(frame);
    case FrameColumn::Length:
        return QStringLiteral("len == %1").arg(frame.length);
    case FrameColumn::Data:
        return sameData(frame);
    }
    return {};
}
