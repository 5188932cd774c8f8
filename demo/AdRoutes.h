#pragma once

namespace navorin::demo {

class Routes;

/// A stand-in for an ad network: the loader script of any site, and the page that its advertisement opens.
void addAdRoutes(Routes &routes);

} // namespace navorin::demo
