#include "Views/Shared/ShownText.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace navorin {

namespace {

constexpr int maxCharacters = 300;
constexpr qsizetype maxUnits = qsizetype{4} * maxCharacters; // bounds a character of endless combining marks

bool breaksLine(QChar c)
{
    return c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator ||
           c == u'\v' || c == u'\f' || c == QChar(0x85);
}

/// The end of the last character that lies within `maxCharacters` and `maxUnits`.
qsizetype endOfHead(QStringView head, bool headIsAll)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, head);
    int characters = 0;
    while (characters < maxCharacters && finder.toNextBoundary() > 0)
        ++characters;
    if (characters == maxCharacters)
        return finder.position();
    if (headIsAll || characters < 2)
        return head.size();
    finder.toEnd();
    return finder.toPreviousBoundary(); // the last one is cut
}

QString shortened(const QString &text)
{
    const auto head = QStringView(text).first(std::min(text.size(), maxUnits));
    const auto end = endOfHead(head, head.size() == text.size());
    return end == text.size() ? text : QString(text.first(end) + u'\u2026');
}

} // namespace

QString shownText(const QString &text)
{
    auto shown = text.size() > maxCharacters ? shortened(text) : text;
    if (std::any_of(shown.cbegin(), shown.cend(), breaksLine))
        std::replace_if(shown.begin(), shown.end(), breaksLine, u' ');
    return shown;
}

} // namespace navorin
