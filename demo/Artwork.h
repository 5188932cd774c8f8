#pragma once

#include <QImage>

#include <string_view>

namespace navorin::demo {

constexpr int artworkSize = 600;

/// Draws a cover: the stations have one each, any other name gets one by its hash. A programme that is not
/// empty takes other colours. Always the same for the same names. Any thread.
[[nodiscard]] QImage drawArtwork(std::string_view name, std::string_view programme);

} // namespace navorin::demo
