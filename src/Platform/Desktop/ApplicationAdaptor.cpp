#include "Platform/Desktop/ApplicationAdaptor.h"

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

/// With the token of whoever asked, the compositor lets a window come to the front; Qt looks for it there.
void takeActivationToken(const QVariantMap &platformData)
{
    const auto token = platformData.value(u"activation-token"_s).toString();
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

} // namespace

ApplicationAdaptor::ApplicationAdaptor(QObject *parent)
    : QDBusAbstractAdaptor(parent)
{
}

void ApplicationAdaptor::Activate(const QVariantMap &platformData)
{
    takeActivationToken(platformData);
    if (m_hooks.activate)
        m_hooks.activate();
}

void ApplicationAdaptor::Open(const QStringList &addresses, const QVariantMap &platformData)
{
    takeActivationToken(platformData);
    if (m_hooks.open)
        m_hooks.open(addresses);
}

void ApplicationAdaptor::ActivateAction(const QString &name, const QVariantList &,
                                        const QVariantMap &platformData)
{
    takeActivationToken(platformData);
    if (m_hooks.activateAction)
        m_hooks.activateAction(name);
}

} // namespace navorin
