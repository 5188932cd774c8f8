#include "Views/Shared/Shadow.h"

#include <QQuickWindow>
#include <QSGNinePatchNode>

#include <cmath>
#include <map>
#include <tuple>

namespace navorin {

namespace {

/// Coverage of a blurred edge at the signed distance `d` outside it.
double blurredEdge(double d, double sigma)
{
    return 0.5 * std::erfc(d / (sigma * std::sqrt(2.0)));
}

/// Signed distance from a box of half size `half` with rounded corners, centred on the origin.
double distanceToBox(QPointF point, QSizeF half, double radius)
{
    const auto qx = std::abs(point.x()) - half.width() + radius;
    const auto qy = std::abs(point.y()) - half.height() + radius;
    return std::hypot(std::max(qx, 0.0), std::max(qy, 0.0)) + std::min(std::max(qx, qy), 0.0) - radius;
}

/// Every box of an elevation shares its bitmap.
QImage sharedImage(int radius, int blur, int boxHeight)
{
    static std::map<std::tuple<int, int, int>, QImage> images;
    auto &image = images[{radius, blur, boxHeight}];
    if (image.isNull())
        image = shadowImage(radius, blur, boxHeight);
    return image;
}

} // namespace

int shadowReach(int blur)
{
    return blur + blur / 8; // what lies beyond is less than a level of the screen
}

int shadowBorder(int radius, int blur)
{
    return 2 * shadowReach(blur) + radius;
}

QImage shadowImage(int radius, int blur, int boxHeight)
{
    const auto reach = shadowReach(blur);
    const auto side = 2 * shadowBorder(radius, blur) + 2;
    const QSize size(side, boxHeight > 0 ? boxHeight + 2 * reach : side);
    const auto half = QSizeF(size) / 2.0 - QSizeF(reach, reach);
    // A wide blur swallows the corner: its outline is rounder than the box's own.
    const auto sigma = std::max(blur / 2.0, 0.5);
    const auto corner = std::min(std::hypot(radius, sigma), half.height());
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const QPointF fromCentre(x + 0.5 - size.width() / 2.0, y + 0.5 - size.height() / 2.0);
            const auto coverage = blurredEdge(distanceToBox(fromCentre, half, corner), sigma);
            line[x] = qRgba(0, 0, 0, int(std::lround(255 * coverage)));
        }
    }
    return image;
}

Shadow::Shadow(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(this, &Shadow::changed, this, &QQuickItem::polish);
}

void Shadow::updatePolish()
{
    m_isLow = height() < 2 * (shadowBorder(m_radius, m_blur) - shadowReach(m_blur));
    const auto image = sharedImage(m_radius, m_blur, m_isLow ? int(height()) : 0);
    m_imageIsNew = m_imageIsNew || image.cacheKey() != m_image.cacheKey();
    m_image = image;
    update();
}

void Shadow::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        polish();
}

QSGNode *Shadow::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    auto *node = static_cast<QSGNinePatchNode *>(old);
    if (m_image.isNull() || size().isEmpty()) {
        delete node;
        return nullptr;
    }
    if (!node || m_imageIsNew) {
        delete node; // it has its texture for life
        node = window()->createNinePatchNode();
        node->setTexture(window()->createTextureFromImage(m_image, QQuickWindow::TextureCanUseAtlas));
        m_imageIsNew = false;
    }
    const auto reach = shadowReach(m_blur);
    const auto border = shadowBorder(m_radius, m_blur);
    node->setBounds(boundingRect().adjusted(-reach, -reach, reach, reach).translated(0, m_drop));
    node->setPadding(border, m_isLow ? 0 : border, border, m_isLow ? 0 : border);
    node->setDevicePixelRatio(1); // a blur needs no more pixels on a finer screen
    node->update();
    return node;
}

} // namespace navorin
