#pragma once

#include <QString>

namespace navorin {

/// Writes one line to standard output, as UTF-8, and flushes it, so that whoever watches the program sees
/// each event as it happens. Usable from any thread; lines of two threads do not mix.
void printDebugLine(const QString &line);

} // namespace navorin
