#pragma once

#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantMap>

#include <functional>

namespace navorin {

/// What the desktop may ask of a running application. Any may be missing; then nothing happens.
struct ApplicationHooks
{
    std::function<void()> activate;
    std::function<void(const QStringList &addresses)> open;
    std::function<void(const QString &name)> activateAction;
};

/// org.freedesktop.Application: what the desktop calls where a desktop entry says DBusActivatable.
class ApplicationAdaptor final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    static constexpr QLatin1StringView interfaceName{"org.freedesktop.Application"};

    explicit ApplicationAdaptor(QObject *parent);

    void setHooks(ApplicationHooks hooks) { m_hooks = std::move(hooks); }

public Q_SLOTS:
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &addresses, const QVariantMap &platformData);
    void ActivateAction(const QString &name, const QVariantList &parameters, const QVariantMap &platformData);

private:
    ApplicationHooks m_hooks;
};

} // namespace navorin
