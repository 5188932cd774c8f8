#include "Catalogue.h"

#include "Clock.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace navorin::demo {

using Json = nlohmann::ordered_json;

namespace {

constexpr std::string_view deferredPrefix = "songsara-";

std::string envelope(const std::string &data)
{
    return R"({"code":200,"message":"ok","data":[)" + data + "]}";
}

Json numberOr(bool asText, int value)
{
    return asText ? Json(std::to_string(value)) : Json(value);
}

std::string programmeLine(const Song &song)
{
    return std::string(song.artist) + " - " + std::string(song.title);
}

} // namespace

Catalogue::Catalogue(std::vector<Station> stations, const Clock &clock, std::string address)
    : m_stations(std::move(stations))
    , m_clock(clock)
    , m_address(std::move(address))
{
    for (std::size_t i = 0; i < m_stations.size(); ++i) {
        m_byGenre.emplace(m_stations[i].genre, i);
        if (m_stations[i].kind != StationKind::Live)
            m_tracks.emplace(m_stations[i].genre, tracksOf(m_stations[i]));
    }
}

const Station *Catalogue::find(const std::string &genre) const
{
    const auto found = m_byGenre.find(genre);
    return found == m_byGenre.end() ? nullptr : &m_stations[found->second];
}

RingPosition Catalogue::positionOf(const Station &station) const
{
    return ringPosition(station, m_clock.now());
}

std::string Catalogue::listing() const
{
    std::string data;
    for (const Station &station : m_stations) {
        if (!data.empty())
            data += ',';
        data += record(station, station.kind == StationKind::List);
    }
    return envelope(data);
}

std::string Catalogue::playlist(const std::string &id) const
{
    const Station *const station = find(std::string(deferredPrefix) + id);
    return station != nullptr && station->kind == StationKind::Deferred ? envelope(record(*station, true))
                                                                        : std::string();
}

std::string Catalogue::record(const Station &station, bool withTracks) const
{
    const RingPosition position = positionOf(station);
    const Song &song = station.songs[static_cast<std::size_t>(position.index)];
    const std::string artwork = "/artwork/" + station.genre + ".jpg";
    Json json{{"genre", station.genre}, {"server_name", station.name}};
    if (station.kind == StationKind::Live) {
        json["title"] = programmeLine(song);
        json["artist"] = song.artist;
        json["stream_url"] =
            station.codec == Codec::Aac ? m_address + "/stream/" + station.genre : "/stream/" + station.genre;
        json["artwork_url"] = artwork + "?p=" + std::to_string(position.index);
        json["source"] = "radio";
    } else {
        json["title"] = station.title;
        json["artist"] = nullptr;
        json["artwork_url"] = station.format == FileFormat::Mp4 ? m_address + artwork : artwork;
        json["source"] = station.kind == StationKind::Deferred ? "songsara" : "playlist";
    }
    json["category"] = station.category;
    json["display_genre"] = station.displayGenre;
    if (station.kind == StationKind::List && station.statesTrackCount)
        json["track_count"] = station.songCount;
    const bool zero = position.index == 0 && station.rotation == Rotation::LeavesZero;
    if (station.rotation != Rotation::None && !zero) {
        json["track_index"] = position.index;
        json["elapsed_seconds"] = std::floor(position.elapsed * 10) / 10;
    }
    std::string text = json.dump();
    if (withTracks) {
        text.pop_back();
        text += R"(,"tracks":)" + m_tracks.at(station.genre) + '}';
    }
    return text;
}

std::string Catalogue::tracksOf(const Station &station) const
{
    std::string text = "[";
    for (std::size_t i = 0; i < station.songs.size(); ++i) {
        const Song &song = station.songs[i];
        const int number = static_cast<int>(i);
        const std::string index = std::to_string(number);
        Json track{{"id", numberOr(station.numbersAsText, 1000 + number)},
                   {"track_type", station.kind == StationKind::Deferred ? "songsara" : "radio"},
                   {"track_id", station.genre + "-" + index},
                   {"title", song.title},
                   {"artist", song.artist},
                   {"artwork_url", "/artwork/" + station.genre + "-" + index + ".jpg"}};
        if (station.tracksHaveAddress)
            track["stream_url"] =
                (number % 2 == 0 ? "/stream/" : m_address + "/stream/") + station.genre + "?track=" + index;
        track["duration"] = numberOr(station.numbersAsText, pieceSeconds(song.piece));
        text += (i == 0 ? "" : ",") + track.dump();
    }
    return text + "]";
}

} // namespace navorin::demo
