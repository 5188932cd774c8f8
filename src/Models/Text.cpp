#include "Models/Text.h"

#include <QList>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace navorin {
namespace {

/// Calls `take` with each character that a reader sees, until it says no.
template <typename Take>
void forEachCharacter(QStringView text, Take take)
{
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    for (qsizetype start = 0; start < text.size();) {
        const auto end = boundaries.toNextBoundary();
        if (!take(text.sliced(start, end - start)))
            return;
        start = end;
    }
}

bool isNumber(QStringView character)
{
    return QChar::isNumber(character.toUcs4().value(0));
}

} // namespace

QStringView trimmedBlanks(QStringView text)
{
    const auto isBlank = [](QChar c) { return c == u'\t' || c.category() == QChar::Separator_Space; };
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

qsizetype characterCount(QStringView text)
{
    qsizetype count = 0;
    forEachCharacter(text, [&count](QStringView) { return ++count > 0; });
    return count;
}

QStringView firstCharacters(QStringView text, qsizetype count)
{
    qsizetype length = 0;
    forEachCharacter(text, [&length, &count](QStringView character) {
        if (count-- <= 0)
            return false;
        length += character.size();
        return true;
    });
    return text.first(length);
}

QString codeDigits(QStringView text)
{
    constexpr qsizetype codeLength = 6;
    QString digits;
    forEachCharacter(text, [&digits](QStringView character) {
        if (isNumber(character))
            digits += character;
        return true;
    });
    return firstCharacters(digits, codeLength).toString();
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
