#include "Views/Playback/ProgressRing.h"

#include <QPainter>

#include <algorithm>

namespace navorin {

ProgressRing::ProgressRing(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void ProgressRing::setProgress(qreal progress)
{
    if (m_progress == progress)
        return;
    m_progress = progress;
    update();
    Q_EMIT progressChanged();
}

void ProgressRing::setLineWidth(qreal width)
{
    if (m_lineWidth == width)
        return;
    m_lineWidth = width;
    update();
    Q_EMIT lineWidthChanged();
}

void ProgressRing::setColor(const QColor &color)
{
    if (m_color == color)
        return;
    m_color = color;
    update();
    Q_EMIT colorChanged();
}

void ProgressRing::setTrackColor(const QColor &color)
{
    if (m_trackColor == color)
        return;
    m_trackColor = color;
    update();
    Q_EMIT trackColorChanged();
}

void ProgressRing::paint(QPainter *painter)
{
    constexpr int sixteenths = 16; // the painter counts angles in sixteenths of a degree
    const qreal inset = m_lineWidth / 2 + 0.5;
    const QRectF circle = boundingRect().adjusted(inset, inset, -inset, -inset);
    painter->setPen(QPen(m_trackColor, m_lineWidth));
    painter->drawEllipse(circle);
    painter->setPen(QPen(m_color, m_lineWidth, Qt::SolidLine, Qt::RoundCap));
    painter->drawArc(circle, 90 * sixteenths, int(-std::clamp(m_progress, 0.0, 1.0) * 360 * sixteenths));
}

} // namespace navorin
