#include "exchange/CandumpLine.h"

#include "capture/FrameBytes.h"
#include "device/FrameIdentifier.h"
#include "exchange/TextNumbers.h"

#include <algorithm>
#include <cstring>

using TextNumbers::character;
using TextNumbers::hexDigit;

namespace {

constexpr quint32 ErrorFlag = 0x20000000; ///< in an identifier of 8 digits: an error frame
constexpr int StandardDigits = 3;
constexpr int MaxClassic = 8;
constexpr qint64 NanosecondsPerSecond = 1000000000;
constexpr quint32 BrsBit = 1; ///< of the digit behind "##"
constexpr quint32 EsiBit = 2;
constexpr quint32 FdBit = 4;

constexpr char Digits[] = "0123456789ABCDEF";

/// "(1760000001.510001)" with up to nine digits behind the point.
bool readTime(const char *&at, const char *end, qint64 &time)
{
    qint64 seconds = 0;
    qint64 part = 0;
    if (!character(at, end, '(') || !TextNumbers::decimal(at, end, seconds) || !character(at, end, '.')) {
        return false;
    }
    const char *begin = at;
    if (!TextNumbers::decimal(at, end, part) || at - begin > 9 || seconds > 9000000000) {
        return false;
    }
    if (at - begin == 6) {
        part *= 1000;
    } else {
        for (auto digits = at - begin; digits < 9; ++digits) {
            part *= 10;
        }
    }
    time = seconds * NanosecondsPerSecond + part;
    return character(at, end, ')');
}

bool readIdentifier(const char *&at, const char *end, BusFrame &frame)
{
    const char *begin = at;
    quint32 word = 0;
    if (!TextNumbers::hexadecimal(at, end, word)) {
        return false;
    }
    if (at - begin <= StandardDigits) {
        frame.identifier = word;
        return word <= MaxStandardFrameId;
    }
    if ((word & ErrorFlag) != 0) {
        frame.flags = BusFrame::Error;
        frame.identifier = word & MaxExtendedFrameId;
        return word >> 30U == 0;
    }
    frame.flags = BusFrame::Extended;
    frame.identifier = word;
    return word <= MaxExtendedFrameId;
}

/// Pairs of digits, which points may separate.
bool readSeparatedData(const char *&at, const char *end, int most, BusFrame &frame)
{
    int length = 0;
    while (end - at >= 2) {
        const int high = hexDigit(at[0]);
        const int low = hexDigit(at[1]);
        if ((high | low) < 0) {
            break;
        }
        if (length == most) {
            return false;
        }
        frame.data[static_cast<std::size_t>(length++)] = static_cast<uchar>(high << 4 | low);
        at += 2;
        if (at != end && *at == '.') {
            ++at;
        }
    }
    frame.length = static_cast<quint8>(length);
    return at == end || hexDigit(*at) == TextNumbers::NoDigit;
}

/// The same; in most lines there is nothing else up to the end.
bool readData(const char *&at, const char *end, int most, BusFrame &frame)
{
    const auto digits = static_cast<int>(end - at);
    if (digits % 2 != 0 || digits > 2 * most || !TextNumbers::hexBytes(at, digits / 2, 2, frame.data.data())) {
        frame.data = {};
        return readSeparatedData(at, end, most, frame);
    }
    frame.length = static_cast<quint8>(digits / 2);
    at = end;
    return true;
}

/// Neither error frames nor CAN FD have any.
bool canBeRemote(const BusFrame &frame)
{
    return !frame.is(BusFrame::Error) && !frame.is(BusFrame::Fd);
}

/// "R", and the length where it is there.
void readRemote(const char *&at, const char *end, BusFrame &frame)
{
    ++at;
    frame.set(BusFrame::Remote);
    if (at != end && *at >= '0' && *at <= '8') {
        frame.length = static_cast<quint8>(*at++ - '0');
    }
}

void setFd(BusFrame &frame, quint32 bits)
{
    frame.set(BusFrame::Fd);
    frame.set(BusFrame::BitRateSwitch, (bits & BrsBit) != 0);
    frame.set(BusFrame::ErrorStateIndicator, (bits & EsiBit) != 0);
}

/// What stands behind the '#'.
bool readContent(const char *&at, const char *end, BusFrame &frame)
{
    if (at != end && *at == '#') {
        ++at;
        const int bits = at != end ? hexDigit(*at++) : TextNumbers::NoDigit;
        setFd(frame, static_cast<quint32>(bits));
        return bits != TextNumbers::NoDigit && !frame.is(BusFrame::Error) &&
               readData(at, end, BusFrame::MaxLength, frame);
    }
    if (at != end && *at == 'R' && !frame.is(BusFrame::Error)) {
        readRemote(at, end, frame);
    } else if (!readData(at, end, MaxClassic, frame)) {
        return false;
    }
    if (at != end && *at == '_') { // the length code of a classic frame with 9 to 15 in it
        at += std::min<std::ptrdiff_t>(2, end - at);
    }
    return true;
}

std::string_view nextWord(const char *&at, const char *end)
{
    at = std::find_if(at, end, [](char c) { return c != ' '; });
    const char *begin = at;
    at = std::find(at, end, ' ');
    return {begin, static_cast<std::size_t>(at - begin)};
}

/// Takes " R" or " T" off the end of the line.
bool takeDirection(const char *begin, const char *&end, BusFrame &frame)
{
    if (end - begin < 2 || end[-2] != ' ' || (end[-1] != 'T' && end[-1] != 'R')) {
        return false;
    }
    frame.direction = end[-1] == 'T' ? BusFrame::Sent : BusFrame::Received;
    end -= 2;
    return true;
}

/// What is left behind the content: blanks, and the direction where blanks follow it, too.
bool readRest(const char *at, const char *end, bool hasDirection, BusFrame &frame)
{
    const std::string_view word = nextWord(at, end);
    if (word.empty()) {
        return true;
    }
    frame.direction = word == "T" ? BusFrame::Sent : BusFrame::Received;
    return !hasDirection && (word == "T" || word == "R") && nextWord(at, end).empty();
}

/// "[8]", or "[08]" of a CAN FD frame.
bool readLength(std::string_view word, int &length, bool &isFd)
{
    isFd = word.size() == 4;
    if ((word.size() != 3 && !isFd) || word.front() != '[' || word.back() != ']') {
        return false;
    }
    const char *at = word.data() + 1;
    const char *end = word.data() + word.size() - 1;
    qint64 number = 0;
    const bool isNumber = TextNumbers::decimal(at, end, number) && at == end;
    length = static_cast<int>(number);
    return isNumber && number <= (isFd ? BusFrame::MaxLength : MaxClassic);
}

bool isIdentifierWord(std::string_view word, BusFrame &frame)
{
    const char *at = word.data();
    const char *end = at + word.size();
    return (word.size() == StandardDigits || word.size() == 8) && readIdentifier(at, end, frame) && at == end;
}

} // namespace

