#pragma once

#include <QString>

namespace navorin {

/// `text` as a label may draw it: on one line, and no longer than a label could ever show. Laying out the
/// thousands of characters that a server may send would hold up a frame.
[[nodiscard]] QString shownText(const QString &text);

} // namespace navorin
