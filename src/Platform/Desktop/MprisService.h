#pragma once

#include "Platform/Desktop/MprisPlayerAdaptor.h"
#include "Platform/Desktop/MprisRootAdaptor.h"
#include "Platform/Desktop/NowPlayingArtworkFolder.h"

#include <QDBusConnection>

namespace navorin {

/// The program's place among the desktop's media players, as MPRIS 2.2 has it, on a message bus: media keys,
/// headsets and the desktop's panels find it there. UI thread only; no member waits for the bus, and all are
/// accepted also when it has gone.
///
/// Changes of one turn of the event loop leave as one signal, with only what differs from what was told last.
class MprisService final : public QObject, public NowPlayingCenter, public RemoteCommandCenter
{
    Q_OBJECT
public:
    static constexpr QLatin1StringView busName{"org.mpris.MediaPlayer2.navorin"};
    static constexpr QLatin1StringView objectPath{"/org/mpris/MediaPlayer2"};

    /// Asks for the name at once; if another process has it, for one of this process. `queue` and `files`
    /// outlive the service. `artworkFolder` as in NowPlayingArtworkFolder.
    MprisService(MainQueue &queue, FileStore &files, const QDBusConnection &connection,
                 const QString &artworkFolder, MprisHooks hooks);
    ~MprisService() override;

    void setNowPlayingInfo(const NowPlayingInfo &info) override;
    void setPlaybackState(const PlaybackState &state) override;
    void setPositionSource(std::function<double()> position) override;
    void announceJump(double seconds) override;

    void setCommands(RemoteCommands commands) override;

private:
    void requestName(const QString &name);
    void nameAnswered(const QDBusMessage &answer);
    void scheduleTelling();
    void tell();
    void tellChanges();
    void writeArtwork();

    MainQueue &m_queue;
    QDBusConnection m_connection;
    MprisPlayerState m_state;
    MprisPlayerAdaptor *m_player; // its parent is this
    QVariantMap m_told;
    std::optional<qlonglong> m_jump; ///< microseconds, not told yet
    bool m_tellingScheduled = false;
    QString m_requestedName;
    NowPlayingArtworkFolder m_artworkFolder;
};

} // namespace navorin
