#include "Services/Story/Planes.h"

#include "Services/Story/RowKernels.h"

#include <QRgba64>

#include <algorithm>
#include <cmath>

namespace navorin {
namespace {

/// Premultiplied, each from 0 to 1.
struct Color
{
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 0;
};

Color colorOf(QRgba64 pixel)
{
    constexpr float most = 65535;
    return {float(pixel.red()) / most, float(pixel.green()) / most, float(pixel.blue()) / most,
            float(pixel.alpha()) / most};
}

float brightness(const Color &color)
{
    return 0.2126F * color.red + 0.7152F * color.green + 0.0722F * color.blue;
}

std::uint8_t rounded(float value)
{
    return std::uint8_t(std::lround(std::clamp(value, 0.0F, 255.0F)));
}

std::uint8_t lumaOf(const Color &color)
{
    return rounded(16 * color.alpha + 219 * brightness(color));
}

std::uint8_t blueOf(const Color &color)
{
    return rounded(chromaOfGrey * color.alpha + 224 * (color.blue - brightness(color)) / 1.8556F);
}

std::uint8_t redOf(const Color &color)
{
    return rounded(chromaOfGrey * color.alpha + 224 * (color.red - brightness(color)) / 1.5748F);
}

const QRgba64 *scanLine(const QImage &image, int y)
{
    return reinterpret_cast<const QRgba64 *>(image.constScanLine(y));
}

/// The mean of the four pixels at twice the place; pixels beyond an odd edge are those of the edge.
Color meanOfFour(const QImage &image, int x, int y)
{
    Color sum;
    for (int i = 0; i < 4; ++i) {
        const auto *line = scanLine(image, std::min(2 * y + i / 2, image.height() - 1));
        const auto color = colorOf(line[std::min(2 * x + i % 2, image.width() - 1)]);
        sum.red += color.red / 4;
        sum.green += color.green / 4;
        sum.blue += color.blue / 4;
        sum.alpha += color.alpha / 4;
    }
    return sum;
}

template <typename Store>
void forEachPixel(const QImage &image, Store store)
{
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = scanLine(image, y);
        for (int x = 0; x < image.width(); ++x)
            store(x, y, colorOf(line[x]));
    }
}

template <typename Store>
void forEachFour(const QImage &image, Store store)
{
    for (int y = 0; y < (image.height() + 1) / 2; ++y) {
        for (int x = 0; x < (image.width() + 1) / 2; ++x)
            store(x, y, meanOfFour(image, x, y));
    }
}

QSize halved(QSize size)
{
    return {(size.width() + 1) / 2, (size.height() + 1) / 2};
}

/// What is not transparent, made even on all sides.
QRect inkOf(const QImage &image)
{
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = scanLine(image, y);
        const auto isInk = [](QRgba64 pixel) { return !pixel.isTransparent(); };
        const auto *first = std::find_if(line, line + image.width(), isInk);
        if (first == line + image.width())
            continue;
        const auto *last = line + image.width() - 1;
        while (!isInk(*last))
            --last;
        ink |= QRect(QPoint(int(first - line), y), QPoint(int(last - line), y));
    }
    if (ink.isEmpty())
        return {};
    return QRect(QPoint(ink.left() & ~1, ink.top() & ~1), QPoint(ink.right() | 1, ink.bottom() | 1));
}

} // namespace

PlanarPicture planarPicture(const QImage &image)
{
    const auto source = image.convertToFormat(QImage::Format_RGBA64_Premultiplied);
    PlanarPicture picture{source.size(), Plane(source.size()), Plane(halved(source.size())),
                          Plane(halved(source.size()))};
    forEachPixel(source, [&](int x, int y, const Color &color) { picture.luma.row(y)[x] = lumaOf(color); });
    forEachFour(source, [&](int x, int y, const Color &color) {
        picture.blue.row(y)[x] = blueOf(color);
        picture.red.row(y)[x] = redOf(color);
    });
    return picture;
}

PlanarOverlay::PlanarOverlay(const QImage &image, QPoint corner)
{
    const auto source = image.convertToFormat(QImage::Format_RGBA64_Premultiplied);
    const auto ink = inkOf(source);
    if (ink.isEmpty())
        return;
    const auto seen = source.copy(ink); // what lies outside of the picture is transparent
    m_area = ink.translated(corner);
    m_luma = m_alpha = Plane(seen.size());
    m_blue = m_red = m_halfAlpha = Plane(halved(seen.size()));
    forEachPixel(seen, [this](int x, int y, const Color &color) {
        m_luma.row(y)[x] = lumaOf(color);
        m_alpha.row(y)[x] = rounded(255 * color.alpha);
    });
    forEachFour(seen, [this](int x, int y, const Color &color) {
        m_blue.row(y)[x] = blueOf(color);
        m_red.row(y)[x] = redOf(color);
        m_halfAlpha.row(y)[x] = rounded(255 * color.alpha);
    });
}

void PlanarOverlay::drawOn(const PlanarCanvas &canvas, double strength) const
{
    const int share = int(std::lround(256 * std::clamp(strength, 0.0, 1.0)));
    for (int y = 0; y < m_luma.height; ++y) {
        auto *target = canvas.lumaRow(m_area.y() + y) + m_area.x();
        overlayRow(target, m_luma.row(y), m_alpha.row(y), std::size_t(m_luma.width), share);
    }
    for (int y = 0; y < m_blue.height; ++y) {
        const int offset = (m_area.y() / 2 + y) * (canvas.width / 2) + m_area.x() / 2;
        overlayRow(canvas.blue + offset, m_blue.row(y), m_halfAlpha.row(y), std::size_t(m_blue.width), share);
        overlayRow(canvas.red + offset, m_red.row(y), m_halfAlpha.row(y), std::size_t(m_red.width), share);
    }
}

} // namespace navorin
