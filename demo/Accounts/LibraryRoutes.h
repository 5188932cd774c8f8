#pragma once

namespace navorin::demo {

class AccountStore;
class LibraryStore;
class Routes;

/// The playlists and favourites of whoever is signed in.
void addLibraryRoutes(Routes &routes, AccountStore &accounts, LibraryStore &library);

} // namespace navorin::demo
