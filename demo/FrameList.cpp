#include "FrameList.h"

namespace navorin::demo {

void FrameList::setHeaders(std::vector<QByteArray> headers)
{
    const std::lock_guard lock(m_mutex);
    m_headers = std::move(headers);
}

void FrameList::append(Frame frame)
{
    {
        const std::lock_guard lock(m_mutex);
        m_frames.push_back(std::move(frame));
    }
    m_grown.notify_all();
}

void FrameList::finish(bool failed)
{
    {
        const std::lock_guard lock(m_mutex);
        m_finished = true;
        m_failed = failed;
    }
    m_grown.notify_all();
}

std::optional<Frame> FrameList::frame(std::size_t index) const
{
    std::unique_lock lock(m_mutex);
    m_grown.wait(lock, [this, index] { return m_finished || index < m_frames.size(); });
    return index < m_frames.size() ? std::optional(m_frames[index]) : std::nullopt;
}

std::vector<QByteArray> FrameList::headers() const
{
    std::unique_lock lock(m_mutex);
    m_grown.wait(lock, [this] { return m_finished || !m_frames.empty(); });
    return m_headers;
}

std::optional<std::vector<Frame>> FrameList::all() const
{
    std::unique_lock lock(m_mutex);
    m_grown.wait(lock, [this] { return m_finished; });
    return m_failed ? std::nullopt : std::optional(m_frames);
}

std::optional<std::size_t> FrameList::indexAt(std::int64_t sample) const
{
    const std::lock_guard lock(m_mutex);
    if (!m_finished)
        return std::nullopt;
    std::int64_t passed = 0;
    for (std::size_t i = 0; i < m_frames.size(); ++i) {
        passed += m_frames[i].samples;
        if (passed > sample)
            return i;
    }
    return std::nullopt;
}

} // namespace navorin::demo
