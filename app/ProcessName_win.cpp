#include "app/ProcessName.h"

#include <QFileInfo>

#include <array>

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
