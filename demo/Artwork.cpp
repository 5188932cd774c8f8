#include "Artwork.h"

#include "Covers/Covers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

namespace navorin::demo {

namespace {

using Painter = void (*)(Brush &);

struct Cover
{
    std::string_view name;
    Painter paint;
    std::array<QRgb, 5> colours; ///< dark, deep, mid, light, accent
};

using namespace covers;

constexpr std::array<Cover, 32> stationCovers{{
    {"persian", waves, {0x04122B, 0x0B3A66, 0x1577A8, 0x6FE0F2, 0x22C3DD}},
    {"kavir", dunes, {0x2A0E2E, 0x8A2A4B, 0xE26A3C, 0xFFC46B, 0xFFE9A8}},
    {"sarvestan", forest, {0x10301F, 0x1F5A38, 0x6DA777, 0xE9E6BF, 0xFFF4D0}},
    {"pop", mandala, {0x1B0A3A, 0x5A1380, 0xB52BC4, 0xFFC9F2, 0xE83CCB}},
    {"vinyl", ovals, {0x21405B, 0x3E5C6E, 0xE9A03B, 0xF3E2C3, 0xC9512F}},
    {"tehran-night", arcs, {0x0B0B0E, 0x23232B, 0x55555F, 0xE9E6DF, 0xE5432F}},
    {"jonub", splitDisc, {0x123F45, 0x1C5560, 0x279B92, 0xF5DDB0, 0xFB6E62}},
    {"sonnati", girih, {0x062B30, 0x0C5258, 0x14828A, 0xE8C777, 0xF4DF9E}},
    {"kuhestan", mountains, {0x16212D, 0x34495D, 0x6E879C, 0xD3DEE6, 0xFFE3B8}},
    {"yalda", pomegranate, {0x3A0B18, 0x7A0F2B, 0xD9A27E, 0xF7E4D2, 0xD2203F}},
    {"songsara-1204", rain, {0x0B1430, 0x1E2F63, 0x4660A8, 0xF4B6C8, 0xFF8F6B}},
    {"mahtab", moonLake, {0x070A1E, 0x1A2150, 0x3D4C8E, 0xCFD8FF, 0xFBEFC9}},
    {"jazz", skyline, {0x0A1030, 0x17306B, 0x3567A8, 0xBFDcF5, 0xFFC857}},
    {"golchin", arches, {0x0E1B3D, 0x14407A, 0x1F83A8, 0xF2DDA4, 0xF08A4B}},
    {"synthwave", neonSun, {0x12052E, 0x4A0F6B, 0xE0318C, 0xFFD866, 0xFF4FA3}},
    {"songsara-88", road, {0x0F2A24, 0x24594A, 0x7FB59A, 0xF7E3B5, 0xFFD27A}},
    {"lofi", cup, {0x3B2430, 0x74455A, 0xE0A98F, 0xFBE8CF, 0x4F8A8B}},
    {"nowruz", tulips, {0x1F3D2B, 0x2F7A4F, 0x8CC084, 0xFBF0DA, 0xE8394D}},
    {"nordic", aurora, {0x050B1C, 0x0B2440, 0x157A7A, 0x6CF5B5, 0xA56BFF}},
    {"ney", wind, {0x3A2A17, 0x8A5A2B, 0xC98F4E, 0xF7ECD6, 0x2E7D7A}},
    {"lisboa", tiles, {0x0F2A55, 0x1F4E9C, 0x5C93D6, 0xF6F1E2, 0xF2B63C}},
    {"santur", stringArt, {0x1A0F0A, 0x4A2413, 0xA1562A, 0xFFE6B8, 0xF2A541}},
    {"anatolia", kilim, {0x2A0E12, 0x7C1C23, 0xD98A2B, 0xF3E1C0, 0x1F6F78}},
    {"songsara-305", globe, {0x081226, 0x123A6B, 0x1E7FC2, 0xBFE6FF, 0xFF7A45}},
    {"piano", pianoKeys, {0x10121C, 0x2B3350, 0x6B78A6, 0xE9ECF7, 0x7BB8FF}},
    {"highway", mesas, {0x33110F, 0x8C3320, 0xE07A3F, 0xFFD9A0, 0xFFF0C4}},
    {"focus", inkCircle, {0x1A1A1E, 0x3A3A42, 0x7D7B80, 0xEFE8DA, 0xC7352B}},
    {"songsara-417", reel, {0x14100F, 0x43302A, 0xA5896F, 0xEADBC4, 0xE0A13B}},
    {"tango", rose, {0x22060F, 0x5E0E26, 0xE25A73, 0xFFD3CF, 0xB3122F}},
    {"kahkeshan", galaxy, {0x07051A, 0x231250, 0x6B3FC4, 0xE9D6FF, 0xFFB37A}},
    {"songsara-77", clouds, {0x141A44, 0x37408A, 0x8C86C9, 0xF3D9EE, 0xFFE9B0}},
    {"archive", cassette, {0x22303C, 0x3C5566, 0x6FB1A0, 0xF6E7C8, 0xEE6C4D}},
}};

Palette paletteOf(const Cover &cover, double hueShift)
{
    const auto shifted = [hueShift](QRgb rgb) {
        float hue = 0;
        float saturation = 0;
        float lightness = 0;
        QColor(rgb).getHslF(&hue, &saturation, &lightness);
        const double turned = hue < 0 ? 0 : hue + hueShift;
        return QColor::fromHslF(static_cast<float>(turned - std::floor(turned)), saturation, lightness);
    };
    const auto &c = cover.colours;
    return {shifted(c[0]), shifted(c[1]), shifted(c[2]), shifted(c[3]), shifted(c[4])};
}

/// A little film grain: it hides the steps of smooth gradients, which JPEG would make worse.
void addGrain(QImage &image, Random random)
{
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int grain = static_cast<int>(random.next() % 7U) - 3;
            const auto grained = [grain](int value) { return std::clamp(value + grain, 0, 255); };
            line[x] = qRgb(grained(qRed(line[x])), grained(qGreen(line[x])), grained(qBlue(line[x])));
        }
    }
}

} // namespace

QImage drawArtwork(std::string_view name, std::string_view programme)
{
    const auto station = std::find_if(stationCovers.begin(), stationCovers.end(),
                                      [name](const Cover &cover) { return cover.name == name; });
    Random chance(hashText(std::string(name) + "?" + std::string(programme)));
    const bool own = station != stationCovers.end();
    const Cover &cover =
        own ? *station : stationCovers[static_cast<std::size_t>(chance.below(stationCovers.size()))];
    const double shift = own && programme.empty() ? 0 : chance.between(-0.2, 0.2);

    QImage image(artworkSize, artworkSize, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    Brush brush(painter, paletteOf(cover, shift), Random(chance.next()));
    cover.paint(brush);
    painter.end();
    addGrain(image, chance);
    return image;
}

} // namespace navorin::demo
