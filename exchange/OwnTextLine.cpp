#include "exchange/OwnTextLine.h"

#include "capture/CaptureWords.h"
#include "device/FrameIdentifier.h"
#include "exchange/Findings.h"
#include "exchange/TextNumbers.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstring>

using TextNumbers::character;

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(OwnTextLine)
};

constexpr int MaxClassic = 8;
constexpr int SameTime = -1;
constexpr std::string_view Spaces = "     ";

std::string_view separatorOf(bool isComma)
{
    return isComma ? std::string_view(",") : Spaces;
}

template<std::size_t Separator>
bool separator(const char *&at, const char *end)
{
    if constexpr (Separator == 1) {
        return character(at, end, ',');
    } else {
        if (static_cast<std::size_t>(end - at) < Separator || std::memcmp(at, Spaces.data(), Separator) != 0) {
            return false;
        }
        at += Separator;
        return true;
    }
}

bool hexNumber(const char *&at, const char *end, quint32 &number)
{
    return character(at, end, '0') && character(at, end, 'x') && TextNumbers::hexadecimal(at, end, number);
}

/// What a frame can be: otherwise the line is looked at closely.
bool isSound(const BusFrame &frame, quint32 length)
{
    const bool isLong = frame.is(BusFrame::Fd) && !frame.is(BusFrame::Remote);
    return frame.identifier <= frameIdMax(frame.is(BusFrame::Extended)) &&
           length <= (isLong ? quint32{BusFrame::MaxLength} : quint32{MaxClassic});
}

std::optional<quint16> flagOf(FrameLabel label)
{
    switch (label) {
    case FrameLabel::Can:
    case FrameLabel::Data:
    case FrameLabel::Standard:
        return quint16{0};
    case FrameLabel::CanFd:
        return quint16{BusFrame::Fd};
    case FrameLabel::CanFdSpeed:
        return static_cast<quint16>(BusFrame::Fd | BusFrame::BitRateSwitch);
    case FrameLabel::Remote:
        return quint16{BusFrame::Remote};
    case FrameLabel::Extend:
        return quint16{BusFrame::Extended};
    case FrameLabel::None:
    case FrameLabel::Received:
    case FrameLabel::SendSuccess:
    case FrameLabel::SendFailure:
        break;
    }
    return std::nullopt;
}

std::optional<BusFrame::Direction> directionOf(std::string_view cell)
{
    const std::optional<FrameLabel> label = captureWord(cell);
    if (label == FrameLabel::Received) {
        return BusFrame::Received;
    }
    if (label == FrameLabel::SendSuccess) {
        return BusFrame::Sent;
    }
    return label == FrameLabel::SendFailure ? std::optional(BusFrame::Refused) : std::nullopt;
}

/// The bytes from the first cell's begin to the last one's begin: the cells between with their separators.
std::string_view between(std::string_view first, std::string_view last)
{
    return {first.data(), static_cast<std::size_t>(last.data() - first.data())};
}

} // namespace

const OwnTextLine::Known *OwnTextLine::KnownCells::at(const char *&place, const char *end) const
{
    const auto left = static_cast<std::size_t>(end - place);
    for (const Known &known : m_known) {
        if (known.size <= left && std::memcmp(known.bytes.data(), place, known.size) == 0) {
            place += known.size;
            return &known;
        }
    }
    return nullptr;
}

void OwnTextLine::KnownCells::add(std::string_view bytes, quint16 value)
{
    Known known{{}, bytes.size(), value};
    const char *place = bytes.data();
    if (bytes.size() <= known.bytes.size() && m_known.size() < MaxKnown && at(place, place + bytes.size()) == nullptr) {
        std::memcpy(known.bytes.data(), bytes.data(), bytes.size());
        m_known.push_back(known);
    }
}

/// A time of day of ClockSize characters; milliseconds is left alone where it is the one before again, as it often is.
bool OwnTextLine::clockFast(const char *&at, const char *end, int &milliseconds) const
{
    if (static_cast<std::size_t>(end - at) < ClockSize) {
        return false;
    }
    const char *behind = at + ClockSize;
    if (std::memcmp(at, m_clockText.data(), ClockSize) == 0) {
        at = behind;
        return true;
    }
    return TextNumbers::clock(at, behind, milliseconds) && at == behind;
}

