#include "adapter/socketcan/InterfaceMap.h"

#include "adapter/ConfigText.h"
#include "adapter/ConfigValue.h"

#include <cstdlib>
#include <set>
#include <utility>

namespace socketcan {

namespace {

using va::ConfigError;
using va::ConfigValue;

/// The kernel's limit for the name of an interface.
constexpr va::Range NameLength{1, 15};

struct Entry
{
    std::uint8_t device = 0;
    std::uint8_t channel = 0;
    std::string interface;
};

InterfaceMap readChannels(const ConfigValue &value)
{
    InterfaceMap map;
    std::set<std::string> names;
    for (const ConfigValue &item : value.items({0, MaxDevices * ChannelsPerDevice})) {
        Entry entry;
        item.read({
            {"device", va::into(entry.device, {0, MaxDevices - 1}), va::Required},
            {"channel", va::into(entry.channel, {0, ChannelsPerDevice - 1}), va::Required},
            {"interface", va::into(entry.interface, NameLength), va::Required},
        });
        std::string &name = map[entry.device].at(entry.channel);
        item.failIf(!name.empty(), "this channel has an interface already");
        item.failIf(!names.insert(entry.interface).second, "this interface has a channel already");
        name = entry.interface;
    }
    return map;
}

std::string setting(const char *name)
{
    const char *value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nothing here sets the environment
    return value == nullptr ? std::string() : std::string(value);
}

} // namespace

std::variant<InterfaceMap, ConfigError> readInterfaceMap(const std::string &text)
{
    try {
        const va::JsonValue root = va::parseJson(text);
        InterfaceMap map;
        const auto channelsInto = [&map](const ConfigValue &channels) {
            map = readChannels(channels);
        };
        ConfigValue(root, {}).read({{"channels", channelsInto, va::Required}});
        return map;
    } catch (const ConfigError &error) {
        return error;
    }
}

LoadedMap loadInterfaceMap(const std::vector<std::string> &paths)
{
    for (const std::string &path : paths) {
        const va::ConfigText text = va::readConfigText(path);
        if (std::holds_alternative<va::NoConfigFile>(text)) {
            continue;
        }
        const auto *unread = std::get_if<ConfigError>(&text);
        auto read = unread == nullptr ? readInterfaceMap(std::get<std::string>(text)) : *unread;
        if (const auto *error = std::get_if<ConfigError>(&read)) {
            return {std::nullopt,
                    "socketcan: " + error->message(path) + "; the interfaces are taken in the order of their names"};
        }
        return {std::get<InterfaceMap>(std::move(read)), {}};
    }
    return {};
}

std::vector<std::string> interfaceMapPaths()
{
    std::vector<std::string> paths = {MapFileName};
    const std::string folder = setting("XDG_CONFIG_HOME");
    const std::string home = setting("HOME");
    // A relative folder does not count: the base directory specification says so.
    if (!folder.empty() && folder.front() == '/') {
        paths.push_back(folder + "/X9CAN/" + MapFileName);
    } else if (!home.empty()) {
        paths.push_back(home + "/.config/X9CAN/" + MapFileName);
    }
    return paths;
}

InterfaceMap inOrder(const std::vector<std::string> &names)
{
    InterfaceMap map;
    for (std::size_t i = 0; i < names.size() && i < MaxDevices * ChannelsPerDevice; ++i) {
        map[static_cast<std::uint8_t>(i / ChannelsPerDevice)].at(i % ChannelsPerDevice) = names[i];
    }
    return map;
}

} // namespace socketcan
