#include "exchange/command/Terminal.h"

#include <csignal>
#include <fcntl.h>
#include <io.h>

namespace {

volatile std::sig_atomic_t interrupted = 0;

} // namespace

bool Terminal::isTerminal(Stream stream)
{
    return _isatty(stream) != 0;
}

void Terminal::makeBinary(Stream stream)
{
    _setmode(stream, _O_BINARY);
}

long long Terminal::readInput(char *to, long long size)
{
    constexpr long long Most = 1 << 18;
    return _read(Input, to, static_cast<unsigned>(size < Most ? size : Most));
}

void Terminal::catchInterrupt()
{
    std::signal(SIGINT, [](int) { interrupted = 1; });
}

bool Terminal::isInterrupted()
{
    return interrupted != 0;
}
