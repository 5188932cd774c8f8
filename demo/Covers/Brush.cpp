#include "Covers/Brush.h"

#include <cmath>
#include <numbers>
#include <vector>

namespace navorin::demo {

namespace {

void setStops(QGradient &gradient, Brush::Stops stops)
{
    for (const auto &[place, colour] : stops)
        gradient.setColorAt(place, colour);
}

QPainterPath closedBelow(const std::vector<QPointF> &edge)
{
    QPainterPath path(QPointF(0, Brush::side));
    for (const QPointF &point : edge)
        path.lineTo(point);
    path.lineTo(Brush::side, Brush::side);
    path.closeSubpath();
    return path;
}

} // namespace

void Brush::sky(Stops stops)
{
    QLinearGradient gradient(0, 0, 0, side);
    setStops(gradient, stops);
    p.fillRect(QRectF(0, 0, side, side), gradient);
}

void Brush::radiate(QPointF centre, double radius, Stops stops)
{
    QRadialGradient gradient(centre, radius);
    setStops(gradient, stops);
    p.fillRect(QRectF(0, 0, side, side), gradient);
}

void Brush::glow(QPointF centre, double radius, const QColor &colour)
{
    QRadialGradient gradient(centre, radius);
    gradient.setColorAt(0, colour);
    gradient.setColorAt(0.35, faded(colour, colour.alphaF() * 0.42));
    gradient.setColorAt(0.7, faded(colour, colour.alphaF() * 0.1));
    gradient.setColorAt(1, faded(colour, 0));
    p.setCompositionMode(QPainter::CompositionMode_Screen);
    disc(centre, radius, gradient);
    p.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void Brush::disc(QPointF centre, double radius, const QBrush &brush)
{
    p.setPen(Qt::NoPen);
    p.setBrush(brush);
    p.drawEllipse(centre, radius, radius);
}

void Brush::stars(int count, double bottom, const QColor &colour)
{
    for (int i = 0; i < count; ++i) {
        const double brightness = random.unit();
        disc({random.between(0, side), random.between(0, bottom)}, 0.6 + 1.5 * brightness * brightness,
             faded(colour, 0.25 + 0.7 * brightness));
    }
}

void Brush::stroke(const QPainterPath &path, const QColor &colour, double width)
{
    p.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawPath(path);
}

QPainterPath Brush::softRidge(double y, double height, double wave)
{
    const double first = random.between(0, 6.28);
    const double second = random.between(0, 6.28);
    std::vector<QPointF> edge;
    for (double x = 0; x <= side; x += 6) {
        const double turn = 2 * std::numbers::pi * x / wave;
        edge.emplace_back(x,
                          y + height * (0.7 * std::sin(turn + first) + 0.3 * std::sin(2.3 * turn + second)));
    }
    return closedBelow(edge);
}

QPainterPath Brush::roughRidge(double y, double height)
{
    std::vector<double> heights{random.between(-1, 1), random.between(-1, 1), random.between(-1, 1),
                                random.between(-1, 1), random.between(-1, 1)};
    for (double share = 0.5; heights.size() < 250; share *= 0.52) {
        std::vector<double> finer;
        for (std::size_t i = 0; i + 1 < heights.size(); ++i) {
            finer.push_back(heights[i]);
            finer.push_back((heights[i] + heights[i + 1]) / 2 + share * random.between(-1, 1));
        }
        finer.push_back(heights.back());
        heights = std::move(finer);
    }
    std::vector<QPointF> edge;
    for (std::size_t i = 0; i < heights.size(); ++i)
        edge.emplace_back(side * static_cast<double>(i) / static_cast<double>(heights.size() - 1),
                          y - height * heights[i]);
    return closedBelow(edge);
}

QColor mixed(const QColor &from, const QColor &to, double share)
{
    const auto s = static_cast<float>(share);
    return QColor::fromRgbF(
        from.redF() + (to.redF() - from.redF()) * s, from.greenF() + (to.greenF() - from.greenF()) * s,
        from.blueF() + (to.blueF() - from.blueF()) * s, from.alphaF() + (to.alphaF() - from.alphaF()) * s);
}

QColor faded(const QColor &colour, double alpha)
{
    QColor result = colour;
    result.setAlphaF(static_cast<float>(alpha));
    return result;
}

QPointF around(QPointF centre, double radius, double degrees)
{
    const double turn = degrees * std::numbers::pi / 180;
    return centre + QPointF(radius * std::cos(turn), radius * std::sin(turn));
}

QLinearGradient vertical(double top, double bottom, const QColor &from, const QColor &to)
{
    QLinearGradient gradient(0, top, 0, bottom);
    gradient.setColorAt(0, from);
    gradient.setColorAt(1, to);
    return gradient;
}

} // namespace navorin::demo
