#include "exchange/command/Terminal.h"

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

void Terminal::catchInterrupt()
{
    std::signal(SIGINT, [](int) { interrupted = 1; });
    std::signal(SIGTERM, [](int) { interrupted = 1; });
}

bool Terminal::isInterrupted()
{
    return interrupted != 0;
}
