#include "Covers/Covers.h"

#include <cmath>

namespace navorin::demo::covers {

namespace {

constexpr double middle = Brush::middle;

} // namespace

void arcs(Brush &b)
{
    b.sky({{0, b.c.dark}, {1, mixed(b.c.dark, b.c.deep, 0.45)}});
    const QPointF foot(middle, 592);
    b.glow(foot, 520, faded(b.c.deep, 0.6));
    for (int i = 0; i < 34; ++i) {
        const double radius = 26 + 15.2 * i;
        const double half = 38 + 44 * std::exp(-i / 9.0) + b.random.between(-3, 3);
        const QRectF box(foot.x() - radius, foot.y() - radius, 2 * radius, 2 * radius);
        QPainterPath arc;
        arc.arcMoveTo(box, 90 - half);
        arc.arcTo(box, 90 - half, 2 * half);
        const bool strong = i % 5 == 0 || b.random.chance(0.15);
        b.stroke(arc, faded(b.c.light, strong ? 0.85 : 0.34), strong ? 3.4 : 1.6);
    }
    const QPointF dot = around(foot, 26 + 15.2 * 31, -90 + b.random.between(12, 26));
    b.glow(dot, 120, faded(b.c.accent, 0.6));
    b.disc(dot, 33, b.c.accent);
}

void splitDisc(Brush &b)
{
    b.sky({{0, b.c.mid}, {1, mixed(b.c.mid, b.c.deep, 0.55)}});
    b.p.fillRect(QRectF(300, 0, 300, 600), faded(b.c.light, 0.10));
    const double turn = b.random.between(32, 58);
    const QPointF centre(middle, middle);
    b.disc(centre + QPointF(10, 18), 232, faded(b.c.dark, 0.18));
    const QRectF big(middle - 244, middle - 244, 488, 488);
    const QRectF small(middle - 186, middle - 186, 372, 372);
    b.p.setPen(Qt::NoPen);
    b.p.setBrush(vertical(56, 544, mixed(b.c.accent, Qt::white, 0.12), b.c.accent));
    b.p.drawPie(big, static_cast<int>(turn * 16), 180 * 16);
    b.p.setBrush(b.c.light);
    b.p.drawPie(small, static_cast<int>(turn * 16), -180 * 16);
    for (int i = 0; i < 9; ++i) {
        const double radius = 92 + 17 * i;
        QPainterPath groove;
        const QRectF box(middle - radius, middle - radius, 2 * radius, 2 * radius);
        groove.arcMoveTo(box, turn);
        groove.arcTo(box, turn, 180);
        b.stroke(groove, faded(b.c.dark, 0.10), 1.6);
    }
    b.disc(centre, 58, b.c.deep);
    b.disc(centre, 13, b.c.light);
}

void inkCircle(Brush &b)
{
    b.radiate({middle, middle}, 460, {{0, mixed(b.c.light, Qt::white, 0.3)}, {1, b.c.light}});
    const double start = b.random.between(90, 140);
    for (int hair = 0; hair < 74; ++hair) {
        const double place = hair / 73.0 - 0.5;
        const double begin = start + b.random.between(-5, 5) + 8 * std::abs(place);
        const double sweep = 322 - 46 * std::abs(place) - b.random.between(0, 44);
        QPainterPath path;
        for (double turn = 0; turn <= sweep; turn += 4) {
            const double share = turn / sweep;
            const double thick = 62 * (1 - 0.55 * share) * (0.75 + 0.25 * std::sin(share * 3.1));
            const QPointF point =
                around({middle, middle}, 192 + place * thick + 4 * std::sin(turn / 40), begin + turn);
            if (path.elementCount() == 0)
                path.moveTo(point);
            else
                path.lineTo(point);
        }
        b.stroke(path, faded(mixed(b.c.dark, b.c.mid, 0.55 * b.random.unit()), b.random.between(0.35, 0.8)),
                 b.random.between(0.8, 2.6));
    }
    b.p.setPen(Qt::NoPen);
    b.p.setBrush(b.c.accent);
    b.p.drawRoundedRect(QRectF(446, 470, 50, 50), 7, 7);
    b.p.setBrush(b.c.light);
    b.p.drawRect(QRectF(458, 482, 8, 26));
    b.p.drawRect(QRectF(472, 482, 12, 8));
    b.p.drawRect(QRectF(472, 498, 12, 10));
}

} // namespace navorin::demo::covers
