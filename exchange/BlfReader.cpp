#include "exchange/BlfContainers.h"
#include "exchange/BlfFormat.h"
#include "exchange/BlfHeader.h"
#include "exchange/BlfLayout.h"
#include "exchange/BlfObject.h"
#include "exchange/ByteInput.h"
#include "exchange/Findings.h"
#include "exchange/FindingTexts.h"

#include <QtEndian>

#include <algorithm>
#include <limits>

namespace {

using namespace BlfLayout;

class BlfReader : public FrameReader
{
public:
    BlfReader(ByteInput &in, Findings &findings)
        : m_in(in)
        , m_findings(findings)
        , m_bytes(in, findings)
    {
        m_info.format = QStringLiteral("blf");
    }

    int read(BusFrame *frames, int room) override;

private:
    enum class Step { Nothing, Frame, End };

    bool readHeader();
    Step readObject(BusFrame &frame);
    Step parseObject(std::string_view object, BusFrame &frame);
    Step endOfFile();
    void setTime(BusFrame &frame, std::string_view object);
    void report(const QString &text) { m_findings.add(Finding::Offset, m_bytes.offset(), text); }

    ByteInput &m_in;
    Findings &m_findings;
    BlfContainers m_bytes;
    bool m_hasHeader = false;
    qint64 m_passed = 0; ///< bytes in which no object was found
    qint64 m_left = 0;   ///< bytes of an object that is passed over
};

int BlfReader::read(BusFrame *frames, int room)
{
    if (!m_hasHeader && !readHeader()) {
        return 0;
    }
    int count = 0;
    Step step = Step::Nothing;
    while (count < room && step != Step::End) {
        step = readObject(frames[count]);
        count += step == Step::Frame ? 1 : 0;
    }
    return count;
}

/// A damaged header is passed over like anything between objects. False when it is not there as yet.
bool BlfReader::readHeader()
{
    const bool isWhole = m_in.need(BlfHeader::MinSize);
    if (!isWhole && m_in.isGrowing()) {
        return false;
    }
    if (!isWhole || m_in.window().substr(0, FileSignature.size()) != FileSignature) {
        m_hasHeader = true;
        m_findings.add(Finding::Offset, 0, FindingTexts::damagedHeader());
        return true;
    }
    const BlfHeader header = BlfHeader::read(m_in.window().data());
    const bool isKnownSize = header.size >= BlfHeader::MinSize && header.size <= 4096;
    const std::size_t size = isKnownSize ? header.size : BlfHeader::MinSize;
    if (!m_in.need(size) && m_in.isGrowing()) {
        return false;
    }
    m_hasHeader = true;
    m_info.start = header.start;
    if (!isKnownSize) {
        m_findings.add(Finding::Offset, 4, FindingTexts::damagedHeader());
    }
    m_in.skip(std::min(size, m_in.window().size()));
    return true;
}

BlfReader::Step BlfReader::endOfFile()
{
    if (!m_bytes.isGrowing()) {
        m_passed += static_cast<qint64>(m_bytes.window().size());
        m_bytes.skip(m_bytes.window().size());
        if (m_left > 0 || m_passed > MaxPadding) {
            report(FindingTexts::cutAtEnd());
        }
        m_left = 0;
        m_passed = 0;
    }
    return Step::End;
}

BlfReader::Step BlfReader::readObject(BusFrame &frame)
{
    while (m_left > 0) {
        const auto now = std::min<qint64>(m_left, static_cast<qint64>(m_bytes.window().size()));
        m_bytes.skip(static_cast<std::size_t>(now));
        m_left -= now;
        if (m_left > 0 && !m_bytes.need(1)) {
            return endOfFile();
        }
    }
    if (!findObject(m_bytes, m_passed) || !m_bytes.need(BaseHeaderSize)) {
        return endOfFile();
    }
    if (m_passed > MaxPadding) {
        report(FindingTexts::damagedRecord());
    }
    m_passed = 0;
    const char *header = m_bytes.window().data();
    const auto size = qFromLittleEndian<quint32>(header + SizeAt);
    if (size < BaseHeaderSize || size > MaxObjectSize) {
        m_bytes.skip(ObjectSignature.size());
        m_passed = MaxPadding + 1; // so that it is told with the next one
        return Step::Nothing;
    }
    if (size > BlfContainers::MaxAtHand) {
        report(FindingTexts::otherEvent());
        m_left = size;
        return Step::Nothing;
    }
    if (!m_bytes.need(size)) {
        return endOfFile();
    }
    const Step step = parseObject(m_bytes.window().substr(0, size), frame);
    m_bytes.skip(size);
    return step;
}

BlfReader::Step BlfReader::parseObject(std::string_view object, BusFrame &frame)
{
    const std::size_t headerSize = qFromLittleEndian<quint16>(object.data() + HeaderSizeAt);
    const auto type = qFromLittleEndian<quint32>(object.data() + TypeAt);
    if (headerSize < HeaderSize || headerSize > object.size()) {
        report(FindingTexts::damagedRecord());
        return Step::Nothing;
    }
    frame = BusFrame();
    switch (BlfObject::parse(type, object.substr(headerSize), frame)) {
    case BlfObject::Content::Frame:
        setTime(frame, object);
        return Step::Frame;
    case BlfObject::Content::Request:
        report(FindingTexts::transmitRequest());
        break;
    case BlfObject::Content::BadLength:
        report(FindingTexts::wrongLength());
        break;
    case BlfObject::Content::Damaged:
        report(FindingTexts::damagedRecord());
        break;
    case BlfObject::Content::Other:
        report(FindingTexts::otherEvent());
        break;
    }
    return Step::Nothing;
}

void BlfReader::setTime(BusFrame &frame, std::string_view object)
{
    constexpr quint64 Most = std::numeric_limits<qint64>::max();
    const auto unit = qFromLittleEndian<quint32>(object.data() + TimeUnitAt);
    const quint64 tick = (unit & TenMicroseconds) != 0 ? 10000 : 1;
    const auto time = qFromLittleEndian<quint64>(object.data() + TimeAt);
    if (time > Most / tick) {
        report(FindingTexts::timeOutOfRange());
        return;
    }
    frame.time = static_cast<qint64>(time * tick);
}

} // namespace

bool BlfFormat::recognises(std::string_view head)
{
    return head.substr(0, FileSignature.size()) == FileSignature;
}

std::unique_ptr<FrameReader> BlfFormat::reader(ByteInput &in, const ReadOptions & /*options*/, Findings &findings)
{
    return std::make_unique<BlfReader>(in, findings);
}
