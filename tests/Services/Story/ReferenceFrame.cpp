#include "ReferenceFrame.h"

#include "Services/Story/StoryTimeline.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <vector>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double twoPi = 6.283185307179586;

/// The blur at every fourth pixel, by its definition; between them it is as good as straight.
QImage blurred(const QImage &cover)
{
    constexpr int step = 4;
    constexpr int reach = 170;
    std::vector<double> bell;
    for (int i = -reach; i <= reach; ++i)
        bell.push_back(std::exp(-i * i / (2.0 * 50 * 50)));
    const int columns = 720 / step;
    const int rows = 1280 / step;
    const auto pick = [&cover](int x, int y) {
        return cover.pixel(std::clamp(x, 0, cover.width() - 1), std::clamp(y, 0, cover.height() - 1));
    };
    std::vector<std::array<double, 3>> wide(std::size_t(columns * (1280 + 2 * reach)));
    for (int y = -reach; y < 1280 + reach; ++y) {
        for (int x = 0; x < columns; ++x) {
            auto &sum = wide[std::size_t((y + reach) * columns + x)];
            for (int i = -reach; i <= reach; ++i) {
                const auto pixel = pick(x * step + step / 2 + i, y);
                const double weight = bell[std::size_t(i + reach)];
                sum[0] += weight * qRed(pixel);
                sum[1] += weight * qGreen(pixel);
                sum[2] += weight * qBlue(pixel);
            }
        }
    }
    const double total = std::pow(std::accumulate(bell.begin(), bell.end(), 0.0), 2) * 255;
    QImage small(columns, rows, QImage::Format_RGBX64);
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < columns; ++x) {
            std::array<double, 3> sum{};
            for (int i = -reach; i <= reach; ++i) {
                const auto &from = wide[std::size_t((y * step + step / 2 + i + reach) * columns + x)];
                for (std::size_t c = 0; c < 3; ++c)
                    sum[c] += bell[std::size_t(i + reach)] * from[c];
            }
            small.setPixelColor(
                x, y, QColor::fromRgbF(float(sum[0] / total), float(sum[1] / total), float(sum[2] / total)));
        }
    }
    return small.scaled(720, 1280, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

/// Breaks the words by hand and draws each line by itself.
void drawText(QPainter &target, const QString &text, QRectF box, int size, int weight, const QColor &color,
              double alpha, double lineHeight = 0, bool hasShadow = false)
{
    QFont font(u"Vazirmatn"_s);
    font.setPixelSize(size);
    font.setWeight(QFont::Weight(weight));
    font.setHintingPreference(QFont::PreferNoHinting);
    const QFontMetricsF metrics(font);
    QStringList lines{QString()};
    for (const auto &word : text.split(u' ')) {
        const QString longer = lines.last().isEmpty() ? word : QString(lines.last() + u' ' + word);
        if (metrics.horizontalAdvance(longer) <= box.width())
            lines.last() = longer;
        else
            lines.append(word);
    }
    QImage layer(target.device()->width(), target.device()->height(), QImage::Format_ARGB32_Premultiplied);
    layer.fill(Qt::transparent);
    QPainter painter(&layer);
    painter.setFont(font);
    painter.setLayoutDirection(Qt::RightToLeft);
    painter.setPen(color);
    const double height = lineHeight > 0 ? lineHeight : 1.2 * size;
    double middle = box.top() + height / 2;
    for (const auto &line : lines) {
        if (middle + height / 2 > box.bottom() + 0.01 && middle > box.top() + height)
            break;
        painter.drawText(QRectF(box.left(), middle - 100, box.width(), 200), Qt::AlignCenter, line);
        middle += height;
    }
    painter.end();
    if (hasShadow) {
        // The soft shadow, by its definition.
        QImage shade(layer.size(), layer.format());
        shade.fill(Qt::transparent);
        for (int y = int(box.top()); y < int(box.bottom()); ++y) {
            for (int x = int(box.left()); x < int(box.right()); ++x) {
                double sum = 0;
                for (int v = -13; v <= 13; ++v) {
                    for (int u = -13; u <= 13; ++u)
                        sum += qAlpha(layer.pixel(x + u, y + v - 2)) * std::exp(-(u * u + v * v) / 32.0);
                }
                shade.setPixel(x, y, qRgba(0, 0, 0, int(0.8 * sum / (twoPi * 16))));
            }
        }
        target.drawImage(0, 0, shade);
    }
    target.setOpacity(alpha);
    target.drawImage(0, 0, layer);
    target.setOpacity(1);
}

/// Each pixel the mean of sixteen points, each of them between the four nearest pixels of the cover.
QImage stretched(const QImage &cover, QRectF square)
{
    QImage result(720, 1280, QImage::Format_RGB32);
    result.fill(Qt::black);
    const auto at = [&cover](double x, double y, int channel) {
        const auto pick = [&](int i, int j) {
            const auto pixel =
                cover.pixel(std::clamp(i, 0, cover.width() - 1), std::clamp(j, 0, cover.height() - 1));
            return channel == 0 ? qRed(pixel) : channel == 1 ? qGreen(pixel) : qBlue(pixel);
        };
        const int left = int(std::floor(x));
        const int top = int(std::floor(y));
        const double right = x - left;
        const double below = y - top;
        return (pick(left, top) * (1 - right) + pick(left + 1, top) * right) * (1 - below) +
               (pick(left, top + 1) * (1 - right) + pick(left + 1, top + 1) * right) * below;
    };
    for (int y = std::max(0, int(square.top()) - 1); y < int(square.bottom()) + 2; ++y) {
        for (int x = 0; x < 720; ++x) {
            std::array<double, 3> sum{};
            for (int i = 0; i < 16; ++i) {
                const double u =
                    (x + (i % 4 + 0.5) / 4 - square.left()) / square.width() * cover.width() - 0.5;
                const double v =
                    (y + (i / 4 + 0.5) / 4 - square.top()) / square.height() * cover.height() - 0.5;
                for (int c = 0; c < 3; ++c)
                    sum[std::size_t(c)] += at(u, v, c) / 16;
            }
            result.setPixel(x, y, qRgb(int(sum[0] + 0.5), int(sum[1] + 0.5), int(sum[2] + 0.5)));
        }
    }
    return result;
}

void drawCover(QPainter &painter, const QImage &cover, double t)
{
    const double side = 740 * (1.02 + 0.02 * std::sin(twoPi * t / 13));
    const QRectF square((720 - side) / 2, 409.6 - side / 2 + 10 * std::sin(twoPi * t / 10), side, side);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(stretched(cover, square)));
    painter.drawRoundedRect(square, 44, 44);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 255, 64), 5));
    painter.drawRoundedRect(square, 44, 44);
}

} // namespace

