#include "Services/Offline/OfflineDownload.h"

#include "Services/Backend/APIError.h"

#include <algorithm>
#include <new>
#include <unistd.h>

namespace navorin {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype largestArtwork = 32 << 20;
constexpr qint64 unknownLengthCode = -2;

/// The system promises more memory than there is, and ends who takes it at its word.
bool exceedsMemory(qint64 length)
{
    return length / sysconf(_SC_PAGESIZE) >= sysconf(_SC_PHYS_PAGES);
}

} // namespace

double shownProgress(qint64 received, qint64 expected)
{
    constexpr double most = 0.99;
    return std::min(most, double(received) / double(expected));
}

OfflineDownload::OfflineDownload(QString key, PlaylistTrack track, QUrl address, SteadyClock now)
    : key(std::move(key))
    , track(std::move(track))
    , address(std::move(address))
    , m_now(std::move(now))
{
}

void OfflineDownload::begin(qint64 expectedLength)
{
    const QMutexLocker locker(&m_lock);
    m_hasBegun = true;
    if (expectedLength < 1)
        throw ServerError(u"این آهنگ قابل ذخیره آفلاین نیست"_s, unknownLengthCode);
    if (exceedsMemory(expectedLength))
        throw std::bad_alloc();
    m_expectedLength = expectedLength;
    m_audio.reserve(std::size_t(expectedLength));
}

void OfflineDownload::receive(QByteArrayView bytes)
{
    if (m_stop.stop_requested())
        throw TransportError(TransportError::Kind::Cancelled, u"given up"_s);
    QMutexLocker locker(&m_lock);
    m_audio.append(bytes.data(), std::size_t(bytes.size()));
    const auto progress = dueProgress();
    locker.unlock();
    if (progress)
        m_report(*progress);
}

std::optional<double> OfflineDownload::dueProgress()
{
    constexpr auto interval = 200ms;
    const auto now = m_now();
    if (m_lastReport && now - *m_lastReport <= interval)
        return {};
    m_lastReport = now;
    return shownProgress(qint64(m_audio.size()), m_expectedLength);
}

bool OfflineDownload::hasBegun() const
{
    const QMutexLocker locker(&m_lock);
    return m_hasBegun;
}

QByteArray OfflineDownload::audio() const
{
    const QMutexLocker locker(&m_lock);
    return QByteArray::fromRawData(m_audio.data(), qsizetype(m_audio.size()));
}

void OfflineDownload::discardAudio()
{
    const QMutexLocker locker(&m_lock);
    std::string().swap(m_audio); // an assignment would keep the room
}

void OfflineArtwork::receive(QByteArrayView bytes)
{
    const QMutexLocker locker(&m_lock);
    if (m_bytes.size() + bytes.size() > largestArtwork)
        throw TransportError(TransportError::Kind::Other, u"too large for a picture"_s);
    m_bytes.append(bytes);
}

QByteArray OfflineArtwork::bytes() const
{
    const QMutexLocker locker(&m_lock);
    return m_bytes;
}

} // namespace navorin
