#pragma once

#include "VerificationStore.h"

namespace navorin::demo {

struct User
{
    std::int64_t id = 0;
    std::string username;
    std::string displayName; ///< may be empty
    std::string avatarUrl;   ///< may be empty
    std::string telegram;    ///< the handle, without "@"
};

struct SignedIn
{
    User user;
    std::string token;
};

/// The users, their passwords and their session tokens. What cannot be granted throws a Refusal. Any thread.
class AccountStore
{
public:
    /// Both lifetimes in seconds; at 0 everything is expired as it is made.
    AccountStore(Database &database, std::int64_t tokenLifetime, std::int64_t codeLifetime);

    /// `identifier` is a user name or a Telegram handle, as typed.
    [[nodiscard]] SignedIn login(const std::string &identifier, const std::string &password);
    [[nodiscard]] Verification startSignup(const std::string &username, const std::string &password,
                                           const std::string &displayName);
    [[nodiscard]] SignedIn finishSignup(const std::string &sessionId, const std::string &code);
    /// With the user whose password it is about.
    [[nodiscard]] std::pair<Verification, User> startReset(const std::string &identifier);
    /// Ends all of the user's tokens too.
    void finishReset(const std::string &sessionId, const std::string &code, const std::string &newPassword);
    void logout(const std::string &token);

    [[nodiscard]] User userOf(const std::string &token);
    [[nodiscard]] std::optional<Verification> verification(const std::string &sessionId);
    /// An account without a code. Of one that is there, only the password is set, and nothing is returned.
    std::optional<User> ensureUser(const std::string &username, const std::string &password);

private:
    [[nodiscard]] std::string issueToken(Transaction &transaction, const User &user) const;

    Database &m_database;
    std::int64_t m_tokenLifetime;
    VerificationStore m_verifications;
};

} // namespace navorin::demo
