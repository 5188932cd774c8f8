#include "Platform/Desktop/MprisMetadata.h"

#include <QCryptographicHash>

#include <cmath>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

QDBusObjectPath mprisTrackId(const QString &identity)
{
    const auto root = u"/ir/navorin/NavorinRadio/"_s;
    if (identity.isEmpty())
        return QDBusObjectPath(root + u"NoTrack"_s);
    // An object path allows few characters; a hash has only those.
    const auto hash = QCryptographicHash::hash(identity.toUtf8(), QCryptographicHash::Sha1).toHex();
    return QDBusObjectPath(root + u"Track/"_s + QString::fromLatin1(hash));
}

std::optional<qlonglong> mprisMicroseconds(double seconds)
{
    constexpr double longest = 9e12;
    if (!(seconds >= 0 && seconds <= longest))
        return {};
    return std::llround(seconds * 1e6);
}

std::optional<qlonglong> mprisLength(const NowPlayingInfo &info)
{
    const auto length = info.duration ? mprisMicroseconds(*info.duration) : std::nullopt;
    return length == 0 ? std::nullopt : length;
}

QVariantMap mprisMetadata(const NowPlayingInfo &info, const QString &artUrl)
{
    QVariantMap metadata{{u"mpris:trackid"_s, QVariant::fromValue(mprisTrackId(info.identity))},
                         {u"xesam:title"_s, info.title}};
    if (info.artist)
        metadata.insert(u"xesam:artist"_s, QStringList{*info.artist});
    if (info.albumTitle)
        metadata.insert(u"xesam:album"_s, *info.albumTitle);
    if (const auto length = mprisLength(info))
        metadata.insert(u"mpris:length"_s, *length);
    if (!artUrl.isEmpty())
        metadata.insert(u"mpris:artUrl"_s, artUrl);
    return metadata;
}

QString mprisPlaybackStatus(PlaybackState::Status status)
{
    switch (status) {
    case PlaybackState::Status::Playing:
        return u"Playing"_s;
    case PlaybackState::Status::Paused:
        return u"Paused"_s;
    case PlaybackState::Status::Stopped:
        break;
    }
    return u"Stopped"_s;
}

} // namespace navorin
