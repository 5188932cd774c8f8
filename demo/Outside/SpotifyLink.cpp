#include "SpotifyLink.h"

#include "Accounts/Refusal.h"
#include "Catalogue.h"
#include "Random.h"

#include <algorithm>
#include <array>
#include <regex>

namespace navorin::demo {

namespace {

constexpr std::size_t mostSongs = 12;

struct Link
{
    std::string kind;
    std::string id;
};

Link parsed(const std::string &text)
{
    static const std::regex form(
        R"(\s*(?:(?:https?://)?open\.spotify\.com/(?:intl-[a-z]+/)?|spotify:)(playlist|album|track)[/:]([A-Za-z0-9]{1,64})(?:[/?#].*)?\s*)");
    std::smatch parts;
    if (text.size() > 2000 || !std::regex_match(text, parts, form))
        throw Refusal(400, "این لینک اسپاتیفای نیست");
    return {parts[1], parts[2]};
}

std::vector<Found> songsOf(const Catalogue &catalogue, const Link &link, Random &random)
{
    std::vector<const Station *> lists;
    for (const Station &station : catalogue.stations()) {
        if (station.kind == StationKind::List && station.repertoire == Repertoire::Latin)
            lists.push_back(&station);
    }
    std::vector<Found> songs;
    const Station *const station =
        lists[static_cast<std::size_t>(random.below(static_cast<int>(lists.size())))];
    const std::size_t count = link.kind == "track" ? 1 : std::min(station->songs.size(), mostSongs);
    for (std::size_t i = 0; i < count; ++i)
        songs.push_back({station, i});
    return songs;
}

} // namespace

SpotifyPage spotifyPage(const Catalogue &catalogue, const std::string &link)
{
    static constexpr std::array<const char *, 5> titles{"Persian Indie", "Road Trip", "Deep Work",
                                                        "Sunday Morning", "Late Night Drive"};
    const Link parts = parsed(link);
    if (parts.id == "private")
        throw Refusal(403, "این پلی‌لیست خصوصی است");
    if (parts.id == "gone")
        throw Refusal(404, "چیزی پشت این لینک نیست");
    Random random(hashText(parts.id));
    SpotifyPage page{parts.kind, parts.id, titles[static_cast<std::size_t>(random.below(5))], {}, {}};
    if (parts.id != "empty")
        page.songs = songsOf(catalogue, parts, random);
    if (parts.kind == "playlist" || page.songs.empty())
        return page;
    page.artist = page.songs.front().song().artist;
    if (parts.kind == "track")
        page.title = page.songs.front().song().title;
    return page;
}

} // namespace navorin::demo
