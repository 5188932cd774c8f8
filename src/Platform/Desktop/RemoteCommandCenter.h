#pragma once

#include <functional>
#include <optional>

namespace navorin {

enum class RemoteCommandResult { Success = 0, CommandFailed = 200 };

/// What media keys and the desktop's media controls may ask for. Every command stays available all the time.
struct RemoteCommands
{
    using Handler = std::function<RemoteCommandResult()>;
    /// Takes seconds: an interval, which is absent if the request does not bring one, or a position.
    using SecondsHandler = std::function<RemoteCommandResult(std::optional<double> seconds)>;

    Handler play;
    Handler pause;
    Handler togglePlayPause;
    Handler nextTrack;
    Handler previousTrack;
    SecondsHandler skipForward;
    SecondsHandler skipBackward;
    SecondsHandler changePlaybackPosition;
    std::function<void(double gain)> changeVolume; ///< 0 to 1
};

/// Where the desktop's commands come in. UI thread only.
class RemoteCommandCenter
{
public:
    virtual ~RemoteCommandCenter() = default;

    /// Puts `commands` in the place of any earlier ones.
    virtual void setCommands(RemoteCommands commands) = 0;
};

} // namespace navorin
