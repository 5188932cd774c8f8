#pragma once

#include <QObject>
#include <QPointF>
#include <QString>

namespace navorin {

/// The sizes of the full player that follow from the room it has, in pixels.
struct PlayerMetrics
{
    Q_GADGET
    Q_PROPERTY(bool isSmall MEMBER isSmall)
    Q_PROPERTY(double record MEMBER record)
    Q_PROPERTY(double artwork MEMBER artwork)
    Q_PROPERTY(double spot MEMBER spot)
    Q_PROPERTY(double playButton MEMBER playButton)
    Q_PROPERTY(double belowRecord MEMBER belowRecord)
public:
    bool isSmall = false;   ///< too low for the banner
    double record = 0;      ///< diameter of the record
    double artwork = 0;     ///< diameter of the picture on it
    double spot = 0;        ///< diameter of its middle
    double playButton = 0;  ///< diameter
    double belowRecord = 0; ///< least distance to the title

    bool operator==(const PlayerMetrics &) const = default;
};
[[nodiscard]] PlayerMetrics playerMetrics(double width, double height);

/// A position or a length as minutes and seconds; there is no hour. "0:00" for what is not a positive number.
[[nodiscard]] QString formatSeconds(double seconds);

/// How far the screen has followed a drag by `moved`: downwards only; `now` where the drag goes sideways.
[[nodiscard]] double dragOffset(QPointF moved, double now);
/// A drag that ends so closes the screen.
[[nodiscard]] bool dragDismisses(QPointF moved);

/// What the button that keeps a track shows and does.
enum class KeepState { NotKept, Loading, Kept };
[[nodiscard]] KeepState keepState(bool isDownloaded, bool isLoading);

} // namespace navorin
