#pragma once

#include <chrono>
#include <functional>

namespace navorin {

/// What tells how much time has passed, whatever becomes of the time of day; a test gives its own.
using SteadyClock = std::function<std::chrono::steady_clock::time_point()>;

} // namespace navorin
