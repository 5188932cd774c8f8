#pragma once

#include "Models/Station.h"
#include "Platform/Tasks/MainQueue.h"
#include "Services/SharedInstance.h"

#include <QColor>
#include <QCoro/QCoroTask>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

namespace navorin {

class APIClient;
class AudioSession;
class MediaItem;
class MediaPlayer;
class NowPlayingCenter;
class OfflineStore;
class RemoteCommandCenter;
struct EncodedPicture;
struct RemoteCommands;

/// The single owner of playback. Every screen starts, stops and reads playback here, and nothing else touches
/// the audio engine. UI thread only.
///
/// `wantsPlayback` is what the user asked for and `isPlaying` what is happening: an interruption clears the
/// second and leaves the first, a pause request clears both. Playback failures do not become messages, and
/// nothing retries: the next request is the retry.
class RadioPlayer : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool hasStation READ hasStation NOTIFY currentStationChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)
    Q_PROPERTY(bool isBuffering READ isBuffering NOTIFY isBufferingChanged)
    Q_PROPERTY(bool isLive READ isLive NOTIFY isLiveChanged)
    Q_PROPERTY(double currentTime READ currentTime NOTIFY currentTimeChanged)
    Q_PROPERTY(double duration READ duration NOTIFY durationChanged)
    Q_PROPERTY(float volume READ volume WRITE setVolume NOTIFY volumeChanged)
    Q_PROPERTY(QString statusText READ statusText NOTIFY statusTextChanged)
    Q_PROPERTY(QColor themeColor READ themeColor NOTIFY themeColorChanged)
    Q_PROPERTY(bool isFullPlayerPresented READ isFullPlayerPresented WRITE setFullPlayerPresented NOTIFY
                   isFullPlayerPresentedChanged)
public:
    static RadioPlayer &shared();
    ~RadioPlayer() override;

    /// What is selected; on a track-list station also which track.
    [[nodiscard]] const std::optional<Station> &currentStation() const { return m_currentStation; }
    [[nodiscard]] bool hasStation() const { return m_currentStation.has_value(); }
    /// Sound is running, as far as the user is concerned.
    [[nodiscard]] bool isPlaying() const { return m_isPlaying; }
    /// A spinner is due.
    [[nodiscard]] bool isBuffering() const { return m_isBuffering; }
    /// The current station has no track list; set on each load.
    [[nodiscard]] bool isLive() const { return m_isLive; }
    /// Seconds: the last position reported, or the target of the last seek.
    [[nodiscard]] double currentTime() const { return m_currentTime; }
    /// Seconds; 0 when unknown, endless or live.
    [[nodiscard]] double duration() const { return m_duration; }
    /// 0 to 1, not kept between runs.
    [[nodiscard]] float volume() const { return m_volume; }
    [[nodiscard]] QString statusText() const { return m_statusText; }
    /// Taken from the artwork.
    [[nodiscard]] QColor themeColor() const { return m_themeColor; }
    [[nodiscard]] bool isFullPlayerPresented() const { return m_isFullPlayerPresented; }
    void setFullPlayerPresented(bool presented);

    /// The one entry point for starting something new. Never fails to its caller.
    QCoro::Task<void> selectStation(Station station);
    /// Resumes, or reloads the selected station if nothing is loaded.
    Q_INVOKABLE void play();
    Q_INVOKABLE void togglePlayPause();
    /// Absolute, in seconds; kept within the duration if that is known.
    Q_INVOKABLE void seek(double seconds);
    /// Relative, in seconds; nothing on a live station or while the duration is unknown.
    Q_INVOKABLE void skip(double seconds);
    void setVolume(float volume);

    /// Makes the desktop's audio session one that plays; to be repeated after anybody has recorded. A failure
    /// is printed.
    void configureAudioSession();

    /// The station's track list has at least two entries.
    [[nodiscard]] bool canSkipTracks() const;
    /// One step forward on the ring of tracks, where there is one.
    Q_INVOKABLE void nextTrack();
    /// The beginning of the track, or one step back from its first 5 seconds.
    Q_INVOKABLE void previousTrack();

Q_SIGNALS:
    void currentStationChanged();
    void isPlayingChanged();
    void isBufferingChanged();
    void isLiveChanged();
    void currentTimeChanged();
    void durationChanged();
    void volumeChanged();
    void statusTextChanged();
    void themeColorChanged();
    void isFullPlayerPresentedChanged();

private:
    friend class NavorinRadioApp;
    friend struct TestAccess;

    /// All that it stands on; each must outlive it.
    struct Surroundings
    {
        MediaPlayer &player;
        AudioSession &audioSession;
        NowPlayingCenter &nowPlaying;
        RemoteCommandCenter &remoteCommands;
        MainQueue &queue;
        APIClient &client;
        OfflineStore &offline;
    };
    explicit RadioPlayer(const Surroundings &surroundings);
    static SharedInstance<RadioPlayer> &instance();

    // RadioPlayer.cpp: what plays and what is published
    [[nodiscard]] std::optional<QUrl> sourceOf(const Station &station) const;
    void play(const Station &station);
    void pause();
    static QCoro::Task<void> bindEqualizer(std::shared_ptr<MediaItem> item);
    void handleTimeUpdate(double seconds);
    void arriveAtPlaying();
    void later(std::function<void()> work);
    void setCurrentStation(const Station &station);
    void setPlaying(bool playing);
    void setBuffering(bool buffering);
    void setStatusText(const QString &text);
    void setThemeColor(const QColor &color);
    template <typename T>
    void publish(T &field, const T &value, void (RadioPlayer::*changed)());

    // RadioPlayerSession.cpp: the desktop's media controls, interruptions, and the artwork
    void updateNowPlayingInfo();
    void publishPlaybackState();
    void followPlaybackState();
    void loadArtworkIfNeeded();
    static QCoro::Task<void> loadArtwork(QPointer<RadioPlayer> player, QString key, QUrl address);
    void setupRemoteCommands();
    void addSeekingCommands(RemoteCommands &commands);
    [[nodiscard]] bool canSeek() const;
    void observeAudioSession();
    void handleInterruptionBegan();
    void handleInterruptionEnded(bool shouldResume);
    void handleOutputGone();

    // RadioPlayerMetadata.cpp: following the backend
    void startMetadataPolling();
    QCoro::Task<void> refreshLiveMetadata();

    // RadioPlayerNavigation.cpp: the ring of tracks
    void shiftTrack(qint64 delta);
    void handleItemEnd(const MediaItem *finished);

    MediaPlayer &m_player;
    AudioSession &m_audioSession;
    NowPlayingCenter &m_nowPlaying;
    RemoteCommandCenter &m_remoteCommands;
    MainQueue &m_queue;
    APIClient &m_client;
    OfflineStore &m_offline;

    std::optional<Station> m_currentStation;
    bool m_isPlaying = false;
    bool m_isBuffering = false;
    bool m_isLive = true;
    double m_currentTime = 0;
    double m_duration = 0;
    float m_volume = 0.85F;
    QString m_statusText;
    QColor m_themeColor;
    bool m_isFullPlayerPresented = false;
    std::unique_ptr<MainQueue::Timer> m_metadataTimer;
    bool m_wantsPlayback = false;
    std::optional<QString> m_pendingHydrationGenre;
    bool m_localTrackOverride = false;
    /// Undecoded, for the whole run and without a limit: a live station has one for each programme.
    QHash<QString, std::shared_ptr<const EncodedPicture>> m_artworkCache;
    QSet<QString> m_artworkInFlight;
};

} // namespace navorin
