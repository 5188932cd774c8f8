#include "Database.h"

#include <stdexcept>

namespace navorin::demo {

namespace {

constexpr int busyTimeoutMs = 5000;
constexpr std::int64_t schemaVersion = 1;

constexpr const char *schema = R"(
CREATE TABLE users (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    username TEXT NOT NULL UNIQUE,
    telegram TEXT NOT NULL UNIQUE,
    display_name TEXT NOT NULL,
    avatar_url TEXT NOT NULL,
    password_hash TEXT NOT NULL);
CREATE TABLE tokens (
    token_hash TEXT PRIMARY KEY,
    user_id INTEGER NOT NULL REFERENCES users ON DELETE CASCADE,
    expires_at INTEGER NOT NULL);
CREATE TABLE verifications (
    id TEXT PRIMARY KEY,
    purpose INTEGER NOT NULL,
    username TEXT NOT NULL,
    display_name TEXT NOT NULL,
    password_hash TEXT NOT NULL,
    code TEXT NOT NULL,
    expires_at INTEGER NOT NULL,
    wrong_tries INTEGER NOT NULL DEFAULT 0);
CREATE TABLE playlists (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    user_id INTEGER NOT NULL REFERENCES users ON DELETE CASCADE,
    title TEXT NOT NULL,
    description TEXT NOT NULL);
CREATE TABLE playlist_tracks (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    playlist_id INTEGER NOT NULL REFERENCES playlists ON DELETE CASCADE,
    track_type TEXT NOT NULL, track_id TEXT NOT NULL, title TEXT NOT NULL, artist TEXT NOT NULL,
    stream_url TEXT NOT NULL, artwork_url TEXT NOT NULL, duration INTEGER NOT NULL,
    UNIQUE (playlist_id, track_type, track_id));
CREATE TABLE favorites (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    user_id INTEGER NOT NULL REFERENCES users ON DELETE CASCADE,
    track_type TEXT NOT NULL, track_id TEXT NOT NULL, title TEXT NOT NULL, artist TEXT NOT NULL,
    stream_url TEXT NOT NULL, artwork_url TEXT NOT NULL, duration INTEGER NOT NULL,
    UNIQUE (user_id, track_type, track_id));
CREATE INDEX playlists_of_user ON playlists (user_id);
)";

[[noreturn]] void fail(sqlite3 *database)
{
    throw std::runtime_error(std::string("database: ") + sqlite3_errmsg(database));
}

sqlite3 *open(const std::string &file)
{
    sqlite3 *handle = nullptr;
    // the transactions' own mutex is the only one needed
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    if (sqlite3_open_v2(file.c_str(), &handle, flags, nullptr) == SQLITE_OK)
        return handle;
    const std::string reason = handle == nullptr ? "no memory" : sqlite3_errmsg(handle);
    sqlite3_close_v2(handle);
    throw std::runtime_error("database: " + reason);
}

} // namespace

Database::Database(const std::string &file)
    : m_handle(open(file), &sqlite3_close_v2)
{
    sqlite3_busy_timeout(m_handle.get(), busyTimeoutMs);
    execute("PRAGMA journal_mode = WAL");
    execute("PRAGMA synchronous = NORMAL");
    execute("PRAGMA foreign_keys = ON");
    createTables();
}

void Database::execute(const char *sql)
{
    if (sqlite3_exec(m_handle.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        fail(m_handle.get());
}

void Database::createTables()
{
    Transaction transaction(*this);
    Query version = transaction.query("PRAGMA user_version");
    version.next();
    const std::int64_t found = version.integer(0);
    if (found == schemaVersion)
        return;
    if (found != 0)
        throw std::runtime_error("database: made by another version of the demo");
    execute(schema);
    execute(("PRAGMA user_version = " + std::to_string(schemaVersion)).c_str());
    transaction.commit();
}

Query::Query(sqlite3 *database, std::string_view sql)
    : m_database(database)
    , m_statement(nullptr, &sqlite3_finalize)
{
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &statement, nullptr) !=
        SQLITE_OK)
        fail(database);
    m_statement.reset(statement);
}

void Query::bind(int index, std::int64_t value)
{
    if (sqlite3_bind_int64(m_statement.get(), index, value) != SQLITE_OK)
        fail(m_database);
}

void Query::bind(int index, std::string_view value)
{
    // an empty view may have no address, which SQLite would take for NULL
    const char *const bytes = value.empty() ? "" : value.data();
    if (sqlite3_bind_text64(m_statement.get(), index, bytes, value.size(), SQLITE_TRANSIENT, SQLITE_UTF8) !=
        SQLITE_OK)
        fail(m_database);
}

bool Query::next()
{
    const int result = sqlite3_step(m_statement.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        fail(m_database);
    return result == SQLITE_ROW;
}

std::int64_t Query::integer(int column) const
{
    return sqlite3_column_int64(m_statement.get(), column);
}

std::string Query::text(int column) const
{
    const auto *const bytes = sqlite3_column_text(m_statement.get(), column);
    const int size = sqlite3_column_bytes(m_statement.get(), column);
    return bytes == nullptr ? std::string() : std::string(bytes, bytes + size);
}

Transaction::Transaction(Database &database)
    : m_database(database)
    , m_lock(database.m_mutex)
{
    m_database.execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction()
{
    if (m_open)
        sqlite3_exec(m_database.m_handle.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

std::int64_t Transaction::insertedId() const
{
    return sqlite3_last_insert_rowid(m_database.m_handle.get());
}

void Transaction::commit()
{
    m_database.execute("COMMIT");
    m_open = false;
}

} // namespace navorin::demo
