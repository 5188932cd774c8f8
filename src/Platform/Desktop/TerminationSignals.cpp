#include "Platform/Desktop/TerminationSignals.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace navorin {
namespace {

std::atomic_int pipeToWake{-1};

void wake(int)
{
    const auto before = errno;
    const char byte = 0;
    // A full pipe has woken the program already.
    if (::write(pipeToWake.load(), &byte, 1) < 0)
        errno = before;
}

void handleWith(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const auto signal : {SIGINT, SIGTERM, SIGHUP})
        ::sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals()
{
    if (::pipe2(m_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        qFatal("no pipe could be made");
    pipeToWake = m_pipe[1];
    m_notifier = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        m_notifier->setEnabled(false);
        Q_EMIT asked();
    });
    handleWith(wake);
}

TerminationSignals::~TerminationSignals()
{
    handleWith(SIG_DFL);
    m_notifier.reset();
    for (const auto end : m_pipe)
        ::close(end);
}

} // namespace navorin
