#include "Artwork.h"

#include "Random.h"

#include <QPainter>

#include <string>

namespace navorin::demo {

QImage drawArtwork(std::string_view name, std::string_view programme)
{
    QImage image(artworkSize, artworkSize, QImage::Format_RGB32);
    Random random(hashText(std::string(name) + "?" + std::string(programme)));
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 0, artworkSize);
    const double hue = random.unit();
    sky.setColorAt(0, QColor::fromHsvF(float(hue), 0.6F, 0.3F));
    sky.setColorAt(1, QColor::fromHsvF(float(hue), 0.6F, 0.8F));
    painter.fillRect(image.rect(), sky);
    return image;
}

} // namespace navorin::demo
