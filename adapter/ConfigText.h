#pragma once

#include "adapter/ConfigError.h"

#include <cstddef>
#include <string>
#include <variant>

namespace va {

/// Larger files are refused without being read.
constexpr std::size_t MaxConfigFileSize = std::size_t{1024} * 1024;

/// There is no file under the path.
struct NoConfigFile
{
};
using ConfigText = std::variant<std::string, NoConfigFile, ConfigError>;

/// The text of a configuration file. An error for one that is too large, cannot be read, or is no regular file: a pipe
/// or a device could block for ever.
ConfigText readConfigText(const std::string &path);

} // namespace va
