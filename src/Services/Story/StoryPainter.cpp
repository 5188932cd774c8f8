#include "Services/Story/StoryPainter.h"

#include "Services/Story/RowKernels.h"
#include "Services/Story/StoryBlur.h"
#include "Services/Story/StoryGeometry.h"
#include "Services/Story/StoryText.h"

#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int fullGlow = 256;

void paintBackground(QPainter &painter, const QColor &theme)
{
    auto top = theme;
    top.setAlphaF(0.75F);
    QLinearGradient gradient(0, 0, 0, storySize.height());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, QColor::fromRgbF(0.03F, 0.03F, 0.04F));
    painter.fillRect(QRect({}, storySize), Qt::black);
    painter.fillRect(QRect({}, storySize), gradient);
}

void paintGlow(QPainter &painter, const QColor &theme, double alpha)
{
    auto clear = theme;
    clear.setAlpha(0);
    QRadialGradient gradient(storyGlowBox.center(), storyGlowBox.width() / 2);
    gradient.setColorAt(0, theme);
    gradient.setColorAt(1, clear);
    painter.setOpacity(alpha);
    painter.fillRect(storyGlowBox, gradient);
    painter.setOpacity(1);
}

void paintText(QPainter &painter, const QString &text, const StoryTextStyle &style)
{
    painter.setOpacity(style.alpha);
    painter.drawImage(style.box.topLeft(), storyText(text, style, Qt::white));
    painter.setOpacity(1);
}

/// All that stands still: below the cover the light, and the words that the cover never reaches.
QImage stillPicture(const StoryConfig &config, const QImage &blurredCover, double glowAlpha)
{
    // 16 bits: the steps of many layers of 8 would show.
    QImage picture(storySize, QImage::Format_RGBA64_Premultiplied);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    paintBackground(painter, config.themeColor);
    paintGlow(painter, config.themeColor, glowAlpha);
    if (!blurredCover.isNull()) {
        painter.setOpacity(storyBlurAlpha);
        painter.drawImage(storyBlurBox, blurredCover);
        painter.setOpacity(1);
    }
    paintText(painter, config.title, storyTitleStyle);
    paintText(painter, config.artist, storyArtistStyle);
    paintText(painter, u"ناورین"_s, storyNameStyle);
    return picture;
}

/// The cover's own shadow, which only shows through it.
QImage coverShadow(const QImage &cover, double scale)
{
    constexpr double blur = 35; // pixels of the canvas
    constexpr double drop = 24;
    constexpr int room = 128;
    QImage shape(cover.size() + QSize(2, 2) * room, QImage::Format_ARGB32_Premultiplied);
    shape.fill(Qt::transparent);
    {
        QPainter painter(&shape);
        painter.drawImage(QPointF(room, room + drop * scale), cover);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(shape.rect(), QColor(0, 0, 0, 140));
    }
    return gaussianBlurred(shape, blur * scale, shape.size()).copy(QRect({room, room}, cover.size()));
}

/// A cover that can be seen through, with what is seen through it: as good as right, for it hardly moves.
QImage opaqueCover(const QImage &cover, const QImage &below)
{
    if (!cover.hasAlphaChannel())
        return cover;
    const auto square = storyCoverRect(0);
    const auto size = square.size().toSize();
    const auto fitting = cover.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QImage result(size, QImage::Format_RGB32);
    QPainter painter(&result);
    painter.drawImage(QPointF(-square.x(), -square.y()), below);
    painter.fillRect(QRectF(0, 0, -square.x(), size.height()), below.pixelColor(0, size.height() / 2));
    painter.fillRect(QRectF(size.width() + square.x(), 0, -square.x(), size.height()),
                     below.pixelColor(below.width() - 1, size.height() / 2));
    painter.drawImage(0, 0, coverShadow(fitting, 1));
    painter.drawImage(0, 0, fitting);
    return result;
}

} // namespace

StoryPainter::StoryPainter(const StoryConfig &config)
    : m_timings(computeLineTimings(config))
    , m_config(config)
{
    const auto cover = std::exchange(m_config.coverImage, {});
    const auto blurred = cover.isNull() ? QImage() : gaussianBlurred(cover, storyBlurSigma, storySize);
    const auto dark = stillPicture(m_config, blurred, 0);
    m_dark = planarPicture(dark);
    m_glowing = planarPicture(stillPicture(m_config, blurred, storyMostGlow));
    if (!cover.isNull())
        m_cover.emplace(opaqueCover(cover, dark));
}

void StoryPainter::drawFrame(const PlanarCanvas &canvas, double t)
{
    const int glow = int(std::lround(fullGlow * storyGlowAlpha(t) / storyMostGlow));
    if (m_cover)
        m_cover->moveTo(storyCoverRect(t));
    for (int y = 0; y < storySize.height(); y += 2) {
        if (!m_cover || !m_cover->fills(y))
            drawStill(canvas, y, glow);
        if (m_cover && m_cover->touches(y))
            m_cover->drawRows(canvas, y);
    }
    drawText(canvas, t);
}

void StoryPainter::drawStill(const PlanarCanvas &canvas, int y, int glow) const
{
    const int width = canvas.width;
    const std::ptrdiff_t halfRow = std::ptrdiff_t(y / 2) * (width / 2);
    const bool glows = y + 2 > storyGlowBox.top() && y < storyGlowBox.bottom();
    const auto draw = [=](std::uint8_t *target, const Plane &dark, const Plane &glowing, int row, int count) {
        if (glows)
            mixRows(target, dark.row(row), glowing.row(row), std::size_t(count), glow);
        else
            std::memcpy(target, dark.row(row), std::size_t(count));
    };
    // Two rows lie one behind the other.
    draw(canvas.lumaRow(y), m_dark.luma, m_glowing.luma, y, 2 * width);
    draw(canvas.blue + halfRow, m_dark.blue, m_glowing.blue, y / 2, width / 2);
    draw(canvas.red + halfRow, m_dark.red, m_glowing.red, y / 2, width / 2);
}

void StoryPainter::drawText(const PlanarCanvas &canvas, double t)
{
    const auto line = currentLine(m_timings, m_config, t);
    if (!line)
        return;
    if (line->index != m_preparedLine)
        prepareLine(*line);
    m_text.drawOn(canvas, lineAlpha(t - line->start));
    m_translation.drawOn(canvas, 1);
}

void StoryPainter::prepareLine(const CurrentLine &line)
{
    m_preparedLine = line.index;
    m_text = PlanarOverlay(storyText(line.text, storyLineStyle, Qt::white), storyLineStyle.box.topLeft());
    m_translation =
        line.translation.isEmpty()
            ? PlanarOverlay()
            : PlanarOverlay(shadowedStoryText(line.translation, storyTranslationStyle, m_config.accentColor),
                            storyTranslationStyle.box.topLeft());
}

} // namespace navorin
