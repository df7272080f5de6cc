#include "adapter/socketcan/InterfaceMap.h"
#include "adapter/socketcan/KernelSystem.h"
#include "adapter/socketcan/SocketCanAdapter.h"

#include <utility>

namespace va {

/// The mapping is read with the first call after the library was loaded.
Adapter &libraryAdapter()
{
    static socketcan::KernelSystem system;
    static socketcan::SocketCanAdapter instance(system, [] {
        socketcan::LoadedMap loaded = socketcan::loadInterfaceMap(socketcan::interfaceMapPaths());
        if (!loaded.complaint.empty()) {
            system.complain(loaded.complaint);
        }
        return std::move(loaded.map);
    }());
    return instance;
}

} // namespace va
