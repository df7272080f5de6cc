#include "app/Process.h"

#include <QFileInfo>

#include <array>
#include <cstdlib>

#include <windows.h>

QString processName(qint64 processId)
{
    const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(processId));
    if (process == nullptr) {
        return {};
    }
    std::array<wchar_t, 32768> path{};
    auto size = static_cast<DWORD>(path.size());
    DWORD exitCode = 0;
    const bool isRunning = GetExitCodeProcess(process, &exitCode) != 0 && exitCode == STILL_ACTIVE &&
                           QueryFullProcessImageNameW(process, 0, path.data(), &size) != 0;
    CloseHandle(process);
    return isRunning ? QFileInfo(QString::fromWCharArray(path.data(), static_cast<int>(size))).completeBaseName()
                     : QString();
}

void endProcessNow(int exitCode)
{
    // std::_Exit would tell every DLL, whose static objects would then be destroyed on this thread.
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(exitCode));
    std::abort(); // not reached
}
