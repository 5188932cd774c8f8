#include "Platform/Desktop/DesktopApplication.h"

#include <QDBusMessage>

namespace navorin {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

// The bus's own numbers.
constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;
constexpr uint ownedByAnother = 3;

constexpr std::chrono::milliseconds busPatience = 1s;

QDBusMessage callToBus(const QString &method)
{
    return QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                          u"org.freedesktop.DBus"_s, method);
}

/// What this process was given by whoever started it, to bring a window to the front with.
QVariantMap platformData()
{
    QVariantMap data;
    for (const auto &[name, variable] : {std::pair{u"activation-token"_s, "XDG_ACTIVATION_TOKEN"},
                                         std::pair{u"desktop-startup-id"_s, "DESKTOP_STARTUP_ID"}}) {
        if (qEnvironmentVariableIsSet(variable))
            data.insert(name, qEnvironmentVariable(variable));
    }
    return data;
}

} // namespace

DesktopApplication::DesktopApplication(QDBusConnection connection)
    : m_connection(std::move(connection))
    , m_adaptor(new ApplicationAdaptor(this))
{
}

DesktopApplication::~DesktopApplication()
{
    release();
}

DesktopApplication::Start DesktopApplication::start(const QStringList &addresses,
                                                    std::chrono::milliseconds patience)
{
    if (!m_connection.isConnected())
        return Start::GoesOn;
    // The owner may be on its way out when it is asked.
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (claimName())
            return Start::GoesOn;
        if (handOver(addresses, patience))
            return Start::HandedOver;
    }
    return Start::Unanswered;
}

/// False only if another process has the name for certain.
bool DesktopApplication::claimName()
{
    // Before the name, so that whoever sees the name finds the object.
    m_connection.registerObject(objectPath, this);
    const auto answer = m_connection.call(callToBus(u"RequestName"_s) << busName << doNotQueue, QDBus::Block,
                                          int(busPatience.count()));
    const auto result =
        answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0).toUInt() : 0;
    m_ownsName = result == primaryOwner;
    return result != ownedByAnother;
}

bool DesktopApplication::handOver(const QStringList &addresses, std::chrono::milliseconds patience)
{
    auto call = QDBusMessage::createMethodCall(busName, objectPath, ApplicationAdaptor::interfaceName,
                                               addresses.isEmpty() ? u"Activate"_s : u"Open"_s);
    call.setAutoStartService(false);
    if (!addresses.isEmpty())
        call << addresses;
    call << platformData();
    return m_connection.call(call, QDBus::Block, int(patience.count())).type() == QDBusMessage::ReplyMessage;
}

void DesktopApplication::release()
{
    if (!m_connection.isConnected())
        return;
    m_connection.unregisterObject(objectPath);
    if (std::exchange(m_ownsName, false))
        m_connection.send(callToBus(u"ReleaseName"_s) << QString(busName));
}

} // namespace navorin
