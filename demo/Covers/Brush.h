#pragma once

#include "Random.h"

#include <QColor>
#include <QPainter>
#include <QPainterPath>

#include <array>
#include <initializer_list>
#include <utility>

namespace navorin::demo {

/// The colours of one cover, from the darkest to the lightest, and one that stands out.
struct Palette
{
    QColor dark;
    QColor deep;
    QColor mid;
    QColor light;
    QColor accent;
};

/// What every cover is painted with: a square canvas of `side` units, its colours and its own chance.
class Brush
{
public:
    static constexpr double side = 600;
    static constexpr double middle = side / 2;

    Brush(QPainter &painter, const Palette &palette, Random random)
        : p(painter)
        , c(palette)
        , random(random)
    {
    }

    QPainter &p;
    const Palette c;
    Random random;

    using Stops = std::initializer_list<std::pair<double, QColor>>;

    /// Fills the canvas from top to bottom.
    void sky(Stops stops);
    /// Fills the canvas from a point outwards.
    void radiate(QPointF centre, double radius, Stops stops);
    /// Light around a point, added to what is there.
    void glow(QPointF centre, double radius, const QColor &colour);
    /// A filled circle.
    void disc(QPointF centre, double radius, const QBrush &brush);
    void stars(int count, double bottom, const QColor &colour);
    /// Lines from `from` in the given colour, round at their ends.
    void stroke(const QPainterPath &path, const QColor &colour, double width);

    /// Ground whose upper edge swings softly; `wave` is the length of its longest swell.
    [[nodiscard]] QPainterPath softRidge(double y, double height, double wave);
    /// Ground whose upper edge is broken like rock.
    [[nodiscard]] QPainterPath roughRidge(double y, double height);
};

[[nodiscard]] QColor mixed(const QColor &from, const QColor &to, double share);
[[nodiscard]] QColor faded(const QColor &colour, double alpha);
/// A point at an angle in degrees, clockwise from the right.
[[nodiscard]] QPointF around(QPointF centre, double radius, double degrees);
[[nodiscard]] QLinearGradient vertical(double top, double bottom, const QColor &from, const QColor &to);

} // namespace navorin::demo
