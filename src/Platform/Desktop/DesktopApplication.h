#pragma once

#include "Platform/Desktop/ApplicationAdaptor.h"

#include <QDBusConnection>
#include <QObject>

#include <chrono>

namespace navorin {

/// This program as one of the desktop's applications: of all its processes on a session bus one owns the
/// application's name, and the others hand over to it what they were started for. The desktop starts and
/// reaches it by the same name. UI thread only.
///
/// What is asked of the owner arrives when the event loop turns, so that the hooks may be set after the
/// start.
class DesktopApplication final : public QObject
{
    Q_OBJECT
public:
    static constexpr QLatin1StringView busName{"ir.navorin.NavorinRadio"};
    static constexpr QLatin1StringView objectPath{"/ir/navorin/NavorinRadio"};

    /// How a start turned out.
    enum class Start {
        GoesOn,     ///< this process is the application, also where there is no bus to say otherwise
        HandedOver, ///< another one is, and has taken over
        Unanswered, ///< another one is, and does not answer
    };

    explicit DesktopApplication(QDBusConnection connection);
    ~DesktopApplication() override;

    /// Claims the name; where another process has it, asks that one to come forward, with `addresses` if
    /// there are any. Waits for the bus, no longer than a second, and for the other process, no longer than
    /// `patience`.
    [[nodiscard]] Start start(const QStringList &addresses,
                              std::chrono::milliseconds patience = std::chrono::seconds(5));
    void setHooks(ApplicationHooks hooks) { m_adaptor->setHooks(std::move(hooks)); }
    /// Gives the name up, for whoever is started from now on.
    void release();

private:
    [[nodiscard]] bool claimName();
    [[nodiscard]] bool handOver(const QStringList &addresses, std::chrono::milliseconds patience);

    QDBusConnection m_connection;
    ApplicationAdaptor *m_adaptor; // its parent is this
    bool m_ownsName = false;
};

} // namespace navorin
