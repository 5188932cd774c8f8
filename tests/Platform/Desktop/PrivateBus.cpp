#include "Platform/Desktop/PrivateBus.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <QFile>

#include <csignal>
#include <sys/prctl.h>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto configuration =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

PrivateBus::PrivateBus()
{
    QFile file(m_folder.filePath(u"bus.conf"_s));
    if (file.open(QIODevice::WriteOnly))
        file.write(QString::fromLatin1(configuration).arg(m_folder.path()).toUtf8());
    file.close();
    m_daemon.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_daemon.start(u"dbus-daemon"_s, {u"--nofork"_s, u"--nopidfile"_s, u"--print-address"_s,
                                      u"--config-file="_s + file.fileName()});
    while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead())
        ;
    m_address = QString::fromUtf8(m_daemon.readLine().trimmed());
    if (m_address.isEmpty())
        qFatal("dbus-daemon did not start: %s", m_daemon.readAllStandardError().constData());
}

PrivateBus::~PrivateBus()
{
    for (const auto &name : m_connections)
        QDBusConnection::disconnectFromBus(name);
    stop();
}

QDBusConnection PrivateBus::connect()
{
    static int count = 0;
    m_connections << u"private-"_s + QString::number(++count);
    return QDBusConnection::connectToBus(m_address, m_connections.last());
}

void PrivateBus::stop()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
}

QDBusMessage ask(const QDBusConnection &connection, const QDBusMessage &question)
{
    // Qt's own waiting call with an event loop misses an answer that comes at once.
    const QDBusPendingCallWatcher watcher(connection.asyncCall(question));
    QEventLoop loop;
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    if (!watcher.isFinished())
        loop.exec();
    return watcher.reply();
}

void deliverAll(const QDBusConnection &connection)
{
    ask(connection, QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                   u"org.freedesktop.DBus"_s, u"GetId"_s));
    QCoreApplication::processEvents();
}

} // namespace navorin
