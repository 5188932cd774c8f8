#pragma once

#include "Station.h"

#include <unordered_map>

namespace navorin::demo {

class Clock;

/// The stations in the form in which the client reads them, as the clock has them now. Immutable: any thread.
class Catalogue
{
public:
    /// `address` is the server's own, "http://127.0.0.1:4000": some records carry absolute addresses.
    Catalogue(std::vector<Station> stations, const Clock &clock, std::string address);

    /// The answer of the station list.
    [[nodiscard]] std::string listing() const;
    /// The answer that fills in a deferred list; empty if there is none of this id.
    [[nodiscard]] std::string playlist(const std::string &id) const;

    [[nodiscard]] const std::vector<Station> &stations() const { return m_stations; }
    [[nodiscard]] const Station *find(const std::string &genre) const;
    [[nodiscard]] RingPosition positionOf(const Station &station) const;

private:
    [[nodiscard]] std::string record(const Station &station, bool withTracks) const;
    [[nodiscard]] std::string tracksOf(const Station &station) const;

    std::vector<Station> m_stations;
    std::unordered_map<std::string, std::size_t> m_byGenre;
    std::unordered_map<std::string, std::string> m_tracks; ///< the lists as JSON: they never change
    const Clock &m_clock;
    std::string m_address;
};

} // namespace navorin::demo
