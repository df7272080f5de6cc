#include "exchange/command/Terminal.h"

#include <cerrno>
#include <csignal>
#include <unistd.h>

namespace {

volatile std::sig_atomic_t interrupted = 0;

} // namespace

bool Terminal::isTerminal(Stream stream)
{
    return isatty(stream) != 0;
}

void Terminal::makeBinary(Stream /*stream*/) {}

long long Terminal::readInput(char *to, long long size)
{
    ssize_t got = 0;
    do {
        got = ::read(STDIN_FILENO, to, static_cast<std::size_t>(size));
    } while (got < 0 && errno == EINTR && !isInterrupted());
    return got < 0 && errno == EINTR ? 0 : got;
}

void Terminal::catchInterrupt()
{
    std::signal(SIGINT, [](int) { interrupted = 1; });
    std::signal(SIGTERM, [](int) { interrupted = 1; });
}

bool Terminal::isInterrupted()
{
    return interrupted != 0;
}
