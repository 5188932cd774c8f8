#pragma once

#include "Platform/Desktop/NowPlayingCenter.h"

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QSize>

#include <memory>
#include <optional>

namespace navorin {

/// The picture in `bytes`, cut to fill `pixels` around its middle, upright, its corners rounded by `radius`
/// pixels, in a format that needs no conversion to be drawn. Null for anything that is no whole picture, for
/// formats that are programs rather than pictures, and for more pixels than a cover can mean.
///
/// Scales while it decodes where the format can, so a huge picture costs little memory. A pure function for a
/// worker thread: it may take a good part of a second.
[[nodiscard]] QImage preparedArtwork(const QByteArray &bytes, QSize pixels, qreal radius);

/// The same picture whole, at its own size. A pure function for a worker thread too.
[[nodiscard]] QImage wholeArtwork(const QByteArray &bytes);

/// What a received artwork is good for beside being drawn.
struct ReceivedArtwork
{
    std::shared_ptr<const EncodedPicture> picture;
    std::optional<QColor> vibrantColor;
};

/// The picture in `bytes` with its accent colour, taken over all its pixels; absent for anything that
/// preparedArtwork() would not show. A pure function for a worker thread.
[[nodiscard]] std::optional<ReceivedArtwork> receivedArtwork(const QByteArray &bytes);

} // namespace navorin
