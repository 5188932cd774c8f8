#include "Platform/Storage/SecretServiceStore.h"

#include "Platform/Storage/SecretServiceItems.h"

#include <QFile>

#include <utility>

namespace navorin {

SecretServiceStore::SecretServiceStore(const QByteArray &busAddress)
    : SecretServiceStore(busAddress, Limits())
{
}

SecretServiceStore::SecretServiceStore(const QByteArray &busAddress, const Limits &limits)
    : m_limits(limits)
    , m_items(std::make_unique<SecretServiceItems>(busAddress, limits.service))
    , m_thread([this] { run(); })
{
}

SecretServiceStore::~SecretServiceStore()
{
    settle();
    std::deque<Work> dropped; // destroyed outside the lock
    {
        const std::scoped_lock lock(m_mutex);
        m_ending = true;
        dropped.swap(m_works);
    }
    m_items->cancel();
    m_changed.notify_all();
    m_thread.join();
}

QByteArray SecretServiceStore::sessionBusAddress()
{
    auto address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const QByteArray socket = qgetenv("XDG_RUNTIME_DIR") + "/bus";
    if (!address.isEmpty() || !QFile::exists(QFile::decodeName(socket)))
        return address;
    return "unix:path=" + socket.toPercentEncoding("/");
}

void SecretServiceStore::post(Work work)
{
    {
        const std::scoped_lock lock(m_mutex);
        if (m_posted++ == m_done)
            m_busySince = Clock::now();
        m_works.push_back(std::move(work));
    }
    m_changed.notify_all();
}

bool SecretServiceStore::settle()
{
    std::unique_lock lock(m_mutex);
    const auto settled = [this, goal = m_posted] { return m_done >= goal; };
    if (settled() || Clock::now() < m_mistrustedUntil)
        return settled();
    if (m_changed.wait_until(lock, m_busySince + m_limits.caller, settled))
        return true;
    m_mistrustedUntil = Clock::now() + m_limits.mistrust;
    return false;
}

void SecretServiceStore::run()
{
    while (doNext())
        ;
}

/// False when the end has come.
bool SecretServiceStore::doNext()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_ending || !m_works.empty(); });
    if (m_ending)
        return false;
    auto work = std::exchange(m_works.front(), nullptr);
    m_works.pop_front();
    lock.unlock();
    work(*m_items);
    work = nullptr;
    lock.lock();
    ++m_done;
    if (!m_items->timedOut())
        m_mistrustedUntil = {};
    m_changed.notify_all();
    return true;
}

} // namespace navorin
