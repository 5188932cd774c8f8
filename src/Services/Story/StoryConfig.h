#pragma once

#include "Models/APIModels.h"

#include <QColor>
#include <QImage>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

namespace navorin {

/// All that a story video is made from.
struct StoryConfig
{
    QString title;
    QString artist;
    QImage coverImage;                ///< null for none
    QColor themeColor;                ///< background and glow
    QColor accentColor;               ///< the translation
    QList<LyricsLine> lines;          ///< the whole lyrics, never empty
    qsizetype startLine = 0;          ///< the first line to show
    qsizetype endLine = 0;            ///< the last one
    std::optional<QUrl> audioURL;     ///< none gives a silent video
    std::optional<double> audioStart; ///< seconds into the source
    double duration = 0;              ///< seconds wished for; see storyLength()
};

} // namespace navorin
