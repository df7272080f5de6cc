#include "adapter/ConfigText.h"

#include <filesystem>
#include <fstream>

namespace va {

namespace {

/// Reads at most one byte more than allowed, so that a file that grows meanwhile is still found too large.
bool readText(const std::string &path, std::string &text)
{
    std::ifstream file(path, std::ios::binary);
    text.resize(MaxConfigFileSize + 1);
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return !file.bad() && (file.eof() || file.good());
}

} // namespace

ConfigText readConfigText(const std::string &path)
{
    std::error_code failure;
    const std::filesystem::file_status status = std::filesystem::status(path, failure);
    if (status.type() == std::filesystem::file_type::not_found) {
        return NoConfigFile{};
    }
    std::string text;
    if (!std::filesystem::is_regular_file(status) || !readText(path, text)) {
        return ConfigError{1, {}, "cannot be read"};
    }
    if (text.size() > MaxConfigFileSize) {
        return ConfigError{1, {}, "larger than " + std::to_string(MaxConfigFileSize) + " bytes"};
    }
    return text;
}

} // namespace va
