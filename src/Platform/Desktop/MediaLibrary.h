#pragma once

#include <QFuture>
#include <QString>

namespace navorin {

/// Where the user keeps films.
class MediaLibrary
{
public:
    virtual ~MediaLibrary() = default;

    /// Keeps a copy of `file`, called after `title`; never in the place of another. Empty once it is kept,
    /// otherwise the Persian text for a person.
    [[nodiscard]] virtual QFuture<QString> keepVideo(const QString &file, const QString &title) = 0;
};

} // namespace navorin
