// What the playlist's screen asks of the server. Each of these may outlive the screen.
#include "Platform/Tasks/Detached.h"
#include "Services/Account/AuthStore.h"
#include "Services/Backend/APIClient.h"
#include "Views/Library/LibraryDecisions.h"
#include "Views/Library/PlaylistDetailView.h"

#include <QCoro/QCoroFuture>
#include <QThreadPool>

#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

QString pathOf(const PlaylistSummary &playlist)
{
    return u"api/playlists/"_s + QString::number(playlist.id);
}

QString pathOf(const PlaylistSummary &playlist, const QString &trackKey)
{
    return pathOf(playlist) + u"/tracks/"_s + trackKey;
}

/// A playlist with its rows, which are made on a pool thread: thousands of them would cost half a frame.
struct Loaded
{
    PlaylistDetail detail;
    QList<ListRow> rows;
};

Loaded withRows(const QFuture<PlaylistDetail> &answer)
{
    Loaded loaded{answer.result(), {}};
    const auto tracks = loaded.detail.tracks.value_or(QList<PlaylistTrack>());
    loaded.rows.reserve(tracks.size());
    for (const auto &track : tracks)
        loaded.rows.append(trackRow(track));
    return loaded;
}

QFuture<Loaded> loaded(APIClient &client, qint64 id, const std::optional<QString> &token)
{
    return client.playlistDetail(id, token).then(QThreadPool::globalInstance(), withRows);
}

} // namespace

void PlaylistDetailView::load()
{
    detach(beginLoad(), "loading a playlist");
}

QCoro::Task<void> PlaylistDetailView::beginLoad()
{
    m_isLoading = true;
    Q_EMIT isLoadingChanged();
    setError({});
    return runLoad(this, ++m_loadNumber);
}

QCoro::Task<void> PlaylistDetailView::runLoad(View view, quint64 number)
{
    std::optional<Loaded> answer;
    QString failure;
    try {
        answer = co_await loaded(view->m_client, view->m_summary.id, view->m_auth.token());
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    if (!view || number != view->m_loadNumber)
        co_return;
    if (answer)
        view->setDetail(std::move(answer->detail), answer->rows);
    else
        view->setError(failure);
    view->m_isLoading = false;
    Q_EMIT view->isLoadingChanged();
}

void PlaylistDetailView::saveEdit()
{
    if (m_isWriting || !m_auth.token())
        return;
    beginWriting();
    detach(runSaveEdit(this, *m_auth.token()), "saving a playlist");
}

QCoro::Task<void> PlaylistDetailView::runSaveEdit(View view, QString token)
{
    auto &auth = view->m_auth;
    QString failure;
    try {
        const QJsonObject body{{u"title"_s, view->m_editTitle}, {u"description"_s, view->m_editDesc}};
        co_await view->m_client.put<SimpleMessage>(pathOf(view->m_summary), body, token);
        if (view) {
            view->m_showEditSheet = false;
            Q_EMIT view->formChanged();
        }
        co_await auth.loadLibrary();
        if (view)
            co_await view->beginLoad();
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    if (view)
        view->endWriting(failure);
}

void PlaylistDetailView::deletePlaylist()
{
    if (m_isWriting || !m_auth.token())
        return;
    beginWriting();
    detach(runDelete(this, *m_auth.token()), "deleting a playlist");
}

QCoro::Task<void> PlaylistDetailView::runDelete(View view, QString token)
{
    auto &auth = view->m_auth;
    QString failure;
    try {
        co_await view->m_client.deletePlaylist(view->m_summary.id, token);
        co_await auth.loadLibrary();
        if (view)
            Q_EMIT view->finished();
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    if (view)
        view->endWriting(failure);
}

void PlaylistDetailView::saveTrackEdit()
{
    const auto key = m_trackToEdit ? trackKey(*m_trackToEdit) : QString();
    if (m_isWriting || key.isEmpty() || !m_auth.token())
        return;
    beginWriting();
    detach(runSaveTrackEdit(this, key, *m_auth.token()), "saving a track");
}

QCoro::Task<void> PlaylistDetailView::runSaveTrackEdit(View view, QString key, QString token)
{
    QString failure;
    try {
        const QJsonObject body{{u"title"_s, view->m_editTrackTitle}, {u"artist"_s, view->m_editTrackArtist}};
        co_await view->m_client.put<SimpleMessage>(pathOf(view->m_summary, key), body, token);
        if (view) {
            view->m_trackToEdit.reset();
            view->m_showEditTrackSheet = false;
            Q_EMIT view->formChanged();
            co_await view->beginLoad();
        }
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    if (view)
        view->endWriting(failure);
}

void PlaylistDetailView::deleteTrack()
{
    const auto key = m_trackToDelete ? trackKey(*m_trackToDelete) : QString();
    if (m_isWriting || key.isEmpty() || !m_auth.token())
        return;
    beginWriting();
    detach(runDeleteTrack(this, key, *m_auth.token()), "deleting a track");
}

QCoro::Task<void> PlaylistDetailView::runDeleteTrack(View view, QString key, QString token)
{
    auto &auth = view->m_auth;
    QString failure;
    try {
        co_await view->m_client.deletePlaylistTrack(view->m_summary.id, key, token);
        if (view) {
            view->m_trackToDelete.reset();
            co_await view->beginLoad();
        }
        co_await auth.loadLibrary();
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    if (view)
        view->endWriting(failure);
}

} // namespace navorin
