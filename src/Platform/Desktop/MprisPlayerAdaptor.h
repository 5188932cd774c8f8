#pragma once

#include "Platform/Desktop/NowPlayingCenter.h"
#include "Platform/Desktop/RemoteCommandCenter.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QVariantMap>

namespace navorin {

/// All that the player's side of MPRIS shows and passes on.
struct MprisPlayerState
{
    NowPlayingInfo info;
    QString artUrl;
    PlaybackState playback;
    std::function<double()> position; ///< seconds
    RemoteCommands commands;
};

/// org.mpris.MediaPlayer2.Player over a state that its owner changes. That a property changed is told by the
/// owner: QtDBus does not.
class MprisPlayerAdaptor final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(double Volume READ volume WRITE setVolume)
    Q_PROPERTY(bool CanSeek READ canSeek)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(double Rate READ rate WRITE setRate)
    Q_PROPERTY(double MinimumRate READ rate CONSTANT)
    Q_PROPERTY(double MaximumRate READ rate CONSTANT)
    Q_PROPERTY(bool CanPlay READ yes CONSTANT)
    Q_PROPERTY(bool CanPause READ yes CONSTANT)
    Q_PROPERTY(bool CanGoNext READ yes CONSTANT)
    Q_PROPERTY(bool CanGoPrevious READ yes CONSTANT)
    Q_PROPERTY(bool CanControl READ yes CONSTANT)
public:
    static constexpr QLatin1StringView interfaceName{"org.mpris.MediaPlayer2.Player"};

    /// `state` outlives the adaptor. `connection` is where the parent is registered.
    MprisPlayerAdaptor(QObject *parent, const MprisPlayerState &state, const QDBusConnection &connection);

    [[nodiscard]] QString playbackStatus() const;
    [[nodiscard]] QVariantMap metadata() const;
    [[nodiscard]] double volume() const { return m_state.playback.volume; }
    void setVolume(double volume);
    [[nodiscard]] bool canSeek() const { return m_state.playback.canSeek; }
    [[nodiscard]] qlonglong position() const;
    [[nodiscard]] double rate() const { return 1; }
    void setRate(double rate);
    [[nodiscard]] bool yes() const { return true; }

    /// Those whose changes the desktop is told of, as they are now.
    [[nodiscard]] QVariantMap changingProperties() const;

public Q_SLOTS:
    void Play();
    void Pause();
    void PlayPause();
    void Stop();
    void Next();
    void Previous();
    void Seek(qlonglong Offset);
    void SetPosition(const QDBusObjectPath &TrackId, qlonglong Position);
    void OpenUri(const QString &Uri, const QDBusMessage &message);

Q_SIGNALS:
    void Seeked(qlonglong Position);

private:
    const MprisPlayerState &m_state;
    QDBusConnection m_connection;
};

} // namespace navorin
