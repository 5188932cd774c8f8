#include "Platform/Desktop/MprisPlayerAdaptor.h"

#include "Platform/Desktop/MprisMetadata.h"

#include <algorithm>
#include <cmath>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Carries out a command; one that fails simply has no effect. The handler is taken by value because it may
/// put others in its place.
template <typename Handler, typename... Arguments>
void perform(Handler handler, Arguments... arguments)
{
    if (handler)
        handler(arguments...);
}

} // namespace

MprisPlayerAdaptor::MprisPlayerAdaptor(QObject *parent, const MprisPlayerState &state,
                                       const QDBusConnection &connection)
    : QDBusAbstractAdaptor(parent)
    , m_state(state)
    , m_connection(connection)
{
}

QString MprisPlayerAdaptor::playbackStatus() const
{
    return mprisPlaybackStatus(m_state.playback.status);
}

QVariantMap MprisPlayerAdaptor::metadata() const
{
    return mprisMetadata(m_state.info, m_state.artUrl);
}

void MprisPlayerAdaptor::setVolume(double volume)
{
    if (!std::isnan(volume))
        perform(m_state.commands.changeVolume, std::clamp(volume, 0.0, 1.0));
}

qlonglong MprisPlayerAdaptor::position() const
{
    return m_state.position ? mprisMicroseconds(m_state.position()).value_or(0) : 0;
}

void MprisPlayerAdaptor::setRate(double rate)
{
    if (rate == 0)
        Pause();
}

QVariantMap MprisPlayerAdaptor::changingProperties() const
{
    return {{u"PlaybackStatus"_s, playbackStatus()},
            {u"Metadata"_s, metadata()},
            {u"Volume"_s, volume()},
            {u"CanSeek"_s, canSeek()}};
}

void MprisPlayerAdaptor::Play()
{
    perform(m_state.commands.play);
}

void MprisPlayerAdaptor::Pause()
{
    perform(m_state.commands.pause);
}

void MprisPlayerAdaptor::PlayPause()
{
    perform(m_state.commands.togglePlayPause);
}

void MprisPlayerAdaptor::Stop()
{
    Pause();
}

void MprisPlayerAdaptor::Next()
{
    perform(m_state.commands.nextTrack);
}

void MprisPlayerAdaptor::Previous()
{
    perform(m_state.commands.previousTrack);
}

void MprisPlayerAdaptor::Seek(qlonglong Offset)
{
    const double seconds = double(Offset) / 1e6;
    if (Offset > 0)
        perform(m_state.commands.skipForward, seconds);
    else if (Offset < 0)
        perform(m_state.commands.skipBackward, -seconds);
}

void MprisPlayerAdaptor::SetPosition(const QDBusObjectPath &TrackId, qlonglong Position)
{
    const auto &info = m_state.info;
    if (info.identity.isEmpty() || TrackId != mprisTrackId(info.identity))
        return;
    if (Position < 0 || Position > mprisLength(info).value_or(Position))
        return;
    perform(m_state.commands.changePlaybackPosition, double(Position) / 1e6);
}

void MprisPlayerAdaptor::OpenUri(const QString &, const QDBusMessage &message)
{
    message.setDelayedReply(true);
    m_connection.send(
        message.createErrorReply(QDBusError::NotSupported, u"Addresses from outside are not played."_s));
}

} // namespace navorin
