#include "app/EndSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {
constexpr std::array Signals{SIGTERM, SIGINT, SIGHUP};

std::array<int, 2> wakePipe{-1, -1}; ///< a signal's handler has nothing else; written before it can run

extern "C" void wake(int /*signal*/)
{
    const char byte = 0;
    // A pipe that is full wakes as well.
    [[maybe_unused]] const ssize_t written = ::write(wakePipe[1], &byte, 1);
}

void handle(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND); // the second signal is not ours any more
    for (const int signal : Signals) {
        ::sigaction(signal, &action, nullptr);
    }
}
} // namespace

EndSignals::EndSignals()
{
    if (::pipe2(wakePipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        qWarning("Signals end the program at once: no pipe can be opened");
        return;
    }
    auto *notifier = new QSocketNotifier(wakePipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [notifier] {
        notifier->setEnabled(false);
        QCoreApplication::exit(0);
    });
    handle(&wake);
}

EndSignals::~EndSignals()
{
    handle(SIG_DFL);
    for (int &end : wakePipe) {
        ::close(end);
        end = -1;
    }
}
