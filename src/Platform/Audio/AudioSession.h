#pragma once

#include <QObject>
#include <QString>

#include <optional>

namespace navorin {

/// This program's place among all that makes sound on the desktop: who may interrupt it, and where it comes
/// out. UI thread only.
class AudioSession : public QObject
{
    Q_OBJECT
public:
    ~AudioSession() override;

    /// Makes this a session that plays. To be repeated before playing and after recording. Returns what went
    /// wrong, in the platform's words; playing may be tried all the same.
    virtual std::optional<QString> configureForPlayback() = 0;

Q_SIGNALS:
    /// Something more important takes the sound: a call, or the computer goes to sleep.
    void interruptionBegan();
    /// It is over. `shouldResume`: what played before may go on by itself.
    void interruptionEnded(bool shouldResume);
    /// The device that was played to has gone.
    void outputDeviceGone();
};

} // namespace navorin
