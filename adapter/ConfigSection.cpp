#include "adapter/ConfigSection.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>
#include <string_view>

namespace va {

namespace {

std::string joined(const std::string &path, const std::string &key)
{
    return path.empty() ? key : path + "." + key;
}

std::string described(Range range)
{
    return range.low == range.high ? std::to_string(range.low)
                                   : std::to_string(range.low) + " to " + std::to_string(range.high);
}

bool contains(Range range, std::uint64_t number)
{
    return range.low <= number && number <= range.high;
}

std::optional<std::uint64_t> parsedHex(std::string_view digits)
{
    std::uint64_t number = 0;
    const char *end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, number, 16);
    const bool whole = !digits.empty() && result.ec == std::errc() && result.ptr == end;
    return whole ? std::optional<std::uint64_t>(number) : std::nullopt;
}

std::optional<std::uint64_t> wholeNumber(const JsonValue &value)
{
    if (const auto *integer = std::get_if<JsonValue::Integer>(&value.value)) {
        return integer->negative ? std::nullopt : std::optional<std::uint64_t>(integer->magnitude);
    }
    if (const auto *text = std::get_if<std::string>(&value.value)) {
        if (text->compare(0, 2, "0x") == 0 || text->compare(0, 2, "0X") == 0) {
            return parsedHex(std::string_view(*text).substr(2));
        }
    }
    return std::nullopt;
}

std::optional<std::vector<std::uint8_t>> parsedPairs(const std::string &text)
{
    std::string digits;
    std::copy_if(text.begin(), text.end(), std::back_inserter(digits), [](char c) { return c != ' '; });
    if (digits.size() % 2 != 0) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> bytes;
    for (std::size_t at = 0; at < digits.size(); at += 2) {
        const std::optional<std::uint64_t> byte = parsedHex(std::string_view(digits).substr(at, 2));
        if (!byte) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<std::uint8_t>(*byte));
    }
    return bytes;
}

} // namespace

ConfigSection::ConfigSection(const JsonValue &value, std::string path, std::initializer_list<const char *> known)
    : m_path(std::move(path))
    , m_line(value.line)
    , m_members(std::get_if<JsonValue::Object>(&value.value))
{
    if (m_members == nullptr) {
        throw ConfigFailure{{m_line, m_path, "must be an object"}};
    }
    for (const auto &[key, member] : *m_members) {
        if (std::find(known.begin(), known.end(), key) == known.end()) {
            throw ConfigFailure{{member.line, joined(m_path, key), "unknown key"}};
        }
    }
}

bool ConfigSection::flag(const char *key, bool fallback) const
{
    const JsonValue *found = find(key);
    if (found == nullptr) {
        return fallback;
    }
    const auto *flag = std::get_if<bool>(&found->value);
    if (flag == nullptr) {
        fail(key, "must be true or false");
    }
    return *flag;
}

std::uint64_t ConfigSection::integer(const char *key, Range range) const
{
    const std::optional<std::uint64_t> number = wholeNumber(value(key));
    if (!number || !contains(range, *number)) {
        fail(key, "must be a whole number from " + described(range));
    }
    return *number;
}

std::uint64_t ConfigSection::integer(const char *key, Range range, std::uint64_t fallback) const
{
    return has(key) ? integer(key, range) : fallback;
}

std::size_t ConfigSection::choice(const char *key, std::initializer_list<const char *> texts,
                                  std::size_t fallback) const
{
    if (!has(key)) {
        return fallback;
    }
    std::string allowed;
    const auto *given = std::get_if<std::string>(&value(key).value);
    for (const auto *text = texts.begin(); text != texts.end(); ++text) {
        if (given != nullptr && *given == *text) {
            return static_cast<std::size_t>(text - texts.begin());
        }
        allowed += std::string(allowed.empty() ? "" : ", ") + "\"" + *text + "\"";
    }
    fail(key, "must be one of " + allowed);
}

std::string ConfigSection::text(const char *key, Range length) const
{
    const auto *given = std::get_if<std::string>(&value(key).value);
    const auto isPrintable = [](char c) {
        return c >= 0x20 && c <= 0x7E;
    };
    if (given == nullptr || !contains(length, given->size()) ||
        !std::all_of(given->begin(), given->end(), isPrintable)) {
        fail(key, "must be a text of " + described(length) + " printable ASCII characters");
    }
    return *given;
}

std::string ConfigSection::text(const char *key, Range length, const char *fallback) const
{
    return has(key) ? text(key, length) : std::string(fallback);
}

std::vector<std::uint8_t> ConfigSection::bytes(const char *key, Range count) const
{
    const std::string expected = "must be " + described(count) + " bytes: a text of hexadecimal pairs or an array";
    std::vector<std::uint8_t> result;
    if (const auto *pairs = std::get_if<std::string>(&value(key).value)) {
        std::optional<std::vector<std::uint8_t>> parsed = parsedPairs(*pairs);
        if (!parsed) {
            fail(key, expected);
        }
        result = std::move(*parsed);
    } else {
        for (const std::uint64_t byte : integers(key, {0, 64}, {0, 0xFF})) {
            result.push_back(static_cast<std::uint8_t>(byte));
        }
    }
    if (!contains(count, result.size())) {
        fail(key, expected);
    }
    return result;
}

std::vector<std::uint64_t> ConfigSection::integers(const char *key, Range count, Range range) const
{
    std::vector<std::uint64_t> numbers;
    for (const auto &[item, path] : items(key, count)) {
        const std::optional<std::uint64_t> number = wholeNumber(*item);
        if (!number || !contains(range, *number)) {
            throw ConfigFailure{{item->line, path, "must be a whole number from " + described(range)}};
        }
        numbers.push_back(*number);
    }
    return numbers;
}

std::vector<std::pair<const JsonValue *, std::string>> ConfigSection::items(const char *key, Range count) const
{
    std::vector<std::pair<const JsonValue *, std::string>> result;
    if (!has(key)) {
        return result;
    }
    const auto *array = std::get_if<JsonValue::Array>(&value(key).value);
    if (array == nullptr || !contains(count, array->size())) {
        fail(key, "must be an array of " + described(count) + " entries");
    }
    for (const JsonValue &item : *array) {
        result.emplace_back(&item, pathOf(key) + "[" + std::to_string(result.size()) + "]");
    }
    return result;
}

const JsonValue &ConfigSection::value(const char *key) const
{
    const JsonValue *found = find(key);
    if (found == nullptr) {
        fail(key, "missing");
    }
    return *found;
}

std::string ConfigSection::pathOf(const char *key) const
{
    return joined(m_path, key);
}

void ConfigSection::fail(const char *key, const std::string &problem) const
{
    const JsonValue *found = find(key);
    throw ConfigFailure{{found == nullptr ? m_line : found->line, pathOf(key), problem}};
}

const JsonValue *ConfigSection::find(const char *key) const
{
    const auto found = std::find_if(m_members->begin(), m_members->end(),
                                    [key](const JsonValue::Member &member) { return member.first == key; });
    return found == m_members->end() ? nullptr : &found->second;
}

} // namespace va
