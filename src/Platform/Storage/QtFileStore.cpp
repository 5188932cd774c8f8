#include "Platform/Storage/QtFileStore.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

#include <cerrno>
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

bool QtFileStore::move(const QString &from, const QString &to)
{
    return QFile::rename(from, to);
}

bool QtFileStore::remove(const QString &path)
{
    return QFile::remove(path);
}

} // namespace navorin
