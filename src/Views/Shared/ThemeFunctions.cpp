#include "Views/Shared/ThemeFunctions.h"

#include "Services/Playback/PlaybackDecisions.h"
#include "Views/Shared/SpringCurve.h"
#include "Views/Shared/SymbolProvider.h"
#include "Views/Shared/ThemeTones.h"

namespace navorin {

QColor ThemeFunctions::accent()
{
    return accentColor();
}

QColor ThemeFunctions::background()
{
    return backgroundColor();
}

QColor ThemeFunctions::glow(const QColor &color)
{
    return glowTone(color);
}

QColor ThemeFunctions::ink(const QColor &color)
{
    return inkTone(color);
}

double ThemeFunctions::veil(const QColor &color)
{
    return veilOpacity(color);
}

QColor ThemeFunctions::blend(const QColor &under, const QColor &over, double alpha)
{
    return blended(under, over, alpha);
}

QUrl ThemeFunctions::symbolAddress(const QString &symbol, const QColor &color)
{
    return SymbolProvider::addressOf(symbol, color);
}

int ThemeFunctions::springDuration(double response, double damping)
{
    return SpringCurve{response, damping}.duration();
}

QVariantList ThemeFunctions::springCurve(double response, double damping)
{
    QVariantList curve;
    for (const auto coordinate : SpringCurve{response, damping}.bezier())
        curve.append(coordinate);
    return curve;
}

} // namespace navorin
