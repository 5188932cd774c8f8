#pragma once

#include "Reply.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <string>

namespace navorin::demo {

class AccountStore;
struct User;

using Json = nlohmann::ordered_json;

/// The shape of every answer that succeeds; without a "data" when there is none.
[[nodiscard]] Reply envelope(const Json &data);
[[nodiscard]] Reply envelopeOfMessage(const std::string &message);

/// Null for an empty text: a record leaves out what it does not know.
[[nodiscard]] Json textOrNull(const std::string &text);

/// The token that the request carries; empty without one.
[[nodiscard]] std::string bearerToken(const httplib::Request &request);
/// Who sends the request; throws a Refusal with 401 when nobody is signed in.
[[nodiscard]] User signedInUser(AccountStore &accounts, const httplib::Request &request);

} // namespace navorin::demo
