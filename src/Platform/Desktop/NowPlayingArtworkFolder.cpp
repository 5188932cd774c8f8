#include "Platform/Desktop/NowPlayingArtworkFolder.h"

#include "Platform/Storage/FileStore.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QRegularExpression>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype filesKept = 2;

QString fileName(const EncodedPicture &picture)
{
    const auto hash = QCryptographicHash::hash(picture.bytes, QCryptographicHash::Sha1).toHex();
    return QString::fromLatin1(hash) + u'.' + picture.format;
}

} // namespace

NowPlayingArtworkFolder::NowPlayingArtworkFolder(MainQueue &queue, FileStore &files, const QString &path)
    : m_queue(queue)
    , m_files(files)
    , m_path(QDir::isAbsolutePath(path) ? path : QString())
{
    m_worker.setMaxThreadCount(1);
    if (!m_path.isEmpty())
        m_worker.start([this] { removeLeftovers(); });
}

NowPlayingArtworkFolder::~NowPlayingArtworkFolder()
{
    ++m_latest;
    m_worker.waitForDone();
}

void NowPlayingArtworkFolder::write(const std::shared_ptr<const EncodedPicture> &picture,
                                    const Written &written)
{
    if (m_path.isEmpty())
        return;
    m_worker.start([this, picture, written, number = ++m_latest, alive = std::weak_ptr(m_alive)] {
        if (number != m_latest)
            return;
        const QString file = m_path + u'/' + fileName(*picture);
        if (!store(*picture, file))
            return warnOnce();
        keep(file);
        m_queue.post([written, file, alive] {
            if (!alive.expired())
                written(file);
        });
    });
}

/// Files half written have our name with something behind it. Others' files are left alone.
void NowPlayingArtworkFolder::removeLeftovers() const
{
    static const QRegularExpression ours(u"^[0-9a-f]{40}\\."_s);
    for (const auto &name : QDir(m_path).entryList(QDir::Files | QDir::Hidden).filter(ours))
        m_files.remove(m_path + u'/' + name);
}

bool NowPlayingArtworkFolder::store(const EncodedPicture &picture, const QString &file)
{
    if (m_kept.contains(file) && m_files.exists(file))
        return true;
    return m_files.createFolder(m_path) && bool(m_files.writeAtomically(file, picture.bytes));
}

void NowPlayingArtworkFolder::keep(const QString &file)
{
    m_kept.removeOne(file);
    m_kept.prepend(file);
    while (m_kept.size() > filesKept)
        m_files.remove(m_kept.takeLast());
}

void NowPlayingArtworkFolder::warnOnce()
{
    if (!std::exchange(m_warned, true))
        qWarning() << "[MPRIS] the picture could not be written into" << m_path;
}

} // namespace navorin
