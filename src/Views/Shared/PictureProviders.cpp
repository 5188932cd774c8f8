#include "Views/Shared/PictureProviders.h"

#include "Views/Shared/SymbolTable.h"

#include <QPainter>
#include <QSvgRenderer>

#include <cmath>
#include <vector>

namespace navorin {

namespace {

constexpr int symbolSize = 24; // when nobody says how large

QImage tinted(QImage image, const QColor &color)
{
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

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

} // namespace

SymbolProvider::SymbolProvider()
    : QQuickImageProvider(Image)
{
}

QImage SymbolProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const auto separator = id.indexOf(u'?');
    const auto file = symbolFile(separator < 0 ? id : id.first(separator));
    QSvgRenderer renderer(file);
    const auto pixels = requestedSize.isEmpty() ? QSize(symbolSize, symbolSize) : requestedSize;
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (renderer.isValid()) {
        QPainter painter(&image);
        renderer.render(&painter);
    }
    if (size)
        *size = pixels;
    return separator < 0 ? image : tinted(std::move(image), QColor(id.sliced(separator + 1)));
}

ShadowProvider::ShadowProvider()
    : QQuickImageProvider(Image)
{
}

QImage ShadowProvider::requestImage(const QString &id, QSize *size, const QSize &)
{
    const auto numbers = id.split(u'/');
    if (numbers.size() < 2)
        return {};
    auto image = shadowImage(numbers[0].toInt(), numbers[1].toInt(), numbers.value(2).toInt());
    if (size)
        *size = image.size();
    return image;
}

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

} // namespace navorin
