#include "LyricsRoutes.h"

#include "Accounts/Envelope.h"
#include "Catalogue.h"
#include "Lyrics/Lyrics.h"
#include "Routes.h"

#include <algorithm>
#include <optional>

namespace navorin::demo {

namespace {

struct Asked
{
    const Station *station = nullptr;
    const Song *song = nullptr;
};

const Song *songOf(const Station &station, const std::string &title, const std::string &artist)
{
    const auto found = std::find_if(station.songs.begin(), station.songs.end(), [&](const Song &song) {
        return song.title == title && (artist.empty() || song.artist == artist);
    });
    return found == station.songs.end() ? nullptr : &*found;
}

/// A playlist's or a kept song comes under a genre that only the client knows: then any station will do.
Asked askedFor(const Catalogue &catalogue, const httplib::Request &request)
{
    const std::string title = request.get_param_value("title");
    const std::string artist = request.get_param_value("artist");
    if (const Station *const own = catalogue.find(request.get_param_value("genre")))
        return {own, songOf(*own, title, artist)};
    for (const Station &station : catalogue.stations()) {
        if (const Song *const song = songOf(station, title, artist))
            return {&station, song};
    }
    return {};
}

/// How long the programme has run; absent for a song that is not on.
std::optional<double> elapsedOf(const Catalogue &catalogue, const Asked &asked)
{
    if (!asked.song || asked.station->kind != StationKind::Live)
        return {};
    const RingPosition position = catalogue.positionOf(*asked.station);
    return &asked.station->songs[static_cast<std::size_t>(position.index)] == asked.song
               ? std::optional(position.elapsed)
               : std::nullopt;
}

bool isSynced(const SungLine &line)
{
    return line.time.has_value();
}

Json wire(const SungLine &line)
{
    Json json = Json::object();
    if (line.time)
        json["time"] = *line.time;
    json["text"] = line.text;
    if (!line.translation.empty())
        json["translation"] = line.translation;
    return json;
}

Json wire(const Song &song, const Lyrics &lyrics)
{
    Json lines = Json::array();
    for (const SungLine &line : lyrics.lines)
        lines.push_back(wire(line));
    return {{"found", !lyrics.lines.empty()},
            {"synced", std::any_of(lyrics.lines.begin(), lyrics.lines.end(), isSynced)},
            {"title", song.title},
            {"artist", song.artist},
            {"lines", std::move(lines)}};
}

Reply answer(const Catalogue &catalogue, const httplib::Request &request)
{
    const Asked asked = askedFor(catalogue, request);
    if (!asked.song)
        return envelope(Json{{"found", false}});
    const Lyrics lyrics = lyricsOf(*asked.song, asked.station->repertoire);
    if (lyrics.isWithheld)
        return envelopeOfMessage("متن این ترانه هنوز آماده نیست");
    Json data = wire(*asked.song, lyrics);
    if (const auto elapsed = elapsedOf(catalogue, asked))
        data["elapsed_seconds"] = *elapsed;
    return envelope(data);
}

} // namespace

void addLyricsRoutes(Routes &routes, const Catalogue &catalogue)
{
    routes.add("GET", "/api/lyrics", [&catalogue](const httplib::Request &request, const auto &) {
        return answer(catalogue, request);
    });
}

} // namespace navorin::demo