bool CandumpLine::read(std::string_view line, BusFrame &frame)
{
    return readLog(line, frame) || readScreen(line, frame);
}

/// "(1760000001.510001) "
bool CandumpLine::readLogTime(const char *&at, const char *end)
{
    constexpr std::ptrdiff_t Size = 12 + 6 + 2;
    const char *begin = at;
    const char *digits = at + m_seconds.size();
    int micros = 0;
    if (end - at > Size && std::memcmp(at, m_seconds.data(), m_seconds.size()) == 0 && digits[6] == ')' &&
        digits[7] == ' ' && TextNumbers::sixDigitsBehindTwo(digits - 2, micros)) {
        time = m_secondsTime + qint64{micros} * 1000;
        at += Size;
        return true;
    }
    if (!readTime(at, end, time) || !character(at, end, ' ')) {
        return false;
    }
    if (end - begin > Size && begin[m_seconds.size() - 1] == '.') {
        std::copy_n(begin, m_seconds.size(), m_seconds.begin());
        m_secondsTime = time - time % NanosecondsPerSecond;
    }
    return true;
}

bool CandumpLine::readLog(std::string_view line, BusFrame &frame)
{
    frame = BusFrame();
    const char *at = line.data();
    const char *end = at + line.size();
    if (!readLogTime(at, end)) {
        return false;
    }
    name = nextWord(at, end);
    const bool hasDirection = takeDirection(at, end, frame);
    return !name.empty() && character(at, end, ' ') && readIdentifier(at, end, frame) && character(at, end, '#') &&
           readContent(at, end, frame) && (at == end || readRest(at, end, hasDirection, frame));
}

