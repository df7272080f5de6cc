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
constexpr char OwnHeader[] = "Vantora CAN Data";
constexpr std::size_t BinaryHeaderSize = 20;
constexpr char CanHeader[BinaryHeaderSize + 1] = "Zhiyuan CAN Data\0\0\0";
constexpr char CanFdHeader[BinaryHeaderSize + 1] = "Vantora CAN Data\0\0\0";
constexpr std::size_t CanFdRecordSize = 13;
constexpr int CanFdMaxLength = 64;
constexpr quint8 ReceivedMark = 0xFF;

char *putBytes(char *to, const char *bytes, std::size_t size)
{
    std::memcpy(to, bytes, size);
    return to + size;
}

char *putBytes(char *to, const QByteArray &bytes)
{
    return putBytes(to, bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

std::size_t sizeOf(const QByteArray &bytes)
{
    return static_cast<std::size_t>(bytes.size());
}

/// Collects bytes and hands them on in large pieces. After a write that failed it takes bytes and drops them.
class PieceWriter
{
public:
    explicit PieceWriter(QIODevice &out)
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

    void write(const QByteArray &bytes) { taken(putBytes(room(sizeOf(bytes)), bytes)); }

    bool finish()
    {
        flush();
        return m_good;
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

    void flush()
    {
        const auto size = static_cast<qint64>(m_used);
        m_good = m_good && m_out.write(m_buffer.get(), size) == size;
        m_used = 0;
    }

    QIODevice &m_out;
    std::size_t m_capacity = PieceSize;
    std::unique_ptr<char[]> m_buffer{new char[PieceSize]};
    std::size_t m_used = 0;
    bool m_good = true;
};

QString titleLine(CaptureFormat format, const FrameLabels &labels)
{
    QString line;
    for (int column = 0; column < FrameColumnCount; ++column) {
        if (format == CaptureFormat::Csv && column > 0) {
            line += QLatin1Char(',');
        }
        line += labels.titles[static_cast<std::size_t>(column)];
        if (format == CaptureFormat::Text) {
            line += QLatin1String("   ");
        }
    }
    return line;
}

void writeText(PieceWriter &out, CaptureFormat format, const FrameStore &store, int first, int count,
               const FrameLabels &labels, const CaptureTextStyle &style)
{
    using LastCell = CaptureLines::LastCell;
    CaptureLines lines(labels, CaptureLines::separator(format),
                       format == CaptureFormat::Csv ? LastCell::Bare : LastCell::Separated, style);
    out.write(OwnHeader + style.lineEnd);
    out.write(style.encoded(titleLine(format, labels)) + style.lineEnd);
    for (int i = first; i < first + count && out.isGood(); ++i) {
        const FrameView frame = store.at(i);
        char *to = out.room(lines.maxSize(frame));
        out.taken(lines.put(to, static_cast<quint64>(i) + 1, frame));
    }
    out.write(style.lineEnd);
}

void writeCan(PieceWriter &out, const FrameStore &store, int first, int count)
{
    out.write(QByteArray::fromRawData(CanHeader, BinaryHeaderSize));
    for (int i = first; i < first + count && out.isGood(); ++i) {
        const FrameView frame = store.at(i);
        VCI_CAN_OBJ record = {};
        record.ID = qToLittleEndian(frame.id);
        record.TimeStamp = qToLittleEndian(frame.timeStamp);
        record.SendType = frame.isReceived() ? ReceivedMark : 0;
        record.RemoteFlag = frame.remote ? 1 : 0;
        record.ExternFlag = frame.extended ? 1 : 0;
        record.DataLen =
            static_cast<quint8>(std::min<std::size_t>(static_cast<std::size_t>(frame.size), sizeof record.Data));
        std::memcpy(record.Data, frame.data, record.DataLen);
        out.taken(putBytes(out.room(sizeof record), reinterpret_cast<const char *>(&record), sizeof record));
    }
}

void writeCanFd(PieceWriter &out, const FrameStore &store, int first, int count)
{
    out.write(QByteArray::fromRawData(CanFdHeader, BinaryHeaderSize));
    for (int i = first; i < first + count && out.isGood(); ++i) {
        const FrameView frame = store.at(i);
        const auto size = static_cast<std::size_t>(frame.size);
        char *to = out.room(CanFdRecordSize + size);
        qToLittleEndian(frame.id, to);
        qToLittleEndian(frame.timeStamp, to + 4);
        to[8] = static_cast<char>(frame.protocol);
        to[9] = static_cast<char>(frame.isReceived() ? ReceivedMark : 0);
        to[10] = frame.remote ? 1 : 0;
        to[11] = frame.extended ? 1 : 0;
        to[12] = static_cast<char>(std::min(frame.size, CanFdMaxLength));
        // The whole payload follows, also where it is longer than the length byte can say.
        out.taken(putBytes(to + CanFdRecordSize, reinterpret_cast<const char *>(frame.data), size));
    }
}

std::size_t directionIndex(const FrameView &frame)
{
    return static_cast<std::size_t>(directionLabel(frame)) - static_cast<std::size_t>(FrameLabel::Received);
}

std::size_t kindIndex(std::size_t protocol, bool remote, bool extended)
{
    return protocol * 4 + (remote ? 2 : 0) + (extended ? 1 : 0);
}

std::size_t kindIndex(const FrameView &frame)
{
    return kindIndex(frame.protocol, frame.remote, frame.extended);
}

} // namespace

std::optional<CaptureFormat> captureFormat(const QString &path)
{
    const QString upper = path.toUpper();
    if (upper.endsWith(QLatin1String(".CSV"))) {
        return CaptureFormat::Csv;
    }
    if (upper.endsWith(QLatin1String(".TXT"))) {
        return CaptureFormat::Text;
    }
    if (upper.endsWith(QLatin1String(".CAN"))) {
        return CaptureFormat::Can;
    }
    if (upper.endsWith(QLatin1String(".CANFD"))) {
        return CaptureFormat::CanFd;
    }
    return std::nullopt;
}

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

QByteArray CaptureLines::separator(CaptureFormat format)
{
    return format == CaptureFormat::Text ? QByteArrayLiteral("     ") : QByteArrayLiteral(",");
}

CaptureLines::CaptureLines(const FrameLabels &labels, const QByteArray &separator, LastCell lastCell,
                           const CaptureTextStyle &style)
    : m_style(style)
    , m_separator(separator)
    , m_noTime(style.encoded(labels.word(FrameLabel::None)))
    , m_end(lastCell == LastCell::Separated ? separator + style.lineEnd : style.lineEnd)
    , m_time(separator + separator)
{
    const auto word = [&](FrameLabel label) {
        return style.encoded(labels.word(label)) + separator;
    };
    const FrameLabel directions[] = {FrameLabel::Received, FrameLabel::SendSuccess, FrameLabel::SendFailure};
    for (std::size_t i = 0; i < Directions; ++i) {
        m_directions[i] = separator + word(directions[i]);
    }
    const FrameLabel protocols[] = {FrameLabel::Can, FrameLabel::CanFd, FrameLabel::CanFdSpeed};
    for (std::size_t protocol = 0; protocol < 3; ++protocol) {
        for (const bool remote : {false, true}) {
            for (const bool extended : {false, true}) {
                m_kinds[kindIndex(protocol, remote, extended)] =
                    separator + word(protocols[protocol]) + word(remote ? FrameLabel::Remote : FrameLabel::Data) +
                    word(extended ? FrameLabel::Extend : FrameLabel::Standard);
            }
        }
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
    to = frame.isReceived() ? FrameBytes::putTimeStamp(to, frame.timeStamp) : putBytes(to, m_noTime);
    to = putBytes(to, m_directions[directionIndex(frame)]);
    to = FrameBytes::putHexNumber(to, frame.id);
    to = putBytes(to, m_kinds[kindIndex(frame)]);
    to = FrameBytes::putHexNumber(to, static_cast<quint32>(frame.size));
    to = putBytes(to, m_separator);
    to = FrameBytes::putPayload(to, frame.data, frame.size);
    return putBytes(to, m_end);
}

bool writeCapture(QIODevice &out, CaptureFormat format, const FrameStore &store, int first, int count,
                  const FrameLabels &labels, const CaptureTextStyle &style)
{
    Q_ASSERT(first >= 0 && count >= 0 && count <= store.size() - first);
    PieceWriter pieces(out);
    switch (format) {
    case CaptureFormat::Csv:
    case CaptureFormat::Text:
        writeText(pieces, format, store, first, count, labels, style);
        break;
    case CaptureFormat::Can:
        writeCan(pieces, store, first, count);
        break;
    case CaptureFormat::CanFd:
        writeCanFd(pieces, store, first, count);
        break;
    }
    return pieces.finish();
}

bool saveCapture(const QString &path, const FrameStore &store, int first, int count, const FrameLabels &labels,
                 const CaptureTextStyle &style)
{
    const std::optional<CaptureFormat> format = captureFormat(path);
    if (!format) {
        return false;
    }
    QSaveFile file(path);
    // Without the flush, a file smaller than the device's buffer would be taken for saved when the disk is full.
    return openForSaving(file) && writeCapture(file, *format, store, first, count, labels, style) && file.flush() &&
           file.commit();
}
