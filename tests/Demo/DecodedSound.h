#pragma once

#include <QString>

namespace navorin {

/// What a player hears from an address.
struct DecodedSound
{
    double seconds = 0;  ///< of samples that came out
    double position = 0; ///< where the last of them stands by its time stamp
    double level = 0;    ///< root mean square of the last samples
    double hertz = 0;    ///< by zero crossings, for a tone
    QString error;
};

/// Decodes until the end, an error or `wanted` seconds.
[[nodiscard]] DecodedSound decodeSound(const QString &address, double wanted);

} // namespace navorin
