#include "AccountStore.h"

#include "Identity.h"
#include "Refusal.h"
#include "Secrets.h"

namespace navorin::demo {

namespace {

constexpr std::size_t tokenBytes = 32;

struct FoundUser
{
    User user;
    std::string passwordHash;
};

std::optional<FoundUser> findUser(Transaction &transaction, const std::string &identifier)
{
    Query row = transaction.query("SELECT id, username, display_name, avatar_url, telegram, password_hash "
                                  "FROM users WHERE username = ?1 OR telegram = ?1",
                                  identifier);
    if (!row.next())
        return std::nullopt;
    return FoundUser{{row.integer(0), row.text(1), row.text(2), row.text(3), row.text(4)}, row.text(5)};
}

/// The bot would bring the handle along; here each account gets one that differs from all names.
std::string freeHandle(Transaction &transaction, const std::string &username)
{
    std::string handle = username + "_tg";
    for (int number = 2; findUser(transaction, handle); ++number)
        handle = username + "_tg" + std::to_string(number);
    return handle;
}

User insertUser(Transaction &transaction, User user, const std::string &passwordHash)
{
    if (findUser(transaction, user.username))
        throw Refusal(409, "این نام کاربری قبلاً گرفته شده");
    user.telegram = freeHandle(transaction, user.username);
    transaction.run("INSERT INTO users (username, telegram, display_name, avatar_url, password_hash) "
                    "VALUES (?, ?, ?, ?, ?)",
                    user.username, user.telegram, user.displayName, user.avatarUrl, passwordHash);
    user.id = transaction.insertedId();
    return user;
}

void checkPassword(const std::string &password)
{
    if (!isPassword(password))
        throw Refusal(400, "رمز عبور باید دست‌کم ۴ نویسه باشد");
}

void setPassword(Transaction &transaction, const std::string &username, const std::string &hash)
{
    transaction.run("UPDATE users SET password_hash = ? WHERE username = ?", hash, username);
}

} // namespace

AccountStore::AccountStore(Database &database, std::int64_t tokenLifetime, std::int64_t codeLifetime)
    : m_database(database)
    , m_tokenLifetime(tokenLifetime)
    , m_verifications(database, codeLifetime)
{
}

SignedIn AccountStore::login(const std::string &identifier, const std::string &password)
{
    const auto found = [&] {
        Transaction transaction(m_database);
        return findUser(transaction, normalizedIdentifier(identifier));
    }();
    if (!found || !passwordMatches(password, found->passwordHash))
        throw Refusal(401, "نام کاربری یا رمز عبور درست نیست");
    Transaction transaction(m_database);
    std::string token = issueToken(transaction, found->user);
    transaction.commit();
    return {found->user, std::move(token)};
}

Verification AccountStore::startSignup(const std::string &username, const std::string &password,
                                       const std::string &displayName)
{
    const std::string name = normalizedIdentifier(username);
    if (!isUsername(name))
        throw Refusal(400, "نام کاربری باید ۳ تا ۲۴ نویسه از حروف انگلیسی، رقم، نقطه، خط تیره و زیرخط باشد");
    checkPassword(password);
    {
        Transaction transaction(m_database);
        if (findUser(transaction, name))
            throw Refusal(409, "این نام کاربری قبلاً گرفته شده");
    }
    return m_verifications.begin(
        {{}, VerificationPurpose::Signup, name, displayName, hashPassword(password), {}, 0});
}

SignedIn AccountStore::finishSignup(const std::string &sessionId, const std::string &code)
{
    Transaction transaction(m_database);
    const Verification done =
        VerificationStore::redeem(transaction, sessionId, VerificationPurpose::Signup, code);
    const User user =
        insertUser(transaction, {0, done.username, done.displayName, {}, {}}, done.passwordHash);
    std::string token = issueToken(transaction, user);
    transaction.commit();
    return {user, std::move(token)};
}

std::pair<Verification, User> AccountStore::startReset(const std::string &identifier)
{
    const auto found = [&] {
        Transaction transaction(m_database);
        return findUser(transaction, normalizedIdentifier(identifier));
    }();
    if (!found)
        throw Refusal(404, "حسابی با این مشخصات پیدا نشد");
    const User &user = found->user;
    return {
        m_verifications.begin({{}, VerificationPurpose::Reset, user.username, user.displayName, {}, {}, 0}),
        user};
}

void AccountStore::finishReset(const std::string &sessionId, const std::string &code,
                               const std::string &newPassword)
{
    checkPassword(newPassword);
    const std::string hash = hashPassword(newPassword);
    Transaction transaction(m_database);
    const Verification done =
        VerificationStore::redeem(transaction, sessionId, VerificationPurpose::Reset, code);
    setPassword(transaction, done.username, hash);
    transaction.run("DELETE FROM tokens WHERE user_id = (SELECT id FROM users WHERE username = ?)",
                    done.username);
    transaction.commit();
}

void AccountStore::logout(const std::string &token)
{
    Transaction transaction(m_database);
    transaction.run("DELETE FROM tokens WHERE token_hash = ?", tokenHash(token));
    transaction.commit();
}

User AccountStore::userOf(const std::string &token)
{
    Transaction transaction(m_database);
    Query row = transaction.query("SELECT u.id, u.username, u.display_name, u.avatar_url, u.telegram "
                                  "FROM tokens t JOIN users u ON u.id = t.user_id "
                                  "WHERE t.token_hash = ? AND t.expires_at > ?",
                                  tokenHash(token), unixTime());
    if (token.empty() || !row.next())
        throw Refusal(401, "برای این کار باید دوباره وارد حساب شوی");
    return {row.integer(0), row.text(1), row.text(2), row.text(3), row.text(4)};
}

std::optional<Verification> AccountStore::verification(const std::string &sessionId)
{
    return m_verifications.find(sessionId);
}

std::optional<User> AccountStore::ensureUser(const std::string &username, const std::string &password)
{
    const std::string hash = hashPassword(password);
    Transaction transaction(m_database);
    std::optional<User> made;
    if (findUser(transaction, username))
        setPassword(transaction, username, hash);
    else
        made = insertUser(transaction, {0, username, {}, "/artwork/" + username + ".jpg", {}}, hash);
    transaction.commit();
    return made;
}

std::string AccountStore::issueToken(Transaction &transaction, const User &user) const
{
    const std::int64_t now = unixTime();
    std::string token = randomToken(tokenBytes);
    transaction.run("DELETE FROM tokens WHERE expires_at <= ?", now);
    transaction.run("INSERT INTO tokens (token_hash, user_id, expires_at) VALUES (?, ?, ?)", tokenHash(token),
                    user.id, now + m_tokenLifetime);
    return token;
}

} // namespace navorin::demo
