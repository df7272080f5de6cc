#include "adapter/socketcan/KernelSystem.h"

#include <sys/utsname.h>

#include <cstdio>
#include <filesystem>

namespace socketcan {

std::variant<std::unique_ptr<CanPort>, int> KernelSystem::openPort(const Link &link, const PortSettings &settings)
{
    return openSocketPort(link.index, settings);
}

std::string KernelSystem::driverOf(const Link &link)
{
    std::error_code error;
    const auto driver = std::filesystem::read_symlink("/sys/class/net/" + link.name + "/device/driver", error);
    return error ? link.kind : driver.filename().string();
}

std::string KernelSystem::release()
{
    utsname names{};
    return uname(&names) == 0 ? names.release : std::string();
}

void KernelSystem::complain(const std::string &line)
{
    std::fprintf(stderr, "%s\n", line.c_str());
}

} // namespace socketcan
