#include "adapter/ConfigValue.h"

#include <algorithm>
#include <charconv>

namespace va {

namespace {

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
    if (const auto *number = std::get_if<std::uint64_t>(&value.value)) {
        return *number;
    }
    const auto *text = std::get_if<std::string>(&value.value);
    const bool isHex = text != nullptr && (text->compare(0, 2, "0x") == 0 || text->compare(0, 2, "0X") == 0);
    return isHex ? parsedHex(std::string_view(*text).substr(2)) : std::nullopt;
}

std::optional<std::vector<std::uint8_t>> parsedPairs(std::string digits)
{
    digits.erase(std::remove(digits.begin(), digits.end(), ' '), digits.end());
    std::vector<std::uint8_t> bytes;
    for (std::size_t at = 0; at < digits.size(); at += 2) {
        const std::string_view pair = std::string_view(digits).substr(at, 2);
        const std::optional<std::uint64_t> byte = parsedHex(pair);
        if (pair.size() != 2 || !byte) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<std::uint8_t>(*byte));
    }
    return bytes;
}

} // namespace

ConfigValue::ConfigValue(const JsonValue &value, std::string path)
    : m_value(&value)
    , m_path(std::move(path))
{
}

bool ConfigValue::isObject() const
{
    return std::holds_alternative<JsonValue::Object>(m_value->value);
}

void ConfigValue::read(const std::vector<ConfigKey> &keys) const
{
    failIf(!isObject(), "must be an object");
    for (const auto &[name, member] : std::get<JsonValue::Object>(m_value->value)) {
        const auto isNamed = [&name = name](const ConfigKey &key) {
            return key.name == name;
        };
        if (std::none_of(keys.begin(), keys.end(), isNamed)) {
            ConfigValue(member, pathOf(name)).fail("unknown key");
        }
    }
    for (const ConfigKey &key : keys) {
        if (const JsonValue *member = find(key.name)) {
            key.read(ConfigValue(*member, pathOf(key.name)));
        } else if (key.isRequired) {
            throw ConfigError{m_value->line, pathOf(key.name), "missing"};
        }
    }
}

bool ConfigValue::flag() const
{
    const auto *flag = std::get_if<bool>(&m_value->value);
    failIf(flag == nullptr, "must be true or false");
    return *flag;
}

std::uint64_t ConfigValue::integer(Range range) const
{
    const std::optional<std::uint64_t> number = wholeNumber(*m_value);
    if (!number || !contains(range, *number)) {
        fail("must be a whole number from " + described(range));
    }
    return *number;
}

std::size_t ConfigValue::choice(const std::vector<const char *> &texts) const
{
    std::string allowed;
    const auto *given = std::get_if<std::string>(&m_value->value);
    for (std::size_t position = 0; position < texts.size(); ++position) {
        if (given != nullptr && *given == texts[position]) {
            return position;
        }
        allowed += std::string(allowed.empty() ? "" : ", ") + "\"" + texts[position] + "\"";
    }
    fail("must be one of " + allowed);
}

std::string ConfigValue::text(Range length) const
{
    const auto *given = std::get_if<std::string>(&m_value->value);
    const auto isPrintable = [](char c) {
        return c >= 0x20 && c <= 0x7E;
    };
    if (given == nullptr || !contains(length, given->size()) ||
        !std::all_of(given->begin(), given->end(), isPrintable)) {
        fail("must be a text of " + described(length) + " printable ASCII characters");
    }
    return *given;
}

std::vector<std::uint8_t> ConfigValue::bytes(Range count) const
{
    std::optional<std::vector<std::uint8_t>> result;
    if (const auto *pairs = std::get_if<std::string>(&m_value->value)) {
        result = parsedPairs(*pairs);
    } else {
        result.emplace();
        for (const ConfigValue &item : items({0, 64})) {
            result->push_back(static_cast<std::uint8_t>(item.integer({0, 0xFF})));
        }
    }
    if (!result || !contains(count, result->size())) {
        fail("must be " + described(count) + " bytes: a text of hexadecimal pairs or an array");
    }
    return *result;
}

std::vector<ConfigValue> ConfigValue::items(Range count) const
{
    const auto *array = std::get_if<JsonValue::Array>(&m_value->value);
    if (array == nullptr || !contains(count, array->size())) {
        fail("must be an array of " + described(count) + " entries");
    }
    std::vector<ConfigValue> result;
    for (const JsonValue &item : *array) {
        result.emplace_back(item, m_path + "[" + std::to_string(result.size()) + "]");
    }
    return result;
}

void ConfigValue::fail(const std::string &problem) const
{
    throw ConfigError{m_value->line, m_path, problem};
}

void ConfigValue::failIf(bool isWrong, const char *problem) const
{
    if (isWrong) {
        fail(problem);
    }
}

const JsonValue *ConfigValue::find(std::string_view key) const
{
    const auto *members = std::get_if<JsonValue::Object>(&m_value->value);
    if (members == nullptr) {
        return nullptr;
    }
    const auto found =
        std::find_if(members->begin(), members->end(), [key](const auto &member) { return member.first == key; });
    return found == members->end() ? nullptr : &found->second;
}

std::string ConfigValue::pathOf(std::string_view key) const
{
    return (m_path.empty() ? m_path : m_path + ".") + std::string(key);
}

} // namespace va
