#include "Covers/Covers.h"

#include <cmath>

namespace navorin::demo::covers {

namespace {

constexpr double side = Brush::side;
constexpr double middle = Brush::middle;

QPolygonF star(QPointF centre, int points, double outer, double inner, double turned)
{
    QPolygonF shape;
    for (int i = 0; i < 2 * points; ++i)
        shape << around(centre, i % 2 == 0 ? outer : inner, turned + 180.0 * i / points);
    return shape;
}

QPainterPath petal(QPointF root, double length, double width, double degrees)
{
    const QPointF tip = around(root, length, degrees);
    QPainterPath path(root);
    path.cubicTo(around(root, length * 0.25, degrees) + around({}, width, degrees - 90),
                 around(root, length * 0.8, degrees) + around({}, width, degrees - 90), tip);
    path.cubicTo(around(root, length * 0.8, degrees) + around({}, width, degrees + 90),
                 around(root, length * 0.25, degrees) + around({}, width, degrees + 90), root);
    return path;
}

/// A pointed arch standing on `foot`.
QPainterPath arch(double centre, double foot, double halfWidth, double top)
{
    const double spring = top + halfWidth * 0.95;
    QPainterPath path(QPointF(centre - halfWidth, foot));
    path.lineTo(centre - halfWidth, spring);
    path.cubicTo(centre - halfWidth, spring - halfWidth * 0.62, centre - halfWidth * 0.34,
                 top + halfWidth * 0.22, centre, top);
    path.cubicTo(centre + halfWidth * 0.34, top + halfWidth * 0.22, centre + halfWidth,
                 spring - halfWidth * 0.62, centre + halfWidth, spring);
    path.lineTo(centre + halfWidth, foot);
    path.closeSubpath();
    return path;
}

} // namespace

void girih(Brush &b)
{
    b.radiate({middle, middle}, 430, {{0, b.c.mid}, {0.55, b.c.deep}, {1, b.c.dark}});
    const double cell = 200;
    // inner corners of the eight-pointed star of two squares
    const double inner = std::cos(M_PI / 4) / std::cos(M_PI / 8);
    const double radius = cell / 2;
    for (int row = -1; row <= 3; ++row) {
        for (int column = -1; column <= 3; ++column) {
            const QPointF centre(column * cell, row * cell);
            QPainterPath shape;
            shape.addPolygon(star(centre, 8, radius, radius * inner, 0));
            shape.closeSubpath();
            b.p.fillPath(shape, faded(b.c.dark, 0.34));
            for (const auto &[share, width] :
                 {std::pair(1.0, 5.0), std::pair(0.86, 1.6), std::pair(0.56, 3.0)}) {
                QPainterPath ring;
                ring.addPolygon(
                    star(centre, 8, radius * share, radius * share * inner, share < 0.6 ? 22.5 : 0));
                ring.closeSubpath();
                b.stroke(ring, faded(b.c.dark, 0.5), width + 3);
                b.stroke(ring, mixed(b.c.light, b.c.accent, 1 - share), width);
            }
            QPainterPath rays;
            for (int i = 0; i < 8; ++i) {
                rays.moveTo(around(centre, radius * 0.56 * inner, 45.0 * i));
                rays.lineTo(around(centre, radius * 0.86 * inner, 45.0 * i + 22.5));
                rays.lineTo(around(centre, radius * 0.56 * inner, 45.0 * (i + 1)));
            }
            b.stroke(rays, faded(b.c.light, 0.8), 1.6);
            b.p.setPen(Qt::NoPen);
            b.p.setBrush(b.c.accent);
            b.p.drawPolygon(star(centre, 8, radius * 0.27, radius * 0.17, 22.5));
            b.disc(centre, radius * 0.09, b.c.dark);
            const QPointF cross = centre + QPointF(radius, radius);
            b.p.setBrush(faded(b.c.light, 0.85));
            b.p.drawPolygon(star(cross, 4, radius * 0.26, radius * 0.12, 0));
            QPainterPath diamond;
            diamond.addPolygon(star(cross, 4, radius * 0.44, radius * 0.24, 0));
            diamond.closeSubpath();
            b.stroke(diamond, faded(b.c.light, 0.55), 1.6);
        }
    }
    b.glow({middle, middle}, 330, faded(b.c.accent, 0.22));
}

void mandala(Brush &b)
{
    const QPointF centre(middle, middle);
    b.radiate(centre, 430, {{0, b.c.mid}, {0.5, b.c.deep}, {1, b.c.dark}});
    b.glow(centre, 330, faded(b.c.mid, 0.6));
    const int count = 12 + 2 * b.random.below(3);
    for (int ring = 0; ring < 4; ++ring) {
        const double length = 268 - 58 * ring;
        for (int i = 0; i < count; ++i) {
            const double degrees = 360.0 * i / count + (ring % 2) * 180.0 / count;
            QRadialGradient fill(centre, length);
            fill.setColorAt(0, faded(mixed(b.c.accent, b.c.deep, 0.3), 0.75));
            fill.setColorAt(1, faded(mixed(b.c.accent, b.c.light, 0.25 * ring), 0.34));
            const QPainterPath leaf = petal(centre, length, length * 0.21, degrees);
            b.p.fillPath(leaf, fill);
            b.stroke(leaf, faded(b.c.light, 0.22), 1.3);
        }
    }
    for (int i = 0; i < 60; ++i)
        b.disc(around(centre, 5.6 * std::sqrt(i * 1.6), 137.508 * i), 2.7, faded(b.c.light, 0.9 - i * 0.007));
}

void tiles(Brush &b)
{
    b.sky({{0, b.c.light}, {1, b.c.light}});
    const double size = 150;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            b.p.save();
            b.p.translate(column * size + size / 2, row * size + size / 2);
            b.p.rotate(((row + column) % 2) * 90);
            const bool flip = (row + column) % 2 == 0;
            for (int corner = 0; corner < 4; ++corner) {
                b.p.rotate(90);
                const QPointF at(size / 2, size / 2);
                b.p.setClipRect(QRectF(-size / 2, -size / 2, size, size));
                b.disc(at, 62, b.c.deep);
                b.disc(at, 48, b.c.light);
                b.disc(at, 38, flip ? b.c.accent : b.c.mid);
                b.disc(at, 15, b.c.light);
                b.p.fillPath(petal({0, 0}, 74, 20, 0), b.c.mid);
                b.p.fillPath(petal({9, 0}, 52, 9, 0), b.c.light);
                b.p.fillPath(petal({0, 0}, 62, 12, 45), b.c.deep);
            }
            b.disc({0, 0}, 17, b.c.accent);
            b.disc({0, 0}, 7, b.c.light);
            b.p.setPen(QPen(faded(b.c.dark, 0.22), 1.5));
            b.p.setBrush(Qt::NoBrush);
            b.p.drawRect(QRectF(-size / 2, -size / 2, size, size));
            b.p.restore();
        }
    }
    b.p.fillRect(QRectF(0, 0, side, side), vertical(0, side, faded(Qt::white, 0.10), faded(b.c.dark, 0.20)));
}

