#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace navorin::demo {

constexpr std::size_t longestPassword = 200;
constexpr std::size_t longestIdentifier = 100;

/// Whether it can name an account: 3 to 24 Latin lower-case letters, digits, "_", "." and "-".
[[nodiscard]] bool isUsername(const std::string &text);
[[nodiscard]] bool isPassword(const std::string &text);

/// What a user typed to name an account, a user name or a Telegram handle, in the form in which both are
/// kept: lower case, without blanks around it and the handle's "@".
[[nodiscard]] std::string normalizedIdentifier(const std::string &typed);

/// Seconds since 1970.
[[nodiscard]] std::int64_t unixTime();

} // namespace navorin::demo
