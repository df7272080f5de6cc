#include "exchange/OwnTextFormat.h"

#include "capture/CaptureFormat.h"
#include "capture/CaptureWords.h"
#include "capture/CaptureWriter.h"
#include "capture/FrameBytes.h"
#include "exchange/ByteInput.h"
#include "exchange/ByteOutput.h"
#include "exchange/Findings.h"
#include "exchange/FrameLosses.h"
#include "exchange/OwnTextLine.h"
#include "exchange/TextNumbers.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(OwnTextFormat)
};

std::string_view withoutMark(std::string_view text)
{
    const std::string_view mark = CaptureLayout::ByteOrderMark;
    return text.substr(0, mark.size()) == mark ? text.substr(mark.size()) : text;
}

/// Whether the head is that of a text capture; the titles are those between its first and second line end.
std::optional<std::string_view> titlesOf(std::string_view head)
{
    head = withoutMark(head);
    const std::string_view own = CaptureLayout::OwnHeader;
    if (head.substr(0, own.size()) != own) {
        return std::nullopt;
    }
    head.remove_prefix(own.size());
    const std::size_t begin = head.find('\n');
    if (begin == std::string_view::npos || head.find_first_not_of('\r') != begin) {
        return std::nullopt;
    }
    head.remove_prefix(begin + 1);
    return head.substr(0, head.find('\n'));
}

class Reader : public FrameReader
{
public:
    Reader(ByteInput &in, const ReadOptions &options, Findings &findings, const char *format)
        : m_in(in)
        , m_findings(findings)
        , m_line(firstDay(in.device(), options.fileDate), findings)
    {
        m_info.format = QLatin1String(format);
        m_info.timeBase = options.fileDate.isValid() ? CaptureInfo::Absolute : CaptureInfo::SinceStart;
    }

    int read(BusFrame *frames, int room) override
    {
        int count = 0;
        while (count < room) {
            const std::optional<std::string_view> line = m_in.line();
            if (!line) {
                break;
            }
            count += m_expects != Expected::Frame ? takeHead(*line, frames[count]) : takeLine(*line, frames[count]);
        }
        return count;
    }

private:
    enum class Expected : quint8 { Header, Titles, Frame };

    int takeHead(std::string_view line, BusFrame &frame);
    int takeLine(std::string_view line, BusFrame &frame)
    {
        if (!line.empty() && !TextNumbers::isDigit(line.front()) && isHeader(line)) {
            m_expects = Expected::Titles;
            return 0;
        }
        if (m_in.isCut()) {
            add(Texts::tr("a line that is too long was left out"));
            return 0;
        }
        return m_line.read(line, m_in.lineNumber(), frame) ? 1 : 0;
    }
    static bool isHeader(std::string_view line) { return withoutMark(line) == CaptureLayout::OwnHeader; }
    void add(const QString &text) { m_findings.add(Finding::Line, m_in.lineNumber(), text); }

    ByteInput &m_in;
    Findings &m_findings;
    OwnTextLine m_line;
    Expected m_expects = Expected::Header;
};

/// Header and titles, also those of a further capture behind the first one. A file that lost them is read all the same.
int Reader::takeHead(std::string_view line, BusFrame &frame)
{
    if (m_expects == Expected::Header) {
        m_expects = Expected::Titles;
        if (isHeader(line)) {
            return 0;
        }
        add(Texts::tr("the header is missing"));
    }
    m_expects = Expected::Frame;
    const bool isNoTitles = !line.empty() && TextNumbers::isDigit(line.front());
    if (isNoTitles) {
        add(Texts::tr("the titles are missing"));
    }
    return isNoTitles ? takeLine(line, frame) : 0;
}

/// Numbers lines from 1. Most of a number is the same as in the line before.
class LineNumber
{
public:
    /// Takes FrameBytes::MaxDecimal bytes and one more, and returns the place behind.
    char *putNext(char *to)
    {
        if (++m_rest == 1000) {
            m_rest = 0;
            m_size = FrameBytes::putDecimal(m_thousands.data(), ++m_thousand) - m_thousands.data();
        }
        if (m_thousand == 0) {
            return FrameBytes::putDecimal(to, m_rest);
        }
        std::memcpy(to, m_thousands.data(), m_thousands.size());
        return FrameBytes::putThreeDigits(to + m_size, static_cast<std::size_t>(m_rest));
    }

private:
    quint64 m_thousand = 0;
    quint64 m_rest = 0;
    std::array<char, FrameBytes::MaxDecimal> m_thousands{}; ///< as text
    std::ptrdiff_t m_size = 0;                              ///< of that text
};

