#include "VerificationStore.h"

#include "Identity.h"
#include "Refusal.h"
#include "RequestBody.h"
#include "Secrets.h"

namespace navorin::demo {

namespace {

constexpr std::int64_t wrongTriesAllowed = 5;
constexpr std::size_t idBytes = 12;

struct Found
{
    Verification verification;
    std::int64_t wrongTries = 0;
};

std::optional<Found> lookUp(Transaction &transaction, const std::string &id)
{
    const std::int64_t now = unixTime();
    Query row = transaction.query("SELECT purpose, username, display_name, password_hash, code, expires_at, "
                                  "wrong_tries FROM verifications WHERE id = ? AND expires_at > ?",
                                  id, now);
    if (!row.next())
        return std::nullopt;
    return Found{{id, static_cast<VerificationPurpose>(row.integer(0)), row.text(1), row.text(2), row.text(3),
                  row.text(4), row.integer(5) - now},
                 row.integer(6)};
}

} // namespace

VerificationStore::VerificationStore(Database &database, std::int64_t lifetime)
    : m_database(database)
    , m_lifetime(lifetime)
{
}

Verification VerificationStore::begin(Verification verification)
{
    const char *const prefix = verification.purpose == VerificationPurpose::Signup ? "reg_" : "rst_";
    verification.id = prefix + randomToken(idBytes);
    verification.code = randomCode();
    verification.secondsLeft = m_lifetime;
    const std::int64_t now = unixTime();
    Transaction transaction(m_database);
    transaction.run("DELETE FROM verifications WHERE expires_at <= ?", now);
    transaction.run("INSERT INTO verifications (id, purpose, username, display_name, password_hash, code, "
                    "expires_at) VALUES (?, ?, ?, ?, ?, ?, ?)",
                    verification.id, static_cast<std::int64_t>(verification.purpose), verification.username,
                    verification.displayName, verification.passwordHash, verification.code, now + m_lifetime);
    transaction.commit();
    return verification;
}

std::optional<Verification> VerificationStore::find(const std::string &id)
{
    Transaction transaction(m_database);
    const auto found = lookUp(transaction, id);
    if (!found || found->wrongTries >= wrongTriesAllowed)
        return std::nullopt;
    return found->verification;
}

Verification VerificationStore::redeem(Transaction &transaction, const std::string &id,
                                       VerificationPurpose purpose, const std::string &code)
{
    const auto found = lookUp(transaction, id);
    if (!found || found->verification.purpose != purpose)
        throw Refusal(404, "این نشست پیدا نشد یا اعتبارش تمام شده؛ دوباره شروع کن");
    if (found->wrongTries >= wrongTriesAllowed)
        throw Refusal(429, "کد چند بار اشتباه وارد شد؛ دوباره شروع کن");
    if (withPlainDigits(code) != found->verification.code) {
        transaction.run("UPDATE verifications SET wrong_tries = wrong_tries + 1 WHERE id = ?", id);
        transaction.commit();
        throw Refusal(400, "کد تأیید درست نیست");
    }
    transaction.run("DELETE FROM verifications WHERE id = ?", id);
    return found->verification;
}

} // namespace navorin::demo
