#include "Views/Library/LibraryView.h"

#include "Platform/Tasks/Detached.h"
#include "Services/Account/AuthStore.h"
#include "Services/Backend/APIClient.h"
#include "Services/Playback/RadioPlayer.h"
#include "Views/Library/LibraryDecisions.h"

#include <QCoro/QCoroFuture>

#include <utility>

namespace navorin {

LibraryView::LibraryView(QObject *parent)
    : LibraryView(AuthStore::shared(), APIClient::shared(), RadioPlayer::shared(), parent)
{
}

LibraryView::LibraryView(AuthStore &auth, APIClient &client, RadioPlayer &player, QObject *parent)
    : QObject(parent)
    , m_auth(auth)
    , m_client(client)
    , m_player(player)
    , m_spotify(auth, client, player)
    , m_soundCloud(client, player, SoundCloudSearchView::WhileLoading::Supersedes)
{
    connect(&m_auth, &AuthStore::userChanged, this, [this] {
        setErrorMessage({});
        Q_EMIT isSignedInChanged();
        Q_EMIT listsChanged();
    });
    connect(&m_auth, &AuthStore::playlistsChanged, this, &LibraryView::showPlaylists);
    connect(&m_auth, &AuthStore::favoritesChanged, this, &LibraryView::listsChanged);
    connect(&m_auth, &AuthStore::isLoadingLibraryChanged, this, [this] {
        m_refreshAsked = m_refreshAsked && m_auth.isLoadingLibrary();
        Q_EMIT listsChanged();
    });
    connect(&m_player, &RadioPlayer::currentStationChanged, this, &LibraryView::hasStationChanged);
    showPlaylists();
}

bool LibraryView::isSignedIn() const
{
    return m_auth.isAuthed();
}

bool LibraryView::hasNoPlaylist() const
{
    return isSignedIn() && m_auth.playlists().isEmpty() && !m_auth.isLoadingLibrary();
}

bool LibraryView::isWaiting() const
{
    return isSignedIn() && m_auth.playlists().isEmpty() && m_auth.isLoadingLibrary();
}

int LibraryView::favoriteCount() const
{
    return int(m_auth.favorites().size());
}

bool LibraryView::hasStation() const
{
    return m_player.hasStation();
}

void LibraryView::appear()
{
    detach(m_auth.loadLibrary(), "loading the library");
}

void LibraryView::refresh()
{
    setErrorMessage({});
    m_refreshAsked = m_auth.token().has_value();
    detach(m_auth.loadLibrary(), "loading the library");
    Q_EMIT listsChanged();
}

void LibraryView::playFavorites()
{
    if (const auto station = m_auth.favoritesStation())
        playInFullPlayer(m_player, *station);
}

QVariant LibraryView::playlistAt(int row) const
{
    const auto &playlists = m_auth.playlists();
    return row >= 0 && row < playlists.size() ? QVariant::fromValue(playlists.at(row)) : QVariant();
}

void LibraryView::prepareDelete(int row)
{
    const auto &playlists = m_auth.playlists();
    m_playlistToDelete =
        row >= 0 && row < playlists.size() ? std::optional(playlists.at(row).id) : std::nullopt;
}

void LibraryView::deletePlaylist()
{
    const auto id = std::exchange(m_playlistToDelete, {});
    if (!id || !m_auth.token())
        return;
    setErrorMessage({});
    detach(runDelete(this, *id, *m_auth.token()), "deleting a playlist");
}

QCoro::Task<void> LibraryView::runDelete(QPointer<LibraryView> view, qint64 id, QString token)
{
    auto &auth = view->m_auth;
    QString failure;
    try {
        co_await view->m_client.deletePlaylist(id, token);
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    if (view)
        view->setErrorMessage(failure);
    // After a failure too: it may have been deleted elsewhere.
    co_await auth.loadLibrary();
}

void LibraryView::showPlaylists()
{
    QList<ListRow> rows;
    rows.reserve(m_auth.playlists().size());
    for (const auto &playlist : m_auth.playlists())
        rows.append(playlistCard(playlist));
    m_playlists.setRows(rows);
    Q_EMIT listsChanged();
}

void LibraryView::setErrorMessage(const QString &message)
{
    if (std::exchange(m_errorMessage, message) != message)
        Q_EMIT errorMessageChanged();
}

} // namespace navorin
