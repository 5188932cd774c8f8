#include "Services/Backend/APIClient.h"
#include "Services/Backend/CallBodies.h"

#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto timeoutOfRecognition = std::chrono::seconds(25);

QThreadPool *pool()
{
    return QThreadPool::globalInstance();
}

/// The answer's data, without which the call has failed.
template <typename Data>
auto requiredData()
{
    return [](const QFuture<Envelope<Data>> &answer) {
        auto envelope = answer.result();
        if (!envelope.data)
            throw APIError::decoding();
        return *std::move(envelope.data);
    };
}

/// What a good answer without its substance means: the server's own words, or else `fallback`.
template <typename AnyEnvelope>
ServerError lacking(const AnyEnvelope &envelope, const QString &fallback)
{
    return {envelope.message.value_or(fallback), envelope.code.value_or(-1)};
}

auto requiredSession(const QString &fallback)
{
    return [fallback](const QFuture<SessionInfoEnvelope> &answer) {
        const auto envelope = answer.result();
        if (auto session = envelope.resolved())
            return *std::move(session);
        throw lacking(envelope, fallback);
    };
}

void dropAnswer(const QFuture<SimpleMessage> &answer)
{
    static_cast<void>(answer.result()); // throws what failed
}

QString playlistPath(qint64 id)
{
    return u"api/playlists/"_s + QString::number(id);
}

ShazamData recognised(const QFuture<HttpResponse> &answer)
{
    const auto response = answer.result();
    if (!response.status)
        throw APIError::http(-1);
    if (*response.status < 200 || *response.status > 299)
        std::rethrow_exception(refusal<ShazamEnvelope>(response));
    auto envelope = json::decode<ShazamEnvelope>(response.body);
    if (!envelope.data)
        throw APIError::decoding();
    return *std::move(envelope.data);
}

QUrl botAddress(const QFuture<TelegramTokenEnvelope> &answer)
{
    const auto data = answer.result().data.value_or(TelegramTokenData());
    QUrl address(data.botURL.value_or(QString()), QUrl::StrictMode);
    if (!address.isValid())
        throw APIError::decoding();
    return address;
}

} // namespace

QFuture<QList<Station>> APIClient::soundcloudSearch(const QString &text) const
{
    return get<StationsResponse>(u"api/soundcloud/search"_s, {{u"q"_s, text}})
        .then(pool(), [](const QFuture<StationsResponse> &answer) {
            return answer.result().data.value_or(QList<Station>());
        });
}

QFuture<AuthData> APIClient::login(const QString &username, const QString &password) const
{
    return post<AuthEnvelope>(u"api/auth/login"_s, {{u"username"_s, username}, {u"password"_s, password}})
        .then(pool(), requiredData<AuthData>());
}

QFuture<AuthSessionInfo> APIClient::initTelegramSignup(const QString &username, const QString &password,
                                                       const QString &displayName) const
{
    return post<SessionInfoEnvelope>(
               u"api/auth/telegram/init-signup"_s,
               {{u"username"_s, username}, {u"password"_s, password}, {u"display_name"_s, displayName}})
        .then(pool(), requiredSession(u"خطا در شروع ثبتنام"_s));
}

QFuture<AuthData> APIClient::verifySignupOTP(const QString &sessionID, const QString &code) const
{
    return post<AuthEnvelope>(u"api/auth/telegram/verify-signup-otp"_s,
                              {{u"session_id"_s, sessionID}, {u"otp_code"_s, code}})
        .then(pool(), [](const QFuture<AuthEnvelope> &answer) {
            auto envelope = answer.result();
            if (!envelope.data)
                throw lacking(envelope, u"کد تایید نامعتبر است"_s);
            return *std::move(envelope.data);
        });
}

QFuture<AuthSessionInfo> APIClient::forgotPassword(const QString &identifier) const
{
    return post<SessionInfoEnvelope>(u"api/auth/telegram/forgot-password"_s, {{u"identifier"_s, identifier}})
        .then(pool(), requiredSession(u"خطا در ارسال کد بازیابی"_s));
}

