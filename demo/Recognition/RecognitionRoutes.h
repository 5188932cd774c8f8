#pragma once

namespace navorin::demo {

class Catalogue;
class PieceFinder;
class Plays;
class Routes;

/// Names the song in a snippet that a client has recorded.
void addRecognitionRoutes(Routes &routes, const Catalogue &catalogue, const Plays &plays,
                          PieceFinder &finder);

} // namespace navorin::demo
