#include "Platform/Desktop/DesktopSuspendInhibitor.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QVariantMap>

#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr uint suspendFlag = 4; // the same number for both services
const QString reason = QStringLiteral("پخش موسیقی");

QDBusMessage callToSessionManager(const QString &method)
{
    return QDBusMessage::createMethodCall(u"org.gnome.SessionManager"_s, u"/org/gnome/SessionManager"_s,
                                          u"org.gnome.SessionManager"_s, method);
}

QDBusMessage closingOf(const QString &portalRequest)
{
    return QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s, portalRequest,
                                          u"org.freedesktop.portal.Request"_s, u"Close"_s);
}

/// Where the portal puts the request that this connection makes with this token.
QString portalRequestPath(const QDBusConnection &connection, const QString &token)
{
    const auto sender = connection.baseService().mid(1).replace(u'.', u'_');
    return u"/org/freedesktop/portal/desktop/request/"_s + sender + u'/' + token;
}

bool granted(const QDBusMessage &answer)
{
    return answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty();
}

} // namespace

DesktopSuspendInhibitor::DesktopSuspendInhibitor(const QDBusConnection &connection)
    : m_connection(connection)
{
}

DesktopSuspendInhibitor::~DesktopSuspendInhibitor()
{
    setInhibited(false);
}

void DesktopSuspendInhibitor::setInhibited(bool inhibited)
{
    m_wanted = inhibited;
    takeStep();
}

/// While an answer is awaited nothing else is asked, so that there is never more than one inhibitor to mind.
void DesktopSuspendInhibitor::takeStep()
{
    if (m_wanted && m_state == State::Free && m_connection.isConnected())
        askPortal();
    else if (!m_wanted && m_state == State::Held)
        release();
}

void DesktopSuspendInhibitor::askPortal()
{
    const QString token = u"navorin_"_s + QString::number(++m_requests);
    const QVariantMap options{{u"handle_token"_s, token}, {u"reason"_s, reason}};
    const auto request = QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
                                                        u"/org/freedesktop/portal/desktop"_s,
                                                        u"org.freedesktop.portal.Inhibit"_s, u"Inhibit"_s)
                         << QString() << suspendFlag << options;
    ask(request, [this, token](const QDBusMessage &answer) {
        if (granted(answer))
            return held(closingOf(answer.arguments().first().value<QDBusObjectPath>().path()));
        // One that merely came too late would otherwise stay for good.
        if (answer.errorName() == u"org.freedesktop.DBus.Error.NoReply")
            m_connection.send(closingOf(portalRequestPath(m_connection, token)));
        askSessionManager();
    });
}

void DesktopSuspendInhibitor::askSessionManager()
{
    if (!m_wanted) {
        m_state = State::Free;
        return;
    }
    constexpr uint noWindow = 0;
    const auto request = callToSessionManager(u"Inhibit"_s)
                         << u"ir.navorin.NavorinRadio"_s << noWindow << reason << suspendFlag;
    ask(request, [this](const QDBusMessage &answer) {
        if (granted(answer))
            held(callToSessionManager(u"Uninhibit"_s) << answer.arguments().first());
        else
            m_state = State::Free;
    });
}

void DesktopSuspendInhibitor::ask(const QDBusMessage &request,
                                  std::function<void(const QDBusMessage &answer)> answered)
{
    m_state = State::Asking;
    auto *watcher = new QDBusPendingCallWatcher(m_connection.asyncCall(request), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, answered = std::move(answered)] {
        watcher->deleteLater();
        answered(watcher->reply());
    });
}

void DesktopSuspendInhibitor::held(const QDBusMessage &release)
{
    m_state = State::Held;
    m_release = release;
    takeStep();
}

void DesktopSuspendInhibitor::release()
{
    m_state = State::Free;
    m_connection.send(m_release);
}

} // namespace navorin
