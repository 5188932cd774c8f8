#pragma once

#include "Platform/Audio/AudioTapHost.h"

#include <gst/gst.h>

#include <memory>

namespace navorin {

/// Makes the element that lets `host` see, and change in place, the interleaved 32-bit float sound that
/// passes. While no tap is attached it passes buffers on untouched. A tap is told of a start of stream at its
/// first buffer, after a flush and at a discontinuity. The reference is floating.
[[nodiscard]] GstElement *makeAudioTapElement(std::shared_ptr<AudioTapHost> host);

} // namespace navorin
