#pragma once

#include "Platform/Audio/AudioSession.h"
#include "Platform/Desktop/NowPlayingCenter.h"
#include "Platform/Desktop/RemoteCommandCenter.h"
#include "Platform/Desktop/SystemLog.h"
#include "Platform/Desktop/UrlOpener.h"
#include "Support/FakeAudioRecorder.h"

#include <QList>
#include <QStringList>

#include <utility>

namespace navorin {

/// A desktop that notes what it is told and does what a test says.
class FakeAudioSession final : public AudioSession
{
    Q_OBJECT
public:
    std::optional<QString> configureForPlayback() override
    {
        ++configured;
        return error;
    }

    int configured = 0;
    std::optional<QString> error;
};

class FakeNowPlayingCenter final : public NowPlayingCenter
{
public:
    void setNowPlayingInfo(const NowPlayingInfo &info) override { infos.append(info); }
    void setPlaybackState(const PlaybackState &newState) override { state = newState; }
    void setPositionSource(std::function<double()> source) override { position = std::move(source); }
    void announceJump(double seconds) override { jumps.append(seconds); }

    QList<NowPlayingInfo> infos;
    PlaybackState state;
    std::function<double()> position;
    QList<double> jumps;
};

class FakeRemoteCommandCenter final : public RemoteCommandCenter
{
public:
    void setCommands(RemoteCommands newCommands) override { commands = std::move(newCommands); }

    RemoteCommands commands;
};

class FakeUrlOpener final : public UrlOpener
{
public:
    [[nodiscard]] bool canOpen(const QUrl &address) const override
    {
        return schemes.contains(address.scheme());
    }
    bool open(const QUrl &address) override
    {
        opened.append(address.toString());
        return true;
    }

    QStringList schemes;
    QStringList opened;
};

class FakeSystemLog final : public SystemLog
{
public:
    void write(Level level, const QString &line) override
    {
        lines << (level == Level::Error ? QStringLiteral("error ") : QStringLiteral("info ")) + line;
    }

    QStringList lines;
};

struct FakeDesktop
{
    FakeAudioSession audioSession;
    FakeNowPlayingCenter nowPlaying;
    FakeRemoteCommandCenter remoteCommands;
    FakeUrlOpener urlOpener;
    FakeSystemLog systemLog;
    FakeAudioRecorder microphone;
};

} // namespace navorin
