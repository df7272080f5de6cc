// An adapter library that exports a single entry. Its answers count the calls since it was loaded.

#include "device/AdapterRecords.h"

#if defined(_WIN32)
#define X9_EXPORT extern "C" __declspec(dllexport)
#else
#define X9_EXPORT extern "C" __attribute__((visibility("default")))
#endif

X9_EXPORT std::uint32_t X9_ADAPTER_CALL VCI_OpenDevice(std::uint32_t /*type*/, std::uint8_t /*dev*/,
                                                       std::uint32_t /*reserved*/)
{
    static std::uint32_t calls = 0;
    return ++calls;
}
