#pragma once

#include "adapter/ConfigError.h"
#include "adapter/JsonTree.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace va {

/// Thrown while a configuration is read; never leaves readConfig().
struct ConfigFailure
{
    ConfigError error;
};

/// A whole number in a range, both ends allowed.
struct Range
{
    std::uint64_t low;
    std::uint64_t high;
};

/// One JSON object under its path, read key by key. Every operation throws ConfigFailure on what it does not accept.
/// Whole numbers may be written as a JSON number or as a text in hexadecimal ("0x1C").
class ConfigSection
{
public:
    /// Refuses a value that is not an object, or an object with keys that are not in known.
    ConfigSection(const JsonValue &value, std::string path, std::initializer_list<const char *> known);

    bool has(const char *key) const { return find(key) != nullptr; }
    bool flag(const char *key, bool fallback) const;
    std::uint64_t integer(const char *key, Range range) const;
    std::uint64_t integer(const char *key, Range range, std::uint64_t fallback) const;
    /// One of the texts; answers its position.
    std::size_t choice(const char *key, std::initializer_list<const char *> texts, std::size_t fallback) const;
    /// Printable ASCII, minLength to maxLength characters.
    std::string text(const char *key, Range length) const;
    std::string text(const char *key, Range length, const char *fallback) const;
    /// Bytes as a text of hexadecimal pairs ("01 A2") or as an array of numbers.
    std::vector<std::uint8_t> bytes(const char *key, Range count) const;
    /// An array of whole numbers; empty without the key.
    std::vector<std::uint64_t> integers(const char *key, Range count, Range range) const;
    /// The items of an array, each with its path; empty without the key.
    std::vector<std::pair<const JsonValue *, std::string>> items(const char *key, Range count) const;
    /// The value under a key that is present.
    const JsonValue &value(const char *key) const;
    std::string pathOf(const char *key) const;

    /// Refuses the value under the key (or its absence).
    [[noreturn]] void fail(const char *key, const std::string &problem) const;

private:
    const JsonValue *find(const char *key) const;

    std::string m_path;
    int m_line;
    const JsonValue::Object *m_members = nullptr;
};

} // namespace va
