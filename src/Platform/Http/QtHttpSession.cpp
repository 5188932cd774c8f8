#include "Platform/Http/QtHttpSession.h"

#include "Platform/Http/HttpExchange.h"

#include <QNetworkAccessManager>
#include <QNetworkDiskCache>

#include <atomic>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

/// What of the session lives on the network thread.
class QtHttpSession::Worker final : public QObject
{
public:
    explicit Worker(HttpSessionConfiguration configuration)
        : m_configuration(std::move(configuration))
    {
    }

    void begin(HttpRequest request, QPromise<HttpResponse> promise)
    {
        auto *exchange = new HttpExchange(std::move(request), std::move(promise), network(), m_configuration,
                                          &m_exchanges);
        exchange->start();
    }

private:
    QNetworkAccessManager &network()
    {
        if (m_network)
            return *m_network;
        m_network = std::make_unique<QNetworkAccessManager>();
        m_network->setAutoDeleteReplies(false);
        if (m_configuration.diskCache) {
            auto *cache = new QNetworkDiskCache(m_network.get());
            cache->setCacheDirectory(m_configuration.diskCache->folder);
            cache->setMaximumCacheSize(m_configuration.diskCache->maximumSize);
            m_network->setCache(cache);
        }
        return *m_network;
    }

    HttpSessionConfiguration m_configuration;
    std::unique_ptr<QNetworkAccessManager> m_network;
    QObject m_exchanges{this}; ///< parent of all that are under way; goes before the network
};

namespace {

/// A request on its way to the network thread. Dropped there unopened, it fails as cancelled.
struct Parcel
{
    HttpRequest request;
    QPromise<HttpResponse> promise;
    bool isOpened = false;
    /// Qt's event queue orders the two threads, but a race checker cannot see into it: the flag says the same
    /// aloud.
    std::atomic_bool isSealed = false;

    ~Parcel()
    {
        if (isOpened)
            return;
        promise.setException(
            std::make_exception_ptr(TransportError(TransportError::Kind::Cancelled, u"the session ended"_s)));
        promise.finish();
    }
};

} // namespace

QtHttpSession::QtHttpSession(HttpSessionConfiguration configuration)
    : m_worker(new Worker(std::move(configuration)))
{
    m_thread.setObjectName(u"network"_s);
    m_worker->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.start();
}

QtHttpSession::~QtHttpSession()
{
    m_thread.quit();
    m_thread.wait();
}

QFuture<HttpResponse> QtHttpSession::send(HttpRequest request)
{
    auto parcel = std::make_shared<Parcel>();
    parcel->request = std::move(request);
    parcel->promise.start();
    auto future = parcel->promise.future();
    parcel->isSealed.store(true, std::memory_order_release);
    QMetaObject::invokeMethod(
        m_worker,
        [worker = m_worker, parcel = std::move(parcel)] {
            parcel->isOpened = parcel->isSealed.load(std::memory_order_acquire);
            worker->begin(std::move(parcel->request), std::move(parcel->promise));
        },
        Qt::QueuedConnection);
    return future;
}

} // namespace navorin
