#pragma once

#include <QStringView>

namespace navorin {

/// Writes one line to standard output, as UTF-8, and flushes it, so that whoever watches the program sees
/// each event as it happens. Usable from any thread; lines of two threads do not mix.
void printDebugLine(QStringView line);

} // namespace navorin
