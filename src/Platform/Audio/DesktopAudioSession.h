#pragma once

#include "Platform/Audio/AudioSession.h"
#include "Platform/Tasks/MainQueue.h"

#include <memory>

namespace navorin {

class SerialThread;
class ThreadGroup;

/// The session as a desktop has it: the sound server asks for silence while something more important sounds,
/// the computer goes to sleep, an output device is pulled out. The first two are told to it by who hears of
/// them, the third it watches for itself, from the first configureForPlayback() on.
class DesktopAudioSession final : public AudioSession
{
    Q_OBJECT
public:
    explicit DesktopAudioSession(MainQueue &queue);
    /// Waits for the sound server to let go of the watch, but no longer than a few seconds.
    ~DesktopAudioSession() override;

    /// Fails if no sound device can be watched; the next call tries again. Never waits: a failure is reported
    /// by the call after the one that met it.
    std::optional<QString> configureForPlayback() override;

    void setCorked(bool corked);
    void computerGoesToSleep();
    void computerWokeUp();

private:
    class DeviceWatch;

    MainQueue &m_queue;
    std::shared_ptr<ThreadGroup> m_threads;
    std::unique_ptr<SerialThread> m_watcher;
    std::shared_ptr<DeviceWatch> m_watch;
};

} // namespace navorin
