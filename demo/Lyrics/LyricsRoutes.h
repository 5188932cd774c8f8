#pragma once

namespace navorin::demo {

class Catalogue;
class Routes;

/// The words of a song, and of a live programme how far it is.
void addLyricsRoutes(Routes &routes, const Catalogue &catalogue);

} // namespace navorin::demo
