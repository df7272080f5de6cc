#include "exchange/ByteInput.h"
#include "exchange/CanLength.h"
#include "exchange/Findings.h"
#include "exchange/FindingTexts.h"
#include "exchange/TextFields.h"
#include "exchange/TrcFormat.h"
#include "exchange/TrcStart.h"

#include <algorithm>
#include <limits>
#include <string>

namespace {

constexpr int MaxClassicLength = 8;
constexpr std::size_t StandardDigits = 4; ///< of an identifier; an extended one has more

/// The columns of each version, by the letters with which version 2 names its own: number, offset in milliseconds,
/// type, bus, identifier, direction, reserved, length in bytes (l) or as a code (L), data.
struct Version
{
    std::string_view name;
    std::string_view columns;
};
constexpr Version Versions[] = {{"1.0", "NOIlD"},    {"1.1", "NOTIlD"},  {"1.2", "NOBTIlD"},
                                {"1.3", "NOBTIRLD"}, {"2.0", "NOTIdlD"}, {"2.1", "NOTBIdRLD"}};

/// The types of version 2 that are frames, and what they say.
struct Type
{
    std::string_view name;
    quint16 flags;
};
constexpr quint16 FdSwitched = BusFrame::Fd | BusFrame::BitRateSwitch;
constexpr Type Types[] = {{"DT", 0},
                          {"FD", BusFrame::Fd},
                          {"FB", FdSwitched},
                          {"FE", BusFrame::Fd | BusFrame::ErrorStateIndicator},
                          {"BI", FdSwitched | BusFrame::ErrorStateIndicator},
                          {"RR", BusFrame::Remote},
                          {"ER", BusFrame::Error},
                          {"Rx", 0}, // version 1
                          {"Tx", 0},
                          {"Error", BusFrame::Error}};

class TrcReader : public FrameReader
{
public:
    TrcReader(ByteInput &in, Findings &findings)
        : m_in(in)
        , m_findings(findings)
        , m_columns(Versions[0].columns)
    {
        m_info.format = QStringLiteral("trc");
    }

    int read(BusFrame *frames, int room) override;

private:
    enum class Content { Frame, Nothing, Other, Damaged, BadLength };

    Content parse(std::string_view line, BusFrame &frame) const;
    void parseHeader(std::string_view line);
    static Content parseColumn(char column, std::string_view field, BusFrame &frame, int &length);
    static Content parseType(std::string_view field, BusFrame &frame);
    static Content parseIdentifier(std::string_view field, BusFrame &frame);
    static Content parseData(TextFields &fields, BusFrame &frame, int length);

