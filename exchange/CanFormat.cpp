#include "exchange/CanFormat.h"

#include "capture/CaptureFormat.h"
#include "device/AdapterRecords.h"
#include "exchange/ByteInput.h"
#include "exchange/ByteOutput.h"
#include "exchange/Findings.h"
#include "exchange/FrameLosses.h"
#include "exchange/OwnRecords.h"

#include <QCoreApplication>
#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace {

using CaptureLayout::OtherCanRecord;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(CanFormat)
};

constexpr int MaxClassic = 8;

bool isZero(const VCI_CAN_OBJ &record)
{
    constexpr VCI_CAN_OBJ Zero{};
    return std::memcmp(&record, &Zero, sizeof record) == 0;
}

/// So many records of zeros in a row, more than 4096 bytes, are a hole that a file system left, not frames.
constexpr std::size_t HoleRecords = 171;
constexpr std::size_t HoleSize = HoleRecords * sizeof(VCI_CAN_OBJ);

class Reader : public FrameReader
{
public:
    Reader(ByteInput &in, Findings &findings)
        : m_in(in)
        , m_findings(findings)
    {
        m_info.format = QStringLiteral("can");
    }

    int read(BusFrame *frames, int room) override;

private:
    enum class Layout : quint8 { Unknown, Own, Other };

    void begin();
    bool next(BusFrame &frame);
    bool nextOther(BusFrame &frame);
    bool take(BusFrame &frame, quint32 identifier, bool isExtended, int length, const quint8 *data);
    bool isHole();
    void add(const QString &text) { m_findings.add(Finding::Offset, m_in.offset(), text); }

    ByteInput &m_in;
    Findings &m_findings;
    Layout m_layout = Layout::Unknown;
    bool m_isWaiting = false; ///< for the rest of a record
    OwnRecords::RecordTimes m_times;
};

int Reader::read(BusFrame *frames, int room)
{
    if (m_layout == Layout::Unknown) {
        begin();
    }
    int count = 0;
    const std::size_t least = m_layout == Layout::Own ? sizeof(VCI_CAN_OBJ) : CaptureLayout::OtherRecordLeast;
    m_isWaiting = m_layout == Layout::Unknown;
    while (count < room && !m_isWaiting) {
        if (!m_in.need(least)) {
            OwnRecords::reportRest(m_in, m_findings);
            break;
        }
        const bool isFrame = m_layout == Layout::Own ? next(frames[count]) : nextOther(frames[count]);
        count += isFrame ? 1 : 0;
    }
    return count;
}

void Reader::begin()
{
    using OwnRecords::Header;
    const bool isOther = m_in.need(CaptureLayout::OtherCanHeader.size()) &&
                         m_in.window().substr(0, CaptureLayout::OtherCanHeader.size()) == CaptureLayout::OtherCanHeader;
    if (isOther) {
        m_in.skip(CaptureLayout::OtherCanHeader.size());
        m_layout = Layout::Other;
        return;
    }
    switch (OwnRecords::passHeader(m_in, CaptureLayout::CanHeader, CaptureLayout::HeaderSize)) {
    case Header::NotYet:
        return;
    case Header::Missing:
        add(Texts::tr("the header is missing"));
        break;
    case Header::Passed:
        break;
    }
    m_layout = Layout::Own;
}

/// Whether zeros as no capture has them begin here; passes them.
bool Reader::isHole()
{
    if (!m_in.need(HoleSize)) {
        return false;
    }
    const std::string_view bytes = m_in.window().substr(0, HoleSize);
    if (std::any_of(bytes.begin(), bytes.end(), [](char c) { return c != 0; })) {
        return false;
    }
    add(Texts::tr("zeros where records should be"));
    VCI_CAN_OBJ record{};
    while (m_in.need(sizeof record)) {
        std::memcpy(&record, m_in.window().data(), sizeof record);
        if (!isZero(record)) {
            break;
        }
        m_in.skip(sizeof record);
    }
    return true;
}

bool Reader::next(BusFrame &frame)
{
    VCI_CAN_OBJ record;
    std::memcpy(&record, m_in.window().data(), sizeof record);
    if (isZero(record) && isHole()) {
        return false;
    }
    const quint32 word = qFromLittleEndian(record.ID);
    const bool isOdd = word > MaxExtendedFrameId || record.RemoteFlag > 1 || record.ExternFlag > 1 ||
                       (record.SendType != 0 && record.SendType != CaptureLayout::ReceivedMark);
    if (isOdd) {
        add(Texts::tr("bits are set that have no meaning"));
    }
    frame = BusFrame();
    frame.set(BusFrame::Remote, (record.RemoteFlag & 1U) != 0);
    const bool isFrame =
        take(frame, word & MaxExtendedFrameId, (record.ExternFlag & 1U) != 0, record.DataLen, record.Data);
    if (isFrame) {
        m_times.set(frame, record.SendType != 0, qFromLittleEndian(record.TimeStamp));
    }
    m_in.skip(sizeof record);
    return isFrame;
}

