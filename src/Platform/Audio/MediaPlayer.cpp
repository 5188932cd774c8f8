#include "Platform/Audio/MediaPlayer.h"

namespace navorin {

MediaItem::~MediaItem() = default;
MediaPlayer::~MediaPlayer() = default;

} // namespace navorin
