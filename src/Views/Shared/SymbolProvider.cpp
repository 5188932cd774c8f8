#include "Views/Shared/SymbolProvider.h"

#include "Views/Shared/SymbolTable.h"

#include <QPainter>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

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

} // namespace

SymbolProvider::SymbolProvider()
    : QQuickImageProvider(Image)
{
}

QUrl SymbolProvider::addressOf(const QString &symbol, const QColor &color)
{
    if (symbol.isEmpty())
        return {};
    const auto format = color.alpha() < 255 ? QColor::HexArgb : QColor::HexRgb;
    return QUrl(u"image://symbol/%1?%2"_s.arg(symbol, color.name(format)));
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

} // namespace navorin
