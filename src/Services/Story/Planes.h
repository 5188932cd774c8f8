#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <cstdint>
#include <vector>

/// Pictures as an encoder takes them: a plane of luma and two of colour difference at half the width and
/// height, in 8 bits of limited range after BT.709. All of them mix linearly, as colours do.
namespace navorin {

inline constexpr int lumaOfWhite = 235;
inline constexpr int chromaOfGrey = 128;

struct Plane
{
    Plane() = default;
    explicit Plane(QSize size)
        : width(size.width())
        , height(size.height())
        , bytes(std::size_t(width) * std::size_t(height))
    {
    }
    [[nodiscard]] const std::uint8_t *row(int y) const
    {
        return bytes.data() + std::size_t(y) * std::size_t(width);
    }
    [[nodiscard]] std::uint8_t *row(int y) { return bytes.data() + std::size_t(y) * std::size_t(width); }

    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bytes;
};

/// An opaque picture; an odd edge has a colour sample of its own.
struct PlanarPicture
{
    QSize size;
    Plane luma;
    Plane blue;
    Plane red;
};
[[nodiscard]] PlanarPicture planarPicture(const QImage &image);

/// Where to draw, rows without gaps.
struct PlanarCanvas
{
    std::uint8_t *luma;
    std::uint8_t *blue;
    std::uint8_t *red;
    int width; ///< even

    [[nodiscard]] std::uint8_t *lumaRow(int y) const { return luma + std::ptrdiff_t(y) * width; }
};

/// A picture with transparency at a place of a canvas, cut down to what can be seen of it.
class PlanarOverlay
{
public:
    PlanarOverlay() = default;
    /// `corner` is where the picture's top left comes to lie.
    PlanarOverlay(const QImage &image, QPoint corner);

    /// Mixes it in; `strength` from 0 to 1.
    void drawOn(const PlanarCanvas &canvas, double strength) const;
    [[nodiscard]] bool isEmpty() const { return m_area.isEmpty(); }

private:
    QRect m_area; ///< on the canvas, even on all sides
    Plane m_luma; ///< these three premultiplied
    Plane m_blue;
    Plane m_red;
    Plane m_alpha;
    Plane m_halfAlpha; ///< for the colour differences
};

} // namespace navorin
