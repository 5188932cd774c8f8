#pragma once

#include "Reply.h"

#include <optional>

namespace navorin::demo {

struct Verification;

/// The page that stands in for the Telegram bot: whose sign-up or reset it is and its code; without one, that
/// the session is unknown or over.
[[nodiscard]] Reply botPage(const std::optional<Verification> &verification);

} // namespace navorin::demo
