#include "Recognition/Plays.h"

#include "Catalogue.h"

#include <algorithm>

namespace navorin::demo {

namespace {

constexpr std::size_t mostPlays = 32;

} // namespace

void Plays::note(const Station &station, std::optional<std::size_t> index)
{
    const std::lock_guard lock(m_mutex);
    std::erase(m_plays, Play{&station, index});
    m_plays.insert(m_plays.begin(), {&station, index});
    m_plays.resize(std::min(m_plays.size(), mostPlays));
}

/// Of a live stream all songs of its ring, from the one that is on backwards: a listener hears it late.
std::vector<PlayedSong> Plays::songsOf(const Play &play, const Catalogue &catalogue)
{
    if (play.index)
        return {{play.station, *play.index}};
    const std::size_t count = play.station->songs.size();
    const auto current = static_cast<std::size_t>(catalogue.positionOf(*play.station).index);
    std::vector<PlayedSong> songs;
    for (std::size_t back = 0; back < count; ++back)
        songs.push_back({play.station, (current + count - back) % count});
    return songs;
}

std::vector<int> Plays::pieces(const Catalogue &catalogue) const
{
    const std::lock_guard lock(m_mutex);
    std::vector<int> pieces;
    for (const Play &play : m_plays) {
        for (const PlayedSong &played : songsOf(play, catalogue)) {
            if (std::find(pieces.begin(), pieces.end(), played.song().piece) == pieces.end())
                pieces.push_back(played.song().piece);
        }
    }
    return pieces;
}

std::optional<PlayedSong> Plays::songWith(int piece, const Catalogue &catalogue) const
{
    const std::lock_guard lock(m_mutex);
    for (const Play &play : m_plays) {
        for (const PlayedSong &played : songsOf(play, catalogue)) {
            if (played.song().piece == piece)
                return played;
        }
    }
    for (const Station &station : catalogue.stations()) {
        for (std::size_t i = 0; i < station.songs.size(); ++i) {
            if (station.songs[i].piece == piece)
                return PlayedSong{&station, i};
        }
    }
    return std::nullopt;
}

} // namespace navorin::demo
