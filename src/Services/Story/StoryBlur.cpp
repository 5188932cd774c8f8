#include "Services/Story/StoryBlur.h"

#include <QRgba64>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace navorin {
namespace {

using Pixel = std::array<float, 4>;

/// Pixels that stand for squares of `cell` pixels of a picture, the first of them `margin` cells outside of
/// it.
struct Grid
{
    Grid(int cell, int margin, QSize size)
        : cell(cell)
        , margin(margin)
        , columns(size.width())
        , rows(size.height())
        , pixels(std::size_t(columns) * std::size_t(rows))
    {
    }
    [[nodiscard]] Pixel &at(int column, int row)
    {
        return pixels[std::size_t(row) * std::size_t(columns) + std::size_t(column)];
    }
    [[nodiscard]] const Pixel &nearest(int column, int row) const
    {
        const auto x = std::clamp(column, 0, columns - 1);
        const auto y = std::clamp(row, 0, rows - 1);
        return pixels[std::size_t(y) * std::size_t(columns) + std::size_t(x)];
    }

    const int cell;
    const int margin;
    const int columns;
    const int rows;
    std::vector<Pixel> pixels;
};

void add(Pixel &sum, const Pixel &pixel, float weight)
{
    for (std::size_t i = 0; i < sum.size(); ++i)
        sum[i] += pixel[i] * weight;
}

/// The mean of the pixels below a cell.
Pixel mean(const QImage &image, QPoint corner, int cell)
{
    Pixel sum{};
    for (int y = corner.y(); y < corner.y() + cell; ++y) {
        const auto *line =
            reinterpret_cast<const QRgba64 *>(image.constScanLine(std::clamp(y, 0, image.height() - 1)));
        for (int x = corner.x(); x < corner.x() + cell; ++x) {
            const auto color = line[std::clamp(x, 0, image.width() - 1)];
            add(sum, {float(color.red()), float(color.green()), float(color.blue()), float(color.alpha())},
                1);
        }
    }
    for (auto &channel : sum)
        channel /= float(cell * cell);
    return sum;
}

Grid reduced(const QImage &image, int cell, int margin, QSize size)
{
    const QSize cells((size.width() + cell - 1) / cell + 2 * margin,
                      (size.height() + cell - 1) / cell + 2 * margin);
    Grid grid(cell, margin, cells);
    for (int row = 0; row < grid.rows; ++row) {
        for (int column = 0; column < grid.columns; ++column)
            grid.at(column, row) = mean(image, QPoint(column - margin, row - margin) * cell, cell);
    }
    return grid;
}

/// From the middle outwards; the whole bell adds up to 1.
std::vector<float> halfBell(double sigma, int reach)
{
    std::vector<double> weights;
    double total = 0;
    for (int i = 0; i <= reach; ++i) {
        weights.push_back(std::exp(-i * i / (2 * sigma * sigma)));
        total += i == 0 ? weights.back() : 2 * weights.back();
    }
    std::vector<float> bell;
    bell.reserve(weights.size());
    for (const auto weight : weights)
        bell.push_back(float(weight / total));
    return bell;
}

Grid smeared(const Grid &grid, const std::vector<float> &bell, QPoint direction)
{
    Grid result(grid.cell, grid.margin, {grid.columns, grid.rows});
    for (int row = 0; row < grid.rows; ++row) {
        for (int column = 0; column < grid.columns; ++column) {
            auto &sum = result.at(column, row);
            add(sum, grid.nearest(column, row), bell.front());
            for (int i = 1; i < int(bell.size()); ++i) {
                const auto step = direction * i;
                add(sum, grid.nearest(column + step.x(), row + step.y()), bell[std::size_t(i)]);
                add(sum, grid.nearest(column - step.x(), row - step.y()), bell[std::size_t(i)]);
            }
        }
    }
    return result;
}

QRgba64 between(const Grid &grid, int x, int y)
{
    const auto column = (x + 0.5) / grid.cell - 0.5 + grid.margin;
    const auto row = (y + 0.5) / grid.cell - 0.5 + grid.margin;
    const int left = int(std::floor(column));
    const int top = int(std::floor(row));
    const auto right = float(column - left);
    const auto below = float(row - top);
    Pixel sum{0.5F, 0.5F, 0.5F, 0.5F};
    add(sum, grid.nearest(left, top), (1 - right) * (1 - below));
    add(sum, grid.nearest(left + 1, top), right * (1 - below));
    add(sum, grid.nearest(left, top + 1), (1 - right) * below);
    add(sum, grid.nearest(left + 1, top + 1), right * below);
    return QRgba64::fromRgba64(quint16(sum[0]), quint16(sum[1]), quint16(sum[2]), quint16(sum[3]));
}

/// What is left of the blur for the bell when averaging over cells, and drawing between them, have done their
/// part.
double remainingSigma(double sigma, int cell)
{
    const double averaging = (cell * cell - 1) / 12.0;
    const double drawing = cell > 1 ? cell * cell / 6.0 : 0;
    return std::sqrt(sigma * sigma - averaging - drawing) / cell;
}

} // namespace

QImage gaussianBlurred(const QImage &image, double sigma, QSize size)
{
    const int cell = std::clamp(int(sigma / 6), 1, 8);
    const double left = remainingSigma(sigma, cell);
    const int reach = int(std::ceil(3.3 * left));
    const auto seen = QRect({}, size + QSize(2, 2) * (reach + 1) * cell).intersected(image.rect());
    const auto source = image.copy(seen).convertToFormat(QImage::Format_RGBA64_Premultiplied);
    const auto bell = halfBell(left, reach);
    auto grid = reduced(source, cell, reach + 1, size);
    const auto wide = smeared(grid, bell, {1, 0});
    const auto both = smeared(wide, bell, {0, 1});
    QImage result(size, QImage::Format_RGBA64_Premultiplied);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgba64 *>(result.scanLine(y));
        for (int x = 0; x < size.width(); ++x)
            line[x] = between(both, x, y);
    }
    return result;
}

} // namespace navorin
