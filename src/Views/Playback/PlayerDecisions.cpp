#include "Views/Playback/PlayerDecisions.h"

#include <algorithm>
#include <cmath>

namespace navorin {

PlayerMetrics playerMetrics(double width, double height)
{
    constexpr double lowWindow = 750;
    const bool isSmall = height < lowWindow;
    const double record =
        std::max(0.0, std::min({width * 0.72, height * (isSmall ? 0.34 : 0.30), isSmall ? 240.0 : 300.0}));
    PlayerMetrics metrics;
    metrics.isSmall = isSmall;
    metrics.record = record;
    metrics.artwork = record * 0.78;
    metrics.spot = record * 0.105;
    metrics.playButton = isSmall ? 66 : 78;
    metrics.belowRecord = isSmall ? 20 : 28;
    return metrics;
}

QString formatSeconds(double seconds)
{
    if (!std::isfinite(seconds) || seconds <= 0)
        return QStringLiteral("0:00");
    // Longer than any number can count: nothing that plays is.
    const auto whole = std::llround(std::min(seconds, 1e15));
    return QString::asprintf("%lld:%02lld", whole / 60, whole % 60);
}

double dragOffset(QPointF moved, double now)
{
    return moved.y() > 0 && moved.y() > std::abs(moved.x()) ? moved.y() : now;
}

bool dragDismisses(QPointF moved)
{
    constexpr double farEnough = 120;
    return moved.y() > farEnough && std::abs(moved.x()) < moved.y();
}

KeepState keepState(bool isDownloaded, bool isLoading)
{
    if (isDownloaded)
        return KeepState::Kept;
    return isLoading ? KeepState::Loading : KeepState::NotKept;
}

} // namespace navorin
