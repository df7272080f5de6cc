#include "exchange/database/TextScanner.h"

#include <charconv>
#include <cmath>

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

bool isWordCharacter(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || static_cast<uchar>(c) >= 0x80;
}

std::optional<quint64> toInteger(std::string_view text)
{
    const bool isNegative = text.front() == '-';
    if (isNegative || text.front() == '+') {
        text.remove_prefix(1);
    }
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        text.remove_prefix(2);
        base = 16;
    }
    quint64 value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || end != text.data() + text.size() || (isNegative && value > quint64(1) << 63U)) {
        return std::nullopt;
    }
    return isNegative ? 0 - value : value;
}

std::optional<double> toNumber(std::string_view text)
{
    text.remove_prefix(text.front() == '+' ? 1 : 0);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

} // namespace

TextScanner::TextScanner(QByteArray text, Comments comments)
    : m_text(std::move(text))
    , m_comments(comments)
    , m_noEndFrom(m_text.size())
{
}

std::string_view TextScanner::rest() const
{
    return std::string_view(m_text.constData(), static_cast<std::size_t>(m_text.size()))
        .substr(static_cast<std::size_t>(m_at));
}

bool TextScanner::isAtEnd()
{
    skipBlanks();
    return m_at >= m_text.size();
}

/// A zero byte at the end.
char TextScanner::peek()
{
    return isAtEnd() ? '\0' : m_text.constData()[m_at];
}

void TextScanner::skipBlanks()
{
    const char *text = m_text.constData();
    for (;;) {
        while (m_at < m_text.size() && isBlank(text[m_at])) {
            ++m_at;
        }
        if (m_comments == NoComments || !skipComment()) {
            return;
        }
    }
}

bool TextScanner::skipComment()
{
    const std::string_view text = rest();
    const bool isLine = text.substr(0, 2) == "//";
    if (!isLine && text.substr(0, 2) != "/*") {
        return false;
    }
    const std::size_t end = isLine ? text.find('\n') : text.find("*/", 2);
    m_at = end == std::string_view::npos ? m_text.size() : m_at + static_cast<int>(end) + (isLine ? 1 : 2);
    return true;
}

bool TextScanner::symbol(char wanted)
{
    if (isAtEnd() || peek() != wanted) {
        return false;
    }
    ++m_at;
    return true;
}

std::optional<std::string_view> TextScanner::peekWord()
{
    skipBlanks();
    const std::string_view text = rest();
    if (text.empty() || !isWordCharacter(text[0]) || isDigit(text[0])) {
        return std::nullopt; // before a long row of digits is looked at for each of them
    }
    std::size_t size = 1;
    while (size < text.size() && isWordCharacter(text[size])) {
        ++size;
    }
    return text.substr(0, size);
}

std::optional<std::string_view> TextScanner::word()
{
    const auto found = peekWord();
    m_at += found ? static_cast<int>(found->size()) : 0;
    return found;
}

/// What may be a number: as far as its characters go, up to 100.
std::string_view TextScanner::numberText()
{
    skipBlanks();
    const std::string_view text = rest();
    std::size_t size = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
    const bool isHex = text.substr(size, 2) == "0x" || text.substr(size, 2) == "0X";
    for (; size < text.size() && size < 100; ++size) {
        const char c = text[size];
        const bool isSign = (c == '-' || c == '+') && !isHex && (text[size - 1] == 'e' || text[size - 1] == 'E');
        if (!isDigit(c) && c != '.' && c != 'e' && c != 'E' && !isSign && !(isHex && isWordCharacter(c))) {
            break;
        }
    }
    return text.substr(0, size);
}

std::optional<double> TextScanner::number()
{
    const std::string_view text = numberText();
    const auto value = text.empty() ? std::nullopt : toNumber(text);
    m_at += value ? static_cast<int>(text.size()) : 0;
    return value;
}

std::optional<quint64> TextScanner::integer()
{
    const std::string_view text = numberText();
    if (text.empty()) {
        return std::nullopt;
    }
    const std::size_t point = text.find('.');
    const bool isWhole =
        point == std::string_view::npos || text.find_first_not_of('0', point + 1) == std::string_view::npos;
    auto value = point == 0 || !isWhole ? std::nullopt : toInteger(text.substr(0, point));
    if (!value) { // 1e3
        const auto number = toNumber(text);
        if (number && std::trunc(*number) == *number && std::fabs(*number) < 9.0e18) {
            value = static_cast<quint64>(static_cast<qint64>(*number));
        }
    }
    m_at += value ? static_cast<int>(text.size()) : 0;
    return value;
}

/// Where the text's quotation mark is, npos for nowhere.
std::size_t TextScanner::endOfQuoted(Lines lines) const
{
    const std::string_view text = rest();
    if (lines == SeveralLines && m_at > m_noEndFrom) {
        return std::string_view::npos;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' && lines == OneLine) {
            break;
        }
        const bool isEscaped = i > 0 && text[i - 1] == '\\' && text.substr(i + 1, 1) != ";";
        if (text[i] == '"' && !isEscaped) {
            return i;
        }
    }
    return std::string_view::npos;
}

std::optional<std::string_view> TextScanner::quoted(Lines lines)
{
    m_openText = false;
    if (!symbol('"')) {
        return std::nullopt;
    }
    const std::string_view text = rest();
    std::size_t end = endOfQuoted(lines);
    m_openText = end == std::string_view::npos;
    if (m_openText) {
        m_noEndFrom = lines == SeveralLines ? std::min(m_noEndFrom, m_at) : m_noEndFrom;
        end = std::min(text.find('\n'), text.size());
    }
    m_at += static_cast<int>(end) + (m_openText ? 0 : 1);
    return text.substr(0, end);
}

void TextScanner::skipCharacter()
{
    m_at += m_at < m_text.size() ? 1 : 0;
    while (m_at < m_text.size() && (static_cast<uchar>(m_text.constData()[m_at]) & 0xC0U) == 0x80) {
        ++m_at; // the rest of a character beyond ASCII
    }
}

TextPlace TextScanner::place()
{
    skipBlanks();
    const char *text = m_text.constData();
    for (; m_placeAt < m_at; ++m_placeAt) {
        if (text[m_placeAt] == '\n') {
            ++m_place.line;
            m_place.column = 1;
        } else if ((static_cast<uchar>(text[m_placeAt]) & 0xC0U) != 0x80) {
            ++m_place.column;
        }
    }
    return m_place;
}

bool TextScanner::isFirstOfLine()
{
    skipBlanks();
    for (int i = m_at - 1; i >= 0; --i) {
        const char c = m_text.constData()[i];
        if (c == '\n') {
            return true;
        }
        if (!isBlank(c)) {
            return false;
        }
    }
    return true;
}
