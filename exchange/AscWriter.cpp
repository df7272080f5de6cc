#include "exchange/AscFormat.h"
#include "exchange/AscHeader.h"
#include "exchange/ByteOutput.h"
#include "exchange/CanLength.h"
#include "exchange/FindingTexts.h"
#include "exchange/TextLine.h"
#include "exchange/TimedFrameWriter.h"

namespace {

constexpr qint64 NsPerMs = 1000000;

class AscWriter : public TimedFrameWriter
{
public:
    AscWriter(ByteOutput &out, const CaptureInfo &info, Findings &findings)
        : TimedFrameWriter(info, AscFormat::Holds, NsPerMs, findings)
        , m_out(out)
    {
    }

private:
    void begin() override;
    void put(const BusFrame &frame) override;
    void end() override;
    void putLine();
    void addTime(const BusFrame &frame);
    void addClassic(const BusFrame &frame);
    void addFd(const BusFrame &frame);
    void addLin(const BusFrame &frame);
    void addIdentifier(const BusFrame &frame);

    ByteOutput &m_out;
    TextLine m_line;
};

void AscWriter::putLine()
{
    m_line.add('\n');
    m_out.put(m_line.text());
    m_line.clear();
}

void AscWriter::begin()
{
    if (start() != 0) {
        m_line.add("date ");
        addAscDate(m_line, start());
        putLine();
    }
    m_line.add("base hex  timestamps absolute\ninternal events logged");
    putLine();
    m_line.add("Begin Triggerblock");
    if (start() != 0) {
        m_line.add(' ');
        addAscDate(m_line, start());
    }
    putLine();
    m_line.add("   0.000000 Start of measurement");
    putLine();
}

void AscWriter::put(const BusFrame &frame)
{
    addTime(frame);
    if (frame.is(BusFrame::Lin)) {
        addLin(frame);
    } else if (frame.is(BusFrame::Fd) && !frame.is(BusFrame::Error)) {
        addFd(frame);
    } else {
        addClassic(frame);
    }
    putLine();
}

void AscWriter::end()
{
    m_line.add("End TriggerBlock");
    putLine();
}

/// With microseconds, as everybody writes it, and with nanoseconds where they are more.
void AscWriter::addTime(const BusFrame &frame)
{
    const qint64 time = sinceStart(frame);
    const bool hasNanoseconds = time % 1000 != 0;
    m_line.addTime(time, 9, hasNanoseconds ? 9 : 6, hasNanoseconds ? 14 : 11);
    m_line.add(' ');
}

void AscWriter::addIdentifier(const BusFrame &frame)
{
    m_line.addHex(frame.identifier);
    if (frame.is(BusFrame::Extended)) {
        m_line.add('x');
    }
}

void AscWriter::addClassic(const BusFrame &frame)
{
    m_line.addDecimal(frame.channel + 1U);
    m_line.add("  ");
    if (frame.is(BusFrame::Error)) {
        m_line.add("ErrorFrame");
        if (frame.identifier != 0 || frame.length != 0) {
            report(FindingTexts::errorDetails());
        }
        return;
    }
    const std::size_t column = m_line.size();
    addIdentifier(frame);
    m_line.padTo(column + 16);
    m_line.add(frame.direction == BusFrame::Sent ? "Tx   " : "Rx   ");
    m_line.add(frame.is(BusFrame::Remote) ? "r " : "d ");
    m_line.addHex(frame.length);
    if (!frame.is(BusFrame::Remote)) {
        m_line.addBytes(frame);
    }
}

void AscWriter::addFd(const BusFrame &frame)
{
    const bool hasSwitch = frame.is(BusFrame::BitRateSwitch);
    const bool isPassive = frame.is(BusFrame::ErrorStateIndicator);
    m_line.add("CANFD ");
    m_line.addDecimal(frame.channel + 1U, 3);
    m_line.add(frame.direction == BusFrame::Sent ? " Tx   " : " Rx   ");
    const std::size_t column = m_line.size();
    addIdentifier(frame);
    m_line.padTo(column + 43); // the message's name in a database would be here
    m_line.add(hasSwitch ? "1 " : "0 ");
    m_line.add(isPassive ? "1 " : "0 ");
    m_line.addHex(static_cast<quint32>(canLengthCode(frame.length)));
    m_line.addDecimal(frame.length, 3);
    m_line.addBytes(frame);
    m_line.add("        0    0 ");
    m_line.addHex(AscFlags::Fd | (hasSwitch ? AscFlags::BitRateSwitch : 0U) |
                      (isPassive ? AscFlags::ErrorStateIndicator : 0U),
                  8);
    m_line.add("        0        0        0        0        0");
}

void AscWriter::addLin(const BusFrame &frame)
{
    m_line.add('L');
    if (frame.channel == 0) {
        m_line.add('i');
    } else {
        m_line.addDecimal(frame.channel + 1U);
    }
    m_line.add(' ');
    const std::size_t column = m_line.size();
    m_line.addHex(frame.identifier);
    m_line.padTo(column + 16);
    if (frame.linState == BusFrame::LinError) {
        m_line.add(frame.direction == BusFrame::Sent ? "TransmErr" : "RcvError");
        if (frame.length != 0) {
            report(FindingTexts::linErrorData());
        }
        return;
    }
    const bool isWrong = frame.linState == BusFrame::WrongChecksumV1 || frame.linState == BusFrame::WrongChecksumV2;
    m_line.add(isWrong ? "CSErr " : "");
    m_line.add(frame.direction == BusFrame::Sent ? "Tx   " : "Rx   ");
    m_line.addDecimal(frame.length);
    m_line.addBytes(frame);
    if (frame.linState != BusFrame::NoLinState || frame.checksum != 0) {
        m_line.add("  checksum = ");
        m_line.addHex(frame.checksum);
    }
    if (frame.linState != BusFrame::NoLinState) {
        const bool isClassic = frame.linState == BusFrame::ChecksumV1 || frame.linState == BusFrame::WrongChecksumV1;
        m_line.add(isClassic ? "  CSM = classic" : "  CSM = enhanced");
    }
}

} // namespace

std::unique_ptr<FrameWriter> AscFormat::writer(ByteOutput &out, const WriteOptions &options, Findings &findings)
{
    return std::make_unique<AscWriter>(out, options.info, findings);
}
