#pragma once

#include "Services/Story/StoryConfig.h"

namespace navorin {

/// A frame of a story as the words describe it, drawn anew from nothing, one layer upon the other, slowly.
/// Shares nothing with the painter but the lines' timing.
[[nodiscard]] QImage referenceFrame(const StoryConfig &config, double t);

} // namespace navorin
