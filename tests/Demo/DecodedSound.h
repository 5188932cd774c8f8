#pragma once

#include <QByteArray>
#include <QString>

namespace navorin {

/// What a player makes of some bytes.
struct DecodedSound
{
    double seconds = 0;  ///< of samples that came out
    double position = 0; ///< where the last of them stands by its time stamp
    double level = 0;    ///< root mean square
    double hertz = 0;    ///< by zero crossings, for a tone
    QString error;
};

[[nodiscard]] DecodedSound decodeSound(const QByteArray &bytes);

} // namespace navorin
