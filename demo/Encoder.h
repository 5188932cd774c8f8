#pragma once

#include "FrameList.h"
#include "Synthesiser.h"

#include <atomic>

namespace navorin::demo {

enum class Codec { Mp3, Aac, Vorbis };

/// Encodes into `frames` as it goes and finishes it, failed when `cancelled` turned true or the encoder gave
/// up. MP3 and ADTS frames can be joined at any frame.
void encodeFrames(const SampleSource &source, Codec codec, FrameList &frames,
                  const std::atomic<bool> &cancelled);

/// A whole MP4 file with AAC, its index in front. Empty on failure.
[[nodiscard]] QByteArray encodeMp4(const SampleSource &source, const std::atomic<bool> &cancelled);

/// A whole WAV file of 16 bits.
[[nodiscard]] QByteArray encodeWav(const SampleSource &source);

} // namespace navorin::demo
