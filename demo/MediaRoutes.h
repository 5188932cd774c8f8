#pragma once

namespace navorin::demo {

class ArtworkStore;
class Catalogue;
class Clock;
class MediaStore;
class Plays;
class Routes;
class StopToken;

/// The station list, the deferred lists, the audio and the artwork. What is listened to goes into `plays`.
void addMediaRoutes(Routes &routes, const Catalogue &catalogue, MediaStore &media, ArtworkStore &artwork,
                    Plays &plays, const Clock &clock, const StopToken &stop);

} // namespace navorin::demo
