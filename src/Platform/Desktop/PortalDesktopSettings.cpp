#include "Platform/Desktop/PortalDesktopSettings.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QMap>

#include <cmath>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString portalInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString interfaceSpace = QStringLiteral("org.gnome.desktop.interface");
const QString appearanceSpace = QStringLiteral("org.freedesktop.appearance");

using SettingsBySpace = QMap<QString, QVariantMap>;

/// Some portals wrap a value twice.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

DesktopSettingsOverride DesktopSettingsOverride::parse(const QString &textScale, const QString &reducedMotion)
{
    DesktopSettingsOverride given;
    bool isNumber = false;
    const auto scale = textScale.toDouble(&isNumber);
    if (isNumber && std::isfinite(scale) && scale > 0)
        given.textScale = scale;
    if (reducedMotion == u"0" || reducedMotion == u"1")
        given.reducedMotion = reducedMotion == u"1";
    return given;
}

PortalDesktopSettings::PortalDesktopSettings(QDBusConnection connection, const DesktopSettingsOverride &given,
                                             double enlarged)
    : m_given(given)
    , m_enlarged(enlarged)
{
    setTextScale(given.textScale.value_or(1));
    setReducedMotion(given.reducedMotion.value_or(false));
    if (!connection.isConnected())
        return;
    // Whoever sends it: to tell who owns the portal's name Qt would wait for the bus. As a whole message: a
    // slot with a variant is refused as long as nobody has used one.
    connection.connect(QString(), portalPath, portalInterface, u"SettingChanged"_s, this,
                       SLOT(settingChanged(QDBusMessage)));
    ask(connection);
}

void PortalDesktopSettings::ask(const QDBusConnection &connection)
{
    const auto question = QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s, portalPath,
                                                         portalInterface, u"ReadAll"_s)
                          << QStringList{interfaceSpace, appearanceSpace};
    auto *watcher = new QDBusPendingCallWatcher(connection.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        take(watcher->reply());
    });
}

void PortalDesktopSettings::take(const QDBusMessage &answer)
{
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != u"a{sa{sv}}")
        return;
    const auto spaces = qdbus_cast<SettingsBySpace>(answer.arguments().constFirst());
    for (auto space = spaces.cbegin(); space != spaces.cend(); ++space) {
        for (auto setting = space->cbegin(); setting != space->cend(); ++setting)
            take(space.key(), setting.key(), setting.value());
    }
}

void PortalDesktopSettings::settingChanged(const QDBusMessage &change)
{
    if (change.signature() != u"ssv")
        return;
    const auto arguments = change.arguments();
    take(arguments[0].toString(), arguments[1].toString(), arguments[2]);
}

void PortalDesktopSettings::take(const QString &space, const QString &key, const QVariant &value)
{
    const auto plain = unwrapped(value);
    if (space == interfaceSpace && key == u"text-scaling-factor" && !m_given.textScale)
        setTextScale(plain.toDouble() / m_enlarged);
    else if (space == interfaceSpace && key == u"enable-animations")
        m_animates = plain.toBool();
    else if (space == appearanceSpace && key == u"reduced-motion")
        m_prefersStillness = plain.toUInt() == 1;
    setReducedMotion(m_given.reducedMotion.value_or(!m_animates || m_prefersStillness));
}

} // namespace navorin
