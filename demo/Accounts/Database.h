#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace navorin::demo {

/// The SQLite file behind accounts and libraries. Any thread may open a Transaction; one runs at a time.
/// Everything here throws std::runtime_error with SQLite's words when the file fails.
class Database
{
public:
    /// Makes the file and its tables if need be; ":memory:" for one that ends with the process.
    explicit Database(const std::string &file);

private:
    friend class Transaction;
    using Handle = std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)>;

    void execute(const char *sql);
    void createTables();

    Handle m_handle;
    std::mutex m_mutex;
};

/// A running SQL statement. Its values are bound as it is made, never pasted into its text.
class Query
{
public:
    /// To the next row; false when there is none. A statement without rows runs at the first call.
    bool next();
    [[nodiscard]] std::int64_t integer(int column) const;
    [[nodiscard]] std::string text(int column) const;

private:
    friend class Transaction;
    Query(sqlite3 *database, std::string_view sql);
    void bind(int index, std::int64_t value);
    void bind(int index, std::string_view value);

    sqlite3 *m_database;
    std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> m_statement;
};

/// Exclusive use of the database for one scope. What was not committed by its end is undone.
class Transaction
{
public:
    explicit Transaction(Database &database);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    /// Takes texts and integers for the "?" in `sql`. The query must not outlive the transaction.
    template <typename... Values>
    Query query(std::string_view sql, const Values &...values)
    {
        Query query(m_database.m_handle.get(), sql);
        int index = 0;
        (query.bind(++index, values), ...);
        return query;
    }
    /// Runs a statement and tells how many rows it changed.
    template <typename... Values>
    int run(std::string_view sql, const Values &...values)
    {
        query(sql, values...).next();
        return sqlite3_changes(m_database.m_handle.get());
    }
    /// The row id of the last insertion.
    [[nodiscard]] std::int64_t insertedId() const;
    void commit();

private:
    Database &m_database;
    std::lock_guard<std::mutex> m_lock;
    bool m_open = true;
};

} // namespace navorin::demo