bool Reader::nextOther(BusFrame &frame)
{
    OtherCanRecord record{};
    m_in.need(sizeof record);
    std::memcpy(&record, m_in.window().data(), CaptureLayout::OtherRecordLeast);
    const std::size_t whole = sizeof record + record.length;
    m_isWaiting = !m_in.need(whole) && m_in.isGrowing();
    if (m_isWaiting) {
        return false;
    }
    const std::size_t size = std::min(whole, m_in.window().size());
    std::memcpy(&record, m_in.window().data(), std::min(sizeof record, size));
    const quint32 word = qFromLittleEndian(record.idWord);
    frame = BusFrame();
    frame.set(BusFrame::Remote, (word >> 30U & 1U) != 0);
    bool isFrame = false;
    if (size < sizeof record) {
        add(Texts::tr("the last record is cut and was left out"));
    } else {
        isFrame = take(frame, word & MaxExtendedFrameId, word >> 31U != 0, record.length, record.data);
        frame.time = 0;
    }
    m_in.skip(size);
    return isFrame;
}

bool Reader::take(BusFrame &frame, quint32 identifier, bool isExtended, int length, const quint8 *data)
{
    if (!OwnRecords::isIdentifier(identifier, isExtended)) {
        add(Texts::tr("a standard frame with an identifier of more than 11 bits was left out"));
        return false;
    }
    if (length > MaxClassic) {
        add(Texts::tr("a length of more than 8 was taken as 8"));
    }
    frame.identifier = identifier;
    frame.set(BusFrame::Extended, isExtended);
    frame.length = static_cast<quint8>(std::min(length, MaxClassic));
    if (!frame.is(BusFrame::Remote)) {
        std::copy_n(data, frame.length, frame.data.begin());
    }
    return true;
}

class Writer : public FrameWriter
{
public:
    Writer(ByteOutput &out, const WriteOptions &options, Findings &findings)
        : m_out(out)
        , m_losses(CanFormat::Holds, findings, FrameLosses::Refused::AsSent)
        , m_stamps(options.info.timeBase == CaptureInfo::SinceStart)
    {
        OwnRecords::putHeader(out, CaptureLayout::CanHeader);
    }

    void write(const BusFrame *frames, int count) override
    {
        for (const BusFrame *frame = frames; frame != frames + count; ++frame) {
            const quint32 stamp = m_stamps.of(*frame);
            if (m_losses.takes(*frame)) {
                put(*frame, stamp);
            }
        }
    }
    void finish() override { m_losses.report(); }

private:
    void put(const BusFrame &frame, quint32 stamp)
    {
        VCI_CAN_OBJ record{};
        record.ID = qToLittleEndian(frame.identifier);
        record.TimeStamp = qToLittleEndian(stamp);
        record.SendType = frame.direction == BusFrame::Received ? CaptureLayout::ReceivedMark : 0;
        record.RemoteFlag = frame.is(BusFrame::Remote) ? 1 : 0;
        record.ExternFlag = frame.is(BusFrame::Extended) ? 1 : 0;
        record.DataLen = std::min<quint8>(frame.length, MaxClassic);
        std::copy_n(frame.data.begin(), record.DataLen, record.Data);
        std::memcpy(m_out.room(sizeof record), &record, sizeof record);
        m_out.advance(sizeof record);
    }

    ByteOutput &m_out;
    FrameLosses m_losses;
    OwnRecords::RecordStamps m_stamps;
};

} // namespace

bool CanFormat::recognises(std::string_view head)
{
    return head.substr(0, CaptureLayout::CanHeader.size()) == CaptureLayout::CanHeader ||
           head.substr(0, CaptureLayout::OtherCanHeader.size()) == CaptureLayout::OtherCanHeader;
}

std::unique_ptr<FrameReader> CanFormat::reader(ByteInput &in, const ReadOptions & /*options*/, Findings &findings)
{
    return std::make_unique<Reader>(in, findings);
}

std::unique_ptr<FrameWriter> CanFormat::writer(ByteOutput &out, const WriteOptions &options, Findings &findings)
{
    return std::make_unique<Writer>(out, options, findings);
}