void kilim(Brush &b)
{
    b.sky({{0, b.c.deep}, {1, b.c.dark}});
    const double unit = 12;
    const std::array<QColor, 4> tones{b.c.accent, b.c.light, b.c.mid, b.c.dark};
    const auto cellAt = [&](double x, double y, const QColor &tone) {
        b.p.fillRect(QRectF(x * unit, y * unit, unit + 0.5, unit + 0.5), tone);
    };
    for (int y = 0; y < 50; ++y) {
        for (int x = 0; x < 50; ++x) {
            const int across = std::abs((x + 5) % 20 - 10);
            if (y < 6 || y >= 44) {
                const int wave = std::abs(x % 8 - 4);
                const int line = y < 6 ? y : 49 - y;
                cellAt(x, y, line == 5 ? b.c.light : (line < wave ? b.c.accent : b.c.mid));
                continue;
            }
            const int down = std::abs((y - 6) % 19 - 9);
            const int distance = across + down;
            if (distance < 12)
                cellAt(x, y, tones[static_cast<std::size_t>(distance / 2 % 4)]);
            else
                cellAt(x, y, distance == 12 ? b.c.light : ((x + y) % 6 == 0 ? b.c.mid : b.c.deep));
        }
    }
    for (double y = 0; y < side; y += 3)
        b.p.fillRect(QRectF(0, y, side, 1), faded(b.c.dark, 0.16));
    for (double x = 0; x < side; x += 4)
        b.p.fillRect(QRectF(x, 0, 1, side), faded(b.c.light, 0.06));
}

