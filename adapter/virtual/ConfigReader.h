#pragma once

#include "adapter/ConfigError.h"
#include "adapter/ConfigText.h"
#include "adapter/virtual/AdapterConfig.h"

#include <cstddef>
#include <string>
#include <variant>

namespace va {

/// Reads a configuration: strict about unknown keys, types and ranges. docs/virtual-adapter.md lists the keys.
std::variant<AdapterConfig, ConfigError> readConfig(const std::string &text);

constexpr const char *ConfigFileName = "virtual-adapter.json";
struct LoadedConfig
{
    AdapterConfig config;
    std::string complaint; ///< one line without the line end; empty when all is well
};

/// Reads the file. Without one the built-in configuration is used silently; with a bad one it is used and a complaint
/// names the file, the line, the key and what is wrong.
LoadedConfig loadConfig(const std::string &path);

/// The configuration used when there is no file, or a bad one.
AdapterConfig builtInConfig();
/// Its text.
const std::string &builtInConfigText();

} // namespace va
