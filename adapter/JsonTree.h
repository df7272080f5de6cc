#pragma once

#include "adapter/ConfigError.h"

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace va {

/// A JSON value that remembers its line.
struct JsonValue
{
    using Array = std::vector<JsonValue>;
    using Object = std::vector<std::pair<std::string, JsonValue>>;

    int line = 0; ///< of the value's key in an object, of the array for a plain item, otherwise of the value, from 1
    /// Empty for what no key takes: null, fractions and negative numbers.
    std::variant<std::monostate, bool, std::uint64_t, std::string, Array, Object> value;
};

constexpr std::size_t MaxJsonDepth = 16;
constexpr std::size_t MaxJsonValues = 100000;

/// Parses a whole text. Throws ConfigError for what is not JSON, nested deeper than MaxJsonDepth, longer than
/// MaxJsonValues values, or names a key twice in one object.
JsonValue parseJson(const std::string &text);

} // namespace va
