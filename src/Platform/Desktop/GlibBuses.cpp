#include "Platform/Desktop/GlibBuses.h"

#include "Platform/Storage/GlibPointers.h"
#include "Platform/Storage/SecretServiceStore.h"

namespace navorin {

namespace {

/// GLib's one connection to that bus, which then may die; none where there is no such bus.
GlibPointer<GDBusConnection> connectionThatMayDie(GBusType bus, GCancellable *ending)
{
    GlibPointer<GDBusConnection> connection(g_bus_get_sync(bus, ending, nullptr));
    if (connection)
        g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
    return connection;
}

} // namespace

GlibBuses::GlibBuses()
    : m_ending(g_cancellable_new(), g_object_unref)
    , m_thread([this] { run(); })
{
}

GlibBuses::~GlibBuses()
{
    g_cancellable_cancel(m_ending.get());
}

void GlibBuses::run()
{
    GlibPointer<GDBusConnection> session;
    if (!SecretServiceStore::sessionBusAddress().isEmpty()) // or GLib would start a bus
        session = connectionThatMayDie(G_BUS_TYPE_SESSION, m_ending.get());
    const auto system = connectionThatMayDie(G_BUS_TYPE_SYSTEM, m_ending.get());

    GPollFD ended{};
    if (!g_cancellable_make_pollfd(m_ending.get(), &ended))
        return;
    g_poll(&ended, 1, -1);
    g_cancellable_release_fd(m_ending.get());
}

} // namespace navorin
