#include "Views/Playback/RecordDisc.h"

#include <QPainter>

namespace navorin {

namespace {

QRadialGradient vinyl(const QRectF &disc)
{
    QRadialGradient gradient(disc.center(), disc.width() / 2);
    gradient.setColorAt(0, QColor(0x1b, 0x1b, 0x1f));
    gradient.setColorAt(0.80, QColor(0x10, 0x10, 0x12));
    gradient.setColorAt(0.965, QColor(0x14, 0x14, 0x17));
    gradient.setColorAt(1, QColor(0x26, 0x26, 0x2b));
    return gradient;
}

// Two opposite wedges of light, as a lamp above throws them on concentric grooves.
QConicalGradient sheen(const QRectF &disc)
{
    QConicalGradient gradient(disc.center(), 20);
    const QColor none(255, 255, 255, 0);
    for (const double at : {0.0, 0.07, 0.19, 0.43, 0.57, 0.69, 0.93, 1.0})
        gradient.setColorAt(at, none);
    gradient.setColorAt(0.13, QColor(255, 255, 255, 46));
    gradient.setColorAt(0.63, QColor(255, 255, 255, 34));
    return gradient;
}

void drawVinyl(QPainter &painter, const QRectF &disc)
{
    constexpr double innermost = 0.80;
    constexpr double outermost = 0.97;
    constexpr int grooves = 11;
    painter.setPen(Qt::NoPen);
    painter.setBrush(vinyl(disc));
    painter.drawEllipse(disc);
    painter.setBrush(Qt::NoBrush);
    for (int i = 0; i < grooves; ++i) {
        const double share = innermost + (outermost - innermost) * i / (grooves - 1);
        painter.setPen(QPen(QColor(255, 255, 255, i % 3 == 0 ? 16 : 8), 0.8));
        painter.drawEllipse(disc.center(), disc.width() / 2 * share, disc.height() / 2 * share);
    }
}

} // namespace

RecordDisc::RecordDisc(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void RecordDisc::paint(QPainter *painter)
{
    constexpr double clearMargin = 1; // keeps the rim's antialiasing inside the texture
    const QRectF disc = boundingRect().adjusted(clearMargin, clearMargin, -clearMargin, -clearMargin);
    if (!m_isSheenOnly)
        drawVinyl(*painter, disc);
    painter->setPen(Qt::NoPen);
    painter->setBrush(sheen(disc));
    painter->drawEllipse(disc);
}

} // namespace navorin