void ovals(Brush &b)
{
    b.sky({{0, b.c.light}, {1, b.c.light}});
    const std::array<QColor, 3> tones{b.c.dark, b.c.accent, b.c.mid};
    const int shift = b.random.below(3);
    const double width = 120;
    const double height = 200;
    for (int column = 0; column <= 5; ++column) {
        for (int row = -1; row <= 3; ++row) {
            const QPointF centre(column * width, row * height + (column % 2) * height / 2);
            const QColor first = tones[static_cast<std::size_t>((column + shift) % 3)];
            const QColor second = tones[static_cast<std::size_t>((column + shift + 1) % 3)];
            b.p.setPen(Qt::NoPen);
            for (const auto &[share, tone] :
                 {std::pair(0.98, first), std::pair(0.74, b.c.light), std::pair(0.54, second),
                  std::pair(0.32, b.c.light), std::pair(0.16, first)}) {
                b.p.setBrush(tone);
                b.p.drawEllipse(centre, width / 2 * share, height / 2 * share);
            }
        }
    }
    b.p.fillRect(QRectF(0, 0, side, side), vertical(0, side, faded(b.c.accent, 0.04), faded(b.c.dark, 0.14)));
}

void arches(Brush &b)
{
    b.sky({{0, b.c.dark}, {1, mixed(b.c.dark, b.c.deep, 0.5)}});
    for (int i = 0; i < 7; ++i) {
        const double share = i / 6.0;
        const QPainterPath frame = arch(middle, 620, 285 - 34 * i, 26 + 40 * i);
        const QColor tone =
            i % 2 == 0 ? mixed(b.c.deep, b.c.mid, share) : mixed(b.c.mid, b.c.light, share * 0.55);
        b.p.fillPath(frame,
                     vertical(26 + 40 * i, 600, mixed(tone, b.c.light, 0.12), mixed(tone, b.c.dark, 0.45)));
        b.stroke(frame, faded(b.c.light, 0.35), 1.8);
        for (int dot = 0; dot < 26 && i % 2 == 0 && i < 6; ++dot)
            b.disc(frame.pointAtPercent(0.02 + dot * 0.0318), 3.2, faded(b.c.light, 0.75));
    }
    const QPainterPath inside = arch(middle, 620, 285 - 34 * 6, 26 + 40 * 6);
    b.p.save();
    b.p.setClipPath(inside);
    b.p.fillPath(inside, vertical(266, 600, b.c.accent, b.c.light));
    b.glow({middle, 470}, 170, faded(Qt::white, 0.75));
    b.disc({middle, 470}, 36, mixed(b.c.light, Qt::white, 0.7));
    b.p.fillPath(b.softRidge(540, 8, 160), mixed(b.c.deep, b.c.dark, 0.3));
    b.p.restore();
    b.glow({middle, 500}, 320, faded(b.c.accent, 0.30));
}

void rose(Brush &b)
{
    b.radiate({middle, middle}, 440, {{0, b.c.deep}, {1, b.c.dark}});
    const int count = 46;
    for (int i = 0; i < count; ++i) {
        const double share = 1 - static_cast<double>(i) / count;
        const double turn = 137.508 * i + b.random.between(-6, 6);
        const QPointF centre = around({middle, middle}, 158 * share, turn);
        const double radius = 26 + 122 * share;
        QRadialGradient fill(around(centre, radius * 0.55, turn + 180), radius * 1.6);
        fill.setColorAt(0, mixed(b.c.dark, b.c.accent, 0.25));
        fill.setColorAt(0.72, mixed(b.c.accent, b.c.mid, share));
        fill.setColorAt(1, mixed(b.c.light, b.c.accent, 0.3));
        b.disc(centre, radius, fill);
        b.p.setPen(QPen(faded(b.c.dark, 0.25), 1.2));
        b.p.setBrush(Qt::NoBrush);
        b.p.drawEllipse(centre, radius, radius);
    }
}

void stringArt(Brush &b)
{
    b.radiate({middle, middle}, 430, {{0, b.c.deep}, {1, b.c.dark}});
    b.glow({middle, middle}, 260, faded(b.c.mid, 0.5));
    const int pegs = 180;
    const int factor = 2 + b.random.below(4);
    const auto peg = [](double index) { return around({middle, middle}, 262, 360.0 * index / pegs - 90); };
    for (int i = 0; i < pegs; ++i) {
        QPainterPath line(peg(i));
        line.lineTo(peg(static_cast<double>(i) * factor));
        const double share = std::abs(i - pegs / 2.0) / (pegs / 2.0);
        b.stroke(line, faded(mixed(b.c.accent, b.c.light, share), 0.62), 1.15);
    }
    QPainterPath frame;
    frame.addEllipse(QPointF(middle, middle), 266, 266);
    b.stroke(frame, b.c.accent, 5);
    for (int i = 0; i < pegs; i += 5)
        b.disc(peg(i), 2.6, b.c.light);
}

} // namespace navorin::demo::covers
