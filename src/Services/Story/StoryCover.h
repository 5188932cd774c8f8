#pragma once

#include "Services/Story/Planes.h"
#include "Services/Story/RowKernels.h"

#include <QRectF>

#include <array>
#include <cstdint>
#include <vector>

namespace navorin {

/// The cover of a story, drawn anew at each of its sizes and places, with round corners and a bright edge.
class StoryCover
{
public:
    /// An opaque picture of any size.
    explicit StoryCover(const QImage &image);

    /// Takes a place on the canvas: a square that reaches over both of its sides.
    void moveTo(const QRectF &square);
    /// The two rows from `y`, an even number, show nothing but the cover.
    [[nodiscard]] bool fills(int y) const;
    /// Some of those two rows may show the cover or its edge.
    [[nodiscard]] bool touches(int y) const;
    /// Draws the two rows from `y` on; where the cover does not fill them, onto what is there.
    void drawRows(const PlanarCanvas &canvas, int y);

private:
    /// Between which two samples a sample lies, and how near to the second, in 1/tapSteps.
    struct Tap
    {
        int index;
        int nearness;
    };
    struct Columns
    {
        explicit Columns(int count)
            : index(std::size_t(count))
            , weights(std::size_t(count))
        {
        }
        [[nodiscard]] RowTaps taps() const { return {index.data(), weights.data(), index.size()}; }

        std::vector<std::int32_t> index;
        std::vector<std::uint32_t> weights;
    };
    /// Of a row of the canvas.
    struct Coverage
    {
        std::vector<std::uint16_t> fill;   ///< 0 to 256
        std::vector<std::uint16_t> border; ///< 0 to 256
        bool isPlain = false;              ///< there is nothing but the cover between the corners
    };

    [[nodiscard]] static Tap tapAt(double place, int samples);
    void place(Columns &columns, int coarseness, int samples) const;
    [[nodiscard]] Tap rowTap(int row, int coarseness, int samples) const;
    void sample(const Plane &plane, Tap row, const Columns &columns, std::uint8_t *target);
    [[nodiscard]] double distance(double x, double y) const;
    void measure(Coverage &coverage, int y) const;
    void measureColumns(Coverage &coverage, int y, int from, int to) const;
    void drawPlainRows(const PlanarCanvas &canvas, int y);
    void drawEdgeRows(const PlanarCanvas &canvas, int y);
    void mixRow(std::uint8_t *target, const Coverage &coverage) const;
    void mixHalfRow(std::uint8_t *target) const;
    template <typename Mix>
    void mixAround(std::uint8_t *target, int width, int corner, bool isPlain, Mix mix) const;

    PlanarPicture m_picture;
    QRectF m_square;
    int m_corner = 0; ///< an even number of columns at each side, beyond which the outline is level
    Columns m_columns;
    Columns m_halfColumns;
    std::array<Coverage, 2> m_coverage;
    std::vector<std::uint16_t> m_blended; ///< a row between two of the source, see blendRows()
    std::vector<std::uint8_t> m_sampled;
};

} // namespace navorin
