#include "Views/Shared/ShownText.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace navorin {

namespace {

constexpr int maxCharacters = 300;
constexpr qsizetype maxUnits = 4 * maxCharacters; // bounds a character of endless combining marks

bool breaksLine(QChar c)
{
    return c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator ||
           c == u'\v' || c == u'\f' || c == QChar(0x85);
}

QString shortened(const QString &text)
{
    const auto head = text.first(std::min(text.size(), maxUnits));
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, head);
    for (int i = 0; i < maxCharacters; ++i) {
        if (finder.toNextBoundary() < 0)
            break;
    }
    const auto end = finder.position() < 0 ? head.size() : finder.position();
    return end == text.size() ? text : QString(head.first(end) + u'\u2026');
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
