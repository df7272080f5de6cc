#include "exchange/command/Progress.h"

#include "exchange/command/Terminal.h"

#include <cstdio>

namespace {

constexpr qint64 EveryMs = 200;
constexpr double BytesPerMb = 1e6;

} // namespace

Progress::Progress()
    : m_isShown(Terminal::isTerminal(Terminal::Errors))
{
    m_clock.start();
}

Progress::~Progress()
{
    if (m_isWritten) {
        std::fprintf(stderr, "\r%40s\r", "");
        std::fflush(stderr);
    }
}

void Progress::tell(qint64 bytes, qint64 size)
{
    if (!m_isShown || m_clock.elapsed() < m_next) {
        return;
    }
    m_next = m_clock.elapsed() + EveryMs;
    m_isWritten = true;
    const double rate = static_cast<double>(bytes) / BytesPerMb * 1000 / static_cast<double>(m_clock.elapsed());
    if (size > 0) {
        std::fprintf(stderr, "\r%5.1f %%  %8.1f MB/s ", 100 * static_cast<double>(bytes) / static_cast<double>(size),
                     rate);
    } else {
        std::fprintf(stderr, "\r%8.1f MB  %8.1f MB/s ", static_cast<double>(bytes) / BytesPerMb, rate);
    }
    std::fflush(stderr);
}