QFuture<std::optional<QString>> APIClient::resetPassword(const QString &sessionID, const QString &code,
                                                         const QString &newPassword) const
{
    return post<SimpleMessage>(
               u"api/auth/telegram/reset-password"_s,
               {{u"session_id"_s, sessionID}, {u"otp_code"_s, code}, {u"new_password"_s, newPassword}})
        .then(pool(), [](const QFuture<SimpleMessage> &answer) { return answer.result().message; });
}

QFuture<std::optional<User>> APIClient::me(const QString &token) const
{
    return get<AuthEnvelope>(u"api/auth/me"_s, {}, token)
        .then(pool(), [](const QFuture<AuthEnvelope> &answer) -> std::optional<User> {
            try {
                return answer.result().data.value_or(AuthData()).user;
            } catch (const std::exception &) {
                return {}; // why there is nobody makes no difference
            }
        });
}

QFuture<Library> APIClient::loadLibrary(const QString &token) const
{
    return get<PlaylistsEnvelope>(u"api/playlists"_s, {}, token)
        .then(pool(),
              [this, token](const QFuture<PlaylistsEnvelope> &answer) {
                  auto playlists = answer.result()
                                       .data.value_or(PlaylistsData())
                                       .playlists.value_or(QList<PlaylistSummary>());
                  return get<FavoritesEnvelope>(u"api/favorites"_s, {}, token)
                      .then(pool(), [playlists =
                                         std::move(playlists)](const QFuture<FavoritesEnvelope> &favorites) {
                          return Library{playlists, favorites.result().data.value_or(QList<FavoriteTrack>())};
                      });
              })
        .unwrap();
}

QFuture<PlaylistDetail> APIClient::playlistDetail(qint64 id, const std::optional<QString> &token) const
{
    return get<PlaylistEnvelope>(playlistPath(id), {}, token).then(pool(), requiredData<PlaylistDetail>());
}

QFuture<PlaylistSummary> APIClient::createPlaylist(const QString &title, const QString &token) const
{
    return post<PlaylistCreateEnvelope>(u"api/playlists"_s,
                                        {{u"title"_s, title}, {u"description"_s, QString()}}, token)
        .then(pool(), requiredData<PlaylistSummary>());
}

QFuture<void> APIClient::deletePlaylist(qint64 id, const QString &token) const
{
    return remove<SimpleMessage>(playlistPath(id), token).then(pool(), dropAnswer);
}

QFuture<void> APIClient::addTrackToPlaylist(qint64 playlistId, const Station &station,
                                            const QString &token) const
{
    return post<SimpleMessage>(playlistPath(playlistId) + u"/tracks"_s, playlistTrackBody(station), token)
        .then(pool(), dropAnswer);
}

QFuture<void> APIClient::deletePlaylistTrack(qint64 playlistId, const QString &trackKey,
                                             const QString &token) const
{
    return remove<SimpleMessage>(playlistPath(playlistId) + u"/tracks/"_s + trackKey, token)
        .then(pool(), dropAnswer);
}

QFuture<SpotifyEntity> APIClient::spotifyResolve(const QString &address) const
{
    return get<EntityEnvelope>(u"api/spotify/resolve"_s, {{u"url"_s, address}})
        .then(pool(), requiredData<SpotifyEntity>());
}

QFuture<ShazamData> APIClient::recognize(const QByteArray &audioData) const
{
    HttpRequest request;
    request.url = withPath(m_baseUrl, u"api/shazam"_s);
    request.method = "POST"_ba;
    request.headers = {{"Content-Type"_ba, "audio/mp4"_ba}};
    request.body = audioData;
    request.timeout = timeoutOfRecognition;
    return m_session.send(std::move(request)).then(pool(), recognised);
}

QFuture<QUrl> APIClient::telegramDownloadToken(const Station &station) const
{
    return post<TelegramTokenEnvelope>(u"api/telegram/download-token"_s, downloadTokenBody(station))
        .then(pool(), botAddress);
}

} // namespace navorin
