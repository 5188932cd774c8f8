#include "Platform/Audio/AudioSession.h"

namespace navorin {

AudioSession::~AudioSession() = default;

} // namespace navorin
