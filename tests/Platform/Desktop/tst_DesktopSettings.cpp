#include "Platform/Desktop/PortalDesktopSettings.h"
#include "Platform/Desktop/PrivateBus.h"

#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

using Settings = QMap<QString, QVariantMap>;

const auto portal = u"org.freedesktop.portal.Desktop"_s;
const auto interfaceSpace = u"org.gnome.desktop.interface"_s;
const auto appearanceSpace = u"org.freedesktop.appearance"_s;

} // namespace

/// Answers when the test says so.
class FakePortal final : public QDBusVirtualObject
{
public:
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        if (message.member() != u"ReadAll" || message.interface() != u"org.freedesktop.portal.Settings")
            return false;
        asked << message;
        return true;
    }

    QList<QDBusMessage> asked;
};

class tst_DesktopSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void readsAndFollows();
    void whatWasGivenHolds();
    void oddAnswersChangeNothing();
    void whatOverrides();

private:
    void change(const QString &space, const QString &key, const QVariant &value);
    void answer(const QVariant &value);

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<FakePortal> m_portal;
    QDBusConnection m_server{QString()};
    QDBusConnection m_client{QString()};
};

void tst_DesktopSettings::init()
{
    qDBusRegisterMetaType<Settings>();
    m_bus = std::make_unique<PrivateBus>();
    m_server = m_bus->connect();
    m_client = m_bus->connect();
    m_portal = std::make_unique<FakePortal>();
    QVERIFY(m_server.registerVirtualObject(u"/org"_s, m_portal.get(), QDBusConnection::SubPath));
    QVERIFY(m_server.registerService(portal));
}

void tst_DesktopSettings::change(const QString &space, const QString &key, const QVariant &value)
{
    const auto signal = QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                                   u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s)
                        << space << key << QVariant::fromValue(QDBusVariant(value));
    m_server.send(signal);
    deliverAll(m_server);
    deliverAll(m_client);
}

void tst_DesktopSettings::answer(const QVariant &value)
{
    QTRY_COMPARE(m_portal->asked.size(), 1);
    m_server.send(m_portal->asked.takeFirst().createReply(value));
    deliverAll(m_server);
    deliverAll(m_client);
}

void tst_DesktopSettings::readsAndFollows()
{
    PortalDesktopSettings settings(m_client, {}, 1.25);
    QStringList told;
    connect(&settings, &DesktopSettings::textScaleChanged, this, [&] { told << u"scale"_s; });
    connect(&settings, &DesktopSettings::reducedMotionChanged, this, [&] { told << u"motion"_s; });
    QCOMPARE(settings.textScale(), 1.0);
    QVERIFY(!settings.reducedMotion());
    answer(QVariant::fromValue(
        Settings{{interfaceSpace, {{u"text-scaling-factor"_s, 1.5}, {u"enable-animations"_s, true}}}}));
    QTRY_COMPARE(settings.textScale(), 1.2); // what the windowing system does already is not done again
    QCOMPARE(told, QStringList{u"scale"_s});

    change(interfaceSpace, u"text-scaling-factor"_s, QVariant::fromValue(QDBusVariant(1.0))); // wrapped twice
    QTRY_COMPARE(settings.textScale(), 1.0);
    change(interfaceSpace, u"enable-animations"_s, false);
    QTRY_VERIFY(settings.reducedMotion());
    change(appearanceSpace, u"reduced-motion"_s, 1U);
    change(interfaceSpace, u"enable-animations"_s, true); // one of both is enough
    QVERIFY(settings.reducedMotion());
    change(appearanceSpace, u"reduced-motion"_s, 0U);
    QTRY_VERIFY(!settings.reducedMotion());
    QCOMPARE(told, (QStringList{u"scale"_s, u"scale"_s, u"motion"_s, u"motion"_s}));
}

void tst_DesktopSettings::whatWasGivenHolds()
{
    const PortalDesktopSettings settings(m_client, {.textScale = 1.3, .reducedMotion = false}, 2);
    answer(QVariant::fromValue(
        Settings{{interfaceSpace, {{u"text-scaling-factor"_s, 3.0}, {u"enable-animations"_s, false}}}}));
    QCOMPARE(settings.textScale(), 1.3);
    QVERIFY(!settings.reducedMotion());
    const PortalDesktopSettings withoutABus(QDBusConnection(u"nowhere"_s), {.reducedMotion = true});
    QVERIFY(withoutABus.reducedMotion());
}

void tst_DesktopSettings::oddAnswersChangeNothing()
{
    for (const auto &odd :
         {QVariant(u"text"_s), QVariant::fromValue(QVariantMap{{interfaceSpace, 2.0}}),
          QVariant::fromValue(Settings{
              {interfaceSpace, {{u"text-scaling-factor"_s, u"large"_s}, {u"font-name"_s, u"Sans"_s}}},
              {appearanceSpace, {{u"contrast"_s, 1U}}}})}) {
        const PortalDesktopSettings settings(m_client, {});
        answer(odd);
        QCOMPARE(settings.textScale(), 1.0);
        QVERIFY(!settings.reducedMotion());
    }
    for (const double scale : {-1.0, 0.0, 0.5, qQNaN()}) {
        DesktopSettings settings;
        settings.setTextScale(scale);
        QCOMPARE(settings.textScale(), 1.0);
    }
}

void tst_DesktopSettings::whatOverrides()
{
    for (const auto &[scale, motion, given] : {std::tuple(u""_s, u""_s, DesktopSettingsOverride{}),
                                               {u"1.5"_s, u"1"_s, DesktopSettingsOverride{1.5, true}},
                                               {u"1"_s, u"0"_s, DesktopSettingsOverride{1.0, false}},
                                               {u"inf"_s, u"yes"_s, DesktopSettingsOverride{}},
                                               {u"-2"_s, u"2"_s, DesktopSettingsOverride{}},
                                               {u"large"_s, u"true"_s, DesktopSettingsOverride{}}})
        QCOMPARE(DesktopSettingsOverride::parse(scale, motion), given);
}

QTEST_GUILESS_MAIN(tst_DesktopSettings)
#include "tst_DesktopSettings.moc"
