#pragma once

namespace navorin::demo {

class ArtworkStore;
class Catalogue;
class Clock;
class MediaStore;
class Routes;
class StopToken;

/// The station list, the deferred lists, the audio and the artwork.
void addMediaRoutes(Routes &routes, const Catalogue &catalogue, MediaStore &media, ArtworkStore &artwork,
                    const Clock &clock, const StopToken &stop);

} // namespace navorin::demo
