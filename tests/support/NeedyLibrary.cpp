// An adapter library that cannot be loaded without another library, which it is linked with.

#include "device/AdapterRecords.h"

extern "C" std::uint32_t X9_ADAPTER_CALL VCI_CloseDevice(std::uint32_t type, std::uint8_t dev);

extern "C" __declspec(dllexport) std::uint32_t X9_ADAPTER_CALL
    VCI_OpenDevice(std::uint32_t type, std::uint8_t dev, std::uint32_t /*reserved*/)
{
    return VCI_CloseDevice(type, dev);
}
