#include "Services/Artwork/ArtworkLoader.h"

#include "Services/Artwork/ArtworkPreparation.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 largestFile = 32 << 20;
constexpr qint64 largestCache = 64 << 20;

QByteArray readFile(const QString &path)
{
    QFile file(path);
    // a pipe or a device would never end
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > largestFile)
        return {};
    return file.readAll();
}

bool isGood(const HttpResponse &response)
{
    return response.status && *response.status >= 200 && *response.status <= 299;
}

} // namespace

ArtworkLoader::ArtworkLoader(HttpSession &session)
    : m_session(session)
{
    for (auto &thread : m_threads)
        thread = std::thread([this] { work(); });
}

ArtworkLoader::~ArtworkLoader()
{
    {
        const std::scoped_lock lock(m_mutex);
        m_isEnding = true;
        for (auto &job : m_jobs) {
            if (job.exchange)
                job.exchange->cancel();
        }
    }
    m_wake.notify_all();
    for (auto &thread : m_threads)
        thread.join();
}

SharedInstance<ArtworkLoader> &ArtworkLoader::instance()
{
    static SharedInstance<ArtworkLoader> instance;
    return instance;
}

ArtworkLoader &ArtworkLoader::shared()
{
    return instance().get();
}

HttpSessionConfiguration ArtworkLoader::sessionConfiguration()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + u"/artwork"_s;
    return {.timeoutForRequest = std::chrono::seconds(15),
            .largestBody = largestFile,
            .diskCache = HttpDiskCache{folder, largestCache}};
}

QFuture<QImage> ArtworkLoader::load(const QUrl &address, QSize pixels, qreal radius)
{
    const Order order{address, pixels, radius};
    QPromise<QImage> promise;
    promise.start();
    auto future = promise.future();
    {
        const std::scoped_lock lock(m_mutex);
        abandonUnwanted();
        auto job = std::ranges::find_if(
            m_jobs, [&order](const Job &other) { return other.order == order && !other.isAbandoned(); });
        if (job == m_jobs.end())
            job = m_jobs.insert(m_jobs.end(), Job{order, {}, false, {}});
        job->waiting.push_back(std::move(promise));
    }
    m_wake.notify_one();
    return future;
}

bool ArtworkLoader::Job::isWanted() const
{
    return !std::ranges::all_of(waiting, &QPromise<QImage>::isCanceled);
}

bool ArtworkLoader::Job::isAbandoned() const
{
    return exchange && exchange->isCanceled();
}

void ArtworkLoader::abandonUnwanted()
{
    for (auto &job : m_jobs) {
        if (job.exchange && !job.isWanted())
            job.exchange->cancel();
    }
}

void ArtworkLoader::work()
{
    while (const auto job = nextJob()) {
        const auto bytes = fetched(**job);
        if (bytes.isEmpty())
            deliver(*job, {});
        else if (!dropUnwanted(*job))
            deliver(*job, preparedArtwork(bytes, (*job)->order.pixels, (*job)->order.radius));
    }
}

bool ArtworkLoader::dropUnwanted(Jobs::iterator job)
{
    Jobs dropped;
    const std::scoped_lock lock(m_mutex);
    if (job->isWanted())
        return false;
    dropped.splice(dropped.end(), m_jobs, job);
    return true;
}

void ArtworkLoader::deliver(Jobs::iterator job, const QImage &picture)
{
    Jobs done;
    {
        const std::scoped_lock lock(m_mutex);
        done.splice(done.end(), m_jobs, job);
    }
    for (auto &promise : done.front().waiting) {
        promise.addResult(picture);
        promise.finish();
    }
}

std::optional<ArtworkLoader::Jobs::iterator> ArtworkLoader::nextJob()
{
    Jobs dropped; // goes after the lock: who waits for these may call back
    std::unique_lock lock(m_mutex);
    for (;;) {
        const auto job = std::ranges::find(m_jobs, false, &Job::isRunning);
        if (m_isEnding)
            return {};
        if (job == m_jobs.end()) {
            m_wake.wait(lock);
        } else if (job->isWanted()) {
            job->isRunning = true;
            return job;
        } else {
            dropped.splice(dropped.end(), m_jobs, job);
        }
    }
}

QByteArray ArtworkLoader::fetched(Job &job)
{
    if (job.order.address.isLocalFile())
        return readFile(job.order.address.toLocalFile());
    HttpRequest request;
    request.url = job.order.address;
    auto exchange = m_session.send(std::move(request));
    {
        const std::scoped_lock lock(m_mutex);
        job.exchange = exchange;
        if (m_isEnding)
            exchange.cancel();
    }
    try {
        exchange.waitForFinished();
    } catch (const TransportError &) {
        return {}; // the placeholder says that there is no picture; why matters to nobody
    }
    if (exchange.resultCount() == 0)
        return {};
    const auto response = exchange.result();
    return isGood(response) ? response.body : QByteArray();
}

} // namespace navorin
