#pragma once

#include "Platform/Desktop/MediaLibrary.h"

namespace navorin {

/// A name that every file system takes, of at most 200 bytes and without a suffix.
[[nodiscard]] QString fileNameOf(const QString &title);

/// The user's folder of videos; made if it is missing.
class DesktopMediaLibrary final : public MediaLibrary
{
public:
    [[nodiscard]] QFuture<QString> keepVideo(const QString &file, const QString &title) override;
};

} // namespace navorin
