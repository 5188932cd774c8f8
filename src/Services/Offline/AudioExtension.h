#pragma once

#include <QByteArrayView>
#include <QString>

namespace navorin {

/// The file name extension for a whole audio file, "wav", "m4a" or "mp3", told from its first bytes; whatever
/// it does not know is "mp3".
[[nodiscard]] QString sniffAudioExtension(QByteArrayView data);

} // namespace navorin