class Writer : public FrameWriter
{
public:
    Writer(ByteOutput &out, const WriteOptions &options, Findings &findings, const CaptureFormat &format)
        : m_out(out)
        , m_style(styleOf(options))
        , m_lines(captureLabels(options.isChinese), format.separator, format.isLastSeparated, m_style)
        , m_losses(OwnTextFormat::Holds, findings)
        , m_start(options.info.timeBase == CaptureInfo::SinceStart ? options.info.start : 0)
        , m_clock(options.info.timeBase == CaptureInfo::Absolute || options.info.start != 0)
    {
        const QByteArray head = captureTextHead(format, captureLabels(options.isChinese), m_style);
        out.put({head.constData(), static_cast<std::size_t>(head.size())});
    }

    void write(const BusFrame *frames, int count) override
    {
        for (const BusFrame *frame = frames; frame != frames + count; ++frame) {
            m_time = frame->time != BusFrame::NoTime ? frame->time : m_time;
            if (m_losses.takes(*frame)) {
                put(*frame);
            }
        }
    }
    void finish() override
    {
        m_out.put({m_style.lineEnd.constData(), static_cast<std::size_t>(m_style.lineEnd.size())});
        m_losses.report();
    }

private:
    static CaptureTextStyle styleOf(const WriteOptions &options)
    {
        CaptureTextStyle style;
        if (options.encoding != nullptr) {
            style.codec = captureCodec(QTextCodec::codecForName(options.encoding));
        }
        return style;
    }
    static quint8 directionOf(const BusFrame &frame)
    {
        switch (frame.direction) {
        case BusFrame::Received:
            return FrameHead::Received;
        case BusFrame::Sent:
            return FrameHead::SendSuccess;
        case BusFrame::Refused:
            break;
        }
        return FrameHead::SendFailure;
    }
    void put(const BusFrame &frame)
    {
        static const QString NoText;
        const bool hasStamp = frame.deviceTime != BusFrame::NoTime;
        FrameHead head;
        head.direction = directionOf(frame);
        head.protocol = !frame.is(BusFrame::Fd)             ? FrameHead::CAN
                        : frame.is(BusFrame::BitRateSwitch) ? FrameHead::CANFDSpeed
                                                            : FrameHead::CANFD;
        head.timeStamp = hasStamp ? static_cast<quint32>(frame.deviceTime / NanosecondsPerMs) : 0;
        head.id = frame.identifier & ((1U << 29U) - 1U);
        head.remote = frame.is(BusFrame::Remote) ? 1 : 0;
        head.extended = frame.is(BusFrame::Extended) ? 1 : 0;
        const FrameView view(head, NoText, frame.data.data(), std::min<int>(frame.length, BusFrame::MaxLength));
        char *begin = m_out.room(m_lines.maxSizeWithoutTime(view) + ClockText::MaxSize);
        char *to = m_lines.putSeparator(m_number.putNext(begin));
        to = m_clock.put(to, m_start + m_time);
        to = m_lines.putBehindTime(to, view, hasStamp);
        m_out.advance(static_cast<std::size_t>(to - begin));
    }

    ByteOutput &m_out;
    const CaptureTextStyle m_style;
    CaptureLines m_lines;
    FrameLosses m_losses;
    const qint64 m_start;
    ClockText m_clock;
    LineNumber m_number;
    qint64 m_time = 0; ///< of the last frame that had one
};

} // namespace

bool OwnTextFormat::recognisesTxt(std::string_view head)
{
    const std::optional<std::string_view> titles = titlesOf(head);
    return titles && titles->find("   ") < titles->find(',');
}

bool OwnTextFormat::recognisesCsv(std::string_view head)
{
    return titlesOf(head).has_value() && !recognisesTxt(head);
}

std::unique_ptr<FrameReader> OwnTextFormat::csvReader(ByteInput &in, const ReadOptions &options, Findings &findings)
{
    return std::make_unique<Reader>(in, options, findings, "csv");
}

std::unique_ptr<FrameReader> OwnTextFormat::txtReader(ByteInput &in, const ReadOptions &options, Findings &findings)
{
    return std::make_unique<Reader>(in, options, findings, "txt");
}

std::unique_ptr<FrameWriter> OwnTextFormat::csvWriter(ByteOutput &out, const WriteOptions &options, Findings &findings)
{
    return std::make_unique<Writer>(out, options, findings, captureFormat(CANFile::CSV));
}

std::unique_ptr<FrameWriter> OwnTextFormat::txtWriter(ByteOutput &out, const WriteOptions &options, Findings &findings)
{
    return std::make_unique<Writer>(out, options, findings, captureFormat(CANFile::Text));
}
