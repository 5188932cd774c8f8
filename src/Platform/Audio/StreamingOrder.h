#pragma once

#include <atomic>

namespace navorin {

/// GStreamer orders what its threads do to an element by locks of its own, but a race checker cannot look
/// into them. These two say the same aloud, where our code is called by one of its threads: what was done
/// before a publish() is seen after a take().
struct StreamingOrder
{
    static void publish() { s_steps.fetch_add(1, std::memory_order_release); }
    static void take() { (void)s_steps.load(std::memory_order_acquire); }

private:
    static inline std::atomic_uint s_steps = 0;
};

} // namespace navorin
