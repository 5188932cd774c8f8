#include "Views/Library/AddToPlaylistSheet.h"

#include "Models/Text.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Account/AuthStore.h"
#include "Services/Backend/APIClient.h"
#include "Services/Playback/RadioPlayer.h"
#include "Views/Library/LibraryDecisions.h"
#include "Views/ViewSetup.h"

#include <QCoro/QCoroFuture>

namespace navorin {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

// How long the good news stays before the sheet closes.
constexpr auto readingTimeOfAdded = 700ms;
constexpr auto readingTimeOfCreated = 500ms;

QString addedMessage(const std::optional<QString> &title)
{
    return u"به «"_s + playlistTitle(title) + u"» اضافه شد ✓"_s;
}

} // namespace

AddToPlaylistSheet::AddToPlaylistSheet(QObject *parent)
    : AddToPlaylistSheet(RadioPlayer::shared().currentStation(), AuthStore::shared(), APIClient::shared(),
                         viewSurroundings(), parent)
{
}

AddToPlaylistSheet::AddToPlaylistSheet(std::optional<Station> station, AuthStore &auth, APIClient &client,
                                       const ViewSurroundings &surroundings, QObject *parent)
    : QObject(parent)
    , m_auth(auth)
    , m_client(client)
    , m_queue(surroundings.queue)
    , m_station(std::move(station))
{
    connect(&m_auth, &AuthStore::playlistsChanged, this, &AddToPlaylistSheet::showPlaylists);
    for (const auto signal : {&AuthStore::userChanged, &AuthStore::isLoadingLibraryChanged})
        connect(&m_auth, signal, this, &AddToPlaylistSheet::listsChanged);
    showPlaylists();
}

bool AddToPlaylistSheet::isSignedIn() const
{
    return m_auth.isAuthed();
}

bool AddToPlaylistSheet::hasNoPlaylist() const
{
    return isSignedIn() && m_auth.playlists().isEmpty() && !m_auth.isLoadingLibrary();
}

void AddToPlaylistSheet::setNewTitle(const QString &title)
{
    if (title == m_newTitle)
        return;
    m_newTitle = title;
    Q_EMIT newTitleChanged();
    Q_EMIT changed();
}

bool AddToPlaylistSheet::canCreate() const
{
    return m_station && !isBusy() && !trimmedBlanks(m_newTitle).isEmpty();
}

int AddToPlaylistSheet::addingRow() const
{
    return m_addingId ? int(m_playlists.rowOf(QString::number(*m_addingId))) : -1;
}

void AddToPlaylistSheet::add(int row)
{
    const auto &playlists = m_auth.playlists();
    if (isBusy() || !m_station || !m_auth.token() || row < 0 || row >= playlists.size())
        return;
    m_addingId = playlists.at(row).id;
    setMessage({});
    detach(runAdd(this, playlists.at(row), *m_station, *m_auth.token()), "adding to a playlist");
}

QCoro::Task<void> AddToPlaylistSheet::runAdd(Sheet sheet, PlaylistSummary playlist, Station station,
                                             QString token)
{
    auto &auth = sheet->m_auth;
    QString failure;
    try {
        co_await sheet->m_client.addTrackToPlaylist(playlist.id, station, token);
        co_await auth.loadLibrary();
        if (sheet) {
            sheet->setMessage(addedMessage(playlist.title));
            co_await sheet->m_queue.sleep(readingTimeOfAdded);
        }
        if (sheet)
            Q_EMIT sheet->finished();
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    if (sheet)
        sheet->end(failure);
}

void AddToPlaylistSheet::createPlaylist()
{
    if (!canCreate() || !m_auth.token())
        return;
    m_isCreating = true;
    setMessage({});
    detach(runCreate(this, trimmedBlanks(m_newTitle).toString(), *m_station, *m_auth.token()),
           "creating a playlist");
}

QCoro::Task<void> AddToPlaylistSheet::runCreate(Sheet sheet, QString title, Station station, QString token)
{
    auto &auth = sheet->m_auth;
    auto &client = sheet->m_client;
    QString failure;
    try {
        const auto made = co_await client.createPlaylist(title, token);
        co_await auth.loadLibrary();
        const auto name = made.title.value_or(title);
        if (sheet) {
            sheet->setNewTitle({});
            sheet->setMessage(u"پلیلیست «"_s + playlistTitle(name) + u"» ساخته شد"_s);
        }
        co_await client.addTrackToPlaylist(made.id, station, token);
        co_await auth.loadLibrary();
        if (sheet) {
            sheet->setMessage(addedMessage(name));
            co_await sheet->m_queue.sleep(readingTimeOfCreated);
        }
        if (sheet)
            Q_EMIT sheet->finished();
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    if (sheet)
        sheet->end(failure);
}

void AddToPlaylistSheet::showPlaylists()
{
    QList<ListRow> rows;
    rows.reserve(m_auth.playlists().size());
    for (const auto &playlist : m_auth.playlists())
        rows.append(playlistChoice(playlist));
    m_playlists.setRows(rows);
    Q_EMIT listsChanged();
    Q_EMIT changed();
}

void AddToPlaylistSheet::setMessage(const QString &message, bool isFailure)
{
    m_message = message;
    m_messageIsFailure = isFailure;
    Q_EMIT changed();
}

void AddToPlaylistSheet::end(const QString &failure)
{
    m_isCreating = false;
    m_addingId.reset();
    if (failure.isEmpty())
        Q_EMIT changed();
    else
        setMessage(failure, true);
}

} // namespace navorin
