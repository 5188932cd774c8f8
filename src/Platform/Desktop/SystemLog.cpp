#include "Platform/Desktop/SystemLog.h"

#include <QCoreApplication>

#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int userFacility = 1 << 3;

/// Not syslog(3), which waits for a daemon that is busy.
void send(const QByteArray &path, const QByteArray &datagram)
{
    sockaddr_un address = {};
    if (std::size_t(path.size()) >= sizeof address.sun_path)
        return;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.constData(), std::size_t(path.size()));
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0)
        return;
    ::sendto(socket, datagram.constData(), std::size_t(datagram.size()), MSG_NOSIGNAL,
             reinterpret_cast<const sockaddr *>(&address), sizeof address);
    ::close(socket);
}

} // namespace

SyslogSocket::SyslogSocket(QString subsystem, QString category, QByteArray socketPath)
    : m_subsystem(std::move(subsystem))
    , m_category(std::move(category))
    , m_socketPath(std::move(socketPath))
{
}

void SyslogSocket::write(Level level, const QString &line)
{
    const auto text = u"<%1>%2[%3]: [%4] %5"_s.arg(userFacility | int(level))
                          .arg(m_subsystem)
                          .arg(QCoreApplication::applicationPid())
                          .arg(m_category, line);
    send(m_socketPath, text.toUtf8());
}

} // namespace navorin
