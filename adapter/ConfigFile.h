#pragma once

#include "adapter/AdapterConfig.h"

#include <cstddef>
#include <string>

namespace va {

constexpr const char *ConfigFileName = "virtual-adapter.json";
/// Larger files are refused without being read.
constexpr std::size_t MaxConfigFileSize = std::size_t{1024} * 1024;

struct LoadedConfig
{
    AdapterConfig config;
    std::string complaint; ///< one line without the line end; empty when all is well
};

/// Reads the file. Without one the built-in configuration is used silently; with a bad one it is used and a complaint
/// names the file, the line, the key and what is wrong.
LoadedConfig loadConfig(const std::string &path);

} // namespace va
