#pragma once

#include "Views/Playback/MiniPlayerBar.h"
#include "Views/Playback/PlayerDecisions.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace navorin {

class APIClient;
class AuthStore;
class OfflineStore;
class RadioPlayer;
class UrlOpener;
struct PlaylistTrack;
struct Station;

/// The full player's state and actions.
class FullPlayerView : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(FullPlayerViewState)
    Q_PROPERTY(bool hasStation READ hasStation NOTIFY stationChanged)
    Q_PROPERTY(QString artworkAddress READ artworkAddress NOTIFY stationChanged)
    Q_PROPERTY(QString title READ title NOTIFY stationChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY stationChanged)
    Q_PROPERTY(bool canSkipTracks READ canSkipTracks NOTIFY stationChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY playbackChanged)
    Q_PROPERTY(bool isWaiting READ isWaiting NOTIFY playbackChanged)
    Q_PROPERTY(QString buttonSymbol READ buttonSymbol NOTIFY playbackChanged)
    Q_PROPERTY(QString buttonName READ buttonName NOTIFY playbackChanged)
    Q_PROPERTY(bool isLive READ isLive NOTIFY positionChanged)
    Q_PROPERTY(bool canSkipTime READ canSkipTime NOTIFY positionChanged)
    Q_PROPERTY(double currentTime READ currentTime NOTIFY positionChanged)
    Q_PROPERTY(double duration READ duration NOTIFY positionChanged)
    Q_PROPERTY(QString currentTimeText READ currentTimeText NOTIFY positionChanged)
    Q_PROPERTY(QString durationText READ durationText NOTIFY positionChanged)
    Q_PROPERTY(float volume READ volume WRITE setVolume NOTIFY volumeChanged)
    Q_PROPERTY(QColor themeColor READ themeColor NOTIFY themeColorChanged)
    Q_PROPERTY(bool isAuthed READ isAuthed NOTIFY accountChanged)
    Q_PROPERTY(bool isFavorite READ isFavorite NOTIFY favoriteChanged)
    Q_PROPERTY(bool favAnimating READ favAnimating NOTIFY favAnimatingChanged)
    Q_PROPERTY(bool hasTrack READ hasTrack NOTIFY keepChanged)
    Q_PROPERTY(Keep keep READ keep NOTIFY keepChanged)
    Q_PROPERTY(double keepProgress READ keepProgress NOTIFY keepChanged)
    Q_PROPERTY(QString keepError READ keepError NOTIFY keepChanged)
    Q_PROPERTY(bool tgLoading READ tgLoading NOTIFY telegramChanged)
    Q_PROPERTY(QString tgError READ tgError NOTIFY telegramChanged)
public:
    enum Keep { NotKept, Loading, Kept };
    Q_ENUM(Keep)

    /// All that the screen shows and steers; each must outlive it.
    struct Sources
    {
        RadioPlayer &player;
        AuthStore &auth;
        OfflineStore &offline;
        APIClient &client;
        UrlOpener &urlOpener;
    };

    explicit FullPlayerView(QObject *parent = nullptr);
    explicit FullPlayerView(const Sources &sources, QObject *parent = nullptr);

    [[nodiscard]] bool hasStation() const;
    [[nodiscard]] QString artworkAddress() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString subtitle() const;
    [[nodiscard]] bool canSkipTracks() const;
    [[nodiscard]] bool isPlaying() const;
    [[nodiscard]] bool isWaiting() const;
    [[nodiscard]] QString buttonSymbol() const;
    [[nodiscard]] QString buttonName() const;
    [[nodiscard]] bool isLive() const;
    [[nodiscard]] bool canSkipTime() const;
    [[nodiscard]] double currentTime() const;
    /// Seconds; 0 while unknown.
    [[nodiscard]] double duration() const;
    [[nodiscard]] QString currentTimeText() const;
    [[nodiscard]] QString durationText() const;
    [[nodiscard]] float volume() const;
    void setVolume(float volume);
    [[nodiscard]] QColor themeColor() const;
    [[nodiscard]] bool isAuthed() const;
    [[nodiscard]] bool isFavorite() const;
    /// From a tap on the heart until the library says what became of it.
    [[nodiscard]] bool favAnimating() const { return m_favAnimating; }
    /// There is a track that could be kept on this machine.
    [[nodiscard]] bool hasTrack() const;
    [[nodiscard]] Keep keep() const;
    /// 0 to 1 while the track is being loaded.
    [[nodiscard]] double keepProgress() const;
    [[nodiscard]] QString keepError() const;
    [[nodiscard]] bool tgLoading() const { return m_tgLoading; }
    [[nodiscard]] QString tgError() const { return m_tgError.value_or(QString()); }

    Q_INVOKABLE static navorin::PlayerMetrics metrics(double width, double height);
    Q_INVOKABLE static double offsetOfDrag(QPointF moved, double now);
    Q_INVOKABLE static bool isDismissal(QPointF moved);

    Q_INVOKABLE void dismiss();
    Q_INVOKABLE void togglePlayPause();
    Q_INVOKABLE void seek(double seconds);
    Q_INVOKABLE void skip(double seconds);
    Q_INVOKABLE void previousTrack();
    Q_INVOKABLE void nextTrack();
    /// Makes what plays a favourite, or none; asks for a login first where nobody is signed in.
    Q_INVOKABLE void handleFavoriteTap();
    /// Keeps the track, stops doing so, or gives it up, as `keep` says.
    Q_INVOKABLE void toggleKeep();
    /// Has a link made that sends the song to a chat, and opens it.
    Q_INVOKABLE void openInTelegram();

Q_SIGNALS:
    void stationChanged();
    void playbackChanged();
    void positionChanged();
    void volumeChanged();
    void themeColorChanged();
    void accountChanged();
    void favoriteChanged();
    void favAnimatingChanged();
    void keepChanged();
    void telegramChanged();
    /// Nobody is signed in, but somebody has to be.
    void loginRequested();

private:
    void observePlayer();
    [[nodiscard]] PlayButton button() const;
    [[nodiscard]] const PlaylistTrack *track() const;
    void setFavAnimating(bool animating);
    void setTelegram(bool loading, const std::optional<QString> &error);

    Sources m_sources;
    bool m_favAnimating = false;
    bool m_tgLoading = false;
    std::optional<QString> m_tgError;
};

} // namespace navorin
