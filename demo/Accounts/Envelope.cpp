#include "Envelope.h"

#include "AccountStore.h"

namespace navorin::demo {

Reply envelope(const Json &data)
{
    return Reply::json(Json{{"code", 200}, {"message", "ok"}, {"data", data}}.dump());
}

Reply envelopeOfMessage(const std::string &message)
{
    return Reply::json(Json{{"code", 200}, {"message", message}}.dump());
}

Json textOrNull(const std::string &text)
{
    return text.empty() ? Json(nullptr) : Json(text);
}

std::string bearerToken(const httplib::Request &request)
{
    constexpr std::string_view scheme = "Bearer ";
    const std::string value = request.get_header_value("Authorization");
    return value.starts_with(scheme) ? value.substr(scheme.size()) : std::string();
}

User signedInUser(AccountStore &accounts, const httplib::Request &request)
{
    return accounts.userOf(bearerToken(request));
}

} // namespace navorin::demo