QImage referenceFrame(const StoryConfig &config, double t)
{
    QImage frame(720, 1280, QImage::Format_RGBA64_Premultiplied);
    frame.fill(Qt::black);
    QPainter painter(&frame);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    auto top = config.themeColor;
    top.setAlphaF(0.75F);
    QLinearGradient light(0, 0, 0, 1280);
    light.setColorAt(0, top);
    light.setColorAt(1, QColor::fromRgbF(0.03F, 0.03F, 0.04F));
    painter.fillRect(frame.rect(), light);

    QRadialGradient glow(360, 460.8, 350);
    auto clear = config.themeColor;
    clear.setAlpha(0);
    glow.setColorAt(0, config.themeColor);
    glow.setColorAt(1, clear);
    painter.setOpacity(0.14 + 0.08 * std::sin(twoPi * t / 9));
    painter.fillRect(QRectF(10, 110.8, 700, 700), glow);
    painter.setOpacity(1);
    if (!config.coverImage.isNull()) {
        painter.setOpacity(0.32);
        painter.drawImage(QRectF(-440, -160, 1600, 1600), blurred(config.coverImage));
        painter.setOpacity(1);
        drawCover(painter, config.coverImage, t);
    }
    drawText(painter, config.title, {70, 1040, 580, 60}, 46, 900, Qt::white, 1);
    drawText(painter, config.artist, {70, 1090, 580, 42}, 30, 500, Qt::white, 0.62);
    if (const auto line = currentLine(computeLineTimings(config), config, t)) {
        const double alpha = 0.25 + 0.75 * std::min((t - line->start) / 0.35, 1.0);
        drawText(painter, line->text, {60, 720, 600, 130}, 44, 700, Qt::white, alpha);
        if (!line->translation.isEmpty())
            drawText(painter, line->translation, {60, 840, 600, 64}, 30, 600, config.accentColor, 1, 32,
                     true);
    }
    drawText(painter, u"ناورین"_s, {80, 1184, 560, 34}, 24, 600, Qt::white, 0.42);
    return frame;
}

} // namespace navorin
