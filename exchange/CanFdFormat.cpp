#include "exchange/CanFdFormat.h"

#include "capture/CaptureFormat.h"
#include "capture/FrameRecord.h"
#include "device/FrameIdentifier.h"
#include "exchange/ByteInput.h"
#include "exchange/ByteOutput.h"
#include "exchange/Findings.h"
#include "exchange/FrameLosses.h"
#include "exchange/OwnRecords.h"

#include <QCoreApplication>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <optional>

namespace {

using CaptureLayout::CanFdRecord;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(CanFdFormat)
};

constexpr int MaxClassic = 8;
/// So many zeros in a row are a hole that a file system left, not frames.
constexpr std::size_t HoleSize = 4096;
/// So many records that follow each other well are taken for records.
constexpr int GoodChain = 4;
constexpr std::size_t MaxRecord = sizeof(CanFdRecord) + BusFrame::MaxLength;

CanFdRecord recordAt(std::string_view bytes, std::size_t place)
{
    CanFdRecord record;
    std::memcpy(&record, bytes.data() + place, sizeof record);
    record.id = qFromLittleEndian(record.id);
    record.timeStamp = qFromLittleEndian(record.timeStamp);
    return record;
}

bool isFrame(const CanFdRecord &record)
{
    const int longest = (record.protocol & 3U) == FrameRecord::CAN ? MaxClassic : BusFrame::MaxLength;
    return record.length <= longest &&
           OwnRecords::isIdentifier(record.id & MaxExtendedFrameId, (record.extended & 1U) != 0);
}

bool isAsWritten(const CanFdRecord &record)
{
    return isFrame(record) && record.id <= MaxExtendedFrameId && record.protocol <= FrameRecord::CANFDSpeed &&
           (record.received == 0 || record.received == CaptureLayout::ReceivedMark) && record.remote <= 1 &&
           record.extended <= 1;
}

bool isZeros(std::string_view bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return c == 0; });
}

/// Whether records as they are written follow each other from place on: GoodChain of them, or all up to the end.
bool isChain(std::string_view bytes, std::size_t place)
{
    if (bytes.size() - place < sizeof(CanFdRecord) || isZeros(bytes.substr(place, sizeof(CanFdRecord)))) {
        return false;
    }
    for (int i = 0; i < GoodChain && place < bytes.size(); ++i) {
        if (bytes.size() - place < sizeof(CanFdRecord)) {
            return false;
        }
        const CanFdRecord record = recordAt(bytes, place);
        place += sizeof record + record.length;
        if (!isAsWritten(record) || place > bytes.size()) {
            return false;
        }
    }
    return true;
}

class Reader : public FrameReader
{
public:
    Reader(ByteInput &in, Findings &findings)
        : m_in(in)
        , m_findings(findings)
    {
        m_info.format = QStringLiteral("canfd");
    }

    int read(BusFrame *frames, int room) override;

private:
    bool begin();
    void next(BusFrame &frame);
    bool isDamaged(const CanFdRecord &record);
    void findRecord();
    void add(const QString &text) { m_findings.add(Finding::Offset, m_in.offset(), text); }

    ByteInput &m_in;
    Findings &m_findings;
    bool m_hasBegun = false;
    OwnRecords::RecordTimes m_times;
};

int Reader::read(BusFrame *frames, int room)
{
    m_hasBegun = m_hasBegun || begin();
    int count = 0;
    while (m_hasBegun && count < room) {
        const bool hasHead = m_in.need(sizeof(CanFdRecord));
        if (hasHead && isDamaged(recordAt(m_in.window(), 0))) {
            findRecord();
            continue;
        }
        if (!hasHead || !m_in.need(sizeof(CanFdRecord) + recordAt(m_in.window(), 0).length)) {
            OwnRecords::reportRest(m_in, m_findings);
            break;
        }
        next(frames[count++]);
    }
    return count;
}

bool Reader::begin()
{
    using OwnRecords::Header;
    const Header header = OwnRecords::passHeader(m_in, CaptureLayout::OwnHeader, CaptureLayout::HeaderSize);
    if (header == Header::Missing) {
        add(Texts::tr("the header is missing"));
    }
    return header != Header::NotYet;
}

