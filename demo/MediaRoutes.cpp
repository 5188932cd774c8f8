#include "MediaRoutes.h"

#include "ArtworkStore.h"
#include "Catalogue.h"
#include "Clock.h"
#include "LiveStream.h"
#include "Recognition/Plays.h"
#include "Routes.h"
#include "StopToken.h"

#include <charconv>

namespace navorin::demo {

namespace {

constexpr int metadataInterval = 16'000;

Reply notFound()
{
    return Reply::error(404, "پیدا نشد");
}

Reply audioFile(MediaStore &media, const Sound &sound, FileFormat format)
{
    Reply reply;
    reply.contentType = contentType(format);
    reply.body = media.file(sound, format);
    return reply.body.isEmpty() ? Reply::error(503, "صدا آماده نشد") : std::move(reply);
}

std::optional<int> numberParameter(const httplib::Request &request, const char *name)
{
    const std::string text = request.get_param_value(name);
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

Reply testTone(MediaStore &media, const httplib::Request &request)
{
    const int hertz = numberParameter(request, "hz").value_or(1000);
    if (hertz < 20 || hertz > 20'000)
        return Reply::error(400, "hz: 20 to 20000");
    const bool mp3 = request.get_param_value("format") == "mp3";
    return audioFile(media, Sound::tone(hertz), mp3 ? FileFormat::Mp3 : FileFormat::Wav);
}

Reply liveStream(const Station &station, const Catalogue &catalogue, MediaStore &media, const Clock &clock,
                 const StopToken &stop, const httplib::Request &request)
{
    Reply reply;
    reply.endless = true;
    reply.contentType = contentType(station.codec);
    reply.headers.emplace_back("icy-name", station.name);
    const bool wantsMetadata =
        request.get_header_value("Icy-MetaData") == "1" && station.codec != Codec::Vorbis;
    if (wantsMetadata)
        reply.headers.emplace_back("icy-metaint", std::to_string(metadataInterval));
    if (request.method != "HEAD")
        reply.stream = std::make_unique<LiveStream>(station, catalogue.positionOf(station), media, clock,
                                                    stop, wantsMetadata ? metadataInterval : 0);
    return reply;
}

Reply track(const Station &station, const Catalogue &catalogue, MediaStore &media, Plays &plays,
            const httplib::Request &request)
{
    const bool stated = request.has_param("track");
    const auto index = stated ? numberParameter(request, "track") : catalogue.positionOf(station).index;
    if (!index || *index < 0 || static_cast<std::size_t>(*index) >= station.songs.size())
        return notFound();
    if (request.method == "GET")
        plays.note(station, static_cast<std::size_t>(*index));
    return audioFile(media, Sound::piece(station.songs[static_cast<std::size_t>(*index)].piece),
                     station.format);
}

} // namespace

void addMediaRoutes(Routes &routes, const Catalogue &catalogue, MediaStore &media, ArtworkStore &artwork,
                    Plays &plays, const Clock &clock, const StopToken &stop)
{
    routes.add("GET", "/api/stations",
               [&catalogue](const auto &, const auto &) { return Reply::json(catalogue.listing()); });
    routes.add("GET", "/api/songsara/playlist/", [&catalogue](const auto &, const std::string &id) {
        std::string text = catalogue.playlist(id);
        return text.empty() ? notFound() : Reply::json(std::move(text));
    });
    routes.add("GET", "/stream/", [&](const httplib::Request &request, const std::string &genre) {
        if (genre == "test-tone")
            return testTone(media, request);
        const Station *const station = catalogue.find(genre);
        if (station == nullptr)
            return notFound();
        // a song of a live station can also be had by itself
        if (station->kind != StationKind::Live || request.has_param("track"))
            return track(*station, catalogue, media, plays, request);
        if (request.method == "GET")
            plays.note(*station, std::nullopt);
        return liveStream(*station, catalogue, media, clock, stop, request);
    });
    routes.add("GET", "/artwork/", [&artwork](const httplib::Request &request, const std::string &file) {
        const std::string programme = request.get_param_value(request.has_param("p") ? "p" : "v");
        return artwork.picture(file, programme);
    });
}

} // namespace navorin::demo
