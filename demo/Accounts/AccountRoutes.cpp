#include "AccountRoutes.h"

#include "AccountStore.h"
#include "BotPage.h"
#include "Envelope.h"
#include "Identity.h"
#include "RequestBody.h"
#include "Routes.h"

namespace navorin::demo {

namespace {

constexpr std::size_t longestDisplayName = 60;
constexpr std::size_t longestSessionId = 100;
constexpr std::size_t longestCode = 30;
constexpr const char *botUsername = "NavorinBot";

Json record(const User &user)
{
    return {{"id", user.id},
            {"username", user.username},
            {"display_name", textOrNull(user.displayName)},
            {"avatar_url", textOrNull(user.avatarUrl)},
            {"telegram_username", user.telegram}};
}

Reply signedIn(const SignedIn &session)
{
    return envelope({{"token", session.token}, {"user", record(session.user)}});
}

Json sessionFields(const Verification &verification, const std::string &address)
{
    return {{"session_id", verification.id},
            {"bot_link", address + "/bot?start=" + verification.id},
            {"bot_username", botUsername},
            {"expires_in", verification.secondsLeft}};
}

Reply login(AccountStore &accounts, const RequestBody &body)
{
    return signedIn(
        accounts.login(body.text("username", longestIdentifier), body.text("password", longestPassword)));
}

Reply startSignup(AccountStore &accounts, const RequestBody &body, const std::string &address)
{
    const Verification verification =
        accounts.startSignup(body.text("username", longestIdentifier), body.text("password", longestPassword),
                             body.optionalText("display_name", longestDisplayName));
    return envelope(sessionFields(verification, address));
}

Reply finishSignup(AccountStore &accounts, const RequestBody &body)
{
    return signedIn(
        accounts.finishSignup(body.text("session_id", longestSessionId), body.text("otp_code", longestCode)));
}

/// The session stands at the top of this answer and under "data" in that of a sign-up: clients take both.
Reply startReset(AccountStore &accounts, const RequestBody &body, const std::string &address)
{
    const auto [verification, user] = accounts.startReset(body.text("identifier", longestIdentifier));
    Json answer{{"code", 200}, {"message", "ok"}};
    answer.update(sessionFields(verification, address));
    answer["telegram_username"] = user.telegram;
    return Reply::json(answer.dump());
}

Reply finishReset(AccountStore &accounts, const RequestBody &body)
{
    accounts.finishReset(body.text("session_id", longestSessionId), body.text("otp_code", longestCode),
                         body.text("new_password", longestPassword));
    return envelopeOfMessage("رمز عبور عوض شد");
}

Reply logout(AccountStore &accounts, const httplib::Request &request)
{
    (void)signedInUser(accounts, request);
    accounts.logout(bearerToken(request));
    return envelopeOfMessage("از حساب خارج شدی");
}

} // namespace

void addAccountRoutes(Routes &routes, AccountStore &accounts, const std::string &address)
{
    routes.add("POST", "/api/auth/login", [&accounts](const httplib::Request &request, const auto &) {
        return login(accounts, RequestBody(request.body));
    });
    routes.add("POST", "/api/auth/telegram/init-signup",
               [&accounts, address](const httplib::Request &request, const auto &) {
                   return startSignup(accounts, RequestBody(request.body), address);
               });
    routes.add("POST", "/api/auth/telegram/verify-signup-otp",
               [&accounts](const httplib::Request &request, const auto &) {
                   return finishSignup(accounts, RequestBody(request.body));
               });
    routes.add("POST", "/api/auth/telegram/forgot-password",
               [&accounts, address](const httplib::Request &request, const auto &) {
                   return startReset(accounts, RequestBody(request.body), address);
               });
    routes.add("POST", "/api/auth/telegram/reset-password",
               [&accounts](const httplib::Request &request, const auto &) {
                   return finishReset(accounts, RequestBody(request.body));
               });
    routes.add("GET", "/api/auth/me", [&accounts](const httplib::Request &request, const auto &) {
        return envelope({{"user", record(signedInUser(accounts, request))}});
    });
    routes.add("POST", "/api/auth/logout", [&accounts](const httplib::Request &request, const auto &) {
        return logout(accounts, request);
    });
    routes.add("GET", "/bot", [&accounts](const httplib::Request &request, const auto &) {
        return botPage(accounts.verification(request.get_param_value("start")));
    });
}

} // namespace navorin::demo
