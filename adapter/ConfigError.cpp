#include "adapter/ConfigError.h"

#include <cstddef>

namespace va {

namespace {

constexpr std::size_t MaxShownLength = 200;

/// What came from the file may hold anything: keep it on one line and short.
std::string shown(const std::string &text)
{
    std::string result = text.substr(0, MaxShownLength);
    for (char &character : result) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 0x20 || code == 0x7F) {
            character = '?';
        }
    }
    return text.size() > MaxShownLength ? result + "..." : result;
}

} // namespace

std::string ConfigError::message(const std::string &fileName) const
{
    std::string text = fileName + ":" + std::to_string(line) + ": ";
    if (!key.empty()) {
        text += shown(key) + ": ";
    }
    return text + shown(problem);
}

} // namespace va