/// Whether no record can begin here, so that the next one has to be looked for.
bool Reader::isDamaged(const CanFdRecord &record)
{
    if (isZeros(m_in.window().substr(0, sizeof record))) {
        return m_in.need(HoleSize) && isZeros(m_in.window().substr(0, HoleSize));
    }
    if (isAsWritten(record)) {
        return false;
    }
    // Odd bits are no damage where the next record stands in its place, or the file ends there.
    const std::size_t size = sizeof record + record.length;
    const bool hasNext = m_in.need(size + sizeof record);
    const std::string_view bytes = m_in.window();
    return !isFrame(record) || (hasNext ? !isAsWritten(recordAt(bytes, size)) : bytes.size() > size);
}

/// Passes bytes up to the next place where records follow each other.
void Reader::findRecord()
{
    const qint64 begin = m_in.offset();
    bool isFound = false;
    std::size_t place = 1;
    while (!isFound) {
        const bool hasAll = m_in.need(place + GoodChain * MaxRecord);
        const std::string_view bytes = m_in.window();
        const std::size_t last = hasAll ? bytes.size() - GoodChain * MaxRecord + 1 : bytes.size();
        while (place < last && !isChain(bytes, place)) {
            ++place;
        }
        isFound = place < last;
        m_in.skip(std::min(place, bytes.size()));
        place = 0;
        if (!hasAll) {
            break;
        }
    }
    m_findings.add(Finding::Offset, begin, Texts::tr("%1 bytes that are no records").arg(m_in.offset() - begin));
}

void Reader::next(BusFrame &frame)
{
    const CanFdRecord record = recordAt(m_in.window(), 0);
    if (!isAsWritten(record)) {
        add(Texts::tr("bits are set that have no meaning"));
    }
    frame = BusFrame();
    frame.identifier = record.id & MaxExtendedFrameId;
    frame.set(BusFrame::Extended, (record.extended & 1U) != 0);
    frame.set(BusFrame::Remote, (record.remote & 1U) != 0);
    frame.set(BusFrame::Fd, (record.protocol & 3U) != FrameRecord::CAN);
    frame.set(BusFrame::BitRateSwitch, (record.protocol & 3U) > FrameRecord::CANFD);
    frame.length = record.length;
    if (!frame.is(BusFrame::Remote)) {
        std::memcpy(frame.data.data(), m_in.window().data() + sizeof record, record.length);
    }
    m_times.set(frame, record.received != 0, record.timeStamp);
    m_in.skip(sizeof record + record.length);
}

class Writer : public FrameWriter
{
public:
    Writer(ByteOutput &out, const WriteOptions &options, Findings &findings)
        : m_out(out)
        , m_losses(CanFdFormat::Holds, findings, FrameLosses::Refused::AsSent)
        , m_stamps(options.info.timeBase == CaptureInfo::SinceStart)
    {
        OwnRecords::putHeader(out, CaptureLayout::OwnHeader);
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
        CanFdRecord record;
        record.id = qToLittleEndian(frame.identifier);
        record.timeStamp = qToLittleEndian(stamp);
        record.protocol = !frame.is(BusFrame::Fd)             ? FrameRecord::CAN
                          : frame.is(BusFrame::BitRateSwitch) ? FrameRecord::CANFDSpeed
                                                              : FrameRecord::CANFD;
        record.received = frame.direction == BusFrame::Received ? CaptureLayout::ReceivedMark : 0;
        record.remote = frame.is(BusFrame::Remote) ? 1 : 0;
        record.extended = frame.is(BusFrame::Extended) ? 1 : 0;
        record.length = std::min<quint8>(frame.length, BusFrame::MaxLength);
        char *to = m_out.room(MaxRecord);
        std::memcpy(to, &record, sizeof record);
        std::memcpy(to + sizeof record, frame.data.data(), frame.data.size());
        m_out.advance(sizeof record + record.length);
    }

    ByteOutput &m_out;
    FrameLosses m_losses;
    OwnRecords::RecordStamps m_stamps;
};

} // namespace

bool CanFdFormat::recognises(std::string_view head)
{
    constexpr std::size_t Size = CaptureLayout::OwnHeader.size();
    // A line end behind the same text makes it a text capture.
    return head.substr(0, Size) == CaptureLayout::OwnHeader &&
           (head.size() == Size || (head[Size] != '\n' && head[Size] != '\r'));
}

std::unique_ptr<FrameReader> CanFdFormat::reader(ByteInput &in, const ReadOptions & /*options*/, Findings &findings)
{
    return std::make_unique<Reader>(in, findings);
}

std::unique_ptr<FrameWriter> CanFdFormat::writer(ByteOutput &out, const WriteOptions &options, Findings &findings)
{
    return std::make_unique<Writer>(out, options, findings);
}
