#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QTemporaryDir>

namespace navorin {

/// A message bus of the test's own that starts no service by itself.
class PrivateBus
{
public:
    PrivateBus();
    ~PrivateBus();
    Q_DISABLE_COPY_MOVE(PrivateBus)

    /// A new connection each time; to the others on this bus it is another program.
    [[nodiscard]] QDBusConnection connect();
    void stop();

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

/// Waits for the answer while the event loop turns, so that the one asked may be in this process.
QDBusMessage ask(const QDBusConnection &connection, const QDBusMessage &question);

/// Returns once all that was sent to `connection` before has been delivered.
void deliverAll(const QDBusConnection &connection);

} // namespace navorin
