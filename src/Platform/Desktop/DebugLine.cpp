#include "Platform/Desktop/DebugLine.h"

#include <QByteArray>

#include <cstdio>

namespace navorin {

void printDebugLine(const QString &line)
{
    auto text = line.toUtf8();
    text.append('\n');
    std::fwrite(text.constData(), 1, std::size_t(text.size()), stdout);
    std::fflush(stdout);
}

} // namespace navorin
