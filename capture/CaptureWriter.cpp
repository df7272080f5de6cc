#include "capture/CaptureWriter.h"

#include "device/SaveTarget.h"

#include <QSaveFile>
#include <QtEndian>
#include <QTextCodec>

#include <algorithm>
#include <cstring>
#include <memory>

namespace {

constexpr std::size_t PieceSize = 1U << 20U;

char *putBytes(char *to, const void *bytes, std::size_t size)
{
    std::memcpy(to, bytes, size);
    return to + size;
}

std::size_t sizeOf(const QByteArray &bytes)
{
    return static_cast<std::size_t>(bytes.size());
}

} // namespace

/// Collects bytes and hands them on in large pieces. After a write that failed it takes bytes and drops them.
class CapturePieces
{
public:
    explicit CapturePieces(QIODevice &out)
        : m_out(out)
    {
    }

    bool isGood() const { return m_good; }

    /// A place for size bytes; say how many were used with taken().
    char *room(std::size_t size)
    {
        if (m_used + size > m_capacity) {
            makeRoom(size);
        }
        return m_buffer.get() + m_used;
    }
    void taken(const char *end) { m_used = static_cast<std::size_t>(end - m_buffer.get()); }

    void write(const void *bytes, std::size_t size) { taken(putBytes(room(size), bytes, size)); }
    void write(const QByteArray &bytes) { write(bytes.constData(), sizeOf(bytes)); }
    /// A record of zeros, to be filled in where it stands before anything follows.
    template<typename Record>
    Record *newRecord()
    {
        auto *record = new (room(sizeof(Record))) Record{};
        m_used += sizeof(Record);
        return record;
    }

    /// isGood() says whether all was written.
    void flush()
    {
        const auto size = static_cast<qint64>(m_used);
        m_good = m_good && m_out.write(m_buffer.get(), size) == size;
        m_used = 0;
    }

private:
    void makeRoom(std::size_t size)
    {
        flush();
        if (size > m_capacity) {
            m_capacity = size;
            m_buffer.reset(new char[size]);
        }
    }

    QIODevice &m_out;
    std::size_t m_capacity = PieceSize;
    std::unique_ptr<char[]> m_buffer{new char[PieceSize]};
    std::size_t m_used = 0;
    bool m_good = true;
};

namespace {

QByteArray toBytes(std::string_view text)
{
    return {text.data(), static_cast<int>(text.size())};
}

QString titleLine(const CaptureFormat &format, const FrameLabels &labels)
{
    const QLatin1String separator(format.titleSeparator);
    QString line;
    for (const QString &title : labels.titles) {
        line += title + separator;
    }
    if (!format.isLastSeparated) {
        line.chop(separator.size());
    }
    return line;
}

/// put() is called for each of the rows with its number, as long as all is well.
template<typename Put>
void putRows(CapturePieces &out, const CaptureRows &rows, Put put)
{
    for (int i = rows.first; i < rows.first + rows.count && out.isGood(); ++i) {
        put(rows.store.at(i), static_cast<quint64>(i) + 1);
    }
}

void writeHeader(CapturePieces &out, std::string_view text)
{
    out.write(toBytes(text).leftJustified(CaptureLayout::HeaderSize, '\0'));
}

quint8 receivedMark(const FrameView &frame)
{
    return frame.isReceived() ? CaptureLayout::ReceivedMark : 0;
}

} // namespace

QTextCodec *captureCodec()
{
    return captureCodec(QTextCodec::codecForLocale());
}

QTextCodec *captureCodec(QTextCodec *local)
{
    const QString ascii = QStringLiteral("0x1A, ");
    const QString chinese = QStringLiteral("\u53d1\u9001\u6210\u529f"); // sent successfully
    // Windows' own encoding says yes to canEncode() whatever it is asked, and writes question marks.
    if (local != nullptr && local->toUnicode(local->fromUnicode(chinese)) == chinese &&
        local->fromUnicode(ascii) == ascii.toLatin1()) {
        return local;
    }
    return QTextCodec::codecForName("UTF-8");
}

QByteArray CaptureTextStyle::encoded(const QString &text) const
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader); // no byte order mark
    return codec->fromUnicode(text.constData(), text.size(), &state);
}

CaptureLines::Piece::Piece(const QByteArray &bytes)
    : m_bytes(bytes.begin(), bytes.end())
    , m_size(m_bytes.size())
{
    m_bytes.resize((m_size + Step - 1) / Step * Step);
}

