#include "exchange/LinCsvFormat.h"

#include "capture/CaptureFormat.h"
#include "capture/CaptureWriter.h"
#include "device/LINFrame.h"
#include "device/LINWords.h"
#include "exchange/ByteInput.h"
#include "exchange/ByteOutput.h"
#include "exchange/CaptureClocks.h"
#include "exchange/Findings.h"
#include "exchange/FrameLosses.h"
#include "exchange/TextNumbers.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <algorithm>
#include <array>
#include <optional>
#include <string>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(LinCsvFormat)
};

constexpr quint32 MaxIdentifier = 0x3F;
constexpr int MaxData = 8;
constexpr std::size_t CellCount = 8;
using Cells = std::array<std::string_view, CellCount>;

bool isTitles(std::string_view line)
{
    return line.find(LINWords::IdTitle) != std::string_view::npos;
}

/// Exactly eight; nothing else is such a line.
std::optional<Cells> cellsOf(std::string_view line)
{
    Cells cells;
    for (std::size_t i = 0; i < CellCount; ++i) {
        const std::size_t end = line.find(',');
        if ((end == std::string_view::npos) != (i + 1 == CellCount)) {
            return std::nullopt;
        }
        cells[i] = line.substr(0, end);
        line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
    }
    return cells;
}

std::optional<BusFrame::LinState> stateOf(std::string_view cell)
{
    if (cell == "V1") {
        return BusFrame::ChecksumV1;
    }
    if (cell == "V2") {
        return BusFrame::ChecksumV2;
    }
    if (LINWords::Wrong.isIn(cell)) {
        return BusFrame::LinError;
    }
    constexpr std::size_t BehindWord = 4;
    if (cell.size() < BehindWord || !LINWords::WrongChecksum.isIn(cell.substr(0, cell.size() - BehindWord))) {
        return std::nullopt;
    }
    const std::string_view behind = cell.substr(cell.size() - BehindWord);
    if (behind == "(V1)") {
        return BusFrame::WrongChecksumV1;
    }
    return behind == "(V2)" ? std::optional(BusFrame::WrongChecksumV2) : std::nullopt;
}

/// A number that fills the whole cell.
template<typename Number, typename Read>
bool whole(std::string_view cell, Number &number, Read read)
{
    const char *at = cell.data();
    const char *end = at + cell.size();
    return read(at, end, number) && at == end;
}

class Reader : public FrameReader
{
public:
    Reader(ByteInput &in, const ReadOptions &options, Findings &findings)
        : m_in(in)
        , m_findings(findings)
        , m_clock(firstDay(in.device(), options.fileDate))
    {
        m_info.format = QStringLiteral("lin-csv");
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
            count += takeLine(*line, frames[count]) ? 1 : 0;
        }
        return count;
    }

private:
    bool takeLine(std::string_view line, BusFrame &frame);
    bool readBytes(const Cells &cells, BusFrame &frame);
    bool refuse(const QString &text)
    {
        m_findings.add(Finding::Line, m_in.lineNumber(), text);
        return false;
    }

    ByteInput &m_in;
    Findings &m_findings;
    DayClock m_clock;
    qint64 m_time = 0;
};

bool Reader::takeLine(std::string_view line, BusFrame &frame)
{
    if (line.empty() || isTitles(line)) {
        return false;
    }
    const std::optional<Cells> cells = cellsOf(line);
    if (!cells) {
        return refuse(Texts::tr("a line without eight cells was left out"));
    }
    frame = BusFrame();
    frame.flags = BusFrame::Lin;
    const bool isSent = LINWords::Send.isIn((*cells)[2]);
    frame.direction = isSent ? BusFrame::Sent : BusFrame::Received;
    if (!isSent && !LINWords::Received.isIn((*cells)[2])) {
        return refuse(Texts::tr("a line with an unknown direction was left out"));
    }
    if (!readBytes(*cells, frame)) {
        return false;
    }
    const std::optional<BusFrame::LinState> state = stateOf((*cells)[7]);
    if (!state) {
        refuse(Texts::tr("a state that is not known"));
    }
    frame.linState = state.value_or(BusFrame::NoLinState);
    int milliseconds = 0;
    if (whole((*cells)[1], milliseconds, TextNumbers::clock)) {
        m_time = m_clock.at(milliseconds);
    } else {
        refuse(Texts::tr("a time of day that cannot be read; that of the frame before was taken"));
    }
    frame.time = m_time;
    return true;
}

