#include "Platform/Storage/QtFileStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

/// What backup programs look for, see https://bford.info/cachedir/
constexpr QByteArrayView cacheSignature("Signature: 8a477f597d28d172789f06886806bc55");

/// Empty if the desktop names none: without a home Qt would put the folder at the root.
QString userDataFolder()
{
    const auto named = QDir::isAbsolutePath(qEnvironmentVariable("XDG_DATA_HOME"));
    if (!named && qEnvironmentVariableIsEmpty("HOME"))
        return {};
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

/// A file that has no name yet: should we end before it gets one, nothing is left of it.
class NamelessFile
{
public:
    explicit NamelessFile(const QString &folder)
        : m_descriptor(::open(QFile::encodeName(folder).constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666))
    {
    }
    ~NamelessFile()
    {
        if (isOpen())
            ::close(m_descriptor);
    }
    NamelessFile(const NamelessFile &) = delete;
    NamelessFile &operator=(const NamelessFile &) = delete;

    [[nodiscard]] bool isOpen() const { return m_descriptor >= 0; }
    [[nodiscard]] bool write(QByteArrayView data) const
    {
        while (!data.isEmpty()) {
            const auto count = ::write(m_descriptor, data.data(), std::size_t(data.size()));
            if (count < 0 && errno != EINTR)
                return false;
            data = data.sliced(std::max<qsizetype>(count, 0));
        }
        return ::fsync(m_descriptor) == 0;
    }
    [[nodiscard]] bool giveName(const QString &path) const
    {
        const QByteArray self = "/proc/self/fd/"_ba + QByteArray::number(m_descriptor);
        return ::linkat(AT_FDCWD, self.constData(), AT_FDCWD, QFile::encodeName(path).constData(),
                        AT_SYMLINK_FOLLOW) == 0;
    }

private:
    const int m_descriptor;
};

/// Absent if this cannot be done here, as on file systems that know no files without names.
std::optional<FileResult> writeNameless(const QString &path, const QByteArray &data)
{
    const NamelessFile file(QFileInfo(path).path());
    if (!file.isOpen())
        return {};
    if (!file.write(data))
        return FileResult::ofError(errno);
    if (file.giveName(path))
        return FileResult();
    // A name cannot be taken from another file. At worst this one is left over, and goes the next time.
    const QString next = path + u".new"_s;
    const auto nextName = QFile::encodeName(next);
    ::unlink(nextName.constData());
    if (file.giveName(next) && ::rename(nextName.constData(), QFile::encodeName(path).constData()) == 0)
        return FileResult();
    ::unlink(nextName.constData());
    return {};
}

FileResult writeBeside(const QString &path, const QByteArray &data)
{
    QSaveFile file(path);
    file.setDirectWriteFallback(false);
    errno = 0; // Qt does not hand on all that the system says
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
        return FileResult::ofError(errno);
    // commit() flushes too, but takes no notice of a failure.
    if (!file.flush() || ::fsync(file.handle()) != 0 || !file.commit())
        return FileResult::ofError(errno);
    return {};
}

} // namespace

QString QtFileStore::applicationSupportFolder() const
{
    std::call_once(m_supportFolderMade, [this] {
        const auto root = userDataFolder();
        if (root.isEmpty())
            qFatal("the desktop names no folder for the user's data");
        m_supportFolder = root + u"/navorin"_s;
        QDir().mkpath(m_supportFolder);
    });
    return m_supportFolder;
}

bool QtFileStore::createFolder(const QString &path)
{
    return QDir().mkpath(path);
}

bool QtFileStore::excludeFromBackup(const QString &folder)
{
    const QString tag = folder + u"/CACHEDIR.TAG"_s;
    const auto present = read(tag);
    if (present && present->startsWith(cacheSignature))
        return true;
    return bool(
        writeAtomically(tag, cacheSignature + "\n# Music kept by Navorin; it can be downloaded again.\n"_ba));
}

bool QtFileStore::exists(const QString &path) const
{
    return ::access(QFile::encodeName(path).constData(), F_OK) == 0;
}

std::optional<QByteArray> QtFileStore::read(const QString &path) const
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    auto data = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return {};
    return data;
}

FileResult QtFileStore::writeAtomically(const QString &path, const QByteArray &data)
{
    const auto result = writeNameless(path, data);
    return result ? *result : writeBeside(path, data);
}

bool QtFileStore::move(const QString &from, const QString &to)
{
    return QFile::rename(from, to);
}

bool QtFileStore::remove(const QString &path)
{
    return QFile::remove(path);
}

} // namespace navorin
