#pragma once

#include "Database.h"

#include <vector>

namespace navorin::demo {

/// A track as a client put it into a list.
struct SavedTrack
{
    std::int64_t id = 0; ///< of its row
    std::string type;
    std::string trackId;
    std::string title;
    std::string artist;
    std::string streamUrl;
    std::string artworkUrl;
    std::int64_t duration = 0; ///< seconds; 0 when the client did not say
};

struct Playlist
{
    std::int64_t id = 0;
    std::string title;
    std::string description;
    std::string coverUrl; ///< its first track's; may be empty
    std::int64_t trackCount = 0;
};

/// Playlists and favourites. Everything is the user's own: a list of somebody else is as unknown as one that
/// never was, and throws a Refusal. Any thread.
class LibraryStore
{
public:
    explicit LibraryStore(Database &database);

    /// The newest first, as are favourites.
    [[nodiscard]] std::vector<Playlist> playlists(std::int64_t user);
    [[nodiscard]] std::pair<Playlist, std::vector<SavedTrack>> playlist(std::int64_t user, std::int64_t id);
    [[nodiscard]] Playlist createPlaylist(std::int64_t user, const std::string &title,
                                          const std::string &description);
    void editPlaylist(std::int64_t user, std::int64_t id, const std::string &title,
                      const std::string &description);
    void deletePlaylist(std::int64_t user, std::int64_t id);

    void addTrack(std::int64_t user, std::int64_t playlist, const SavedTrack &track);
    /// `key` is the row's id in decimal, or the track's own identifier.
    void editTrack(std::int64_t user, std::int64_t playlist, const std::string &key, const std::string &title,
                   const std::string &artist);
    void deleteTrack(std::int64_t user, std::int64_t playlist, const std::string &key);

    [[nodiscard]] std::vector<SavedTrack> favorites(std::int64_t user);
    /// Whether it is a favourite now.
    bool toggleFavorite(std::int64_t user, const SavedTrack &track);

private:
    Database &m_database;
};

} // namespace navorin::demo
