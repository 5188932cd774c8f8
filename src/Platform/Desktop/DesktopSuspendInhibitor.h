#pragma once

#include "Platform/Desktop/SuspendInhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <functional>

namespace navorin {

/// Asks the desktop's portal, and where there is none, the session manager. If neither grants it, nothing is
/// said and nothing happens until the next setInhibited(true).
class DesktopSuspendInhibitor final : public QObject, public SuspendInhibitor
{
    Q_OBJECT
public:
    /// `connection`: the session bus, which may be missing.
    explicit DesktopSuspendInhibitor(const QDBusConnection &connection);
    /// Releases what is held. What was asked for and not answered yet ends with the connection.
    ~DesktopSuspendInhibitor() override;

    void setInhibited(bool inhibited) override;

private:
    enum class State { Free, Asking, Held };

    void takeStep();
    void askPortal();
    void askSessionManager();
    void ask(const QDBusMessage &request, std::function<void(const QDBusMessage &answer)> answered);
    void held(const QDBusMessage &release);
    void release();

    QDBusConnection m_connection;
    bool m_wanted = false;
    State m_state = State::Free;
    QDBusMessage m_release; ///< to be sent to let go of what is held
    int m_requests = 0;
};

} // namespace navorin
