#pragma once

#include "Models/APIModels.h"
#include "Platform/Tasks/MainQueue.h"
#include "Services/SharedInstance.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QPointer>
#include <QSet>

#include <optional>

namespace navorin {

class APIClient;

/// The one owner of the session: its token, which survives restarts in the desktop's keyring, the user, and
/// the user's library, which lives in memory and is fetched whole after every change. UI thread only.
///
/// Nothing here signs out on a refused request: it is that request's failure. Only the start asks whose the
/// token is, and forgets it for good when nobody answers, also for want of a network.
class AuthStore : public QObject
{
    Q_OBJECT
public:
    static AuthStore &shared();

    [[nodiscard]] const std::optional<User> &user() const { return m_user; }
    /// In the server's order, as all lists here.
    [[nodiscard]] const QList<PlaylistSummary> &playlists() const { return m_playlists; }
    [[nodiscard]] const QList<FavoriteTrack> &favorites() const { return m_favorites; }
    [[nodiscard]] bool isLoadingLibrary() const { return m_isLoadingLibrary; }
    /// The track identifiers of `favorites()`, as far as they have one. A station is a favourite if its
    /// `currentTrackID` is among them.
    [[nodiscard]] const QSet<QString> &favoriteIDs() const { return m_favoriteIDs; }
    /// Goes with requests to the backend and nowhere else. Changes are not announced.
    [[nodiscard]] const std::optional<QString> &token() const { return m_token; }
    /// A token whose user is not known yet does not count.
    [[nodiscard]] bool isAuthed() const { return m_user && m_token; }

    /// Finds out whose the token is; forgets it if that gives nobody. Never fails to its caller.
    QCoro::Task<void> restoreSession();
    /// Fails as the call does, or with APIError::decoding() for an answer without a token; then nothing has
    /// changed.
    QCoro::Task<void> login(QString username, QString password);
    /// The end of a sign-up; fails in the same way.
    QCoro::Task<void> completeTelegramSignup(QString sessionID, QString code);
    /// At once, whatever the server says to it.
    void logout();

    /// Fetches the library anew. Reports nothing; dropped while another load runs, and the old lists stay
    /// when it fails.
    QCoro::Task<void> loadLibrary();
    /// Makes what `station` plays a favourite, or none, and says which it is then; absent when nothing could
    /// be said. The answer is read from the library fetched afterwards, or from the older one where that
    /// fetch was dropped or failed.
    QCoro::Task<std::optional<bool>> toggleFavorite(Station station);
    /// The favourites as one list to play; absent without any.
    [[nodiscard]] std::optional<Station> favoritesStation() const;

Q_SIGNALS:
    void userChanged();
    void playlistsChanged();
    void favoritesChanged();
    void isLoadingLibraryChanged();
    void favoriteIDsChanged();

private:
    friend class NavorinRadioApp;
    friend struct TestAccess;

    /// Asks the keyring for the last session's token and goes on with restoreSession() when it has one. The
    /// keyring may take its time: until then nobody is signed in, and who signs in meanwhile stays.
    AuthStore(APIClient &client, MainQueue &queue);
    static SharedInstance<AuthStore> &instance();

    static QCoro::Task<void> readToken(QPointer<AuthStore> store);
    QCoro::Task<void> open(AuthData session);
    void setUser(std::optional<User> user);
    void setLibrary(QList<PlaylistSummary> playlists, QList<FavoriteTrack> favorites);
    void setLoadingLibrary(bool loading);

    APIClient &m_client;
    MainQueue &m_queue;
    std::optional<User> m_user;
    QList<PlaylistSummary> m_playlists;
    QList<FavoriteTrack> m_favorites;
    bool m_isLoadingLibrary = false;
    QSet<QString> m_favoriteIDs;
    std::optional<QString> m_token;
    bool m_sessionWasChosen = false; ///< signed in or out in this run: an older token is no news any more
};

} // namespace navorin
