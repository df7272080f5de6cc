#include "capture/CaptureLine.h"

#include "capture/CaptureFrames.h"
#include "capture/CaptureWords.h"
#include "capture/FrameRecord.h"

#include <QString>
#include <QTextCodec>

#include <charconv>

namespace {

constexpr quint8 NoDigit = 0xFF;

/// Value of each byte as a hexadecimal digit, or NoDigit.
constexpr auto Digits = [] {
    std::array<quint8, 256> digits{};
    for (quint8 &digit : digits) {
        digit = NoDigit;
    }
    for (quint8 value = 0; value < 16; ++value) {
        digits[static_cast<uchar>("0123456789ABCDEF"[value])] = value;
        digits[static_cast<uchar>("0123456789abcdef"[value])] = value;
    }
    return digits;
}();

bool isAscii(char c)
{
    return static_cast<uchar>(c) < 0x80;
}

/// Like text.find() for a separator that is one character, or the same one several times.
std::size_t findSeparator(std::string_view text, std::string_view separator, std::size_t from)
{
    if (separator.size() == 1) {
        return text.find(separator.front(), from);
    }
    while (from + separator.size() <= text.size()) {
        // From the window's end back to a character that is not the separator's: none can begin before or on it.
        std::size_t next = from + separator.size();
        while (next > from && text[next - 1] == separator.front()) {
            --next;
        }
        if (next == from) {
            return from;
        }
        from = next;
    }
    return std::string_view::npos;
}

/// The cells of a line that can matter: the first ones and the last ones. A line may have any number of them.
struct Cells
{
    static constexpr std::size_t Head = 8;
    static constexpr std::size_t Tail = 5;

    std::array<std::string_view, Head> head;
    std::array<std::string_view, Tail> tail; ///< a ring: cell i stands at i modulo Tail
    std::size_t count = 0;

    Cells(std::string_view line, std::string_view separator)
    {
        std::size_t begin = 0;
        for (;;) {
            const std::size_t end = findSeparator(line, separator, begin);
            add(line.substr(begin, end - begin)); // up to the line's end where there is no separator any more
            if (end == std::string_view::npos) {
                return;
            }
            begin = end + separator.size();
        }
    }

    /// n: 1 for the last cell, up to Tail and count.
    std::string_view fromEnd(std::size_t n) const { return tail[(count - n) % Tail]; }

private:
    void add(std::string_view cell)
    {
        if (count < Head) {
            head[count] = cell;
        }
        tail[count % Tail] = cell;
        ++count;
    }
};

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// An unsigned hexadecimal number of 32 bits, as QString::toUInt() takes it: blanks around, a plus sign and "0x"
/// before.
std::optional<quint32> hexNumber(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
    }
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        text.remove_prefix(2);
    }
    quint32 number = 0;
    const char *end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, number, 16);
    return error == std::errc() && behind == end ? std::optional(number) : std::nullopt;
}

/// Decodes a text piece by piece.
class TextPieces
{
public:
    TextPieces(std::string_view text, const char *encoding)
        : m_rest(text)
        , m_codec(QTextCodec::codecForName(encoding))
        , m_state(QTextCodec::IgnoreHeader)
    {
    }

    bool atEnd() const { return m_rest.empty(); }
    QString next()
    {
        const std::string_view piece = m_rest.substr(0, PieceSize);
        m_rest.remove_prefix(piece.size());
        return m_codec->toUnicode(piece.data(), static_cast<int>(piece.size()), &m_state);
    }
    /// Whether all that was decoded belongs to characters.
    bool isValid() const { return m_state.invalidChars == 0 && (!atEnd() || m_state.remainingChars == 0); }

private:
    static constexpr std::size_t PieceSize = 4096;

    std::string_view m_rest;
    QTextCodec *m_codec; ///< never null: part of the toolkit
    QTextCodec::ConverterState m_state;
};

bool isUtf8(std::string_view text)
{
    TextPieces pieces(text, "UTF-8");
    while (!pieces.atEnd() && pieces.isValid()) {
        pieces.next();
    }
    return pieces.isValid();
}

/// Collects the digits of a payload; full after 16.
class PayloadDigits
{
public:
    bool isFull() const { return m_count == 2 * CaptureLine::MaxData; }
    void take(char c)
    {
        const quint8 digit = Digits[static_cast<uchar>(c)];
        if (digit != NoDigit && !isFull()) {
            m_value = m_value << 4U | digit;
            ++m_count;
        }
    }
    /// Pairs the digits from the end: where their number is odd, the first one is a byte by itself.
    void store(CaptureLine &line) const
    {
        const std::size_t size = (m_count + 1) / 2;
        for (std::size_t i = 0; i < size; ++i) {
            line.data[i] = static_cast<uchar>(m_value >> (8 * (size - 1 - i)));
        }
        line.size = static_cast<int>(size);
    }

private:
    quint64 m_value = 0;
    std::size_t m_count = 0;
};

/// The payload of a cell: its first 16 hexadecimal digits; all other characters are passed over.
void readPayload(std::string_view cell, CaptureLine &line)
{
    PayloadDigits digits;
    std::size_t place = 0;
    while (place < cell.size() && !digits.isFull() && isAscii(cell[place])) {
        digits.take(cell[place++]);
    }
    const std::string_view rest = cell.substr(place);
    if (!rest.empty() && !digits.isFull()) {
        // A second byte of GB18030 may look like a digit.
        TextPieces pieces(rest, isUtf8(rest) ? "UTF-8" : "GB18030");
        while (!pieces.atEnd() && !digits.isFull()) {
            for (const QChar c : pieces.next()) {
                digits.take(c.unicode() < 0x80 ? static_cast<char>(c.unicode()) : ' ');
            }
        }
    }
    digits.store(line);
}

/// Whether the word says extended (true) or standard (false).
std::optional<bool> extendedFromWord(std::string_view word)
{
    const std::optional<FrameLabel> label = captureWord(word);
    if (label != FrameLabel::Standard && label != FrameLabel::Extend) {
        return std::nullopt;
    }
    return label == FrameLabel::Extend;
}

quint32 protocolFromWord(std::string_view word)
{
    const std::optional<FrameLabel> label = captureWord(word);
    if (label == FrameLabel::CanFd) {
        return FrameRecord::CANFD;
    }
    return label == FrameLabel::CanFdSpeed ? FrameRecord::CANFDSpeed : FrameRecord::CAN;
}

std::optional<CaptureLine> toLine(std::string_view id, std::string_view type, quint32 protocol, std::string_view data)
{
    const std::optional<quint32> number = hexNumber(id);
    const std::optional<bool> isExtended = extendedFromWord(type);
    if (!number || !isExtended) {
        return std::nullopt;
    }
    CaptureLine line;
    readPayload(data, line);
    line.idWord = CaptureFrame::toIdWord(*number, false, *isExtended);
    line.attributes = CaptureFrame::toAttributes(line.size, protocol);
    return line;
}

} // namespace

std::optional<CaptureLine> CaptureLine::own(std::string_view line, std::string_view separator)
{
    const Cells cells(line, separator);
    if (cells.count < Cells::Head) {
        return std::nullopt; // without a type
    }
    return toLine(cells.head[4], cells.head[7], protocolFromWord(cells.head[5]), cells.fromEnd(1));
}

std::optional<CaptureLine> CaptureLine::foreign(std::string_view line, std::string_view separator)
{
    const Cells cells(line, separator);
    if (cells.count < Cells::Tail) {
        return std::nullopt;
    }
    return toLine(cells.fromEnd(5), cells.fromEnd(3), FrameRecord::CAN, cells.fromEnd(1));
}
