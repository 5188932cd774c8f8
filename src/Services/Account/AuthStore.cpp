#include "Services/Account/AuthStore.h"

#include "Platform/Tasks/Detached.h"
#include "Services/Account/Keychain.h"
#include "Services/Backend/APIClient.h"
#include "Services/Backend/CallBodies.h"

#include <QCoro/QCoroFuture>

#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString tokenKey = u"session_token"_s;

QSet<QString> identifiersOf(const QList<FavoriteTrack> &favorites)
{
    QSet<QString> identifiers;
    for (const auto &favorite : favorites) {
        if (favorite.trackID)
            identifiers.insert(*favorite.trackID);
    }
    return identifiers;
}

PlaylistTrack asTrack(const FavoriteTrack &favorite)
{
    return {favorite.id,     favorite.trackType,  favorite.trackID,   favorite.title,
            favorite.artist, favorite.artworkURL, favorite.streamURL, favorite.duration};
}

/// The server hears of it or not; nobody waits for its word.
QCoro::Task<void> tellServer(QFuture<std::optional<SimpleMessage>> farewell)
{
    try {
        co_await farewell;
    } catch (const std::exception &) {
        // signed out all the same
    }
}

} // namespace

AuthStore &AuthStore::shared()
{
    return instance().get();
}

SharedInstance<AuthStore> &AuthStore::instance()
{
    static SharedInstance<AuthStore> holder;
    return holder;
}

AuthStore::AuthStore(APIClient &client, MainQueue &queue)
    : m_client(client)
    , m_queue(queue)
{
    detach(readToken(this), "reading the session's token");
}

QCoro::Task<void> AuthStore::readToken(QPointer<AuthStore> store)
{
    const auto token = co_await Keychain::getSoon(tokenKey);
    if (!store || !token || store->m_sessionWasChosen)
        co_return;
    store->m_token = token;
    store->m_queue.post([store] {
        if (store)
            detach(store->restoreSession(), "restoring the session");
    });
}

QCoro::Task<void> AuthStore::restoreSession()
{
    if (!m_token)
        co_return;
    auto user = co_await m_client.me(*m_token);
    if (user) {
        setUser(std::move(user));
        co_await loadLibrary();
        co_return;
    }
    // Whatever token is current by now goes, not only the one that was asked about.
    m_token.reset();
    Keychain::set({}, tokenKey);
}

QCoro::Task<void> AuthStore::login(QString username, QString password)
{
    auto session = co_await m_client.login(username, password);
    co_await open(std::move(session));
}

QCoro::Task<void> AuthStore::completeTelegramSignup(QString sessionID, QString code)
{
    auto session = co_await m_client.verifySignupOTP(sessionID, code);
    co_await open(std::move(session));
}

QCoro::Task<void> AuthStore::open(AuthData session)
{
    if (!session.token)
        throw APIError::decoding();
    m_sessionWasChosen = true;
    m_token = session.token;
    setUser(std::move(session.user));
    Keychain::set(m_token, tokenKey);
    co_await loadLibrary();
}

void AuthStore::logout()
{
    if (m_token)
        m_queue.post([&client = m_client, token = *m_token] {
            detach(tellServer(client.post<std::optional<SimpleMessage>>(u"api/auth/logout"_s, {}, token)),
                   "telling the server of the end of the session");
        });
    m_sessionWasChosen = true;
    m_token.reset();
    setUser({});
    setLibrary({}, {});
    Keychain::set({}, tokenKey);
}

QCoro::Task<void> AuthStore::loadLibrary()
{
    if (!m_token || m_isLoadingLibrary)
        co_return;
    setLoadingLibrary(true);
    try {
        auto library = co_await m_client.loadLibrary(*m_token);
        setLibrary(std::move(library.playlists), std::move(library.favorites));
    } catch (const std::exception &) {
        // The lists stay as they were; every next load is a retry.
    }
    setLoadingLibrary(false);
}

QCoro::Task<std::optional<bool>> AuthStore::toggleFavorite(Station station)
{
    if (!m_token)
        co_return std::nullopt;
    try {
        co_await m_client.post<ToggleResult>(u"api/favorites/toggle"_s, favoriteBody(station), m_token);
    } catch (const std::exception &) {
        co_return std::nullopt;
    }
    co_await loadLibrary();
    co_return m_favoriteIDs.contains(station.currentTrackID());
}

std::optional<Station> AuthStore::favoritesStation() const
{
    if (m_favorites.isEmpty())
        return {};
    Station station;
    station.genre = u"custom-favorites"_s;
    station.title = u"آهنگهای پسندیده"_s;
    if (m_user)
        station.artist = m_user->displayName ? m_user->displayName : m_user->username;
    station.serverName = station.title;
    station.source = u"custom"_s;
    station.category = u"playlists"_s;
    station.trackIndex = 0;
    station.trackCount = m_favorites.size();
    station.tracks.emplace();
    for (const auto &favorite : m_favorites)
        station.tracks->append(asTrack(favorite));
    return station;
}

void AuthStore::setUser(std::optional<User> user)
{
    m_user = std::move(user);
    Q_EMIT userChanged();
}

void AuthStore::setLibrary(QList<PlaylistSummary> playlists, QList<FavoriteTrack> favorites)
{
    m_playlists = std::move(playlists);
    Q_EMIT playlistsChanged();
    m_favorites = std::move(favorites);
    Q_EMIT favoritesChanged();
    m_favoriteIDs = identifiersOf(m_favorites);
    Q_EMIT favoriteIDsChanged();
}

void AuthStore::setLoadingLibrary(bool loading)
{
    m_isLoadingLibrary = loading;
    Q_EMIT isLoadingLibraryChanged();
}

} // namespace navorin
