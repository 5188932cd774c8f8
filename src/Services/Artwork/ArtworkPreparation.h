#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace navorin {

/// The picture in `bytes`, cut to fill `pixels` around its middle, upright, its corners rounded by `radius`
/// pixels, in a format that needs no conversion to be drawn. Null for anything that is no whole picture, for
/// formats that are programs rather than pictures, and for more pixels than a cover can mean.
///
/// Scales while it decodes where the format can, so a huge picture costs little memory. A pure function for a
/// worker thread: it may take a good part of a second.
[[nodiscard]] QImage preparedArtwork(const QByteArray &bytes, QSize pixels, qreal radius);

} // namespace navorin
