#pragma once

#include "Station.h"

#include <string>
#include <string_view>
#include <vector>

namespace navorin::demo {

class Catalogue;

/// A song of a station's list.
struct Found
{
    const Station *station = nullptr;
    std::size_t index = 0;

    [[nodiscard]] const Song &song() const { return station->songs[index]; }
};

/// The songs of all lists whose title or artist holds every word of `query`, each title once and at most
/// `limit` of them. Case, half-spaces and the Arabic forms of Persian letters make no difference.
[[nodiscard]] std::vector<Found> findSongs(const Catalogue &catalogue, std::string_view query,
                                           std::size_t limit);

} // namespace navorin::demo
