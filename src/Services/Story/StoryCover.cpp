#include "Services/Story/StoryCover.h"

#include "Services/Story/RowKernels.h"
#include "Services/Story/StoryGeometry.h"

#include <algorithm>
#include <cmath>

namespace navorin {
namespace {

/// A source much finer than the canvas would flicker as it breathes: its samples would be met by chance.
constexpr int longestSide = 1152;

constexpr int full = 256;
/// From the edge inwards: nothing else reaches further.
constexpr double edgeReach = storyCoverRadius + 1;
/// From the edge outwards.
constexpr double borderReach = storyBorderWidth / 2 + 1;

QImage reduced(const QImage &image)
{
    const QSize size = image.size().boundedTo({longestSide, longestSide});
    return size == image.size() ? image : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

std::uint8_t mixed(int below, int above, int share)
{
    return std::uint8_t((below * (full - share) + above * share + full / 2) / full);
}

std::uint16_t coverageOf(double share)
{
    return std::uint16_t(std::lround(full * std::clamp(share, 0.0, 1.0)));
}

} // namespace

StoryCover::StoryCover(const QImage &image)
    : m_picture(planarPicture(reduced(image)))
    , m_columns(storySize.width())
    , m_halfColumns(storySize.width() / 2)
    , m_blended(std::size_t(m_picture.size.width()) + 1)
    , m_sampled(std::size_t(storySize.width()))
{
    for (auto &coverage : m_coverage) {
        coverage.fill.resize(m_sampled.size());
        coverage.border.resize(m_sampled.size());
    }
}

void StoryCover::moveTo(const QRectF &square)
{
    m_square = square;
    m_corner = (int(std::ceil(square.left() + storyCoverRadius)) + 1) & ~1;
    place(m_columns, 1, m_picture.luma.width);
    place(m_halfColumns, 2, m_picture.blue.width);
}

StoryCover::Tap StoryCover::tapAt(double place, int samples)
{
    const double kept = std::clamp(place, 0.0, double(samples - 1));
    const auto steps = int(std::lround(kept * tapSteps));
    return {steps / tapSteps, steps % tapSteps};
}

/// `coarseness` is how many pixels of the canvas, and of the picture, one sample stands for.
void StoryCover::place(Columns &columns, int coarseness, int samples) const
{
    const double scale = m_picture.size.width() / m_square.width();
    for (std::size_t i = 0; i < columns.index.size(); ++i) {
        const double inPicture = ((double(i) + 0.5) * coarseness - m_square.x()) * scale;
        const auto tap = tapAt(inPicture / coarseness - 0.5, samples);
        columns.index[i] = tap.index;
        columns.weights[i] = std::uint32_t(tapSteps - tap.nearness) | std::uint32_t(tap.nearness) << 16;
    }
}

StoryCover::Tap StoryCover::rowTap(int row, int coarseness, int samples) const
{
    const double scale = m_picture.size.height() / m_square.height();
    return tapAt(((row + 0.5) * coarseness - m_square.y()) * scale / coarseness - 0.5, samples);
}

bool StoryCover::fills(int y) const
{
    return y >= m_square.top() + edgeReach && y + 2 <= m_square.bottom() - edgeReach;
}

bool StoryCover::touches(int y) const
{
    return y + 2 > m_square.top() - borderReach && y < m_square.bottom() + borderReach;
}

void StoryCover::drawRows(const PlanarCanvas &canvas, int y)
{
    if (fills(y))
        drawPlainRows(canvas, y);
    else
        drawEdgeRows(canvas, y);
}

void StoryCover::sample(const Plane &plane, Tap row, const Columns &columns, std::uint8_t *target)
{
    static const SampleKernel kernel = avx2SampleKernel() ? avx2SampleKernel() : sampleRowPortable;
    const auto first = std::size_t(columns.index.front());
    const auto last = std::min(std::size_t(columns.index.back()) + 1, std::size_t(plane.width) - 1);
    const auto *below = plane.row(std::min(row.index + 1, plane.height - 1));
    blendRows(m_blended.data() + first, plane.row(row.index) + first, below + first, last + 1 - first,
              row.nearness);
    m_blended[last + 1] = m_blended[last];
    kernel(m_blended.data(), columns.taps(), target);
}

void StoryCover::drawPlainRows(const PlanarCanvas &canvas, int y)
{
    for (int row = y; row < y + 2; ++row)
        sample(m_picture.luma, rowTap(row, 1, m_picture.luma.height), m_columns, canvas.lumaRow(row));
    const auto half = rowTap(y / 2, 2, m_picture.blue.height);
    const int offset = y / 2 * (canvas.width / 2);
    sample(m_picture.blue, half, m_halfColumns, canvas.blue + offset);
    sample(m_picture.red, half, m_halfColumns, canvas.red + offset);
}

/// From the outline; negative inside.
double StoryCover::distance(double x, double y) const
{
    const double half = m_square.width() / 2 - storyCoverRadius;
    const double right = std::abs(x - m_square.center().x()) - half;
    const double down = std::abs(y - m_square.center().y()) - half;
    return std::hypot(std::max(right, 0.0), std::max(down, 0.0)) + std::min(std::max(right, down), 0.0) -
           storyCoverRadius;
}

void StoryCover::measure(Coverage &coverage, int y) const
{
    const int width = int(coverage.fill.size());
    measureColumns(coverage, y, 0, m_corner + 1);
    measureColumns(coverage, y, width - m_corner, width);
    const auto level = [this](std::vector<std::uint16_t> &values) {
        std::fill(values.begin() + m_corner, values.end() - m_corner, values[std::size_t(m_corner)]);
        return values[std::size_t(m_corner)];
    };
    const auto fill = level(coverage.fill);
    const auto border = level(coverage.border);
    coverage.isPlain = fill == full && border == 0;
}

void StoryCover::measureColumns(Coverage &coverage, int y, int from, int to) const
{
    for (int x = from; x < to; ++x) {
        const double outside = distance(x + 0.5, y + 0.5);
        const auto border = coverageOf(storyBorderWidth / 2 + 0.5 - std::abs(outside));
        coverage.fill[std::size_t(x)] = coverageOf(0.5 - outside);
        coverage.border[std::size_t(x)] = std::uint16_t(border * storyBorderAlpha);
    }
}

void StoryCover::drawEdgeRows(const PlanarCanvas &canvas, int y)
{
    for (int i = 0; i < 2; ++i) {
        auto &coverage = m_coverage[std::size_t(i)];
        measure(coverage, y + i);
        sample(m_picture.luma, rowTap(y + i, 1, m_picture.luma.height), m_columns, m_sampled.data());
        mixRow(canvas.lumaRow(y + i), coverage);
    }
    const auto half = rowTap(y / 2, 2, m_picture.blue.height);
    const int offset = y / 2 * (canvas.width / 2);
    sample(m_picture.blue, half, m_halfColumns, m_sampled.data());
    mixHalfRow(canvas.blue + offset);
    sample(m_picture.red, half, m_halfColumns, m_sampled.data());
    mixHalfRow(canvas.red + offset);
}

/// Brings what was sampled into a row: column by column where the cover does not fill it.
template <typename Mix>
void StoryCover::mixAround(std::uint8_t *target, int width, int corner, bool isPlain, Mix mix) const
{
    const int levelEnd = width - corner;
    for (int x = 0; x < (isPlain ? corner : levelEnd); ++x)
        target[x] = mix(x);
    if (isPlain)
        std::copy(m_sampled.begin() + corner, m_sampled.begin() + levelEnd, target + corner);
    for (int x = levelEnd; x < width; ++x)
        target[x] = mix(x);
}

void StoryCover::mixRow(std::uint8_t *target, const Coverage &coverage) const
{
    mixAround(target, storySize.width(), m_corner, coverage.isPlain, [&](int x) {
        const auto i = std::size_t(x);
        return mixed(mixed(target[x], m_sampled[i], coverage.fill[i]), lumaOfWhite, coverage.border[i]);
    });
}

void StoryCover::mixHalfRow(std::uint8_t *target) const
{
    const auto &upper = m_coverage[0];
    const auto &lower = m_coverage[1];
    const auto mean = [](const auto &above, const auto &below, std::size_t x) {
        return (above[2 * x] + above[2 * x + 1] + below[2 * x] + below[2 * x + 1] + 2) / 4;
    };
    mixAround(target, storySize.width() / 2, m_corner / 2, upper.isPlain && lower.isPlain, [&](int x) {
        const auto i = std::size_t(x);
        const int fill = mean(upper.fill, lower.fill, i);
        const int border = mean(upper.border, lower.border, i);
        return mixed(mixed(target[x], m_sampled[i], fill), chromaOfGrey, border);
    });
}

} // namespace navorin
