#pragma once

#include "adapter/JsonTree.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace va {

struct ConfigKey;

/// A whole number in a range, both ends allowed.
struct Range
{
    std::uint64_t low;
    std::uint64_t high;
};

/// A value of the configuration under its path. Every reading operation throws ConfigError on what it does not accept.
class ConfigValue
{
public:
    /// value must outlive this object.
    ConfigValue(const JsonValue &value, std::string path);

    bool isObject() const;
    /// Whether this is an object with the key.
    bool has(std::string_view key) const { return find(key) != nullptr; }
    /// Reads an object by a table of its keys, in the order of the table. Keys that are not in it are refused first.
    void read(const std::vector<ConfigKey> &keys) const;

    bool flag() const;
    /// Written as a JSON number or as a text in hexadecimal ("0x1C").
    std::uint64_t integer(Range range) const;
    /// One of the texts; answers its position.
    std::size_t choice(const std::vector<const char *> &texts) const;
    /// Printable ASCII of so many characters.
    std::string text(Range length) const;
    /// Bytes as a text of hexadecimal pairs ("01 A2") or as an array of numbers.
    std::vector<std::uint8_t> bytes(Range count) const;
    /// The items of an array.
    std::vector<ConfigValue> items(Range count) const;

    [[noreturn]] void fail(const std::string &problem) const;
    void failIf(bool isWrong, const char *problem) const;

private:
    const JsonValue *find(std::string_view key) const;
    std::string pathOf(std::string_view key) const;

    const JsonValue *m_value;
    std::string m_path;
};

/// A row of the table that an object is read by. A key may stand in several rows.
struct ConfigKey
{
    std::string_view name;
    std::function<void(const ConfigValue &)> read; ///< called when the key is given
    bool isRequired = false;
};
constexpr bool Required = true;

// What a row reads into a member, which keeps its value when the key is not given.

inline auto into(bool &member)
{
    return [&member](const ConfigValue &value) {
        member = value.flag();
    };
}

inline auto into(std::string &member, Range length)
{
    return [&member, length](const ConfigValue &value) {
        member = value.text(length);
    };
}

/// The number in the file times unit.
template<class Number>
auto into(Number &member, Range range, std::uint64_t unit = 1)
{
    return [&member, range, unit](const ConfigValue &value) {
        member = static_cast<Number>(value.integer(range) * unit);
    };
}

template<class Number>
auto into(std::optional<Number> &member, Range range, std::uint64_t unit = 1)
{
    return [&member, range, unit](const ConfigValue &value) {
        into(member.emplace(), range, unit)(value);
    };
}

template<class Condition>
auto failIf(Condition isWrong, const char *problem)
{
    return [isWrong, problem](const ConfigValue &value) {
        value.failIf(isWrong(), problem);
    };
}

/// The texts stand in the order of the enumerators.
template<class Enum>
auto choiceInto(Enum &member, std::vector<const char *> texts)
{
    return [&member, texts = std::move(texts)](const ConfigValue &value) {
        member = static_cast<Enum>(value.choice(texts));
    };
}

/// One item after the other, as readItem reads it.
template<class Item, class ReadItem>
auto itemsInto(std::vector<Item> &list, Range count, ReadItem readItem)
{
    return [&list, count, readItem](const ConfigValue &value) {
        for (const ConfigValue &item : value.items(count)) {
            list.push_back(readItem(item));
        }
    };
}

} // namespace va
