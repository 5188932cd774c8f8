#pragma once

#include "Database.h"

#include <optional>

namespace navorin::demo {

enum class VerificationPurpose { Signup, Reset };

/// A sign-up or a password reset that waits for its six-digit code.
struct Verification
{
    std::string id;
    VerificationPurpose purpose = VerificationPurpose::Signup;
    std::string username;
    std::string displayName;
    std::string passwordHash; ///< of a sign-up
    std::string code;
    std::int64_t secondsLeft = 0;
};

/// The sessions that a code from the bot completes. Any thread.
class VerificationStore
{
public:
    /// A code is good for `lifetime` seconds.
    VerificationStore(Database &database, std::int64_t lifetime);

    /// Takes purpose, user name, display name and hash, and fills in the rest.
    [[nodiscard]] Verification begin(Verification verification);
    /// What the bot knows; absent when it is unknown, expired or out of tries.
    [[nodiscard]] std::optional<Verification> find(const std::string &id);
    /// Ends the session with its code, as part of a transaction that does what it was for. A wrong code
    /// commits that transaction, so that the try counts, and throws a Refusal.
    [[nodiscard]] static Verification redeem(Transaction &transaction, const std::string &id,
                                             VerificationPurpose purpose, const std::string &code);

private:
    Database &m_database;
    std::int64_t m_lifetime;
};

} // namespace navorin::demo
