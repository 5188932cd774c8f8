#pragma once

#include "Models/APIModels.h"
#include "Models/Station.h"
#include "Platform/Http/HttpSession.h"
#include "Services/Backend/APIError.h"
#include "Services/Backend/RequestRules.h"
#include "Services/SharedInstance.h"

#include <QFuture>
#include <QJsonObject>
#include <QString>
#include <QThreadPool>
#include <QUrl>

#include <optional>

namespace navorin {

/// What a signed-in user has gathered.
struct Library
{
    QList<PlaylistSummary> playlists;
    QList<FavoriteTrack> favorites;
};

/// The one gateway to the backend, JSON over HTTPS at a single address. It has no mutable state: any thread
/// may call it at any time, and no call waits for another.
///
/// Answers are read on a worker thread. A future fails with APIError, ServerError, TransportError or
/// DecodingError, as they come; nothing is retried or logged here. errorDescription() gives the text to show.
class APIClient
{
public:
    static APIClient &shared();

    [[nodiscard]] const QUrl &baseUrl() const { return m_baseUrl; }

    /// Makes any address out of a record usable: an "http…" or "file://" one as it stands, any other resolved
    /// against the backend. Absent for an absent or empty text, and for one that is no address.
    [[nodiscard]] std::optional<QUrl> absolute(const std::optional<QString> &text) const;

    /// The catalogue, possibly empty.
    [[nodiscard]] QFuture<QList<Station>> fetchStations() const;
    /// The station of that genre with its tracks, under the same genre whatever the server calls it.
    [[nodiscard]] QFuture<Station> hydrateSongsara(const QString &genre) const;

    /// What a search of the other service finds, possibly nothing.
    [[nodiscard]] QFuture<QList<Station>> soundcloudSearch(const QString &text) const;

    [[nodiscard]] QFuture<AuthData> login(const QString &username, const QString &password) const;
    /// Opens a sign-up that waits for the bot's code.
    [[nodiscard]] QFuture<AuthSessionInfo>
    initTelegramSignup(const QString &username, const QString &password, const QString &displayName) const;
    [[nodiscard]] QFuture<AuthData> verifySignupOTP(const QString &sessionID, const QString &code) const;
    /// Opens a reset that waits for the bot's code.
    [[nodiscard]] QFuture<AuthSessionInfo> forgotPassword(const QString &identifier) const;
    /// The server's words, if it has any. Signs nobody in.
    [[nodiscard]] QFuture<std::optional<QString>> resetPassword(const QString &sessionID, const QString &code,
                                                                const QString &newPassword) const;
    /// Whose token it is. Never fails: every failure means nobody.
    [[nodiscard]] QFuture<std::optional<User>> me(const QString &token) const;

    /// The playlists, then the favourites; the first failure ends the call.
    [[nodiscard]] QFuture<Library> loadLibrary(const QString &token) const;
    [[nodiscard]] QFuture<PlaylistDetail> playlistDetail(qint64 id,
                                                         const std::optional<QString> &token) const;
    [[nodiscard]] QFuture<PlaylistSummary> createPlaylist(const QString &title, const QString &token) const;
    [[nodiscard]] QFuture<void> deletePlaylist(qint64 id, const QString &token) const;
    /// Adds what `station` plays.
    [[nodiscard]] QFuture<void> addTrackToPlaylist(qint64 playlistId, const Station &station,
                                                   const QString &token) const;
    /// `trackKey` is the identifier of its row, in decimal, or the track's own.
    [[nodiscard]] QFuture<void> deletePlaylistTrack(qint64 playlistId, const QString &trackKey,
                                                    const QString &token) const;

    /// What stands behind an address of Spotify, as it was pasted.
    [[nodiscard]] QFuture<SpotifyEntity> spotifyResolve(const QString &address) const;
    /// Names the song in a snippet of AAC in MPEG-4. Gives up after 25 seconds of silence.
    [[nodiscard]] QFuture<ShazamData> recognize(const QByteArray &audioData) const;
    /// The address at which the bot hands over what `station` plays.
    [[nodiscard]] QFuture<QUrl> telegramDownloadToken(const Station &station) const;

    /// What lies at `address` (http, https or file), whatever the status it comes with. Fails with
    /// TransportError, also for more than `largest` bytes.
    [[nodiscard]] QFuture<QByteArray> data(const QUrl &address, qint64 largest) const;

    /// One operation for each verb: the answer is read as a `T`. `path` has no leading slash. A token is sent
    /// whenever it is there, also an empty one.
    template <typename T>
    [[nodiscard]] QFuture<T> get(const QString &path, const QueryItems &query = {},
                                 const std::optional<QString> &token = {}) const
    {
        return decoded<T>(HttpVerb::Get, getRequest(m_baseUrl, path, query, token));
    }
    template <typename T>
    [[nodiscard]] QFuture<T> post(const QString &path, const QJsonObject &body,
                                  const std::optional<QString> &token = {}) const
    {
        return decoded<T>(HttpVerb::Post, bodyRequest(m_baseUrl, HttpVerb::Post, path, body, token));
    }
    template <typename T>
    [[nodiscard]] QFuture<T> put(const QString &path, const QJsonObject &body,
                                 const std::optional<QString> &token = {}) const
    {
        return decoded<T>(HttpVerb::Put, bodyRequest(m_baseUrl, HttpVerb::Put, path, body, token));
    }
    /// DELETE, which C++ keeps to itself.
    template <typename T>
    [[nodiscard]] QFuture<T> remove(const QString &path, const std::optional<QString> &token = {}) const
    {
        return decoded<T>(HttpVerb::Delete, deleteRequest(m_baseUrl, path, token));
    }

private:
    friend class NavorinRadioApp;
    friend struct TestAccess;

    /// `baseUrl` must be https, or http to this machine; anything else ends the process.
    APIClient(const QUrl &baseUrl, HttpSession &session);
    static SharedInstance<APIClient> &instance();

    template <typename T>
    QFuture<T> decoded(HttpVerb verb, HttpRequest request) const
    {
        return m_session.send(std::move(request))
            .then(QThreadPool::globalInstance(), [verb](const QFuture<HttpResponse> &answer) {
                return json::decode<T>(judged(verb, answer.result()));
            });
    }

    QUrl m_baseUrl;
    HttpSession &m_session;
};

} // namespace navorin
