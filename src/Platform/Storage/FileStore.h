#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace navorin {

/// How a file operation went. True in a condition if it is done.
struct FileResult
{
    enum class Failure { NoSpace, NotPermitted, NoFolder, Other };

    std::optional<Failure> failure;

    explicit operator bool() const { return !failure; }
    /// The Persian text for a person; empty if there was no failure.
    [[nodiscard]] QString description() const;
    /// Of the system's `errno`.
    [[nodiscard]] static FileResult ofError(int number);
};

/// The user's folders and the few file operations the system needs. Usable from any thread; every failure is
/// a return value, and what to make of it is the caller's business.
class FileStore
{
public:
    virtual ~FileStore() = default;

    /// The application's own data folder, absolute, made on first need. Fatal if the desktop names none.
    [[nodiscard]] virtual QString applicationSupportFolder() const = 0;

    virtual bool createFolder(const QString &path) = 0;
    /// Marks a folder as not worth a backup (a `CACHEDIR.TAG` in it).
    virtual bool excludeFromBackup(const QString &folder) = 0;

    [[nodiscard]] virtual bool exists(const QString &path) const = 0;
    [[nodiscard]] virtual std::optional<QByteArray> read(const QString &path) const = 0;
    /// A reader sees the old file or the new one, whole, also when the machine stops in the middle.
    virtual FileResult writeAtomically(const QString &path, const QByteArray &data) = 0;
    /// Fails rather than replace a file that stands at `to`.
    virtual bool move(const QString &from, const QString &to) = 0;
    virtual bool remove(const QString &path) = 0;
};

} // namespace navorin
