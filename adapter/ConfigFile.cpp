#include "adapter/ConfigFile.h"

#include "adapter/ConfigReader.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace va {

namespace {

constexpr const char *Consequence = "; the built-in configuration is used";

LoadedConfig refused(const std::string &path, const ConfigError &error)
{
    return {builtInConfig(), "virtual adapter: " + error.message(path) + Consequence};
}

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

LoadedConfig loadConfig(const std::string &path)
{
    std::error_code failure;
    const std::filesystem::file_status status = std::filesystem::status(path, failure);
    if (status.type() == std::filesystem::file_type::not_found) {
        return {builtInConfig(), {}};
    }
    std::string text;
    // Anything but a plain file (a pipe, a device) could block for ever.
    if (!std::filesystem::is_regular_file(status) || !readText(path, text)) {
        return refused(path, {1, {}, "cannot be read"});
    }
    if (text.size() > MaxConfigFileSize) {
        return refused(path, {1, {}, "larger than " + std::to_string(MaxConfigFileSize) + " bytes"});
    }
    std::variant<AdapterConfig, ConfigError> result = readConfig(text);
    if (const auto *error = std::get_if<ConfigError>(&result)) {
        return refused(path, *error);
    }
    return {std::get<AdapterConfig>(std::move(result)), {}};
}

} // namespace va
