#include "Random.h"
#include "Station.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <numeric>

namespace navorin::demo {

namespace {

using Texts = std::vector<std::string_view>;

const Texts persianTitles{"شب‌های روشن کویر",
                          "موج نیمه‌شب",
                          "بوی باران",
                          "کوچه‌ی اقاقی",
                          "آخرین قطار",
                          "دلتنگ دریا",
                          "پنجره‌ی رو به ماه",
                          "سفر به جنوب",
                          "چای و خاطره",
                          "پاییز بی‌قرار",
                          "گل‌های کاغذی",
                          "تا صبح بیداری",
                          "نامه‌های نرسیده",
                          "رقص فانوس",
                          "خیابان ولیعصر",
                          "شال آبی",
                          "دوباره بهار",
                          "یلدای بلند",
                          "ستاره‌ی سهیل",
                          "مسافر مه",
                          "لبخند انار",
                          "باغ آلبالو",
                          "زیر سایه‌ی سرو",
                          "قایق کاغذی",
                          "ساعت پنج عصر",
                          "آواز چکاوک",
                          "خانه‌ی مادربزرگ",
                          "نسیم کارون",
                          "پرواز قاصدک",
                          "شهر بی‌خواب",
                          "مثل رودخانه",
                          "گندم‌زار طلایی",
                          "رنگ‌های گمشده",
                          "تو و جاده",
                          "صدای پای آب",
                          "بلوار چنار",
                          "عطر نارنج",
                          "دانه‌ی برف",
                          "چراغ‌های دوردست",
                          "ماه بندر",
                          "لالایی کوه"};
const Texts persianArtists{"آوای کویر",
                           "گروه رهگذر",
                           "نیلوفر آرین",
                           "سامان کیهانی",
                           "مهتاب راد",
                           "بهار سپهری",
                           "گروه سپیدار",
                           "کاوه نیک‌پور",
                           "ترانه موسوی‌فر",
                           "آرش دریا",
                           "گروه نسیم",
                           "لیلا فروزان",
                           "پویا مهرآذر"};
const Texts latinTitles{"Paper Lanterns",
                        "Midnight Ferry",
                        "Blue Hour",
                        "Slow Train South",
                        "Glass Rivers",
                        "Harbour Lights",
                        "Left on Maple Street",
                        "Winter Radio",
                        "Copper Sky",
                        "Sleepless in Tbilisi",
                        "The Long Way Home",
                        "Velvet Static",
                        "Saffron Rain",
                        "Northern Window",
                        "Two Coffees",
                        "Falling Upwards",
                        "Tidal",
                        "Last Bus to Porto",
                        "Marigold",
                        "Echo Park Drive",
                        "Room 214",
                        "Soft Machines",
                        "Half a Moon",
                        "Static Hearts",
                        "Lighthouse",
                        "Ochre",
                        "Cassette Summer",
                        "Atlas",
                        "Gravity's Daughter",
                        "Neon Orchard",
                        "Snow on the Aerial"};
const Texts latinArtists{"The Paper Kites Club", "Mara Lindqvist", "Lantern & Co.",     "Owen Hale",
                         "Sofia Marques",        "Night Tram",     "Ada Bright",        "Kestrel",
                         "Low Tide Orchestra",   "Jun Okabe",      "The Borrowed Hours"};
const Texts calmTitles{"سپیده‌دم",
                       "برکه",
                       "نخستین برف",
                       "مه بر فراز جنگل",
                       "نفس کوهستان",
                       "تنهایی ساز",
                       "آب و آینه",
                       "رؤیای ابریشم",
                       "پروانه‌ی شب",
                       "خلوت باغ",
                       "آفتاب زمستان",
                       "پرده‌ی نقره‌ای",
                       "نیایش",
                       "بیشه",
                       "سکوت دشت",
                       "کهکشان دور",
                       "ریشه‌ها",
                       "قدم‌زدن در مه",
                       "دریاچه‌ی نیلی"};
const Texts calmArtists{"هم‌نوازان سپید",
                        "کیان ارسلان",
                        "دونوازی نی و تار",
                        "آرمان یزدان‌پناه",
                        "ارکستر کوچک باران",
                        "رها سهرابی",
                        "گروه آبگینه"};

const Texts &titlesOf(Repertoire repertoire)
{
    switch (repertoire) {
    case Repertoire::Latin:
        return latinTitles;
    case Repertoire::Calm:
        return calmTitles;
    case Repertoire::Persian:
        break;
    }
    return persianTitles;
}

const Texts &artistsOf(Repertoire repertoire)
{
    switch (repertoire) {
    case Repertoire::Latin:
        return latinArtists;
    case Repertoire::Calm:
        return calmArtists;
    case Repertoire::Persian:
        break;
    }
    return persianArtists;
}

/// Each list has a prime length, so a stride visits every title before one comes back.
std::vector<Song> songsFor(const Station &station)
{
    static constexpr std::array<int, 8> persianPieces{0, 1, 4, 5, 9, 10, 12, 2};
    static constexpr std::array<int, 6> latinPieces{4, 7, 5, 13, 11, 6};
    static constexpr std::array<int, 7> calmPieces{3, 8, 2, 6, 11, 12, 13};
    const Texts &titles = titlesOf(station.repertoire);
    const Texts &artists = artistsOf(station.repertoire);
    Random random(hashText(station.genre));
    const auto title = random.below(static_cast<int>(titles.size()));
    const auto stride = 1 + random.below(static_cast<int>(titles.size()) - 1);
    const auto artist = random.below(static_cast<int>(artists.size()));
    const int firstPiece = random.below(8);
    std::vector<Song> songs;
    songs.reserve(static_cast<std::size_t>(station.songCount));
    for (int i = 0; i < station.songCount; ++i) {
        const auto n = static_cast<std::size_t>(i);
        const std::size_t p = n + static_cast<std::size_t>(firstPiece);
        const int piece = station.repertoire == Repertoire::Persian ? persianPieces[p % persianPieces.size()]
                          : station.repertoire == Repertoire::Latin ? latinPieces[p % latinPieces.size()]
                                                                    : calmPieces[p % calmPieces.size()];
        songs.push_back(
            {titles[(static_cast<std::size_t>(title) + n * static_cast<std::size_t>(stride)) % titles.size()],
             artists[(static_cast<std::size_t>(artist) + n * 5) % artists.size()], piece});
    }
    return songs;
}

Station live(const char *genre, const char *name, const char *displayGenre, const char *category, Codec codec,
             Repertoire repertoire)
{
    Station station;
    station.genre = genre;
    station.name = name;
    station.displayGenre = displayGenre;
    station.category = category;
    station.codec = codec;
    station.repertoire = repertoire;
    return station;
}

Station list(const char *genre, const char *name, const char *displayGenre, const char *category,
             FileFormat format, Rotation rotation, Repertoire repertoire, int songCount)
{
    Station station = live(genre, name, displayGenre, category, Codec::Mp3, repertoire);
    station.kind = StationKind::List;
    station.title = name;
    station.format = format;
    station.rotation = rotation;
    station.songCount = songCount;
    return station;
}

Station deferred(const char *genre, const char *name, const char *displayGenre, const char *category,
                 Repertoire repertoire, int songCount)
{
    Station station =
        list(genre, name, displayGenre, category, FileFormat::Mp3, Rotation::None, repertoire, songCount);
    station.kind = StationKind::Deferred;
    return station;
}

std::vector<Station> builtInStations(int archiveTracks)
{
    using enum FileFormat;
    using enum Repertoire;
    constexpr auto iranian = "iranian";
    constexpr auto international = "international";
    constexpr auto instrumental = "instrumental";
    std::vector<Station> all{
        live("persian", "رادیو موج آبی", "پاپ ایرانی", iranian, Codec::Mp3, Persian),
        list("kavir", "غروب کویر", "محلی", iranian, Mp3, Rotation::Follows, Persian, 24),
        list("sarvestan", "سروستان", "آرام", iranian, Mp4, Rotation::None, Persian, 18),
        live("pop", "پاپ امروز", "پاپ", iranian, Codec::Aac, Persian),
        list("vinyl", "خاطره‌های وینیل", "نوستالژی", iranian, Mp3, Rotation::Follows, Persian,
             42),
        live("tehran-night", "نیمه‌شب تهران", "تلفیقی", iranian, Codec::Vorbis, Persian),
        live("jonub", "رادیو جنوب", "بندری", iranian, Codec::Mp3, Persian),
        list("sonnati", "سنتی و تار", "سنتی", iranian, Ogg, Rotation::None, Persian, 36),
        list("kuhestan", "بی‌کلام کوهستان", "بی‌کلام", instrumental, Mp3,
             Rotation::Follows, Calm, 12),
        list("yalda", "یلدا", "مناسبتی", iranian, Mp3, Rotation::LeavesZero, Persian, 20),
        deferred("songsara-1204", "عاشقانه‌های باران", "عاشقانه", iranian, Persian, 16),
        live("mahtab", "ماه و مرداب", "شبانه", instrumental, Codec::Aac, Calm),
        live("jazz", "Blue Hour Jazz", "Jazz", international, Codec::Mp3, Latin),
        list("golchin", "ایرانی", "منتخب", iranian, Mp3, Rotation::LeavesZero, Persian, 5),
        live("synthwave", "Neon Drive", "Synthwave", international, Codec::Aac, Latin),
        deferred("songsara-88", "جاده‌ی شمال", "سفر", iranian, Persian, 22),
        list("lofi", "Lo-Fi Study Room", "Lo-Fi", international, Mp4, Rotation::None, Latin, 16),
        list("nowruz", "نوروزانه", "بهاری", iranian, Mp3, Rotation::None, Persian, 14),
        live("nordic", "Nordic Quiet", "Folk", international, Codec::Vorbis, Latin),
        live("ney", "نی و نسیم", "نی‌نوازی", instrumental, Codec::Mp3, Calm),
        list("lisboa", "Café Lisboa", "Bossa Nova", international, Mp3, Rotation::Follows, Latin, 15),
        list("santur", "سنتور صبحگاهی", "سنتور", instrumental, Ogg, Rotation::Follows, Calm, 11),
        live("anatolia", "Anatolian Express", "World", international, Codec::Mp3, Latin),
        deferred("songsara-305", "World Top 20", "Chart", international, Latin, 20),
        list("piano", "پیانو در باران", "پیانو", instrumental, Mp4, Rotation::None, Calm, 13),
        list("highway", "Desert Highway", "Rock", international, Mp3, Rotation::None, Latin, 17),
        live("focus", "تمرکز", "مطالعه", instrumental, Codec::Aac, Calm),
        deferred("songsara-417", "موسیقی فیلم", "سینما", instrumental, Calm, 18),
        list("tango", "Tango Nocturno", "Tango", international, Ogg, Rotation::None, Latin, 10),
        live("kahkeshan", "کهکشان", "امبینت", instrumental, Codec::Vorbis, Calm),
        deferred("songsara-77", "خواب آرام", "لالایی", instrumental, Calm, 9),
        list("archive", "آرشیو بزرگ", "همه‌ی سال‌ها", iranian, Mp3, Rotation::None, Persian,
             archiveTracks),
    };
    for (Station &station : all) {
        station.tracksHaveAddress =
            station.genre != "sonnati" && station.genre != "piano" && station.genre != "kavir";
        station.numbersAsText =
            station.genre == "vinyl" || station.genre == "lofi" || station.genre == "songsara-88";
        station.statesTrackCount = station.genre != "nowruz";
        if (station.genre == "golchin")
            station.title = "گلچین هفته";
    }
    return all;
}

Station generatedStation(int number)
{
    static constexpr std::array<const char *, 3> categories{"iranian", "international", "instrumental"};
    std::array<char, 64> genre{};
    std::array<char, 64> name{};
    std::snprintf(genre.data(), genre.size(), "station-%05d", number);
    std::snprintf(name.data(), name.size(), "ایستگاه %d", number);
    const std::size_t kind = static_cast<std::size_t>(number) % 3;
    return live(genre.data(), name.data(), "آزمایشی", categories[kind], Codec::Mp3,
                static_cast<Repertoire>(kind));
}

} // namespace

std::vector<Station> makeStations(int stationCount, int archiveTracks)
{
    std::vector<Station> stations = builtInStations(archiveTracks);
    while (static_cast<int>(stations.size()) < stationCount)
        stations.push_back(generatedStation(static_cast<int>(stations.size()) + 1));
    for (Station &station : stations)
        station.songs = songsFor(station);
    return stations;
}

RingPosition ringPosition(const Station &station, double now)
{
    const int total = std::accumulate(station.songs.begin(), station.songs.end(), 0,
                                      [](int sum, const Song &s) { return sum + pieceSeconds(s.piece); });
    // stations do not all change at the same moment
    double left = std::fmod(now + static_cast<double>(hashText(station.genre) % 10'000), total);
    for (std::size_t i = 0; i < station.songs.size(); ++i) {
        const int length = pieceSeconds(station.songs[i].piece);
        if (left < length)
            return {static_cast<int>(i), left};
        left -= length;
    }
    return {};
}

} // namespace navorin::demo