/// Nothing is reported and nothing remembered before the whole line is read.
template<std::size_t Separator>
bool OwnTextLine::readFast(std::string_view line, BusFrame &frame)
{
    const char *at = line.data();
    const char *end = at + line.size();
    qint64 number = 0;
    int milliseconds = SameTime;
    int stamp = -1;
    quint32 length = 0;
    if (!TextNumbers::decimal(at, end, number) || !separator<Separator>(at, end)) {
        return false;
    }
    const char *clockText = at;
    if (!clockFast(at, end, milliseconds) || !separator<Separator>(at, end) || at == end) {
        return false;
    }
    if (TextNumbers::isDigit(*at) ? !TextNumbers::clock(at, end, stamp) || !separator<Separator>(at, end)
                                  : m_noStamps.at(at, end) == nullptr) {
        return false;
    }
    const Known *direction = m_directions.at(at, end);
    if (direction == nullptr || !hexNumber(at, end, frame.identifier) || !separator<Separator>(at, end)) {
        return false;
    }
    const Known *kind = m_kinds.at(at, end);
    if (kind == nullptr || !hexNumber(at, end, length) || !separator<Separator>(at, end)) {
        return false;
    }
    frame.flags = kind->value;
    if (!isSound(frame, length) || static_cast<std::size_t>(end - at) < 3 * std::size_t{length}) {
        return false;
    }
    const char *payload = at;
    at += 3 * std::size_t{length};
    if (at != end && (!separator<Separator>(at, end) || at != end)) {
        return false;
    }
    if (!TextNumbers::hexBytes(payload, static_cast<int>(length), 3, frame.data.data())) {
        return false;
    }
    for (quint32 i = 0; i < length; ++i) {
        if (payload[3 * i + 2] != ' ') {
            return false;
        }
    }
    if (frame.is(BusFrame::Remote)) {
        frame.data = {};
    }
    if (milliseconds != SameTime) {
        m_time = m_clock.at(milliseconds);
        std::memcpy(m_clockText.data(), clockText, ClockSize);
    }
    frame.direction = static_cast<BusFrame::Direction>(direction->value);
    frame.length = static_cast<quint8>(length);
    frame.time = m_time;
    frame.deviceTime = stamp >= 0 ? m_stamps.at(stamp, m_time) : BusFrame::NoTime;
    checkNumber(number);
    return true;
}

bool OwnTextLine::read(std::string_view line, qint64 lineNumber, BusFrame &frame)
{
    m_lineNumber = lineNumber;
    frame = BusFrame();
    const bool isRead = m_isCommaLast ? readFast<1>(line, frame) : readFast<SpaceCount>(line, frame);
    return isRead || readSlowly(line, frame);
}

bool OwnTextLine::readSlowly(std::string_view line, qint64 lineNumber, BusFrame &frame)
{
    m_lineNumber = lineNumber;
    return readSlowly(line, frame);
}

bool OwnTextLine::readSlowly(std::string_view line, BusFrame &frame)
{
    frame = BusFrame();
    if (line.find_first_not_of(" \t") == std::string_view::npos) {
        return false;
    }
    Cells cells;
    if (!split(line, cells)) {
        return refuse(Texts::tr("a line with too few cells was left out"));
    }
    if (!readKind(cells, frame) || !readIdentifier(cells[4], frame) || !readPayload(cells[8], cells[9], frame)) {
        return false;
    }
    readTimes(cells, frame);
    readNumber(cells[0]);
    return true;
}

/// At the separator that comes first in the line; a further one behind the last cell is no cell.
bool OwnTextLine::split(std::string_view line, Cells &cells)
{
    m_isCommaLast = line.find(',') < line.find(Spaces);
    const std::string_view separator = separatorOf(m_isCommaLast);
    for (std::size_t i = 0; i < CellCount; ++i) {
        // A separator of blanks behind a payload's own blank begins with the second one.
        const bool isLast = i + 1 == CellCount;
        const std::size_t end = isLast ? line.rfind(separator) : line.find(separator);
        if (!isLast && end == std::string_view::npos) {
            return false;
        }
        const bool hasEnd = end != std::string_view::npos && (!isLast || end + separator.size() == line.size());
        cells[i] = hasEnd ? line.substr(0, end) : line;
        line.remove_prefix(hasEnd ? end + separator.size() : line.size());
    }
    return true;
}

