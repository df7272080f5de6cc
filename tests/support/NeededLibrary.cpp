// The library without which another one cannot be loaded.

#include "device/AdapterRecords.h"

extern "C" __declspec(dllexport) std::uint32_t X9_ADAPTER_CALL
    VCI_CloseDevice(std::uint32_t /*type*/, std::uint8_t /*dev*/)
{
    return 1;
}
