#pragma once

#include <QByteArray>

#include <vector>

namespace navorin::demo {

/// The sound of an MPEG-4 file with AAC, as mono samples at 44,100 Hz, at most its first twenty seconds.
/// Empty if it cannot be read.
[[nodiscard]] std::vector<float> decodeSnippet(const QByteArray &file);

} // namespace navorin::demo