CaptureLines::CaptureLines(const FrameLabels &labels, const QByteArray &separator, bool isLastSeparated,
                           const CaptureTextStyle &style)
    : m_style(style)
    , m_separatorText(separator)
    , m_separator(separator)
    , m_end(isLastSeparated ? separator + style.lineEnd : style.lineEnd)
    , m_time(separator)
{
    std::size_t longest = 0;
    const auto piece = [&longest](const QByteArray &bytes) {
        longest = std::max(longest, static_cast<std::size_t>(bytes.size()));
        return Piece(bytes);
    };
    const auto word = [&](FrameLabel label) {
        return style.encoded(labels.word(label)) + separator;
    };
    for (const quint8 value : {FrameHead::Received, FrameHead::SendSuccess, FrameHead::SendFailure}) {
        FrameHead frame;
        frame.direction = value;
        const QByteArray direction = word(directionLabel(frame));
        m_directions[directionIndex(frame)] = {piece(separator + direction),
                                               piece(separator + word(FrameLabel::None) + direction)};
    }
    for (unsigned kind = 0; kind < m_kinds.size(); ++kind) {
        FrameHead frame;
        frame.protocol = static_cast<quint8>(kind / 4);
        frame.remote = kind >> 1U & 1U;
        frame.extended = kind & 1U;
        m_kinds[kindIndex(frame)] =
            piece(separator + word(protocolLabel(frame)) + word(formatLabel(frame)) + word(typeLabel(frame)));
    }
    for (std::size_t length = 0; length < m_lengths.size(); ++length) {
        m_lengths[length] = Piece("0x" + QByteArray::number(static_cast<uint>(length), 16).toUpper() + separator);
    }
    m_fixedSize = FrameBytes::MaxDecimal + FrameBytes::MaxTimeStamp + 2 * longest + 2 * FrameBytes::MaxHexNumber +
                  3 * m_separator.size() + m_end.size() + Piece::Step;
}

std::size_t CaptureLines::maxSize(const FrameView &frame)
{
    if (m_timeText != *frame.systemTime) {
        m_timeText = *frame.systemTime;
        m_time = Piece(m_separatorText + m_style.encoded(m_timeText));
    }
    return maxSizeWithoutTime(frame) + m_time.size();
}

char *CaptureLines::put(char *to, quint64 number, const FrameView &frame) const
{
    to = FrameBytes::putDecimal(to, number);
    to = m_time.put(to);
    return putBehindTime(to, frame, frame.isReceived());
}

QByteArray captureTextHead(const CaptureFormat &format, const FrameLabels &labels, const CaptureTextStyle &style)
{
    return toBytes(CaptureLayout::OwnHeader) + style.lineEnd + style.encoded(titleLine(format, labels)) + style.lineEnd;
}

void writeText(CapturePieces &out, const CaptureFormat &format, const CaptureRows &rows)
{
    const CaptureTextStyle &style = rows.style;
    CaptureLines lines(rows.labels, format.separator, format.isLastSeparated, style);
    out.write(captureTextHead(format, rows.labels, style));
    putRows(out, rows, [&](const FrameView &frame, quint64 number) {
        char *to = out.room(lines.maxSize(frame));
        out.taken(lines.put(to, number, frame));
    });
    out.write(style.lineEnd);
}

void writeCan(CapturePieces &out, const CaptureFormat & /*format*/, const CaptureRows &rows)
{
    writeHeader(out, CaptureLayout::CanHeader);
    putRows(out, rows, [&](const FrameView &frame, quint64 /*number*/) {
        auto *record = out.newRecord<VCI_CAN_OBJ>();
        record->ID = qToLittleEndian<quint32>(frame.id);
        record->TimeStamp = qToLittleEndian(frame.timeStamp);
        record->SendType = receivedMark(frame);
        record->RemoteFlag = frame.remote;
        record->ExternFlag = frame.extended;
        record->DataLen = static_cast<quint8>(std::min<int>(frame.size, sizeof record->Data));
        std::copy_n(frame.data, record->DataLen, record->Data);
    });
}

void writeCanFd(CapturePieces &out, const CaptureFormat & /*format*/, const CaptureRows &rows)
{
    writeHeader(out, CaptureLayout::OwnHeader);
    putRows(out, rows, [&](const FrameView &frame, quint64 /*number*/) {
        auto *record = out.newRecord<CaptureLayout::CanFdRecord>();
        record->id = qToLittleEndian<quint32>(frame.id);
        record->timeStamp = qToLittleEndian(frame.timeStamp);
        record->protocol = frame.protocol;
        record->received = receivedMark(frame);
        record->remote = frame.remote;
        record->extended = frame.extended;
        record->length = static_cast<quint8>(std::min(frame.size, CaptureFrame::MaxLength));
        // The whole payload follows, also where it is longer than the length byte can say.
        out.write(frame.data, static_cast<std::size_t>(frame.size));
    });
}

bool writeCapture(QIODevice &out, const CaptureFormat &format, const CaptureRows &rows)
{
    Q_ASSERT(rows.first >= 0 && rows.count >= 0 && rows.count <= rows.store.size() - rows.first);
    CapturePieces pieces(out);
    format.write(pieces, format, rows);
    pieces.flush();
    return pieces.isGood();
}

bool saveCapture(const QString &path, const FrameStore &store, int first, int count, const FrameLabels &labels,
                 const CaptureTextStyle &style)
{
    const CaptureFormat *format = captureFormat(path);
    if (format == nullptr) {
        return false;
    }
    QSaveFile file(path);
    // Without the flush, a file smaller than the device's buffer would be taken for saved when the disk is full.
    return openForSaving(file) && writeCapture(file, *format, {store, first, count, labels, style}) && file.flush() &&
           file.commit();
}
