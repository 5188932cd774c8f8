#include "Platform/Desktop/DebugLine.h"

#include <QByteArray>

#include <cstdio>

namespace navorin {

void printDebugLine(QStringView line)
{
    const QByteArray text = line.toUtf8() + '\n';
    std::fwrite(text.constData(), 1, std::size_t(text.size()), stdout);
    std::fflush(stdout);
}

} // namespace navorin
