#pragma once

#include "Station.h"

#include <mutex>
#include <optional>
#include <vector>

namespace navorin::demo {

class Catalogue;

/// One song of a station.
struct PlayedSong
{
    const Station *station = nullptr;
    std::size_t index = 0;

    [[nodiscard]] const Song &song() const { return station->songs[index]; }
};

/// What listeners have asked for lately. Several songs share a piece of music; this tells them apart. Any
/// thread.
class Plays
{
public:
    /// `index` of a track; absent for a live stream.
    void note(const Station &station, std::optional<std::size_t> index);

    /// The pieces behind what was played, the latest first.
    [[nodiscard]] std::vector<int> pieces(const Catalogue &catalogue) const;
    /// The song with this piece that was played last, or else the first one of the catalogue.
    [[nodiscard]] std::optional<PlayedSong> songWith(int piece, const Catalogue &catalogue) const;

private:
    struct Play
    {
        const Station *station = nullptr;
        std::optional<std::size_t> index;

        bool operator==(const Play &) const = default;
    };

    [[nodiscard]] static std::vector<PlayedSong> songsOf(const Play &play, const Catalogue &catalogue);

    mutable std::mutex m_mutex;
    std::vector<Play> m_plays; ///< the latest first
};

} // namespace navorin::demo
