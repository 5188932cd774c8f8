#pragma once

#include "Platform/Storage/SecureItemStore.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

namespace navorin {

class SecretServiceItems;

/// The desktop's Secret Service, on a thread of its own, so that nobody's wait depends on how long the
/// service takes. Where there is no service, or a locked one, nothing is kept and nothing is said; in the
/// clear nothing is ever kept.
///
/// After one wait in vain nobody waits again until the service has answered or a while has passed.
class SecretServiceStore final : public SecureItemStore
{
public:
    struct Limits
    {
        std::chrono::milliseconds caller{2000};     ///< settle(), counted from the oldest work not yet done
        std::chrono::milliseconds service{25'000};  ///< one operation; a keyring may just be starting
        std::chrono::milliseconds mistrust{30'000}; ///< how long nobody waits after one wait in vain
    };

    /// `busAddress` as in DBUS_SESSION_BUS_ADDRESS; empty if there is no bus.
    explicit SecretServiceStore(const QByteArray &busAddress = sessionBusAddress());
    SecretServiceStore(const QByteArray &busAddress, const Limits &limits);
    /// Lets what was posted finish as settle() does, and drops the rest.
    ~SecretServiceStore() override;
    Q_DISABLE_COPY_MOVE(SecretServiceStore)

    void post(Work work) override;
    bool settle() override;

    /// Starts no bus where none runs: a keyring on such a one would be nobody's.
    [[nodiscard]] static QByteArray sessionBusAddress();

private:
    using Clock = std::chrono::steady_clock;

    void run();
    bool doNext();

    const Limits m_limits;
    const std::unique_ptr<SecretServiceItems> m_items; ///< of m_thread
    std::mutex m_mutex;                                ///< guards all below
    std::condition_variable m_changed;
    std::deque<Work> m_works;
    quint64 m_posted = 0;
    quint64 m_done = 0;
    Clock::time_point m_busySince;
    Clock::time_point m_mistrustedUntil;
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace navorin
