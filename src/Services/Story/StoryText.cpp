#include "Services/Story/StoryText.h"

#include "Services/Story/StoryBlur.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

QFont fontOf(const StoryTextStyle &style)
{
    QFont font(u"Vazirmatn"_s);
    font.setPixelSize(style.pixelSize);
    font.setWeight(style.weight);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return font;
}

QTextOption textOption()
{
    QTextOption option(Qt::AlignHCenter);
    option.setTextDirection(Qt::RightToLeft);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return option;
}

QString withLineSeparators(QString text)
{
    text.replace(u"\r\n"_s, u"\n"_s);
    return text.replace(u'\n', QChar(QChar::LineSeparator)).replace(u'\r', QChar(QChar::LineSeparator));
}

} // namespace

QImage storyText(const QString &text, const StoryTextStyle &style, const QColor &color)
{
    QImage picture(style.box.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setPen(QColor(color.rgb()));

    QTextLayout layout(withLineSeparators(text), fontOf(style));
    layout.setTextOption(textOption());
    const double height = style.lineHeight * style.pixelSize;
    const QFontMetricsF metrics(layout.font());
    const double baseline = (height - metrics.ascent() - metrics.descent()) / 2 + metrics.ascent();
    layout.beginLayout();
    for (double top = 0; top == 0 || top + height < style.box.height() + 0.5; top += height) {
        auto line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(style.box.width());
        // By the font itself: a sign that comes from another font does not move the line.
        line.draw(&painter, {0, top + baseline - line.ascent()});
    }
    layout.endLayout();
    return picture;
}

QImage shadowedStoryText(const QString &text, const StoryTextStyle &style, const QColor &color)
{
    const auto words = storyText(text, style, color);
    QImage shadow(words.size(), words.format());
    shadow.fill(Qt::transparent);
    {
        QPainter painter(&shadow);
        painter.drawImage(0, storyShadowDrop, words);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(shadow.rect(), Qt::black);
    }
    QImage picture(words.size(), words.format());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setOpacity(storyShadowAlpha);
    painter.drawImage(0, 0, gaussianBlurred(shadow, storyShadowSigma, shadow.size()));
    painter.setOpacity(1);
    painter.drawImage(0, 0, words);
    return picture;
}

} // namespace navorin
