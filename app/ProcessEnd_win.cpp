#include "app/ProcessEnd.h"

#include <cstdlib>

#include <windows.h>

void endProcessNow(int exitCode)
{
    // std::_Exit would tell every DLL, whose static objects would then be destroyed on this thread.
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(exitCode));
    std::abort(); // not reached
}
