#include "exchange/AscFormat.h"

#include "exchange/AscHeader.h"
#include "exchange/ByteInput.h"
#include "exchange/Findings.h"
#include "exchange/FindingTexts.h"
#include "exchange/LinState.h"
#include "exchange/TextFields.h"

#include <algorithm>
#include <limits>

namespace {

constexpr int MaxClassicLength = 8;
constexpr int MaxLinIdentifier = 0x3F;

bool setDirection(BusFrame &frame, std::string_view word)
{
    frame.direction = isSameWord(word, "Tx") ? BusFrame::Sent : BusFrame::Received;
    return frame.direction == BusFrame::Sent || isSameWord(word, "Rx");
}

/// False for any other text than a number. It may be too large for an identifier.
bool setIdentifier(BusFrame &frame, std::string_view word, int base)
{
    const bool isExtended = !word.empty() && (word.back() == 'x' || word.back() == 'X');
    const auto number = wholeNumber(isExtended ? word.substr(0, word.size() - 1) : word, base);
    frame.identifier = number.value_or(0);
    frame.set(BusFrame::Extended, isExtended);
    return number.has_value();
}

bool hasIdentifier(const BusFrame &frame)
{
    return frame.identifier <= (frame.is(BusFrame::Extended) ? 0x1FFFFFFFU : 0x7FFU);
}

bool isRequest(std::string_view direction)
{
    return isSameWord(direction, "TxRq");
}

/// A data length code: one hexadecimal digit, or a decimal number in files of that base.
std::optional<int> lengthCode(std::string_view word, int base)
{
    const auto code = wholeNumber<int>(word, word.size() > 1 ? base : 16);
    return code && *code >= 0 && *code <= 15 ? code : std::nullopt;
}

class AscReader : public FrameReader
{
public:
    AscReader(ByteInput &in, Findings &findings)
        : m_in(in)
        , m_findings(findings)
    {
        m_info.format = QStringLiteral("asc");
    }

    int read(BusFrame *frames, int room) override;

private:
    /// What is on a line.
    enum class Content { Frame, Nothing, Request, Other, Damaged, BadLength };

    Content parse(std::string_view line, BusFrame &frame);
    Content parseHeader(std::string_view line);
    Content parseEvent(std::string_view time, TextFields fields, BusFrame &frame);
    Content parseClassic(TextFields fields, BusFrame &frame) const;
    Content parseFd(TextFields fields, BusFrame &frame) const;
    Content parseFdContent(TextFields fields, BusFrame &frame) const;
    Content parseLin(std::string_view channel, TextFields fields, BusFrame &frame) const;
    Content parseLinData(TextFields fields, BusFrame &frame) const;
    bool parseBytes(TextFields &fields, BusFrame &frame, int count) const;
    static bool setChannel(BusFrame &frame, std::string_view word);
    void report(Content content);

