#pragma once

#include <QDBusConnection>
#include <QObject>

namespace navorin {

/// Tells when the computer is about to sleep and when it has woken up. Without the service that knows,
/// nothing is ever told. UI thread only.
class SleepMonitor final : public QObject
{
    Q_OBJECT
public:
    /// `connection`: the system bus, which may be missing.
    explicit SleepMonitor(QDBusConnection connection);

Q_SIGNALS:
    /// The computer may wait a moment for those who listen, or may not.
    void aboutToSleep();
    void wokeUp();

private Q_SLOTS:
    void prepareForSleep(bool begins);
};

} // namespace navorin
