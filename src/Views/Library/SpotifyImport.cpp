#include "Views/Library/SpotifyImport.h"

#include "Models/Text.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Account/AuthStore.h"
#include "Services/Backend/APIClient.h"
#include "Services/Playback/RadioPlayer.h"
#include "Views/Library/LibraryDecisions.h"
#include "Views/Shared/ShownText.h"

#include <QCoro/QCoroFuture>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

QJsonObject importBody(const QString &url, const SpotifyEntity &entity)
{
    return {{u"url"_s, url},
            {u"title"_s, entity.title.value_or(u"پلیلیست اسپاتیفای"_s)},
            {u"description"_s,
             QString(u"ایمپورت شده از اسپاتیفای ("_s + entity.artist.value_or(u"Spotify"_s) + u')')}};
}

} // namespace

SpotifyImport::SpotifyImport(AuthStore &auth, APIClient &client, RadioPlayer &player, QObject *parent)
    : QObject(parent)
    , m_auth(auth)
    , m_client(client)
    , m_player(player)
{
    connect(&m_auth, &AuthStore::userChanged, this, &SpotifyImport::changed);
}

void SpotifyImport::setUrl(const QString &url)
{
    if (url == m_url)
        return;
    m_url = url;
    Q_EMIT urlChanged();
    Q_EMIT changed();
}

bool SpotifyImport::canResolve() const
{
    return !m_isLoading && !trimmedBlanks(m_url).isEmpty();
}

QString SpotifyImport::coverAddress() const
{
    return m_entity ? m_entity->coverURL.value_or(QString()) : QString();
}

QString SpotifyImport::title() const
{
    return m_entity ? shownText(m_entity->title.value_or(QString())) : QString();
}

QString SpotifyImport::line() const
{
    if (!m_entity)
        return {};
    QStringList parts;
    if (m_entity->artist && !m_entity->artist->isEmpty())
        parts << shownText(*m_entity->artist);
    if (m_entity->trackCount)
        parts << QString::number(*m_entity->trackCount);
    else if (m_entity->tracks)
        parts << QString::number(m_entity->tracks->size());
    return parts.join(u" · "_s);
}

bool SpotifyImport::canPlay() const
{
    return m_entity && m_entity->tracks && !m_entity->tracks->isEmpty();
}

bool SpotifyImport::canSave() const
{
    return m_entity && m_auth.isAuthed();
}

void SpotifyImport::resolve()
{
    if (!canResolve())
        return;
    m_entity.reset();
    m_message.clear();
    m_messageIsFailure = false;
    begin();
    detach(runResolve(this, trimmedBlanks(m_url).toString()), "asking what a link leads to");
}

QCoro::Task<void> SpotifyImport::runResolve(QPointer<SpotifyImport> import, QString address)
{
    QString failure;
    try {
        auto entity = co_await import->m_client.spotifyResolve(address);
        if (import)
            import->m_entity = std::move(entity);
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    if (import)
        import->end(failure, !failure.isEmpty());
}

void SpotifyImport::play()
{
    if (!m_entity)
        return;
    if (const auto station = spotifyStation(*m_entity))
        playInFullPlayer(m_player, *station);
}

void SpotifyImport::save()
{
    if (!canSave() || m_isLoading)
        return;
    begin();
    detach(runSave(this, *m_auth.token()), "importing a playlist");
}

QCoro::Task<void> SpotifyImport::runSave(QPointer<SpotifyImport> import, QString token)
{
    auto &auth = import->m_auth;
    QString message;
    auto isFailure = false;
    try {
        const auto body = importBody(import->m_url, *import->m_entity);
        const auto answer =
            co_await import->m_client.post<SimpleMessage>(u"api/spotify/import"_s, body, token);
        message = answer.message.value_or(u"ذخیره شد"_s);
        if (import) {
            import->m_message = message;
            Q_EMIT import->changed();
        }
        co_await auth.loadLibrary();
    } catch (const std::exception &error) {
        message = errorDescription(error);
        isFailure = true;
    }
    if (import)
        import->end(message, isFailure);
}

void SpotifyImport::begin()
{
    m_isLoading = true;
    Q_EMIT changed();
}

void SpotifyImport::end(const QString &message, bool isFailure)
{
    m_message = message;
    m_messageIsFailure = isFailure;
    m_isLoading = false;
    Q_EMIT changed();
}

} // namespace navorin