bool OwnTextLine::readKind(const Cells &cells, BusFrame &frame)
{
    const std::optional<BusFrame::Direction> direction = directionOf(cells[3]);
    if (!direction) {
        return refuse(Texts::tr("a line with an unknown direction was left out"));
    }
    frame.direction = *direction;
    m_directions.add(between(cells[3], cells[4]), static_cast<quint16>(*direction));
    for (const std::size_t cell : {5U, 6U, 7U}) {
        const std::optional<FrameLabel> label = captureWord(cells[cell]);
        const std::optional<quint16> flag = label ? flagOf(*label) : std::nullopt;
        if (!flag) {
            return refuse(Texts::tr("a line with an unknown protocol, format or type was left out"));
        }
        frame.flags = static_cast<quint16>(frame.flags | *flag);
    }
    m_kinds.add(between(cells[5], cells[8]), frame.flags);
    return true;
}

bool OwnTextLine::readIdentifier(std::string_view cell, BusFrame &frame)
{
    const char *at = cell.data();
    const char *end = at + cell.size();
    if (cell.size() > 2 && cell[0] == '0' && (cell[1] == 'x' || cell[1] == 'X')) {
        at += 2;
    }
    if (!TextNumbers::hexadecimal(at, end, frame.identifier) || at != end ||
        frame.identifier > frameIdMax(frame.is(BusFrame::Extended))) {
        return refuse(Texts::tr("a line with an identifier that no frame has was left out"));
    }
    return true;
}

/// The bytes that are there count, whatever the length says, except for remote frames, which have no others.
bool OwnTextLine::readPayload(std::string_view lengthCell, std::string_view cell, BusFrame &frame)
{
    const char *at = lengthCell.data();
    quint32 length = 0;
    const bool hasLength = hexNumber(at, at + lengthCell.size(), length) && at == lengthCell.data() + lengthCell.size();
    frame.length = 0;
    for (const char *byte = cell.data(), *end = byte + cell.size(); byte != end;) {
        if (*byte == ' ') {
            ++byte;
            continue;
        }
        if (end - byte < 2 || frame.length == BusFrame::MaxLength ||
            !TextNumbers::hexBytes(byte, 1, 2, &frame.data[frame.length])) {
            return refuse(Texts::tr("a line with a damaged payload was left out"));
        }
        ++frame.length;
        byte += 2;
    }
    if (frame.is(BusFrame::Remote) && hasLength && length <= quint32{MaxClassic}) {
        frame.length = static_cast<quint8>(length);
        frame.data = {};
        return true;
    }
    if (!hasLength || length != frame.length) {
        report(Texts::tr("the length is not that of the payload, which was taken"));
    }
    if (frame.length > MaxClassic && !frame.is(BusFrame::Fd)) {
        return refuse(Texts::tr("a classic frame of more than 8 bytes was left out"));
    }
    frame.data = frame.is(BusFrame::Remote) ? decltype(frame.data)() : frame.data;
    return true;
}

void OwnTextLine::readTimes(const Cells &cells, BusFrame &frame)
{
    int milliseconds = 0;
    const char *at = cells[1].data();
    if (TextNumbers::clock(at, at + cells[1].size(), milliseconds)) {
        m_time = m_clock.at(milliseconds);
        m_clockText = {};
    } else {
        report(Texts::tr("a time of day that cannot be read; that of the frame before was taken"));
    }
    frame.time = m_time;
    at = cells[2].data();
    if (TextNumbers::clock(at, at + cells[2].size(), milliseconds)) {
        frame.deviceTime = m_stamps.at(milliseconds, m_time);
    } else if (captureWord(cells[2]) == FrameLabel::None) {
        m_noStamps.add(between(cells[2], cells[3]), 0);
    } else {
        report(Texts::tr("a time stamp that cannot be read"));
    }
}

void OwnTextLine::readNumber(std::string_view cell)
{
    const char *at = cell.data();
    const char *end = at + cell.size();
    qint64 number = 0;
    if (TextNumbers::decimal(at, end, number) && at == end) {
        checkNumber(number);
    } else {
        report(Texts::tr("a number that cannot be read"));
        ++m_number;
    }
}

/// Numbers begin anywhere, go up by one, and begin again at 1 when the table is cleared.
void OwnTextLine::checkNumber(qint64 number)
{
    if (m_number != 0 && number != m_number + 1 && number != 1) {
        report(number > m_number ? Texts::tr("frames are missing: their numbers jump")
                                 : Texts::tr("the numbers jump back"));
    }
    m_number = number;
}

bool OwnTextLine::refuse(const QString &text)
{
    report(text);
    return false;
}

void OwnTextLine::report(const QString &text)
{
    m_findings.add(Finding::Line, m_lineNumber, text);
}