    ByteInput &m_in;
    Findings &m_findings;
    std::string m_columns;
};

int TrcReader::read(BusFrame *frames, int room)
{
    int count = 0;
    while (count < room) {
        const auto line = m_in.line();
        if (!line) {
            break;
        }
        BusFrame &frame = frames[count];
        frame = BusFrame();
        if (!line->empty() && line->front() == ';') {
            parseHeader(line->substr(1));
            continue;
        }
        const Content content = m_in.isCut() ? Content::Damaged : parse(*line, frame);
        if (content == Content::Frame) {
            ++count;
        } else if (content != Content::Nothing) {
            const QString text = content == Content::Other       ? FindingTexts::otherEvent()
                                 : content == Content::BadLength ? FindingTexts::wrongLength()
                                                                 : FindingTexts::damagedLine();
            m_findings.add(Finding::Line, m_in.lineNumber(), text);
        }
    }
    return count;
}

void TrcReader::parseHeader(std::string_view line)
{
    constexpr std::string_view FileVersion = "$FILEVERSION=";
    constexpr std::string_view StartTime = "$STARTTIME=";
    constexpr std::string_view Columns = "$COLUMNS=";
    TextFields fields(line);
    const std::string_view field = fields.next();
    if (beginsWith(field, FileVersion)) {
        const std::string_view name = field.substr(FileVersion.size());
        const auto *const found = std::find_if(std::begin(Versions), std::end(Versions),
                                               [name](const Version &version) { return version.name == name; });
        m_columns = found != std::end(Versions) ? found->columns : Versions[5].columns;
        if (found == std::end(Versions)) {
            m_findings.add(Finding::Line, m_in.lineNumber(), FindingTexts::unknownVersion());
        }
    } else if (beginsWith(field, StartTime)) {
        m_info.start = timeOfTrcDays(field.substr(StartTime.size()));
    } else if (beginsWith(field, Columns)) {
        m_columns.clear();
        std::copy_if(field.begin() + Columns.size(), field.end(), std::back_inserter(m_columns),
                     [](char c) { return c != ',' && c != ' '; });
    } else if (isSameWord(field, "Start") && isSameWord(fields.next(), "time:") && m_info.start == 0) {
        m_info.start = timeOfTrcDate(fields.rest());
    }
}

TrcReader::Content TrcReader::parse(std::string_view line, BusFrame &frame) const
{
    TextFields fields(line);
    if (fields.peek().empty()) {
        return Content::Nothing;
    }
    int length = -1;
    for (const char column : m_columns) {
        if (column == 'D' || (frame.is(BusFrame::Error) && column == 'I')) { // of an error the rest may be missing
            break;
        }
        const Content content = parseColumn(column, fields.next(), frame, length);
        if (content != Content::Frame) {
            return content;
        }
    }
    if (frame.time == BusFrame::NoTime) {
        return Content::Damaged;
    }
    return frame.is(BusFrame::Error) ? Content::Frame : parseData(fields, frame, length);
}

/// Frame where the field is as it should be.
TrcReader::Content TrcReader::parseColumn(char column, std::string_view field, BusFrame &frame, int &length)
{
    switch (column) {
    case 'O':
        frame.time = scaledDecimal(field, 6).value_or(BusFrame::NoTime);
        return frame.time != BusFrame::NoTime ? Content::Frame : Content::Damaged;
    case 'T':
        return parseType(field, frame);
    case 'B': {
        const auto bus = wholeNumber<quint16>(field);
        frame.channel = static_cast<quint16>(bus.value_or(0) > 0 ? *bus - 1U : 0U);
        return bus || field == "-" ? Content::Frame : Content::Damaged;
    }
    case 'I':
        return parseIdentifier(field, frame);
    case 'd':
        frame.direction = isSameWord(field, "Tx") ? BusFrame::Sent : BusFrame::Received;
        return frame.direction == BusFrame::Sent || isSameWord(field, "Rx") ? Content::Frame : Content::Damaged;
    case 'l':
        length = wholeNumber<int>(field).value_or(-1);
        return length >= 0 && length <= BusFrame::MaxLength ? Content::Frame : Content::Damaged;
    case 'L': {
        const int code = wholeNumber<int>(field).value_or(-1);
        length = frame.is(BusFrame::Fd) ? canLengthOfCode(code) : std::min(code, MaxClassicLength);
        return code >= 0 && code <= 15 ? Content::Frame : Content::Damaged;
    }
    default:
        return Content::Frame; // the number, what is reserved, and columns of later versions
    }
}

TrcReader::Content TrcReader::parseType(std::string_view field, BusFrame &frame)
{
    const auto *const found =
        std::find_if(std::begin(Types), std::end(Types), [field](const Type &type) { return type.name == field; });
    if (found == std::end(Types)) {
        return Content::Other;
    }
    frame.flags = found->flags;
    frame.direction = field == "Tx" ? BusFrame::Sent : frame.direction;
    return Content::Frame;
}

TrcReader::Content TrcReader::parseIdentifier(std::string_view field, BusFrame &frame)
{
    const auto number = wholeNumber(field, 16);
    if (!number) {
        return Content::Damaged;
    }
    if (*number == 0xFFFFFFFFU) {
        return Content::Other; // a status, in version 1.0
    }
    frame.identifier = *number;
    frame.set(BusFrame::Extended, field.size() > StandardDigits);
    return *number <= (frame.is(BusFrame::Extended) ? 0x1FFFFFFFU : 0x7FFU) ? Content::Frame : Content::Damaged;
}

TrcReader::Content TrcReader::parseData(TextFields &fields, BusFrame &frame, int length)
{
    if (length < 0 || (!frame.is(BusFrame::Fd) && length > MaxClassicLength)) {
        return Content::Damaged;
    }
    frame.length = static_cast<quint8>(length);
    if (isSameWord(fields.peek(), "RTR")) { // version 1
        frame.set(BusFrame::Remote);
    }
    if (frame.is(BusFrame::Remote)) {
        return Content::Frame;
    }
    for (std::size_t i = 0; i < frame.length; ++i) {
        const auto byte = wholeNumber<quint8>(fields.next(), 16);
        if (!byte) {
            return Content::BadLength;
        }
        frame.data[i] = *byte;
    }
    return Content::Frame;
}

} // namespace

bool TrcFormat::recognises(std::string_view head)
{
    return !head.empty() && head.front() == ';' &&
           (head.find("$FILEVERSION=") != std::string_view::npos ||
            head.find("time offset of message (ms)") != std::string_view::npos ||
            head.find("Time Offset (ms)") != std::string_view::npos);
}

std::unique_ptr<FrameReader> TrcFormat::reader(ByteInput &in, const ReadOptions & /*options*/, Findings &findings)
{
    return std::make_unique<TrcReader>(in, findings);
}
