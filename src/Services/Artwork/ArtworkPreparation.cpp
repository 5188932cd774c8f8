#include "Services/Artwork/ArtworkPreparation.h"

#include "Services/Artwork/ArtworkColor.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>

#include <algorithm>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 mostPixels = 100'000'000;
constexpr int longestSide = 4096; ///< of what is drawn

qint64 areaOf(QSize size)
{
    return qint64(size.width()) * size.height();
}

bool isPictureFormat(const QByteArray &format)
{
    static const QByteArrayList formats{"jpeg"_ba, "png"_ba, "webp"_ba, "gif"_ba, "bmp"_ba};
    return formats.contains(format);
}

/// The decoder fills up what is missing of a JPEG in grey and calls it a picture.
bool isCutJpeg(const QByteArray &bytes)
{
    return bytes.startsWith("\xFF\xD8") && bytes.lastIndexOf("\xFF\xD9") < bytes.lastIndexOf("\xFF\xDA");
}

/// The largest part of `source` of the shape of `target`, around the middle.
QRect middleOf(QSize source, QSize target)
{
    const auto size = target.scaled(source, Qt::KeepAspectRatio).expandedTo({1, 1});
    return {QPoint((source.width() - size.width()) / 2, (source.height() - size.height()) / 2), size};
}

/// Lets the decoder shrink the picture on the way, so that it just fills `target`.
void shrinkWhileReading(QImageReader &reader, QSize target)
{
    if (reader.transformation() & QImageIOHandler::TransformationRotate90)
        target.transpose();
    const auto filling = reader.size().scaled(target, Qt::KeepAspectRatioByExpanding);
    if (filling.width() >= reader.size().width())
        return;
    if (areaOf(filling) <= 4 * areaOf(target)) {
        reader.setScaledSize(filling);
        return;
    }
    reader.setClipRect(middleOf(reader.size(), target)); // a strip: most of it would never be seen
    reader.setScaledSize(target);
}

/// Decodes the picture that `reader` stands before, scaled down on the way to what just fills `target`; whole
/// if that is empty. Null for what is no whole picture or too much of one.
QImage decoded(const QByteArray &bytes, QImageReader &reader, QSize target = {})
{
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (isCutJpeg(bytes) || !reader.canRead() || !isPictureFormat(reader.format()) ||
        areaOf(reader.size()) > mostPixels)
        return {};
    if (reader.size().isValid() && !target.isEmpty())
        shrinkWhileReading(reader, target);
    QImage image;
    return reader.read(&image) ? image : QImage();
}

QImage decoded(const QByteArray &bytes, QSize target)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    return decoded(bytes, reader, target);
}

QImage filled(const QImage &image, QSize target)
{
    const auto part = middleOf(image.size(), target);
    const auto cut = part == image.rect() ? image : image.copy(part);
    return cut.size() == target ? cut : cut.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage rounded(const QImage &image, qreal radius)
{
    QImage result(image.size(), QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(image));
    painter.drawRoundedRect(image.rect(), radius, radius);
    return result;
}

} // namespace

QImage preparedArtwork(const QByteArray &bytes, QSize pixels, qreal radius)
{
    const auto target = pixels.boundedTo({longestSide, longestSide});
    if (target.isEmpty())
        return {};
    const auto image = decoded(bytes, target);
    if (image.isNull())
        return {};
    const auto cover = filled(image, target)
                           .convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                                    : QImage::Format_RGB32);
    return radius > 0 ? rounded(cover, radius) : cover;
}

QImage wholeArtwork(const QByteArray &bytes)
{
    return decoded(bytes, QSize());
}

std::optional<ReceivedArtwork> receivedArtwork(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    const auto format = QString::fromLatin1(reader.format()); // none once it is read
    const auto image = decoded(bytes, reader);
    if (image.isNull())
        return {};
    return ReceivedArtwork{std::make_shared<EncodedPicture>(EncodedPicture{bytes, format, image.size()}),
                           vibrantColor(image)};
}

} // namespace navorin
