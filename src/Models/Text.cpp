#include "Models/Text.h"

#include <algorithm>

namespace navorin {

QStringView trimmedBlanks(QStringView text)
{
    const auto isBlank = [](QChar c) { return c == u'\t' || c.category() == QChar::Separator_Space; };
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

std::optional<qint64> parsedDecimal(QStringView text)
{
    const auto signLength = text.startsWith(u'+') || text.startsWith(u'-') ? 1 : 0;
    const auto digits = text.sliced(signLength);
    if (digits.isEmpty() || !std::ranges::all_of(digits, [](QChar c) { return c >= u'0' && c <= u'9'; }))
        return {};
    bool fits = false;
    const auto number = text.toLongLong(&fits);
    return fits ? std::optional(number) : std::nullopt;
}

} // namespace navorin
