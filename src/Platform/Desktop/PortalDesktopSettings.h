#pragma once

#include "Platform/Desktop/DesktopSettings.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <optional>

namespace navorin {

/// What holds whatever the desktop says, for those without a portal.
struct DesktopSettingsOverride
{
    std::optional<double> textScale;
    std::optional<bool> reducedMotion;

    /// Of NAVORIN_TEXT_SCALE, a number, and NAVORIN_REDUCED_MOTION, 0 or 1. What is none of these overrides
    /// nothing.
    [[nodiscard]] static DesktopSettingsOverride parse(const QString &textScale,
                                                       const QString &reducedMotion);

    bool operator==(const DesktopSettingsOverride &) const = default;
};

/// Follows the settings portal (org.freedesktop.portal.Settings). Asks once and listens, and never waits for
/// the bus: until the answer is there, and for good where none comes, everything is as drawn.
class PortalDesktopSettings final : public DesktopSettings
{
    Q_OBJECT
public:
    /// `connection`: the session bus, which may be missing. `enlarged`: how many times the windowing system
    /// enlarges whole windows because texts are wanted larger. On X11 the desktop's text scale is in the
    /// resolution that it tells, and would count twice.
    PortalDesktopSettings(QDBusConnection connection, const DesktopSettingsOverride &given,
                          double enlarged = 1);

private Q_SLOTS:
    void settingChanged(const QDBusMessage &change);

private:
    void ask(const QDBusConnection &connection);
    void take(const QDBusMessage &answer);
    void take(const QString &space, const QString &key, const QVariant &value);

    DesktopSettingsOverride m_given;
    double m_enlarged;
    bool m_animates = true;
    bool m_prefersStillness = false;
};

} // namespace navorin