bool CandumpLine::readScreen(std::string_view line, BusFrame &frame)
{
    frame = BusFrame();
    const char *at = line.data();
    const char *end = at + line.size();
    time = 0;
    at = std::find_if(at, end, [](char c) { return c != ' '; });
    if (at != end && *at == '(' && !readTime(at, end, time)) {
        return false;
    }
    name = nextWord(at, end);
    std::string_view word = nextWord(at, end);
    const bool isSent = word == "TX";
    quint32 bits = 0;
    if (isSent || word == "RX") {
        for (word = nextWord(at, end); word == "-" || word == "B" || word == "E"; word = nextWord(at, end)) {
            bits |= word == "B" ? BrsBit : word == "E" ? EsiBit : 0U;
        }
    }
    int length = 0;
    bool isFd = false;
    if (name.empty() || !isIdentifierWord(word, frame) || !readLength(nextWord(at, end), length, isFd)) {
        return false;
    }
    if (isFd && frame.is(BusFrame::Error)) {
        return false; // there are none of CAN FD
    }
    if (isFd) {
        setFd(frame, bits);
    }
    frame.direction = isSent ? BusFrame::Sent : BusFrame::Received;
    frame.length = static_cast<quint8>(length);
    for (std::size_t i = 0; i < static_cast<std::size_t>(length); ++i) {
        word = nextWord(at, end);
        if (i == 0 && word == "remote") {
            frame.set(BusFrame::Remote);
            return canBeRemote(frame);
        }
        if (word.size() != 2 || !TextNumbers::hexBytes(word.data(), 1, 2, &frame.data[i])) {
            return false;
        }
    }
    frame.set(BusFrame::Remote, length == 0 && nextWord(at, end) == "remote");
    return !frame.is(BusFrame::Remote) || canBeRemote(frame);
}

char *putCandumpFrame(char *to, const BusFrame &frame)
{
    const bool isLong = frame.is(BusFrame::Extended) || frame.is(BusFrame::Error);
    const quint32 word = frame.identifier | (frame.is(BusFrame::Error) ? ErrorFlag : 0U);
    for (int shift = isLong ? 28 : 8; shift >= 0; shift -= 4) {
        *to++ = Digits[word >> static_cast<unsigned>(shift) & 15U];
    }
    *to++ = '#';
    if (frame.is(BusFrame::Fd)) {
        const quint32 bits = FdBit | (frame.is(BusFrame::BitRateSwitch) ? BrsBit : 0U) |
                             (frame.is(BusFrame::ErrorStateIndicator) ? EsiBit : 0U);
        *to++ = '#';
        *to++ = Digits[bits];
    }
    if (frame.is(BusFrame::Remote)) {
        *to++ = 'R';
        *to++ = static_cast<char>('0' + std::min<int>(frame.length, MaxClassic));
    } else {
        const int length = std::min<int>(frame.length, frame.is(BusFrame::Fd) ? BusFrame::MaxLength : MaxClassic);
        for (int i = 0; i < length; ++i, to += 2) {
            std::memcpy(to, &FrameBytes::HexPairs[4 * std::size_t{frame.data[static_cast<std::size_t>(i)]}], 2);
        }
    }
    if (frame.direction == BusFrame::Sent) {
        *to++ = ' ';
        *to++ = 'T';
    }
    *to++ = '\n';
    return to;
}
