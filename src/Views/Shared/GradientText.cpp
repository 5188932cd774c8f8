#include "Views/Shared/GradientText.h"

#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>

#include <cmath>

namespace navorin {

GradientText::GradientText(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    connect(this, &GradientText::changed, this, &GradientText::measure);
}

void GradientText::paint(QPainter *painter)
{
    QLinearGradient gradient(0, 0, 0, height());
    gradient.setColorAt(0, m_top);
    gradient.setColorAt(1, m_bottom);
    painter->setFont(m_font);
    painter->setPen(QPen(QBrush(gradient), 1));
    painter->drawText(boundingRect(), Qt::AlignCenter | Qt::TextSingleLine, m_text);
}

void GradientText::measure()
{
    const QFontMetricsF metrics(m_font);
    setImplicitSize(std::ceil(metrics.horizontalAdvance(m_text)), std::ceil(metrics.height()));
    update();
}

} // namespace navorin
