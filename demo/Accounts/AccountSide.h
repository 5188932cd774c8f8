#pragma once

#include "AccountStore.h"
#include "LibraryStore.h"

#include <memory>

namespace navorin::demo {

class Catalogue;
class Routes;
struct Options;

/// Everything that has to do with accounts, over one database file.
class AccountSide
{
public:
    /// Opens the file that the options name. If it cannot be used, the reason goes to standard error; then
    /// there is none, or, where the file was only the default, one that ends with the process.
    [[nodiscard]] static std::unique_ptr<AccountSide> open(const Options &options);

    /// Also makes the demo user of the options. `address` is the server's own.
    void addTo(Routes &routes, const Options &options, const Catalogue &catalogue,
               const std::string &address);

private:
    AccountSide(const std::string &file, const Options &options);

    Database m_database;
    AccountStore m_accounts;
    LibraryStore m_library;
};

} // namespace navorin::demo
