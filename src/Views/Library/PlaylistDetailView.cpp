#include "Views/Library/PlaylistDetailView.h"

#include "Platform/Tasks/Detached.h"
#include "Services/Account/AuthStore.h"
#include "Services/Backend/APIClient.h"
#include "Services/Playback/RadioPlayer.h"
#include "Views/Library/LibraryDecisions.h"
#include "Views/Shared/ShownText.h"

#include <utility>

namespace navorin {

PlaylistDetailView::PlaylistDetailView(QObject *parent)
    : PlaylistDetailView(AuthStore::shared(), APIClient::shared(), RadioPlayer::shared(), parent)
{
}

PlaylistDetailView::PlaylistDetailView(AuthStore &auth, APIClient &client, RadioPlayer &player,
                                       QObject *parent)
    : QObject(parent)
    , m_auth(auth)
    , m_client(client)
    , m_player(player)
{
    connect(&m_auth, &AuthStore::userChanged, this, [this] {
        if (!m_auth.isAuthed())
            Q_EMIT finished();
    });
    connect(&m_player, &RadioPlayer::currentStationChanged, this, &PlaylistDetailView::showSelection);
    connect(&m_player, &RadioPlayer::isPlayingChanged, this, &PlaylistDetailView::isPlayingChanged);
}

void PlaylistDetailView::setSummary(const QVariant &summary)
{
    m_summary = summary.value<PlaylistSummary>();
    Q_EMIT shownChanged();
}

QString PlaylistDetailView::title() const
{
    return playlistTitle(m_detail && m_detail->title ? m_detail->title : m_summary.title);
}

QString PlaylistDetailView::description() const
{
    const auto &text = m_detail && m_detail->description ? m_detail->description : m_summary.description;
    return shownText(text.value_or(QString()));
}

QString PlaylistDetailView::coverAddress() const
{
    const auto &address = m_detail && m_detail->coverURL ? m_detail->coverURL : m_summary.coverURL;
    return address.value_or(QString());
}

bool PlaylistDetailView::hasTracks() const
{
    return m_detail && m_detail->tracks && !m_detail->tracks->isEmpty();
}

bool PlaylistDetailView::hasStation() const
{
    return m_player.hasStation();
}

bool PlaylistDetailView::isPlaying() const
{
    return m_player.isPlaying();
}

void PlaylistDetailView::play(int row)
{
    if (!m_detail)
        return;
    if (const auto station = playlistStation(*m_detail, m_summary, m_auth.user(), row))
        playInFullPlayer(m_player, *station);
}

void PlaylistDetailView::prepareEdit()
{
    const auto detail = m_detail.value_or(PlaylistDetail());
    m_editTitle = (detail.title ? detail.title : m_summary.title).value_or(QString());
    m_editDesc = (detail.description ? detail.description : m_summary.description).value_or(QString());
    m_showEditSheet = true;
    setError({});
    Q_EMIT formChanged();
}

void PlaylistDetailView::prepareTrackEdit(int row)
{
    const auto *track = trackAt(row);
    if (!track)
        return;
    m_trackToEdit = *track;
    m_editTrackTitle = track->title.value_or(QString());
    m_editTrackArtist = track->artist.value_or(QString());
    m_showEditTrackSheet = true;
    setError({});
    Q_EMIT formChanged();
}

void PlaylistDetailView::prepareTrackDelete(int row)
{
    if (const auto *track = trackAt(row))
        m_trackToDelete = *track;
}

const PlaylistTrack *PlaylistDetailView::trackAt(int row) const
{
    return hasTracks() && row >= 0 && row < m_detail->tracks->size() ? &m_detail->tracks->at(row) : nullptr;
}

void PlaylistDetailView::beginWriting()
{
    setError({});
    m_isWriting = true;
    Q_EMIT isWritingChanged();
}

void PlaylistDetailView::endWriting(const QString &failure)
{
    if (!failure.isEmpty())
        setError(failure);
    m_isWriting = false;
    Q_EMIT isWritingChanged();
}

void PlaylistDetailView::setDetail(PlaylistDetail detail, const QList<ListRow> &rows)
{
    m_detail = std::move(detail);
    m_tracks.setRows(rows);
    showSelection();
    Q_EMIT shownChanged();
    Q_EMIT errorChanged();
}

void PlaylistDetailView::setError(const QString &error)
{
    m_error = error;
    Q_EMIT errorChanged();
}

void PlaylistDetailView::showSelection()
{
    const auto &current = m_player.currentStation();
    const auto mine = m_detail ? playlistStation(*m_detail, m_summary, {}, 0) : std::nullopt;
    const auto *track = current && mine && current->genre == mine->genre ? current->currentTrack() : nullptr;
    const auto key = track ? trackKey(*track) : QString();
    m_tracks.setSelectedKey(key.isEmpty() ? std::nullopt : std::optional(key));
    Q_EMIT stationChanged();
}

} // namespace navorin
