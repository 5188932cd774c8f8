#include "LibraryStore.h"

#include "Refusal.h"

namespace navorin::demo {

namespace {

constexpr std::string_view summaryColumns =
    "SELECT p.id, p.title, p.description, "
    "(SELECT t.artwork_url FROM playlist_tracks t WHERE t.playlist_id = p.id ORDER BY t.id LIMIT 1), "
    "(SELECT COUNT(*) FROM playlist_tracks t WHERE t.playlist_id = p.id) FROM playlists p ";
constexpr std::string_view trackColumns =
    "SELECT id, track_type, track_id, title, artist, stream_url, artwork_url, duration FROM ";
// one row, and a row's id before a track's identifier that happens to read the same
constexpr std::string_view ofTrack =
    " WHERE id = (SELECT id FROM playlist_tracks WHERE playlist_id = ?1 AND "
    "(CAST(id AS TEXT) = ?2 OR track_id = ?2) ORDER BY CAST(id AS TEXT) = ?2 DESC LIMIT 1)";

std::string joined(std::string_view first, std::string_view second)
{
    return std::string(first) + std::string(second);
}

Playlist summary(const Query &row)
{
    return {row.integer(0), row.text(1), row.text(2), row.text(3), row.integer(4)};
}

std::vector<SavedTrack> tracks(Query rows)
{
    std::vector<SavedTrack> list;
    while (rows.next())
        list.push_back({rows.integer(0), rows.text(1), rows.text(2), rows.text(3), rows.text(4), rows.text(5),
                        rows.text(6), rows.integer(7)});
    return list;
}

/// INSERT OR IGNORE of a track under its owner; false when it is there already.
bool insertTrack(Transaction &transaction, std::string_view into, std::int64_t owner, const SavedTrack &track)
{
    return transaction.run(joined(into, ", track_type, track_id, title, artist, stream_url, artwork_url, "
                                        "duration) VALUES (?, ?, ?, ?, ?, ?, ?, ?)"),
                           owner, track.type, track.trackId, track.title, track.artist, track.streamUrl,
                           track.artworkUrl, track.duration) > 0;
}

Playlist owned(Transaction &transaction, std::int64_t user, std::int64_t id)
{
    Query row = transaction.query(joined(summaryColumns, "WHERE p.user_id = ? AND p.id = ?"), user, id);
    if (!row.next())
        throw Refusal(404, "این پلی‌لیست پیدا نشد");
    return summary(row);
}

} // namespace

LibraryStore::LibraryStore(Database &database)
    : m_database(database)
{
}

std::vector<Playlist> LibraryStore::playlists(std::int64_t user)
{
    Transaction transaction(m_database);
    Query rows = transaction.query(joined(summaryColumns, "WHERE p.user_id = ? ORDER BY p.id DESC"), user);
    std::vector<Playlist> list;
    while (rows.next())
        list.push_back(summary(rows));
    return list;
}

std::pair<Playlist, std::vector<SavedTrack>> LibraryStore::playlist(std::int64_t user, std::int64_t id)
{
    Transaction transaction(m_database);
    Playlist found = owned(transaction, user, id);
    return {std::move(found),
            tracks(transaction.query(
                joined(trackColumns, "playlist_tracks WHERE playlist_id = ? ORDER BY id"), id))};
}

Playlist LibraryStore::createPlaylist(std::int64_t user, const std::string &title,
                                      const std::string &description)
{
    Transaction transaction(m_database);
    transaction.run("INSERT INTO playlists (user_id, title, description) VALUES (?, ?, ?)", user, title,
                    description);
    const std::int64_t id = transaction.insertedId();
    transaction.commit();
    return {id, title, description, {}, 0};
}

void LibraryStore::editPlaylist(std::int64_t user, std::int64_t id, const std::string &title,
                                const std::string &description)
{
    Transaction transaction(m_database);
    (void)owned(transaction, user, id);
    transaction.run("UPDATE playlists SET title = ?, description = ? WHERE id = ?", title, description, id);
    transaction.commit();
}

void LibraryStore::deletePlaylist(std::int64_t user, std::int64_t id)
{
    Transaction transaction(m_database);
    (void)owned(transaction, user, id);
    transaction.run("DELETE FROM playlists WHERE id = ?", id);
    transaction.commit();
}

void LibraryStore::addTrack(std::int64_t user, std::int64_t playlist, const SavedTrack &track)
{
    Transaction transaction(m_database);
    (void)owned(transaction, user, playlist);
    if (!insertTrack(transaction, "INSERT OR IGNORE INTO playlist_tracks (playlist_id", playlist, track))
        throw Refusal(409, "این آهنگ از قبل در پلی‌لیست هست");
    transaction.commit();
}

void LibraryStore::editTrack(std::int64_t user, std::int64_t playlist, const std::string &key,
                             const std::string &title, const std::string &artist)
{
    Transaction transaction(m_database);
    (void)owned(transaction, user, playlist);
    if (transaction.run(joined("UPDATE playlist_tracks SET title = ?3, artist = ?4", ofTrack), playlist, key,
                        title, artist) == 0)
        throw Refusal(404, "این آهنگ در پلی‌لیست نیست");
    transaction.commit();
}

void LibraryStore::deleteTrack(std::int64_t user, std::int64_t playlist, const std::string &key)
{
    Transaction transaction(m_database);
    (void)owned(transaction, user, playlist);
    if (transaction.run(joined("DELETE FROM playlist_tracks", ofTrack), playlist, key) == 0)
        throw Refusal(404, "این آهنگ در پلی‌لیست نیست");
    transaction.commit();
}

std::vector<SavedTrack> LibraryStore::favorites(std::int64_t user)
{
    Transaction transaction(m_database);
    return tracks(
        transaction.query(joined(trackColumns, "favorites WHERE user_id = ? ORDER BY id DESC"), user));
}

bool LibraryStore::toggleFavorite(std::int64_t user, const SavedTrack &track)
{
    Transaction transaction(m_database);
    const bool removed =
        transaction.run("DELETE FROM favorites WHERE user_id = ? AND track_type = ? AND track_id = ?", user,
                        track.type, track.trackId) > 0;
    if (!removed)
        insertTrack(transaction, "INSERT INTO favorites (user_id", user, track);
    transaction.commit();
    return !removed;
}

} // namespace navorin::demo
