#include "StorySamples.h"

#include <QDir>
#include <QFontDatabase>

#include <cmath>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

void loadAppFonts()
{
    const QDir folder(QStringLiteral(NAVORIN_FONTS));
    for (const auto &file : folder.entryInfoList({u"*.ttf"_s}))
        QFontDatabase::addApplicationFont(file.filePath());
}

QImage sampleCover(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const double across = double(x) / size.width();
            const double down = double(y) / size.height();
            const bool isDisc = std::hypot(across - 0.6, down - 0.4) < 0.2;
            image.setPixel(x, y,
                           isDisc ? qRgb(250, 210, 60) : qRgb(int(40 + 200 * across), int(160 * down), 120));
        }
    }
    return image;
}

StoryConfig sampleStory(const QImage &cover)
{
    return {
        .title = u"چتری نداشتیم"_s,
        .artist = u"گروه باران (Live 1402)"_s,
        .coverImage = cover,
        .themeColor = QColor(200, 70, 60),
        .accentColor = QColor::fromRgbF(0.39F, 0.40F, 0.95F),
        .lines = {{42.5, u"آهسته گفتی از همه دنیا بریدهام"_s,
                   u"Softly you said, چیزی 12 of all the world behind us"_s},
                  {44.0, u"کوچه Rain 2024 پر از بوی خاک شد و پنجرهها باز ماند"_s, {}},
                  {46.0, QString(), {}}},
        .endLine = 2,
        .duration = 5,
    };
}

} // namespace navorin
