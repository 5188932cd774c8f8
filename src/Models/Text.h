#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace navorin {

/// `text` without the blanks at both ends: tabs and the Unicode space separators, but no line breaks.
[[nodiscard]] QStringView trimmedBlanks(QStringView text);

/// How many characters a reader sees: an emoji or a letter with its marks is one.
[[nodiscard]] qsizetype characterCount(QStringView text);
/// The first `count` of them.
[[nodiscard]] QStringView firstCharacters(QStringView text, qsizetype count);

/// The first six characters of `text` that are numbers in any script, as they stand.
[[nodiscard]] QString codeDigits(QStringView text);

/// A decimal integer: an optional sign and digits, nothing else; absent also when it does not fit 64 bits.
[[nodiscard]] std::optional<qint64> parsedDecimal(QStringView text);

} // namespace navorin
