#include "Platform/Desktop/DesktopSettings.h"

namespace navorin {

void DesktopSettings::setTextScale(double scale)
{
    const auto wanted = scale > 1 ? scale : 1.0; // nor what is no number
    if (wanted == m_textScale)
        return;
    m_textScale = wanted;
    Q_EMIT textScaleChanged();
}

void DesktopSettings::setReducedMotion(bool reduced)
{
    if (reduced == m_reducedMotion)
        return;
    m_reducedMotion = reduced;
    Q_EMIT reducedMotionChanged();
}

} // namespace navorin
