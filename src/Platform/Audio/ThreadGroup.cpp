#include "Platform/Audio/ThreadGroup.h"

#include <thread>
#include <utility>

namespace navorin {

void ThreadGroup::start(std::function<void()> body)
{
    {
        const std::scoped_lock lock(m_mutex);
        ++m_running;
    }
    std::thread([group = shared_from_this(), body = std::move(body)]() mutable {
        body();
        body = nullptr;
        std::unique_lock lock(group->m_mutex);
        --group->m_running;
        std::notify_all_at_thread_exit(group->m_changed, std::move(lock));
    }).detach();
}

bool ThreadGroup::wait(std::chrono::milliseconds limit)
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, limit, [this] { return m_running == 0; });
}

} // namespace navorin
