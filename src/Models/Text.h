#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace navorin {

/// `text` without the blanks at both ends: tabs and the Unicode space separators, but no line breaks.
[[nodiscard]] QStringView trimmedBlanks(QStringView text);

/// A decimal integer: an optional sign and digits, nothing else; absent also when it does not fit 64 bits.
[[nodiscard]] std::optional<qint64> parsedDecimal(QStringView text);

} // namespace navorin
