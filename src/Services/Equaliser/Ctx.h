#pragma once

#include "Platform/Audio/AudioTap.h"
#include "Services/Equaliser/Cascade.h"
#include "Services/Equaliser/EqSnapshotStore.h"

#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

namespace navorin::EqTap {

/// What one tap knows: the format of its sound, the settings of its latest buffer, and the filters. No lock:
/// the host never runs prepare, process and unprepare of one tap at the same time.
class Ctx
{
public:
    std::shared_ptr<const EqGains> gains; ///< of the latest snapshot; null before the first
    std::vector<float> applied;           ///< the gains for which `cascades` was built
    double sampleRate = 44100;            ///< frames per second
    std::size_t channels = 2;             ///< at least 1
    bool interleaved = true;
    bool floatFormat = false;
    quint32 bitsPerSample = 32;
    std::vector<Cascade> cascades; ///< one for each channel, or empty
    bool enabled = false;          ///< of the latest snapshot
    qint64 dbgCounter = 0;         ///< buffer lists that were filtered

    /// Takes a new format. The filters are gone, and the next sync() builds new ones.
    void setup(const AudioStreamDescription &format);
    /// Takes over the settings. As long as gains and channels stay the same, so do the filters and what they
    /// remember; any other gains start with new, empty ones. The caller may be the audio thread: allocates
    /// only when it builds.
    void sync(const SnapshotBox &box);
    /// Empties the memory of all filters.
    void resetCascadeState();

    /// Filters buffer number `index` of a list, in place. False, and nothing done, if the buffer is empty,
    /// too short for that many frames, of a format that has no filter, or of a channel that has none.
    bool filterBuffer(std::size_t index, const AudioBuffer &buffer, qint64 frames);
};

/// The contexts of all taps, by the tap's address. The lock is held for one look-up.
class CtxStore
{
public:
    void insert(const AudioTap &tap);
    [[nodiscard]] std::shared_ptr<Ctx> find(const AudioTap &tap) const;
    void remove(const AudioTap &tap);

private:
    mutable std::mutex m_lock;
    std::unordered_map<const AudioTap *, std::shared_ptr<Ctx>> m_map;
};

[[nodiscard]] CtxStore &ctxStore();

/// How many channels a buffer holds, at least 1.
[[nodiscard]] inline std::size_t channelsOf(const AudioBuffer &buffer)
{
    return buffer.numberChannels > 0 ? buffer.numberChannels : 1;
}

} // namespace navorin::EqTap
