#pragma once

#include <QImage>
#include <QSize>

namespace navorin {

/// The top left `size` of `image` after a Gaussian blur of a standard deviation of `sigma` pixels, its edge
/// pixels repeated without end. A wide blur is made on a coarser grid, which it hides. In 16 bits,
/// premultiplied.
[[nodiscard]] QImage gaussianBlurred(const QImage &image, double sigma, QSize size);

} // namespace navorin
