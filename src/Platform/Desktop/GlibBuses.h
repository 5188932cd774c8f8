#pragma once

#include <QtGlobal>

#include <memory>
#include <thread>

typedef struct _GCancellable GCancellable; // NOLINT(bugprone-reserved-identifier): GLib's own declaration

namespace navorin {

/// Keeps GLib from ending the program when a message bus dies.
///
/// Libraries below us, such as the one that looks up proxies for a stream, share GLib's own connections to
/// the session's and the system's bus, and GLib raises SIGTERM when one of them is lost. The connections are
/// made on a thread of its own, for a bus may be slow to answer, and live as long as this does.
class GlibBuses
{
public:
    GlibBuses();
    ~GlibBuses();
    Q_DISABLE_COPY_MOVE(GlibBuses)

private:
    void run();

    const std::shared_ptr<GCancellable> m_ending;
    std::jthread m_thread;
};

} // namespace navorin
