#pragma once

#include <string>

namespace navorin::demo {

class AccountStore;
class Catalogue;
class LibraryStore;

/// An account to look at the screens with: two playlists and three favourites out of the catalogue. One that
/// is there keeps its library and takes the password.
void addDemoUser(AccountStore &accounts, LibraryStore &library, const Catalogue &catalogue,
                 const std::string &username, const std::string &password);

} // namespace navorin::demo
