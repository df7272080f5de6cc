#pragma once

#include <QtGlobal>

#include <charconv>
#include <optional>
#include <string_view>

/// The fields of a line, between blanks and tabs.
class TextFields
{
public:
    explicit TextFields(std::string_view line)
        : m_rest(line)
    {
    }

    /// The next one; empty behind the last.
    std::string_view next();
    /// What next() would give.
    std::string_view peek() const { return TextFields(*this).next(); }
    /// What is behind the last field that next() gave.
    std::string_view rest() const { return m_rest; }

private:
    std::string_view m_rest;
};

/// The number without a sign that all of text is, in the base; nothing for any other text and for numbers that do not
/// fit.
template<typename Number = quint32>
std::optional<Number> wholeNumber(std::string_view text, int base = 10)
{
    Number number = 0;
    const char *end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number, base);
    const bool hasSign = !text.empty() && text.front() == '-';
    return !hasSign && result.ec == std::errc() && result.ptr == end ? std::optional<Number>(number) : std::nullopt;
}

/// A decimal number without a sign, with or without a fraction (behind a point), times 10^digits; what is finer is
/// dropped. Nothing for any other text and from 2^63 on.
std::optional<qint64> scaledDecimal(std::string_view text, int digits);

/// Whether the words are the same, ASCII letters in either case.
bool isSameWord(std::string_view a, std::string_view b);
/// Whether text begins so, ASCII letters in either case.
bool beginsWith(std::string_view text, std::string_view begin);
