#pragma once

#include <string>

namespace navorin::demo {

class AccountStore;
class Routes;

/// Signing up, in and out, a forgotten password, and the page that plays the bot. `address` is the server's
/// own, for the links to that page.
void addAccountRoutes(Routes &routes, AccountStore &accounts, const std::string &address);

} // namespace navorin::demo
