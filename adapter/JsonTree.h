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
    using Member = std::pair<std::string, JsonValue>;
    struct Integer
    {
        std::uint64_t magnitude = 0;
        bool negative = false;
    };
    using Array = std::vector<JsonValue>;
    using Object = std::vector<Member>;

    int line = 0; ///< of the value's key in an object, otherwise of the value itself, from 1
    std::variant<std::monostate, bool, Integer, double, std::string, Array, Object> value;
};

constexpr std::size_t MaxJsonDepth = 16;
constexpr std::size_t MaxJsonValues = 100000;

/// Parses a whole text. Refuses what is not JSON, nested deeper than MaxJsonDepth, longer than MaxJsonValues values, or
/// names a key twice in one object.
std::variant<JsonValue, ConfigError> parseJson(const std::string &text);

} // namespace va
