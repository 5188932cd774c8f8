#include "Services/Artwork/ArtworkColor.h"

#include <algorithm>

namespace navorin {
namespace {

constexpr float saturationGain = 1.25F;
constexpr float mostSaturation = 0.85F;
constexpr float brightnessGain = 1.08F;
constexpr float mostBrightness = 0.95F;

struct Sums
{
    quint64 red = 0;
    quint64 green = 0;
    quint64 blue = 0;
};

Sums sumsOf(const QImage &image)
{
    Sums sums;
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            sums.red += quint64(qRed(line[x]));
            sums.green += quint64(qGreen(line[x]));
            sums.blue += quint64(qBlue(line[x]));
        }
    }
    return sums;
}

} // namespace

std::optional<QColor> averageColor(const QImage &image)
{
    if (image.isNull())
        return {};
    const auto sums = sumsOf(image.convertToFormat(
        image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32));
    const auto count = quint64(image.width()) * quint64(image.height());
    const auto mean = [count](quint64 sum) { return int((sum + count / 2) / count); };
    return QColor(mean(sums.red), mean(sums.green), mean(sums.blue));
}

QColor vibrantColor(const QColor &average)
{
    float hue = 0;
    float saturation = 0;
    float brightness = 0;
    average.getHsvF(&hue, &saturation, &brightness);
    return QColor::fromHsvF(std::max(hue, 0.0F), // Qt gives a grey no hue
                            std::min(saturation * saturationGain, mostSaturation),
                            std::min(brightness * brightnessGain, mostBrightness));
}

std::optional<QColor> vibrantColor(const QImage &image)
{
    const auto average = averageColor(image);
    return average ? std::optional(vibrantColor(*average)) : std::nullopt;
}

} // namespace navorin
