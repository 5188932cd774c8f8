#include "Platform/Desktop/DesktopSuspendInhibitor.h"
#include "Platform/Desktop/PrivateBus.h"
#include "Platform/Desktop/SleepMonitor.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto portal = u"org.freedesktop.portal.Desktop"_s;
const auto sessionManager = u"org.gnome.SessionManager"_s;

} // namespace

/// Both services that hold inhibitors. Requests are answered when the test says so.
class FakeInhibitorHost final : public QDBusVirtualObject
{
public:
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        if (message.member() == u"Inhibit") {
            waiting << message;
            return true;
        }
        ended << message.interface() + u'.' + message.member();
        const auto handle = message.member() == u"Close" ? QVariant(message.path()) : message.arguments()[0];
        return held.removeOne(handle.toString());
    }

    void answer(QDBusConnection connection)
    {
        const auto message = waiting.takeFirst();
        const auto arguments = message.arguments();
        if (message.interface() == sessionManager) {
            held << QString::number(++m_cookies);
            connection.send(message.createReply(m_cookies));
            return;
        }
        const auto token = qdbus_cast<QVariantMap>(arguments[2])[u"handle_token"_s].toString();
        const auto sender = message.service().mid(1).replace(u'.', u'_');
        held << u"/org/freedesktop/portal/desktop/request/"_s + sender + u'/' + token;
        connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(held.last()))));
    }

    QList<QDBusMessage> waiting;
    QStringList held;
    QStringList ended;

private:
    uint m_cookies = 7;
};

class tst_SuspendAndSleep : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void byThePortal() { inhibits(portal, u"org.freedesktop.portal.Request.Close"_s); }
    void byTheSessionManager() { inhibits(sessionManager, u"org.gnome.SessionManager.Uninhibit"_s); }
    void lastWordHolds();
    void nobodyAnswers();
    void sleepSignals();
    void withoutABus();

private:
    void inhibits(const QString &service, const QString &ended);

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<FakeInhibitorHost> m_desktop;
    QDBusConnection m_server{QString()};
    QDBusConnection m_client{QString()};
};

void tst_SuspendAndSleep::init()
{
    m_bus = std::make_unique<PrivateBus>();
    m_server = m_bus->connect();
    m_client = m_bus->connect();
    m_desktop = std::make_unique<FakeInhibitorHost>();
    QVERIFY(m_server.registerVirtualObject(u"/org"_s, m_desktop.get(), QDBusConnection::SubPath));
}

void tst_SuspendAndSleep::inhibits(const QString &service, const QString &ended)
{
    QVERIFY(m_server.registerService(service));
    DesktopSuspendInhibitor inhibitor(m_client);
    for (int round = 1; round <= 2; ++round) {
        inhibitor.setInhibited(true);
        QTRY_COMPARE(m_desktop->waiting.size(), 1);
        const auto arguments = m_desktop->waiting[0].arguments();
        if (service == portal) {
            QCOMPARE(arguments.first(2), (QVariantList{u""_s, 4U}));
            QCOMPARE(qdbus_cast<QVariantMap>(arguments[2])[u"reason"_s], u"پخش موسیقی"_s);
        } else {
            QCOMPARE(arguments, (QVariantList{u"ir.navorin.NavorinRadio"_s, 0U, u"پخش موسیقی"_s, 4U}));
        }
        m_desktop->answer(m_server);
        deliverAll(m_client);
        inhibitor.setInhibited(true);
        deliverAll(m_client);
        inhibitor.setInhibited(false);
        QTRY_COMPARE(m_desktop->ended, QStringList(round, ended));
        QVERIFY(m_desktop->held.isEmpty() && m_desktop->waiting.isEmpty());
    }
}

void tst_SuspendAndSleep::lastWordHolds()
{
    QVERIFY(m_server.registerService(portal));
    DesktopSuspendInhibitor inhibitor(m_client);
    for (const bool last : {true, false, true}) {
        for (int i = 0; i < 5; ++i) {
            inhibitor.setInhibited(!last);
            inhibitor.setInhibited(last);
            deliverAll(m_client);
            deliverAll(m_server);
        }
        QVERIFY(m_desktop->waiting.size() <= 1);
        if (!m_desktop->waiting.isEmpty())
            m_desktop->answer(m_server);
        deliverAll(m_client);
        QTRY_COMPARE(m_desktop->held.size(), last ? 1 : 0);
    }
    inhibitor.setInhibited(false);
    inhibitor.setInhibited(true);
    QTRY_COMPARE(m_desktop->waiting.size(), 1);
}

void tst_SuspendAndSleep::nobodyAnswers()
{
    DesktopSuspendInhibitor inhibitor(m_client);
    inhibitor.setInhibited(true);
    for (int i = 0; i < 4; ++i)
        deliverAll(m_client); // both refusals
    QVERIFY(m_server.registerService(sessionManager));
    deliverAll(m_server);
    QVERIFY(m_desktop->waiting.isEmpty());
    inhibitor.setInhibited(true);
    QTRY_COMPARE(m_desktop->waiting.size(), 1);
}

void tst_SuspendAndSleep::sleepSignals()
{
    const SleepMonitor monitor(m_client); // before there is a service
    QStringList told;
    connect(&monitor, &SleepMonitor::aboutToSleep, this, [&] { told << u"sleep"_s; });
    connect(&monitor, &SleepMonitor::wokeUp, this, [&] { told << u"awake"_s; });

    const auto tell = [](QDBusConnection connection, bool begins) {
        const auto signal =
            QDBusMessage::createSignal(u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s,
                                       u"PrepareForSleep"_s)
            << begins;
        connection.send(signal);
    };
    QVERIFY(m_server.registerService(u"org.freedesktop.login1"_s));
    deliverAll(m_client);
    const auto stranger = m_bus->connect();
    tell(stranger, true);
    deliverAll(stranger);
    tell(m_server, true);
    tell(m_server, false);
    QTRY_COMPARE(told, (QStringList{u"sleep"_s, u"awake"_s}));
}

void tst_SuspendAndSleep::withoutABus()
{
    const QDBusConnection none(u"nowhere"_s);
    const SleepMonitor monitor(none);
    DesktopSuspendInhibitor inhibitor(none);
    inhibitor.setInhibited(true);
    inhibitor.setInhibited(false);
    DesktopSuspendInhibitor orphan(m_client);
    orphan.setInhibited(true);
    m_bus->stop();
    QTRY_VERIFY(!m_client.isConnected());
    orphan.setInhibited(false);
    orphan.setInhibited(true);
}

QTEST_GUILESS_MAIN(tst_SuspendAndSleep)
#include "tst_SuspendAndSleep.moc"
