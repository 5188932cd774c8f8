#include "Covers/Covers.h"

#include <cmath>

namespace navorin::demo::covers {

namespace {

constexpr double side = Brush::side;
constexpr double middle = Brush::middle;

void softShadow(Brush &b, QPointF centre, double width, double height)
{
    b.p.save();
    b.p.translate(centre);
    b.p.scale(1, height / width);
    QRadialGradient shade(QPointF(0, 0), width);
    shade.setColorAt(0, faded(b.c.dark, 0.55));
    shade.setColorAt(1, faded(b.c.dark, 0));
    b.disc({0, 0}, width, shade);
    b.p.restore();
}

} // namespace

void pomegranate(Brush &b)
{
    b.sky({{0, b.c.light}, {1, mixed(b.c.light, b.c.mid, 0.28)}});
    b.p.setPen(Qt::NoPen);
    b.p.setBrush(faded(Qt::white, 0.22));
    b.p.drawPolygon(QPolygonF({{0, 380}, {600, 60}, {600, 330}, {0, 600}}));
    const QPointF centre(middle, 330);
    softShadow(b, {middle + 14, 532}, 215, 34);
    QPainterPath crown(QPointF(252, 172));
    for (const QPointF &point : {QPointF(228, 72), QPointF(270, 112), QPointF(300, 56), QPointF(330, 112),
                                 QPointF(372, 72), QPointF(348, 172)})
        crown.lineTo(point);
    crown.closeSubpath();
    b.p.fillPath(crown, vertical(60, 180, b.c.accent, b.c.deep));
    QRadialGradient skin(centre - QPointF(70, 80), 330);
    skin.setColorAt(0, mixed(b.c.accent, Qt::white, 0.30));
    skin.setColorAt(0.35, b.c.accent);
    skin.setColorAt(1, b.c.deep);
    b.disc(centre, 192, skin);
    QPainterPath cut;
    cut.addEllipse(centre + QPointF(26, 26), 116, 126);
    b.p.fillPath(cut, mixed(b.c.light, b.c.accent, 0.18));
    b.stroke(cut, mixed(b.c.deep, b.c.dark, 0.3), 6);
    for (int i = 0; i < 130; ++i) {
        const double reach = std::sqrt(i / 130.0);
        const QPointF seed = around({0, 0}, 100 * reach, 137.508 * i);
        const QPointF place = centre + QPointF(26 + seed.x(), 26 + seed.y() * 1.08);
        const double radius = b.random.between(7.5, 10);
        QRadialGradient juice(place - QPointF(3, 3), radius * 1.5);
        juice.setColorAt(0, mixed(b.c.accent, Qt::white, 0.55));
        juice.setColorAt(0.5, mixed(b.c.accent, b.c.deep, b.random.between(0, 0.5)));
        juice.setColorAt(1, b.c.deep);
        b.disc(place, radius, juice);
    }
    b.glow(centre - QPointF(90, 100), 90, faded(Qt::white, 0.32));
}

void tulips(Brush &b)
{
    b.sky({{0, mixed(b.c.light, Qt::white, 0.25)}, {0.8, b.c.light}, {1, mixed(b.c.light, b.c.mid, 0.4)}});
    b.disc({430, 170}, 88, faded(b.c.accent, 0.20));
    for (int row = 0; row < 2; ++row) {
        for (int i = 0; i < 5 - row; ++i) {
            const double x = 62 + 119 * i + 60 * row + b.random.between(-12, 12);
            const double y = (row == 0 ? 262 : 350) + b.random.between(-32, 32);
            const QColor green = mixed(b.c.deep, b.c.mid, row == 0 ? 0.45 : 0.1);
            QPainterPath stem(QPointF(x, y));
            stem.quadTo(x + b.random.between(-18, 18), y + 150, x, 620);
            b.stroke(stem, green, 9);
            for (const double way : {-1.0, 1.0}) {
                QPainterPath leaf(QPointF(x, 615));
                leaf.cubicTo(x + way * 20, 540, x + way * 74, y + 190, x + way * 58, y + 120);
                leaf.cubicTo(x + way * 30, y + 190, x + way * 6, 520, x, 615);
                b.p.fillPath(leaf, mixed(green, b.c.dark, way > 0 ? 0.25 : 0.05));
            }
            for (const double offset : {-27.0, 27.0, 0.0}) {
                const QColor tone = offset == 0 ? b.c.accent : mixed(b.c.accent, b.c.dark, 0.22);
                QPainterPath cupShape(QPointF(x, y + 12));
                cupShape.cubicTo(x + offset - 44, y - 6, x + offset - 34, y - 82, x + offset, y - 112);
                cupShape.cubicTo(x + offset + 34, y - 82, x + offset + 44, y - 6, x, y + 12);
                b.p.fillPath(cupShape, vertical(y - 112, y + 12, mixed(tone, b.c.light, 0.30), tone));
            }
        }
    }
}

void skyline(Brush &b)
{
    b.sky({{0, b.c.dark}, {0.5, b.c.deep}, {1, b.c.mid}});
    b.stars(70, 260, b.c.light);
    const QPointF moon(b.random.between(170, 430), 200);
    b.glow(moon, 300, faded(b.c.light, 0.45));
    b.disc(moon, 84, mixed(b.c.light, Qt::white, 0.4));
    for (int layer = 0; layer < 3; ++layer) {
        const QColor wall = mixed(mixed(b.c.mid, b.c.deep, 0.55), b.c.dark, layer / 2.0);
        for (double x = -20; x < side;) {
            const double width = b.random.between(42, 88);
            const double top = 250 + 75 * layer + b.random.between(-70, 90);
            b.p.fillRect(QRectF(x, top, width, side - top), wall);
            if (b.random.chance(0.35))
                b.p.fillRect(QRectF(x + width / 2 - 2, top - 42, 4, 44), wall);
            for (double y = top + 14; y < 590 && layer > 0; y += 21) {
                for (double column = x + 9; column + 9 < x + width; column += 17) {
                    if (b.random.chance(layer == 1 ? 0.22 : 0.38))
                        b.p.fillRect(QRectF(column, y, 8, 11),
                                     faded(b.random.chance(0.8) ? b.c.accent : b.c.light,
                                           b.random.between(0.45, 0.95)));
                }
            }
            x += width + b.random.between(-4, 10);
        }
    }
}

void neonSun(Brush &b)
{
    b.sky({{0, b.c.dark},
           {0.38, b.c.deep},
           {0.62, b.c.mid},
           {0.63, b.c.dark},
           {1, mixed(b.c.dark, b.c.deep, 0.5)}});
    b.stars(90, 300, Qt::white);
    const QPointF sun(middle, 285);
    b.glow(sun, 330, faded(b.c.accent, 0.7));
    QPainterPath shape;
    shape.addEllipse(sun, 142, 142);
    for (int i = 0; i < 7; ++i) {
        QPainterPath gap;
        gap.addRect(0, 268 + 24 * i, side, 3.5 + 2.1 * i);
        shape = shape.subtracted(gap);
    }
    b.p.save();
    b.p.setClipRect(QRectF(0, 0, side, 376));
    b.p.fillPath(shape, vertical(143, 400, b.c.light, b.c.accent));
    b.p.restore();
    const double horizon = 376;
    b.p.fillRect(QRectF(0, horizon, side, side),
                 vertical(horizon, side, b.c.dark, mixed(b.c.dark, b.c.deep, 0.65)));
    QPainterPath grid;
    for (int i = -16; i <= 16; ++i) {
        grid.moveTo(middle + i * 17, horizon);
        grid.lineTo(middle + i * 120, side);
    }
    for (int i = 0; i < 13; ++i) {
        const double y = horizon + 224 * std::pow(i / 12.0, 2.1);
        grid.moveTo(0, y);
        grid.lineTo(side, y);
    }
    b.stroke(grid, faded(b.c.accent, 0.25), 5);
    b.stroke(grid, faded(mixed(b.c.accent, b.c.light, 0.4), 0.9), 1.5);
    for (const double way : {-1.0, 1.0}) {
        QPainterPath hill(QPointF(middle + way * 300, horizon));
        for (const auto &[x, y] :
             {std::pair(300.0, 250.0), std::pair(262.0, 285.0), std::pair(226.0, 262.0),
              std::pair(178.0, 330.0), std::pair(142.0, 318.0), std::pair(92.0, horizon)})
            hill.lineTo(middle + way * x, y);
        b.p.fillPath(hill, mixed(b.c.dark, b.c.deep, 0.4));
        b.stroke(hill, faded(b.c.accent, 0.8), 1.6);
    }
}

void pianoKeys(Brush &b)
{
    b.sky({{0, b.c.dark}, {1, b.c.deep}});
    b.glow({140, 110}, 360, faded(b.c.mid, 0.6));
    b.p.save();
    b.p.translate(middle, middle);
    b.p.rotate(-23);
    const double width = 84;
    const int lit = b.random.below(5) - 2;
    for (int i = -6; i <= 6; ++i) {
        const QRectF key(i * width + 1.5, -70, width - 3, 520);
        const QColor tone = i == lit ? b.c.accent : mixed(b.c.light, Qt::white, 0.35);
        QPainterPath shape;
        shape.addRoundedRect(key, 8, 8);
        b.p.fillPath(shape, vertical(-70, 450, mixed(tone, b.c.mid, 0.45), tone));
    }
    for (int i = -6; i <= 6; ++i) {
        const int note = ((i % 7) + 7) % 7;
        if (note == 2 || note == 6)
            continue;
        const QRectF key((i + 1) * width - 26, -78, 52, 300);
        QPainterPath shade;
        shade.addRoundedRect(key.translated(10, 10), 6, 6);
        b.p.fillPath(shade, faded(b.c.dark, 0.35));
        QPainterPath shape;
        shape.addRoundedRect(key, 6, 6);
        b.p.fillPath(shape, vertical(-78, 222, b.c.dark, mixed(b.c.dark, b.c.deep, 0.6)));
        b.p.fillRect(QRectF(key.left() + 9, -70, 5, 270), faded(Qt::white, 0.14));
    }
    b.p.fillRect(QRectF(-700, -560, 1400, 490),
                 vertical(-560, -70, b.c.deep, mixed(b.c.dark, b.c.deep, 0.3)));
    b.p.fillRect(QRectF(-700, -84, 1400, 14), b.c.accent);
    for (int i = 0; i < 90; ++i) {
        QPainterPath drop(QPointF(b.random.between(-420, 420), b.random.between(-420, -110)));
        drop.lineTo(drop.currentPosition() + QPointF(6, 16 + 26 * b.random.unit()));
        b.stroke(drop, faded(b.c.light, b.random.between(0.10, 0.45)), 1.8);
    }
    b.p.restore();
}

void cup(Brush &b)
{
    b.sky({{0, b.c.mid}, {0.68, mixed(b.c.mid, b.c.light, 0.55)}});
    b.disc({middle, 250}, 196, faded(b.c.light, 0.55));
    b.disc({middle, 250}, 150, faded(b.c.light, 0.6));
    b.p.fillRect(QRectF(0, 470, side, 130), vertical(470, 600, b.c.deep, b.c.dark));
    softShadow(b, {middle, 482}, 190, 20);
    QPainterPath handle;
    handle.addEllipse(QPointF(424, 372), 54, 52);
    b.stroke(handle, b.c.accent, 22);
    QPainterPath mug(QPointF(178, 292));
    mug.lineTo(422, 292);
    mug.cubicTo(422, 420, 400, 478, 340, 480);
    mug.lineTo(260, 480);
    mug.cubicTo(200, 478, 178, 420, 178, 292);
    QLinearGradient glaze(178, 0, 422, 0);
    glaze.setColorAt(0, mixed(b.c.accent, Qt::white, 0.25));
    glaze.setColorAt(0.5, b.c.accent);
    glaze.setColorAt(1, mixed(b.c.accent, b.c.dark, 0.35));
    b.p.fillPath(mug, glaze);
    b.p.setPen(Qt::NoPen);
    b.p.setBrush(mixed(b.c.accent, Qt::white, 0.35));
    b.p.drawEllipse(QPointF(middle, 292), 122, 26);
    b.p.setBrush(mixed(b.c.dark, b.c.deep, 0.35));
    b.p.drawEllipse(QPointF(middle, 295), 108, 20);
    for (int i = -1; i <= 1; ++i) {
        const double x = middle + i * 54;
        const double sway = b.random.between(22, 38);
        QPainterPath steam(QPointF(x, 262));
        steam.cubicTo(x - sway, 216, x + sway, 186, x, 142);
        steam.cubicTo(x - sway * 0.8, 108, x + sway * 0.6, 90, x + 4, 62);
        b.stroke(steam, faded(Qt::white, 0.42), 13);
        b.stroke(steam, faded(Qt::white, 0.40), 5);
    }
    for (int i = 0; i < 3; ++i)
        b.p.fillRect(QRectF(30 + 14 * i, 538 - 24 * i, 130 - 20 * i, 22),
                     mixed(b.c.light, b.c.mid, 0.3 + 0.35 * i));
}

void globe(Brush &b)
{
    const QPointF centre(middle, middle);
    b.radiate(centre, 450, {{0, b.c.deep}, {1, b.c.dark}});
    b.stars(110, side, b.c.light);
    b.glow(centre, 300, faded(b.c.mid, 0.7));
    QRadialGradient sea(centre - QPointF(70, 80), 330);
    sea.setColorAt(0, mixed(b.c.mid, b.c.light, 0.45));
    sea.setColorAt(0.6, b.c.mid);
    sea.setColorAt(1, b.c.deep);
    b.disc(centre, 188, sea);
    b.p.save();
    b.p.translate(centre);
    b.p.rotate(-18);
    QPainterPath net;
    for (const double share : {0.0, 0.34, 0.64, 0.87})
        net.addEllipse(QPointF(0, 0), 188 * share, 188);
    for (int i = -3; i <= 3; ++i) {
        const double y = 188 * std::sin(i * M_PI / 8);
        const double reach = 188 * std::cos(i * M_PI / 8);
        net.moveTo(-reach, y);
        net.quadTo(0, y + 26, reach, y);
    }
    b.stroke(net, faded(b.c.light, 0.5), 1.6);
    for (int ring = 0; ring < 2; ++ring) {
        QPainterPath orbit;
        orbit.addEllipse(QPointF(0, 0), 252 + 34 * ring, 74 + 14 * ring);
        b.p.save();
        b.p.rotate(20 - 46 * ring);
        QPainterPath front;
        front.arcMoveTo(orbit.boundingRect(), 180);
        front.arcTo(orbit.boundingRect(), 180, 180);
        b.stroke(front, faded(b.c.accent, 0.95), 4);
        QPainterPath back;
        back.arcMoveTo(orbit.boundingRect(), 0);
        back.arcTo(orbit.boundingRect(), 0, 46);
        back.arcMoveTo(orbit.boundingRect(), 134);
        back.arcTo(orbit.boundingRect(), 134, 46);
        b.stroke(back, faded(b.c.accent, 0.5), 3);
        b.disc(orbit.pointAtPercent(0.13 + 0.2 * ring), 12, b.c.accent);
        b.p.restore();
    }
    b.p.restore();
}

void cassette(Brush &b)
{
    b.sky({{0, mixed(b.c.light, b.c.mid, 0.3)}, {1, b.c.mid}});
    for (int i = 0; i < 12; ++i) {
        b.p.save();
        b.p.translate(middle, middle);
        b.p.rotate(30 * i);
        b.p.setPen(Qt::NoPen);
        b.p.setBrush(faded(b.c.light, 0.22));
        b.p.drawPolygon(QPolygonF({{0, 0}, {600, -80}, {600, 80}}));
        b.p.restore();
    }
    b.p.save();
    b.p.translate(middle, middle);
    b.p.rotate(b.random.between(-14, -5));
    const auto box = [&](const QRectF &rect, double round, const QBrush &brush) {
        QPainterPath path;
        path.addRoundedRect(rect, round, round);
        b.p.fillPath(path, brush);
    };
    box({-214, -136, 440, 290}, 22, faded(b.c.dark, 0.3));
    box({-224, -148, 448, 290}, 22, vertical(-148, 142, mixed(b.c.dark, b.c.deep, 0.6), b.c.dark));
    box({-194, -122, 388, 176}, 12, b.c.light);
    b.p.fillRect(QRectF(-194, -74, 388, 26), b.c.accent);
    b.p.fillRect(QRectF(-194, -48, 388, 26), mixed(b.c.accent, b.c.mid, 0.6));
    b.p.fillRect(QRectF(-194, -22, 388, 26), b.c.mid);
    for (int i = 0; i < 2; ++i)
        b.p.fillRect(QRectF(-170, -108 + 14 * i, 220 - 60 * i, 4), faded(b.c.dark, 0.4));
    box({-128, -52, 256, 84}, 40, b.c.dark);
    for (const double x : {-82.0, 82.0}) {
        b.disc({x, -10}, 31, b.c.light);
        b.disc({x, -10}, 19, b.c.dark);
        for (int tooth = 0; tooth < 6; ++tooth)
            b.disc(around({x, -10}, 22, 60.0 * tooth + 12), 4.2, b.c.dark);
    }
    box({-42, -32, 84, 44}, 6, mixed(b.c.dark, b.c.mid, 0.35));
    b.p.setPen(Qt::NoPen);
    b.p.setBrush(mixed(b.c.dark, b.c.deep, 0.9));
    b.p.drawPolygon(QPolygonF({{-138, 142}, {-118, 82}, {118, 82}, {138, 142}}));
    for (const double x : {-86.0, -34.0, 34.0, 86.0})
        b.disc({x, 118}, 8, b.c.dark);
    b.p.restore();
}

void reel(Brush &b)
{
    b.radiate({middle, middle}, 440, {{0, b.c.deep}, {1, b.c.dark}});
    b.p.setPen(Qt::NoPen);
    b.p.setBrush(vertical(0, side, faded(b.c.accent, 0.55), faded(b.c.accent, 0.0)));
    b.p.drawPolygon(QPolygonF({{-10, -10}, {120, -10}, {640, 420}, {640, 640}, {420, 640}}));
    const QPointF centre(330, 322);
    b.disc(centre + QPointF(12, 14), 206, faded(b.c.dark, 0.4));
    b.disc(centre, 204, vertical(118, 526, b.c.light, b.c.mid));
    b.disc(centre, 186, vertical(118, 526, b.c.mid, mixed(b.c.mid, b.c.deep, 0.6)));
    for (int i = 0; i < 6; ++i) {
        const QPointF hole = around(centre, 112, 60.0 * i + 14);
        b.disc(hole, 49, mixed(b.c.dark, b.c.deep, 0.35));
        b.disc(hole + QPointF(3, 4), 45, b.c.dark);
    }
    b.disc(centre, 34, b.c.light);
    b.disc(centre, 14, b.c.dark);
    b.p.save();
    b.p.translate(0, 470);
    b.p.rotate(-9);
    b.p.fillRect(QRectF(-60, 0, 760, 96), mixed(b.c.dark, Qt::black, 0.4));
    for (int i = 0; i < 26; ++i) {
        b.p.fillRect(QRectF(-50 + 28 * i, 7, 15, 12), b.c.light);
        b.p.fillRect(QRectF(-50 + 28 * i, 77, 15, 12), b.c.light);
    }
    for (int i = 0; i < 8; ++i)
        b.p.fillRect(QRectF(-52 + 96 * i, 26, 86, 44), mixed(b.c.accent, b.c.mid, (i % 4) / 4.0));
    b.p.restore();
}

} // namespace navorin::demo::covers
