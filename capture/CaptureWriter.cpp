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

char *putBytes(char *to, const QByteArray &bytes)
{
    return putBytes(to, bytes.constData(), sizeOf(bytes));
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

std::size_t directionIndex(const FrameHead &frame)
{
    return static_cast<std::size_t>(directionLabel(frame)) - static_cast<std::size_t>(FrameLabel::Received);
}

std::size_t kindIndex(const FrameHead &frame)
{
    return std::size_t{frame.protocol} * 4 + (frame.remote != 0 ? 2 : 0) + (frame.extended != 0 ? 1 : 0);
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

CaptureLines::CaptureLines(const FrameLabels &labels, const QByteArray &separator, bool isLastSeparated,
                           const CaptureTextStyle &style)
    : m_style(style)
    , m_separator(separator)
    , m_noTime(style.encoded(labels.word(FrameLabel::None)))
    , m_end(isLastSeparated ? separator + style.lineEnd : style.lineEnd)
    , m_time(separator + separator)
{
    const auto word = [&](FrameLabel label) {
        return style.encoded(labels.word(label)) + separator;
    };
    for (const quint8 direction : {FrameHead::Received, FrameHead::SendSuccess, FrameHead::SendFailure}) {
        FrameHead frame;
        frame.direction = direction;
        m_directions[directionIndex(frame)] = separator + word(directionLabel(frame));
    }
    for (unsigned kind = 0; kind < m_kinds.size(); ++kind) {
        FrameHead frame;
        frame.protocol = static_cast<quint8>(kind / 4);
        frame.remote = kind >> 1U & 1U;
        frame.extended = kind & 1U;
        m_kinds[kindIndex(frame)] =
            separator + word(protocolLabel(frame)) + word(formatLabel(frame)) + word(typeLabel(frame));
    }
    const auto longest = [](const auto &texts) {
        return sizeOf(*std::max_element(texts.begin(), texts.end(),
                                        [](const QByteArray &a, const QByteArray &b) { return a.size() < b.size(); }));
    };
    m_fixedSize = FrameBytes::MaxDecimal + std::max(FrameBytes::MaxTimeStamp, sizeOf(m_noTime)) +
                  longest(m_directions) + 2 * FrameBytes::MaxHexNumber + longest(m_kinds) + sizeOf(m_separator) +
                  sizeOf(m_end) + 1;
}

std::size_t CaptureLines::maxSize(const FrameView &frame)
{
    if (m_timeText != *frame.systemTime) {
        m_timeText = *frame.systemTime;
        m_time = m_separator + m_style.encoded(m_timeText) + m_separator;
    }
    return m_fixedSize + sizeOf(m_time) + 3 * static_cast<std::size_t>(frame.size);
}

char *CaptureLines::put(char *to, quint64 number, const FrameView &frame) const
{
    to = FrameBytes::putDecimal(to, number);
    to = putBytes(to, m_time);
    return putBehindTime(to, frame, frame.isReceived());
}

std::size_t CaptureLines::maxSize(const FrameView &frame, std::string_view time) const
{
    return m_fixedSize + 2 * sizeOf(m_separator) + time.size() + 3 * static_cast<std::size_t>(frame.size);
}

char *CaptureLines::put(char *to, quint64 number, const FrameView &frame, std::string_view time, bool hasStamp) const
{
    to = FrameBytes::putDecimal(to, number);
    to = putBytes(to, m_separator);
    to = putBytes(to, time.data(), time.size());
    to = putBytes(to, m_separator);
    return putBehindTime(to, frame, hasStamp);
}

char *CaptureLines::putBehindTime(char *to, const FrameView &frame, bool hasStamp) const
{
    to = hasStamp ? FrameBytes::putTimeStamp(to, frame.timeStamp) : putBytes(to, m_noTime);
    to = putBytes(to, m_directions[directionIndex(frame)]);
    to = FrameBytes::putHexNumber(to, frame.id);
    to = putBytes(to, m_kinds[kindIndex(frame)]);
    to = FrameBytes::putHexNumber(to, static_cast<quint32>(frame.size));
    to = putBytes(to, m_separator);
    to = FrameBytes::putPayload(to, frame.data, frame.size);
    return putBytes(to, m_end);
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
