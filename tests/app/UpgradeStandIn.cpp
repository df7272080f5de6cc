// Stands in for an upgrade program. Beside it lies a file of orders, named after it with ".orders" behind, one a line:
//   print <n>    writes so many bytes to the standard output and as many to the standard error
//   wait         waits for the file ".go", a minute at most
//   crash        ends by a fault
//   exit <code>  ends with the code; 0 without this order
// It appends one line to the file ".started" at its start, its arguments with tabs between, and one to the file
// ".ended" when it ends by itself.

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <utility>

#ifdef _WIN32
#include <windows.h>
#endif

namespace {

[[noreturn]] void crash()
{
#ifdef _WIN32
    TerminateProcess(GetCurrentProcess(), 0xC0000005u);
#else
    std::raise(SIGKILL); // a fault that no sanitizer catches
#endif
    std::abort();
}

void print(long count)
{
    const std::string text(static_cast<std::size_t>(count), 'x');
    for (std::FILE *output : {stdout, stderr}) {
        std::fwrite(text.data(), 1, text.size(), output);
        std::fflush(output);
    }
}

/// Whole also when two runs do it at the same time.
void appendLine(const std::string &file, const std::string &line)
{
#ifdef _WIN32
    const HANDLE handle = CreateFileA(file.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    const std::string text = line + "\n";
    DWORD written = 0;
    WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    CloseHandle(handle);
#else
    std::ofstream(file, std::ios::app) << line << std::endl;
#endif
}

void waitFor(const std::string &file)
{
    constexpr int Steps = 6000;
    for (int i = 0; i < Steps && !std::ifstream(file); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const std::string self = argv[0];
    std::string line;
    for (int i = 1; i < argc; ++i) {
        line += (i > 1 ? "\t" : "") + std::string(argv[i]);
    }
    appendLine(self + ".started", line);

    long code = 0;
    std::ifstream orders(self + ".orders");
    std::string order;
    while (orders >> order) {
        if (order == "crash") {
            crash();
        } else if (order == "wait") {
            waitFor(self + ".go");
        } else if (order == "print") {
            orders >> code;
            print(std::exchange(code, 0));
        } else if (order == "exit") {
            orders >> code;
        }
    }
    appendLine(self + ".ended", std::to_string(code));
    return static_cast<int>(code);
}
