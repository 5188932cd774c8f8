#pragma once

#include "Platform/Audio/AudioTap.h"

#include <memory>

/// The signal path of the equaliser: five peaking filters for each channel, applied in place to the decoded
/// sound of one media item, by the settings in `eqSnapshotStore()`.
namespace navorin::EqTap {

void tapInit(AudioTap &tap);
void tapPrepare(AudioTap &tap, const AudioStreamDescription &format);
/// On the audio thread. Takes two locks, one after the other, each for one copy; allocates only when the
/// format or the gains have changed, and for the line it prints at its first filtered call and at every
/// 256th.
AudioTap::ProcessResult tapProcess(AudioTap &tap, qint64 frames, quint32 flags, AudioBufferList buffers);
void tapUnprepare(AudioTap &tap);
void tapFinalize(AudioTap &tap);

inline constexpr AudioTap::Callbacks tapCallbacks{tapInit, tapPrepare, tapProcess, tapUnprepare, tapFinalize};

/// A new tap, or null if the platform makes none: the item then plays without an equaliser. Any thread.
[[nodiscard]] std::shared_ptr<AudioTap> makeTap(const AudioTap::Callbacks &callbacks = tapCallbacks);

} // namespace navorin::EqTap
