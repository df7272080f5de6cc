#pragma once

#include "adapter/ConfigError.h"
#include "device/AdapterRecords.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace socketcan {

/// The names of a device's interfaces by channel; empty where there is none.
using DeviceInterfaces = std::array<std::string, ChannelsPerDevice>;
/// By device index.
using InterfaceMap = std::map<std::uint8_t, DeviceInterfaces>;

constexpr const char *MapFileName = "socketcan.json";
constexpr std::size_t MaxDevices = 256;

/// Reads a mapping: strict about unknown keys, types and ranges, devices and interfaces given twice. docs/socketcan.md
/// lists the keys.
std::variant<InterfaceMap, va::ConfigError> readInterfaceMap(const std::string &text);

struct LoadedMap
{
    std::optional<InterfaceMap> map; ///< none: the interfaces are taken in the order of their names
    std::string complaint;           ///< one line without the line end; empty when all is well
};

/// The first of these files that is there. A bad one is complained of with its line, and not used, nor is another one.
LoadedMap loadInterfaceMap(const std::vector<std::string> &paths);

/// socketcan.json in the working directory, then X9CAN/socketcan.json in the user's configuration folder.
std::vector<std::string> interfaceMapPaths();

/// Two interfaces to a device, in the order given. What does not fit into MaxDevices is left out.
InterfaceMap inOrder(const std::vector<std::string> &names);

} // namespace socketcan
