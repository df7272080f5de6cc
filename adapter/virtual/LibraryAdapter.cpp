#include "adapter/virtual/ConfigReader.h"
#include "adapter/virtual/VirtualAdapter.h"

#include <cstdio>
#include <utility>

namespace va {

namespace {

AdapterConfig configFromWorkingDirectory()
{
    LoadedConfig loaded = loadConfig(ConfigFileName);
    if (!loaded.complaint.empty()) {
        std::fprintf(stderr, "%s\n", loaded.complaint.c_str());
    }
    return std::move(loaded.config);
}

} // namespace

/// The configuration is read, and the buses start, with the first call after the library was loaded.
Adapter &libraryAdapter()
{
    static SteadyClock clock;
    static VirtualAdapter instance(configFromWorkingDirectory(), clock);
    return instance;
}

} // namespace va
