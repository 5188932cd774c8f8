#pragma once

#include <string>

namespace navorin::demo {

/// A salted hash that is slow to make, as one line of text. Takes about a tenth of a second; hashes of
/// several threads wait for each other, for each needs much memory.
[[nodiscard]] std::string hashPassword(const std::string &password);
[[nodiscard]] bool passwordMatches(const std::string &password, const std::string &hash);

/// 2 * `bytes` hexadecimal digits that nobody can guess.
[[nodiscard]] std::string randomToken(std::size_t bytes);
/// Six decimal digits.
[[nodiscard]] std::string randomCode();
/// What is kept of a token, so that the file alone signs nobody in.
[[nodiscard]] std::string tokenHash(const std::string &token);

} // namespace navorin::demo
