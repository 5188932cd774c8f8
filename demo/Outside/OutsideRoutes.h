#pragma once

namespace navorin::demo {

class AccountStore;
class Catalogue;
class LibraryStore;
class Routes;

/// What other services have, found and resolved for everybody, and imported for whoever is signed in.
void addOutsideRoutes(Routes &routes, const Catalogue &catalogue, AccountStore &accounts,
                      LibraryStore &library);

} // namespace navorin::demo