bool Reader::readBytes(const Cells &cells, BusFrame &frame)
{
    quint32 checksum = 0;
    qint64 length = 0;
    if (!whole(cells[3].substr(0, 2), frame.identifier, TextNumbers::hexadecimal) || frame.identifier > MaxIdentifier) {
        return refuse(Texts::tr("a line with an identifier that no frame has was left out"));
    }
    const std::string_view data = cells[5];
    if (!whole(cells[4], length, TextNumbers::decimal) || length > MaxData ||
        data.size() != 3 * static_cast<std::size_t>(length) ||
        !TextNumbers::hexBytes(data.data(), static_cast<int>(length), 3, frame.data.data())) {
        return refuse(Texts::tr("a line with a damaged payload was left out"));
    }
    frame.length = static_cast<quint8>(length);
    if (!whole(cells[6], checksum, TextNumbers::hexadecimal) || checksum > 0xFF) {
        return refuse(Texts::tr("a line with a damaged checksum was left out"));
    }
    frame.checksum = static_cast<quint8>(checksum);
    return true;
}

class Writer : public FrameWriter
{
public:
    Writer(ByteOutput &out, const WriteOptions &options, Findings &findings)
        : m_out(out)
        , m_isChinese(options.isChinese)
        , m_losses(LinCsvFormat::Holds, findings)
        , m_start(options.info.timeBase == CaptureInfo::SinceStart ? options.info.start : 0)
        , m_clock(options.info.timeBase == CaptureInfo::Absolute || options.info.start != 0)
    {
        if (options.encoding != nullptr) {
            m_style.codec = captureCodec(QTextCodec::codecForName(options.encoding));
        }
        putText(QString::fromUtf8(m_isChinese ? LINWords::ChineseTitles : LINWords::EnglishTitles));
        putLineEnd();
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
    void finish() override { m_losses.report(); }

private:
    void put(const BusFrame &frame);
    void putText(const QString &text)
    {
        const QByteArray bytes = m_style.encoded(text);
        m_out.put({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    }
    void putLineEnd() { m_out.put({m_style.lineEnd.constData(), static_cast<std::size_t>(m_style.lineEnd.size())}); }
    QString word(const LINWords::Word &word) const
    {
        return QString::fromUtf8(m_isChinese ? word.chinese : word.english);
    }
    QString stateText(BusFrame::LinState state) const
    {
        switch (state) {
        case BusFrame::ChecksumV1:
            return QStringLiteral("V1");
        case BusFrame::ChecksumV2:
            return QStringLiteral("V2");
        case BusFrame::WrongChecksumV1:
            return word(LINWords::WrongChecksum) + QStringLiteral("(V1)");
        case BusFrame::WrongChecksumV2:
            return word(LINWords::WrongChecksum) + QStringLiteral("(V2)");
        case BusFrame::LinError:
        case BusFrame::NoLinState:
            break;
        }
        return word(LINWords::Wrong);
    }

    ByteOutput &m_out;
    const bool m_isChinese;
    CaptureTextStyle m_style;
    FrameLosses m_losses;
    const qint64 m_start;
    ClockText m_clock;
    qint64 m_number = 0;
    qint64 m_time = 0;
};

void Writer::put(const BusFrame &frame)
{
    const auto identifier = static_cast<quint8>(frame.identifier & MaxIdentifier);
    std::array<char, ClockText::MaxSize> time;
    m_clock.put(time.data(), m_start + m_time);
    const int length = std::min<int>(frame.length, MaxData);
    std::array<char, 3 * MaxData + 1> data;
    FrameBytes::putPayload(data.data(), frame.data.data(), length);
    const auto hex = [](quint8 byte) {
        return QStringLiteral("%1").arg(uint{byte}, 2, 16, QLatin1Char('0')).toUpper();
    };
    const QStringList cells = {
        QString::number(++m_number),
        QString::fromLatin1(time.data(), ClockText::Size),
        word(frame.direction == BusFrame::Received ? LINWords::Received : LINWords::Send),
        hex(identifier) + QLatin1Char('[') + hex(calcPID(identifier)) + QLatin1Char(']'),
        QString::number(length),
        QString::fromLatin1(data.data(), 3 * length),
        hex(frame.checksum),
        stateText(frame.linState),
    };
    putText(cells.join(QLatin1Char(',')));
    putLineEnd();
}

} // namespace

bool LinCsvFormat::recognises(std::string_view head)
{
    const std::string_view mark = CaptureLayout::ByteOrderMark;
    head.remove_prefix(head.substr(0, mark.size()) == mark ? mark.size() : 0);
    const std::string_view line = head.substr(0, head.find('\n'));
    return line.substr(0, 4) == "No.," && isTitles(line);
}

std::unique_ptr<FrameReader> LinCsvFormat::reader(ByteInput &in, const ReadOptions &options, Findings &findings)
{
    return std::make_unique<Reader>(in, options, findings);
}

std::unique_ptr<FrameWriter> LinCsvFormat::writer(ByteOutput &out, const WriteOptions &options, Findings &findings)
{
    return std::make_unique<Writer>(out, options, findings);
}