    ByteInput &m_in;
    Findings &m_findings;
    int m_base = 16;
    bool m_isRelative = false; ///< each time counts from the one before
    bool m_hasBlock = false;   ///< a "Begin Triggerblock" was seen
    qint64 m_time = 0;
};

int AscReader::read(BusFrame *frames, int room)
{
    int count = 0;
    while (count < room) {
        const auto line = m_in.line();
        if (!line) {
            break;
        }
        BusFrame &frame = frames[count];
        frame = BusFrame();
        const Content content = m_in.isCut() ? Content::Damaged : parse(*line, frame);
        if (content == Content::Frame) {
            ++count;
        } else if (content != Content::Nothing) {
            report(content);
        }
    }
    return count;
}

void AscReader::report(Content content)
{
    const QString text = content == Content::Other       ? FindingTexts::otherEvent()
                         : content == Content::Request   ? FindingTexts::transmitRequest()
                         : content == Content::BadLength ? FindingTexts::wrongLength()
                                                         : FindingTexts::damagedLine();
    m_findings.add(Finding::Line, m_in.lineNumber(), text);
}

AscReader::Content AscReader::parse(std::string_view line, BusFrame &frame)
{
    TextFields fields(line);
    const std::string_view first = fields.next();
    if (first.empty() || beginsWith(first, "//")) {
        return Content::Nothing;
    }
    return first.front() >= '0' && first.front() <= '9' ? parseEvent(first, fields, frame) : parseHeader(line);
}

AscReader::Content AscReader::parseHeader(std::string_view line)
{
    TextFields fields(line);
    const std::string_view first = fields.next();
    if (isSameWord(first, "date")) {
        m_info.start = m_hasBlock ? m_info.start : timeOfAscDate(fields.rest());
    } else if (isSameWord(first, "Begin") && isSameWord(fields.peek(), "TriggerBlock")) {
        fields.next();
        const qint64 start = m_hasBlock ? 0 : timeOfAscDate(fields.rest());
        m_info.start = start != 0 ? start : m_info.start;
        m_hasBlock = true;
    } else if (isSameWord(first, "base")) {
        m_base = isSameWord(fields.next(), "dec") ? 10 : 16;
        m_isRelative = isSameWord(fields.next(), "timestamps") && isSameWord(fields.next(), "relative");
    } else if (!isSameWord(first, "End") && !isSameWord(first, "internal") && !isSameWord(first, "no")) {
        return Content::Other;
    }
    return Content::Nothing;
}

AscReader::Content AscReader::parseEvent(std::string_view time, TextFields fields, BusFrame &frame)
{
    const auto nanoseconds = scaledDecimal(time, 9);
    if (!nanoseconds || *nanoseconds > std::numeric_limits<qint64>::max() - m_time) {
        return Content::Damaged;
    }
    m_time = *nanoseconds + (m_isRelative ? m_time : 0);
    frame.time = m_time;
    const std::string_view kind = fields.next();
    if (isSameWord(kind, "CANFD")) {
        frame.set(BusFrame::Fd);
        return parseFd(fields, frame);
    }
    if (setChannel(frame, kind)) {
        return parseClassic(fields, frame);
    }
    if (kind.size() > 1 && (kind.front() == 'L' || kind.front() == 'l')) {
        return parseLin(kind.substr(1), fields, frame);
    }
    return isSameWord(kind, "Start") || beginsWith(kind, "//") ? Content::Nothing : Content::Other;
}

bool AscReader::setChannel(BusFrame &frame, std::string_view word)
{
    const auto number = wholeNumber<quint16>(word);
    frame.channel = number && *number > 0 ? static_cast<quint16>(*number - 1U) : quint16(0);
    return number.has_value();
}

AscReader::Content AscReader::parseClassic(TextFields fields, BusFrame &frame) const
{
    const std::string_view identifier = fields.next();
    if (isSameWord(identifier, "ErrorFrame")) {
        frame.set(BusFrame::Error);
        return Content::Frame;
    }
    const std::string_view direction = fields.next();
    if (!setIdentifier(frame, identifier, m_base) || !(setDirection(frame, direction) || isRequest(direction))) {
        return Content::Other;
    }
    if (isRequest(direction) || !hasIdentifier(frame)) {
        return isRequest(direction) ? Content::Request : Content::Damaged;
    }
    const std::string_view kind = fields.next();
    const auto code = lengthCode(fields.next(), m_base);
    const int length = std::min(code.value_or(0), MaxClassicLength);
    if (isSameWord(kind, "r")) {
        frame.set(BusFrame::Remote);
        frame.length = static_cast<quint8>(length);
        return Content::Frame;
    }
    if (!isSameWord(kind, "d") || !code) {
        return Content::Damaged;
    }
    return parseBytes(fields, frame, length) ? Content::Frame : Content::BadLength;
}

AscReader::Content AscReader::parseFd(TextFields fields, BusFrame &frame) const
{
    const bool hasChannel = setChannel(frame, fields.next());
    const std::string_view direction = fields.next();
    const std::string_view identifier = fields.next();
    if (!hasChannel || !(setDirection(frame, direction) || isRequest(direction))) {
        return Content::Other;
    }
    if (isSameWord(identifier, "ErrorFrame")) {
        frame.set(BusFrame::Fd, false);
        frame.set(BusFrame::Error);
        return Content::Frame;
    }
    if (!setIdentifier(frame, identifier, m_base)) {
        return Content::Other;
    }
    if (isRequest(direction) || !hasIdentifier(frame)) {
        return isRequest(direction) ? Content::Request : Content::Damaged;
    }
    const std::string_view next = fields.peek();
    if (next != "0" && next != "1") {
        fields.next(); // the message's name in a database
    }
    return parseFdContent(fields, frame);
}

/// From the bit-rate switch on. What was on the bus as a classic frame says so by its flags, where it has some.
AscReader::Content AscReader::parseFdContent(TextFields fields, BusFrame &frame) const
{
    const std::string_view bitRateSwitch = fields.next();
    const std::string_view errorState = fields.next();
    const auto code = lengthCode(fields.next(), m_base);
    const auto length = wholeNumber<int>(fields.next());
    if (!code || !length || *length > BusFrame::MaxLength) {
        return Content::Damaged;
    }
    if (!parseBytes(fields, frame, *length)) {
        return Content::BadLength;
    }
    fields.next(); // how long it took
    fields.next(); // its bits
    const quint32 flags = wholeNumber(fields.next(), 16).value_or(0);
    frame.set(BusFrame::BitRateSwitch, bitRateSwitch == "1" || (flags & AscFlags::BitRateSwitch) != 0);
    frame.set(BusFrame::ErrorStateIndicator, errorState == "1" || (flags & AscFlags::ErrorStateIndicator) != 0);
    const bool isRemote = (flags & AscFlags::Remote) != 0 || (*length == 0 && *code != 0);
    const bool isFd = !isRemote && (flags == 0 || (flags & AscFlags::Fd) != 0 || *length > MaxClassicLength ||
                                    frame.is(BusFrame::BitRateSwitch));
    if (!isFd) {
        frame.flags &= BusFrame::Extended;
    }
    if (isRemote) {
        const int remoteLength = std::min(*code, MaxClassicLength);
        frame.set(BusFrame::Remote);
        frame.data = {};
        frame.length = static_cast<quint8>(remoteLength);
    }
    return Content::Frame;
}

AscReader::Content AscReader::parseLin(std::string_view channel, TextFields fields, BusFrame &frame) const
{
    frame.set(BusFrame::Lin);
    const auto identifier = wholeNumber(fields.next(), m_base);
    if ((!isSameWord(channel, "i") && !setChannel(frame, channel)) || !identifier || *identifier > MaxLinIdentifier) {
        return Content::Other;
    }
    frame.identifier = *identifier;
    const std::string_view word = fields.peek();
    const bool isTransmitError = isSameWord(word, "TransmErr");
    if (isTransmitError || isSameWord(word, "RcvError")) {
        frame.direction = isTransmitError ? BusFrame::Sent : BusFrame::Received;
        frame.linState = BusFrame::LinError;
        return Content::Frame;
    }
    const bool isWrongChecksum = isSameWord(word, "CSErr");
    if (isWrongChecksum) {
        fields.next();
    }
    if (!setDirection(frame, fields.next())) {
        return Content::Other;
    }
    const Content content = parseLinData(fields, frame);
    if (isWrongChecksum) {
        frame.linState = frame.linState == BusFrame::ChecksumV1 ? BusFrame::WrongChecksumV1 : BusFrame::WrongChecksumV2;
    }
    return content;
}

/// From the length on: the data, and then names and values, of which those of the checksum are taken.
AscReader::Content AscReader::parseLinData(TextFields fields, BusFrame &frame) const
{
    const auto length = wholeNumber<int>(fields.next());
    if (!length || *length > MaxClassicLength || !parseBytes(fields, frame, *length)) {
        return Content::BadLength;
    }
    bool hasChecksum = false;
    for (std::string_view name = fields.next(); !name.empty(); name = fields.next()) {
        if (fields.peek() != "=") {
            continue;
        }
        fields.next();
        if (isSameWord(name, "checksum")) {
            const auto checksum = wholeNumber<quint8>(fields.next(), m_base);
            hasChecksum = checksum.has_value();
            frame.checksum = checksum.value_or(0);
        } else if (isSameWord(name, "CSM")) {
            frame.linState = beginsWith(fields.next(), "classic") ? BusFrame::ChecksumV1 : BusFrame::ChecksumV2;
        }
    }
    if (hasChecksum && frame.linState == BusFrame::NoLinState) {
        frame.linState = linStateOfChecksum(frame);
    }
    return Content::Frame;
}

bool AscReader::parseBytes(TextFields &fields, BusFrame &frame, int count) const
{
    for (int i = 0; i < count; ++i) {
        const auto byte = wholeNumber<quint8>(fields.next(), m_base);
        if (!byte) {
            return false;
        }
        frame.data[static_cast<std::size_t>(i)] = *byte;
    }
    frame.length = static_cast<quint8>(count);
    return true;
}

} // namespace

bool AscFormat::recognises(std::string_view head)
{
    for (int lines = 0; lines < 20 && !head.empty(); ++lines) {
        const std::size_t end = std::min(head.find('\n'), head.size());
        TextFields fields(head.substr(0, end));
        const std::string_view first = fields.next();
        const std::string_view second = fields.next();
        if (isSameWord(first, "base") && (beginsWith(second, "hex") || beginsWith(second, "dec"))) {
            return true;
        }
        head.remove_prefix(std::min(end + 1, head.size()));
    }
    return false;
}

std::unique_ptr<FrameReader> AscFormat::reader(ByteInput &in, const ReadOptions & /*options*/, Findings &findings)
{
    return std::make_unique<AscReader>(in, findings);
}
