#include "Covers/Covers.h"

#include <cmath>

namespace navorin::demo::covers {

namespace {

constexpr double side = Brush::side;
constexpr double middle = Brush::middle;

void fir(Brush &b, double x, double foot, double height, const QColor &colour)
{
    QPainterPath tree(QPointF(x, foot - height));
    const int tiers = 6;
    for (const double way : {1.0, -1.0}) {
        for (int i = 1; i <= tiers; ++i) {
            const int tier = way > 0 ? i : tiers + 1 - i;
            const double y = foot - height + height * tier / tiers;
            const double reach = height * 0.19 * tier / tiers;
            const QPointF tip(x + way * reach, y);
            const QPointF notch(x + way * reach * 0.5, y - height * 0.035);
            tree.lineTo(way > 0 ? tip : notch);
            tree.lineTo(way > 0 ? notch : tip);
        }
    }
    b.p.setPen(Qt::NoPen);
    b.p.setBrush(colour);
    b.p.drawPath(tree);
}

} // namespace

void dunes(Brush &b)
{
    b.sky({{0, b.c.dark}, {0.28, b.c.deep}, {0.55, b.c.mid}, {0.72, b.c.light}});
    const QPointF sun(b.random.between(240, 360), 292);
    b.glow(sun, 330, faded(b.c.accent, 0.75));
    b.disc(sun, 98, vertical(194, 390, mixed(b.c.accent, Qt::white, 0.35), b.c.light));
    for (int i = 0; i < 5; ++i) {
        const double depth = i / 4.0;
        const double y = 352 + 56 * i;
        const QPainterPath dune = b.softRidge(y, 20 + 9 * depth, 380 + 150 * b.random.unit());
        const QColor body = mixed(mixed(b.c.mid, b.c.deep, 0.25), b.c.dark, 0.15 + 0.8 * depth);
        b.p.fillPath(dune, vertical(y - 30, y + 130, mixed(body, b.c.light, 0.2 * (1 - depth)),
                                    mixed(body, b.c.dark, 0.4)));
        b.stroke(dune, faded(b.c.light, 0.16 * (1 - depth)), 1.4);
    }
}

void waves(Brush &b)
{
    b.sky({{0, b.c.dark}, {0.55, b.c.deep}, {1, mixed(b.c.deep, b.c.mid, 0.8)}});
    b.glow({170, 235}, 300, faded(b.c.mid, 0.55));
    b.glow({590, 590}, 320, faded(b.c.accent, 0.4));
    const double phase = b.random.between(0, 6.28);
    const double bend = b.random.between(0.8, 1.25);
    for (int i = 0; i < 54; ++i) {
        const double depth = i / 53.0;
        QPainterPath line;
        for (double x = -10; x <= side + 10; x += 5) {
            const double swell = std::sin(x / (92 * bend) + phase + 0.11 * i) * 17 +
                                 std::sin(x / 43 - 0.17 * i + phase) * 7 * depth +
                                 std::sin(x / 210 + 0.05 * i) * 34 * (1 - 0.5 * depth);
            const QPointF point(x, 40 + 540 * std::pow(depth, 1.25) + swell * (0.35 + depth));
            if (line.elementCount() == 0)
                line.moveTo(point);
            else
                line.lineTo(point);
        }
        const QColor tone = mixed(b.c.mid, b.c.light, 0.2 + 0.6 * depth);
        b.stroke(line, faded(tone, 0.22 + 0.5 * depth), 1.1 + 1.2 * depth);
    }
}

void forest(Brush &b)
{
    b.sky({{0, b.c.light}, {0.6, mixed(b.c.light, b.c.mid, 0.75)}, {1, b.c.mid}});
    b.disc({420, 170}, 62, faded(b.c.accent, 0.75));
    b.glow({420, 170}, 240, faded(b.c.accent, 0.35));
    for (int layer = 0; layer < 4; ++layer) {
        const double depth = layer / 3.0;
        const QColor tone = mixed(mixed(b.c.mid, b.c.deep, 0.45), b.c.dark, depth);
        const double foot = 445 + 52 * layer;
        const double step = 40 + 18 * layer;
        for (double x = -30 + b.random.between(0, step); x < side + 60;
             x += step * b.random.between(0.7, 1.25)) {
            const double height = (150 + 70 * layer) * b.random.between(0.65, 1.15);
            const double width = height * 0.17;
            QPainterPath cypress(QPointF(x, foot - height));
            cypress.cubicTo(x + width * 0.55, foot - height * 0.62, x + width * 1.35, foot - height * 0.24,
                            x + width * 0.7, foot + 4);
            cypress.lineTo(x - width * 0.7, foot + 4);
            cypress.cubicTo(x - width * 1.35, foot - height * 0.24, x - width * 0.55, foot - height * 0.62, x,
                            foot - height);
            QLinearGradient lit(x - width, 0, x + width, 0);
            lit.setColorAt(0, mixed(tone, b.c.dark, 0.25));
            lit.setColorAt(1, mixed(tone, b.c.light, 0.1));
            b.p.fillPath(cypress, lit);
        }
        b.p.fillPath(b.softRidge(foot, 7, 420), tone);
        b.p.fillRect(QRectF(0, foot - 130, side, 190), vertical(foot - 130, foot + 60, faded(b.c.light, 0),
                                                                faded(b.c.light, 0.20 * (1 - depth))));
    }
}

void mountains(Brush &b)
{
    b.sky({{0, mixed(b.c.light, b.c.mid, 0.35)}, {0.5, b.c.light}, {1, b.c.light}});
    b.disc({b.random.between(380, 480), 130}, 44, faded(b.c.accent, 0.85));
    for (int layer = 0; layer < 6; ++layer) {
        const double depth = layer / 5.0;
        const double y = 225 + 72 * layer;
        const QColor tone = mixed(mixed(b.c.light, b.c.mid, 0.55), b.c.dark, std::pow(depth, 0.9));
        const QPainterPath ridge = b.roughRidge(y, 66 - 5 * layer);
        b.p.fillPath(ridge, vertical(y - 70, y + 150, tone, mixed(tone, b.c.light, 0.42 * (1 - depth))));
    }
}

void moonLake(Brush &b)
{
    b.sky({{0, b.c.dark}, {0.45, b.c.deep}, {0.68, b.c.mid}});
    b.stars(150, 400, b.c.light);
    const QPointF moon(middle + b.random.between(-60, 60), 205);
    b.glow(moon, 330, faded(b.c.light, 0.55));
    b.disc(moon, 92, vertical(110, 300, mixed(b.c.accent, Qt::white, 0.55), b.c.accent));
    for (int i = 0; i < 9; ++i)
        b.disc(around(moon, b.random.between(8, 62), b.random.between(0, 360)), b.random.between(7, 20),
               faded(b.c.mid, 0.10));
    b.p.fillPath(b.softRidge(405, 15, 300), mixed(b.c.deep, b.c.dark, 0.6));
    b.p.fillRect(QRectF(0, 424, side, 176), vertical(424, 600, mixed(b.c.mid, b.c.deep, 0.5), b.c.dark));
    for (int i = 0; i < 60; ++i) {
        const double depth = b.random.unit();
        const double reach = (14 + 70 * depth) * b.random.between(0.3, 1);
        QPainterPath ripple(QPointF(moon.x() - reach + b.random.between(-30, 30) * depth, 428 + 168 * depth));
        ripple.lineTo(ripple.currentPosition() + QPointF(2 * reach, 0));
        b.stroke(ripple, faded(b.c.accent, 0.5 * (1.05 - depth)), 1.4 + 2.2 * depth);
    }
    for (int i = 0; i < 34; ++i) {
        const double x = i % 2 == 0 ? b.random.between(0, 130) : b.random.between(480, 600);
        const double lean = b.random.between(-22, 22);
        QPainterPath reed(QPointF(x, 610));
        reed.quadTo(x, 520, x + lean, b.random.between(385, 500));
        b.stroke(reed, b.c.dark, 2.6);
        b.stroke(
            [&] {
                QPainterPath head(reed.currentPosition());
                head.lineTo(head.currentPosition() + QPointF(-lean * 0.12, 24));
                return head;
            }(),
            mixed(b.c.dark, b.c.deep, 0.25), i % 3 == 0 ? 7 : 2.6);
    }
}

void aurora(Brush &b)
{
    b.sky({{0, b.c.dark}, {0.6, b.c.deep}, {1, mixed(b.c.deep, b.c.mid, 0.45)}});
    b.stars(130, 420, Qt::white);
    b.p.setCompositionMode(QPainter::CompositionMode_Screen);
    for (int curtain = 0; curtain < 3; ++curtain) {
        const double base = 300 + 55 * curtain;
        const double first = b.random.between(0, 6.28);
        const double second = b.random.between(0, 6.28);
        const QColor foot = curtain == 1 ? b.c.accent : b.c.light;
        for (double x = 0; x < side; x += 2) {
            const double fold = std::sin(x / 85 + first) + 0.5 * std::sin(x / 34 + second);
            const double y = base + 36 * fold;
            const double tall = 165 + 70 * std::sin(x / 60 + second) + 25 * std::sin(x / 9 + first);
            const double strength = 0.24 + 0.14 * std::sin(x / 13 + second) + 0.10 * fold;
            QLinearGradient light(0, y - tall, 0, y + 20);
            light.setColorAt(0, faded(b.c.mid, 0));
            light.setColorAt(0.55, faded(b.c.mid, std::max(0.0, strength * 0.55)));
            light.setColorAt(0.9, faded(foot, std::max(0.0, strength)));
            light.setColorAt(1, faded(foot, 0));
            b.p.fillRect(QRectF(x, y - tall, 2, tall + 20), light);
        }
    }
    b.p.setCompositionMode(QPainter::CompositionMode_SourceOver);
    b.p.fillPath(b.roughRidge(480, 30), mixed(b.c.deep, b.c.dark, 0.7));
    for (double x = -10; x < side + 20; x += b.random.between(13, 30))
        fir(b, x, 604, b.random.between(50, 135), mixed(b.c.dark, Qt::black, 0.55));
}

void rain(Brush &b)
{
    b.sky({{0, b.c.dark}, {0.55, b.c.deep}, {1, mixed(b.c.deep, b.c.mid, 0.7)}});
    b.glow({middle, 520}, 420, faded(b.c.accent, 0.35));
    b.p.setCompositionMode(QPainter::CompositionMode_Screen);
    for (int i = 0; i < 64; ++i) {
        const double depth = b.random.unit();
        const QPointF place(b.random.between(-20, 620), 250 + 320 * depth + b.random.between(-60, 60));
        const QColor tone =
            i % 3 == 0 ? b.c.accent : (i % 3 == 1 ? b.c.light : mixed(b.c.mid, b.c.light, 0.3));
        const double radius = b.random.between(10, 24) + 44 * depth;
        const double strength = b.random.between(0.25, 0.7);
        QRadialGradient light(place, radius);
        light.setColorAt(0, faded(tone, strength * 0.7));
        light.setColorAt(0.86, faded(tone, strength));
        light.setColorAt(1, faded(tone, 0));
        b.disc(place, radius, light);
    }
    b.p.setCompositionMode(QPainter::CompositionMode_SourceOver);
    for (int i = 0; i < 26; ++i) {
        const QPointF head(b.random.between(0, side), b.random.between(120, 590));
        const double tail = b.random.between(60, 260);
        b.p.fillRect(QRectF(head.x() - 1.5, head.y() - tail, 3, tail),
                     vertical(head.y() - tail, head.y(), faded(Qt::white, 0), faded(Qt::white, 0.28)));
        b.disc(head, 5.5, faded(Qt::white, 0.45));
    }
    for (int i = 0; i < 150; ++i) {
        const QPointF place(b.random.between(0, side), b.random.between(0, side));
        const double radius = 1.5 + 6 * std::pow(b.random.unit(), 2.4);
        b.disc(place, radius,
               vertical(place.y() - radius, place.y() + radius, faded(b.c.dark, 0.6), faded(Qt::white, 0.5)));
        b.disc(place - QPointF(radius * 0.3, radius * 0.35), radius * 0.24, faded(Qt::white, 0.85));
    }
}

void road(Brush &b)
{
    b.sky({{0, mixed(b.c.mid, b.c.deep, 0.4)}, {0.3, b.c.mid}, {0.56, b.c.light}});
    const QPointF far(middle + b.random.between(-40, 40), 318);
    b.glow(far - QPointF(0, 40), 290, faded(b.c.accent, 0.7));
    b.disc(far - QPointF(0, 42), 54, mixed(b.c.accent, Qt::white, 0.4));
    for (int layer = 0; layer < 3; ++layer)
        b.p.fillPath(b.roughRidge(285 + 22 * layer, 50 - 10 * layer),
                     mixed(b.c.mid, b.c.deep, 0.35 + 0.3 * layer));
    b.p.fillRect(QRectF(0, far.y(), side, side), vertical(far.y(), side, b.c.deep, b.c.dark));
    QPainterPath lane(far + QPointF(-5, 0));
    lane.lineTo(far + QPointF(5, 0));
    lane.lineTo(470, 600);
    lane.lineTo(130, 600);
    b.p.fillPath(lane,
                 vertical(far.y(), side, mixed(b.c.dark, b.c.mid, 0.45), mixed(b.c.dark, Qt::black, 0.35)));
    for (int i = 0; i < 11; ++i) {
        const double near = std::pow(0.70, i);
        const double end = std::pow(0.70, i + 0.5);
        const auto at = [&](double share, double offset) {
            return QPointF(far.x() + (middle + offset - far.x()) * share, far.y() + (600 - far.y()) * share);
        };
        b.p.setPen(Qt::NoPen);
        b.p.setBrush(faded(b.c.accent, 0.9));
        b.p.drawPolygon(QPolygonF({at(near, -6), at(near, 6), at(end, 6), at(end, -6)}));
        for (const double way : {-1.0, 1.0}) {
            const double x = at(near * 0.98, way * 300).x();
            fir(b, x + way * 20 * near, at(near * 0.9, 0).y(), 330 * near,
                mixed(b.c.deep, b.c.dark, std::min(1.0, 0.45 + near)));
        }
    }
}

void mesas(Brush &b)
{
    b.sky({{0, b.c.mid}, {0.5, b.c.light}, {0.75, mixed(b.c.light, Qt::white, 0.3)}});
    b.disc({middle, 292}, 160, faded(b.c.accent, 0.9));
    for (int layer = 0; layer < 3; ++layer) {
        const double foot = 425 + 60 * layer;
        const QColor tone = mixed(mixed(b.c.mid, b.c.deep, 0.5), b.c.dark, layer / 2.4);
        for (int i = 0; i < 2 && layer < 2; ++i) {
            const double width = b.random.between(110, 190) + 40 * layer;
            const double x =
                i == 0 ? b.random.between(-70, 60) + 40 * layer : b.random.between(380, 500) - 30 * layer;
            const double top = foot - b.random.between(120, 200) + 50 * layer;
            b.p.setPen(Qt::NoPen);
            b.p.setBrush(vertical(top, foot, mixed(tone, b.c.light, 0.2), tone));
            b.p.drawPolygon(QPolygonF({{x, foot},
                                       {x + width * 0.17, top + 52},
                                       {x + width * 0.2, top},
                                       {x + width * 0.46, top},
                                       {x + width * 0.48, top + 14},
                                       {x + width * 0.8, top + 14},
                                       {x + width * 0.84, top + 60},
                                       {x + width, foot}}));
        }
        b.p.fillPath(b.softRidge(foot - 6, 9, 460),
                     vertical(foot - 14, side, tone, mixed(tone, b.c.dark, 0.5)));
    }
    for (const double x : {92.0, 505.0}) {
        const double tall = b.random.between(130, 190);
        QPainterPath cactus(QPointF(x, 610));
        cactus.lineTo(x, 600 - tall);
        cactus.moveTo(x, 600 - tall * 0.45);
        cactus.cubicTo(x + 46, 600 - tall * 0.45, x + 42, 600 - tall * 0.5, x + 42, 600 - tall * 0.78);
        cactus.moveTo(x, 600 - tall * 0.32);
        cactus.cubicTo(x - 42, 600 - tall * 0.32, x - 38, 600 - tall * 0.4, x - 38, 600 - tall * 0.64);
        b.stroke(cactus, mixed(b.c.dark, Qt::black, 0.3), 19);
    }
}

void clouds(Brush &b)
{
    b.sky({{0, b.c.dark}, {0.55, b.c.deep}, {1, b.c.mid}});
    b.stars(90, 380, Qt::white);
    const QPointF moon(410, 165);
    b.glow(moon, 240, faded(b.c.accent, 0.5));
    QPainterPath crescent;
    crescent.addEllipse(moon, 84, 84);
    QPainterPath shade;
    shade.addEllipse(moon + QPointF(-38, -22), 74, 74);
    b.p.fillPath(crescent.subtracted(shade), mixed(b.c.accent, Qt::white, 0.35));
    for (int layer = 0; layer < 5; ++layer) {
        QPainterPath bank;
        bank.setFillRule(Qt::WindingFill);
        const double y = 370 + 56 * layer;
        for (double x = b.random.between(-60, 0); x < 660; x += b.random.between(44, 92)) {
            const double radius = b.random.between(34, 84);
            bank.addEllipse(QPointF(x, y + b.random.between(-26, 34)), radius, radius * 0.78);
        }
        bank.addRect(-10, y + 24, 620, 400);
        const QColor crest = mixed(mixed(b.c.light, Qt::white, 0.2), b.c.mid, 0.2 * layer);
        const QColor foot = mixed(b.c.mid, b.c.deep, 0.25 + 0.18 * layer);
        b.p.fillPath(bank, vertical(y - 86, y + 70, crest, foot));
    }
}

void galaxy(Brush &b)
{
    b.radiate({middle, middle}, 430, {{0, b.c.deep}, {0.5, mixed(b.c.deep, b.c.dark, 0.6)}, {1, b.c.dark}});
    b.stars(240, side, Qt::white);
    b.p.save();
    b.p.translate(middle, middle);
    b.p.rotate(-24);
    b.p.scale(1, 0.52);
    b.glow({0, 0}, 300, faded(b.c.mid, 0.75));
    b.p.setCompositionMode(QPainter::CompositionMode_Screen);
    for (int i = 0; i < 4200; ++i) {
        const double reach = std::pow(b.random.unit(), 0.62);
        const double spread = (b.random.unit() + b.random.unit() - 1) * (52 + 40 * (1 - reach));
        const double turn = 330 * std::sqrt(reach) + 180 * (i % 2) + spread;
        const double bright = b.random.unit();
        const QColor tone = i % 9 == 0 ? b.c.accent : mixed(b.c.light, b.c.mid, reach);
        b.disc(around({0, 0}, 16 + 285 * reach, turn), 0.8 + 2.0 * bright * bright,
               faded(tone, 0.25 + 0.6 * bright));
    }
    b.p.setCompositionMode(QPainter::CompositionMode_SourceOver);
    b.glow({0, 0}, 130, mixed(b.c.light, Qt::white, 0.5));
    b.p.restore();
}

void wind(Brush &b)
{
    b.sky({{0, b.c.light}, {1, mixed(b.c.light, b.c.mid, 0.6)}});
    const double first = b.random.between(0, 6.28);
    const double second = b.random.between(0, 6.28);
    for (int i = 0; i < 620; ++i) {
        QPointF at(b.random.between(-80, 620), b.random.between(-20, 620));
        QPainterPath path(at);
        for (int step = 0; step < 26; ++step) {
            const double turn = 26 * std::sin(at.x() / 130 + first) +
                                40 * std::sin(at.y() / 150 + at.x() / 240 + second) +
                                16 * std::cos(at.x() / 60 - at.y() / 90);
            at = around(at, 7, turn);
            path.lineTo(at);
        }
        const int kind = b.random.below(10);
        const QColor tone = kind == 0 ? b.c.accent : (kind < 4 ? b.c.deep : (kind < 8 ? b.c.mid : b.c.dark));
        b.stroke(path, faded(tone, b.random.between(0.25, 0.75)), b.random.between(0.8, 4.2));
    }
}

} // namespace navorin::demo::covers
