#pragma once

#include "adapter/AdapterConfig.h"
#include "adapter/ConfigError.h"

#include <string>
#include <variant>

namespace va {

/// Reads a configuration: strict about unknown keys, types and ranges. docs/virtual-adapter.md lists the keys.
std::variant<AdapterConfig, ConfigError> readConfig(const std::string &text);

/// The configuration used when there is no file, or a bad one.
AdapterConfig builtInConfig();
/// Its text.
const std::string &builtInConfigText();

} // namespace va
