#include "exchange/ByteOutput.h"
#include "exchange/CanLength.h"
#include "exchange/FindingTexts.h"
#include "exchange/TextLine.h"
#include "exchange/TimedFrameWriter.h"
#include "exchange/TrcFormat.h"
#include "exchange/TrcStart.h"

namespace {

constexpr qint64 NsPerMs = 1000000;
constexpr int MsDigits = 6; ///< of the nanoseconds in a millisecond
constexpr std::string_view LineEnd = "\r\n";

std::string_view typeOf(const BusFrame &frame)
{
    if (frame.is(BusFrame::Error)) {
        return "ER";
    }
    if (frame.is(BusFrame::Fd)) {
        const bool isPassive = frame.is(BusFrame::ErrorStateIndicator);
        return frame.is(BusFrame::BitRateSwitch) ? (isPassive ? "BI" : "FB") : (isPassive ? "FE" : "FD");
    }
    return frame.is(BusFrame::Remote) ? "RR" : "DT";
}

/// Version 2.1.
class TrcWriter : public TimedFrameWriter
{
public:
    TrcWriter(ByteOutput &out, const CaptureInfo &info, Findings &findings)
        : TimedFrameWriter(info, TrcFormat::Holds, NsPerMs, findings)
        , m_out(out)
    {
    }

private:
    void begin() override;
    void put(const BusFrame &frame) override;
    void putLine();
    void addContent(const BusFrame &frame);

    ByteOutput &m_out;
    TextLine m_line;
    quint64 m_number = 0;
};

void TrcWriter::putLine()
{
    m_line.add(LineEnd);
    m_out.put(m_line.text());
    m_line.clear();
}

void TrcWriter::begin()
{
    constexpr std::string_view Titles[] = {";$COLUMNS=N,O,T,B,I,d,R,L,D",
                                           ";",
                                           ";   Message   Time    Type    ID     Rx/Tx",
                                           ";   Number    Offset  |  Bus  [hex]  |  Reserved",
                                           ";   |         [ms]    |  |    |      |  |  Data Length Code",
                                           ";   |         |       |  |    |      |  |  |    Data [hex] ...",
                                           ";   |         |       |  |    |      |  |  |    |",
                                           ";---+-- ------+------ +- +- --+----- +- +- +--- +- -- -- -- -- -- -- --"};
    m_line.add(";$FILEVERSION=2.1");
    putLine();
    if (start() != 0) {
        m_line.add(";$STARTTIME=");
        addTrcDays(m_line, start());
        m_line.add("\r\n;   Start time: ");
        addTrcDate(m_line, start());
        putLine();
    }
    for (const std::string_view title : Titles) {
        m_line.add(title);
        putLine();
    }
}

void TrcWriter::put(const BusFrame &frame)
{
    m_line.addDecimal(++m_number, 7);
    m_line.add(' ');
    m_line.addTime(sinceStart(frame), MsDigits, 3, 13);
    m_line.add(' ');
    m_line.add(typeOf(frame));
    m_line.add(' ');
    m_line.addDecimal(frame.channel + 1U, 2);
    m_line.add(' ');
    const std::size_t column = m_line.size();
    if (frame.is(BusFrame::Error)) {
        m_line.add("       -");
        if (frame.identifier != 0 || frame.length != 0) {
            report(FindingTexts::errorDetails());
        }
    } else {
        const bool isExtended = frame.is(BusFrame::Extended);
        m_line.add(isExtended ? "" : "    ");
        m_line.addHex(frame.identifier, isExtended ? 8 : 4, '0');
    }
    m_line.padTo(column + 9);
    m_line.add(frame.direction == BusFrame::Sent ? "Tx -  " : "Rx -  ");
    addContent(frame);
    putLine();
}

/// The length code and as many bytes as it stands for.
void TrcWriter::addContent(const BusFrame &frame)
{
    const bool isError = frame.is(BusFrame::Error);
    const int code = isError ? 0 : canLengthCode(frame.length);
    const std::size_t column = m_line.size();
    m_line.addDecimal(static_cast<quint64>(code));
    if (isError || frame.is(BusFrame::Remote) || frame.length == 0) {
        return;
    }
    m_line.padTo(column + 4);
    const int length = canLengthOfCode(code);
    if (length == frame.length) {
        m_line.addBytes(frame);
        return;
    }
    report(FindingTexts::paddedLength(frame.length, length));
    BusFrame padded = frame;
    padded.length = static_cast<quint8>(length);
    m_line.addBytes(padded);
}

} // namespace

std::unique_ptr<FrameWriter> TrcFormat::writer(ByteOutput &out, const WriteOptions &options, Findings &findings)
{
    return std::make_unique<TrcWriter>(out, options.info, findings);
}
