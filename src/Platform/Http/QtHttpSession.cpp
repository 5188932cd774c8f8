#include "Platform/Http/QtHttpSession.h"

#include "Platform/Http/HttpByteStream.h"
#include "Platform/Http/HttpExchange.h"

#include <QCoreApplication>
#include <QEvent>
#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QNetworkProxy>

#include <mutex>
#include <utility>
#include <variant>
#include <vector>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

/// The user's proxies, but never for this machine itself.
class SystemProxies final : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override
    {
        const auto host = query.peerHostName();
        if (host == u"localhost"_s || QHostAddress(host).isLoopback())
            return {QNetworkProxy(QNetworkProxy::NoProxy)};
        return systemProxyForQuery(query);
    }
};

} // namespace

/// A request, and who waits for what of its answer.
struct QtHttpSession::Parcel
{
    HttpRequest request;
    std::variant<QPromise<HttpResponse>, HttpStreamOrder> order;

    void fail()
    {
        if (auto *stream = std::get_if<HttpStreamOrder>(&order))
            failPromise(stream->promise, endedSession());
        else
            failPromise(std::get<QPromise<HttpResponse>>(order), endedSession());
    }
};

/// What of the session lives on the network thread. Requests come in through a locked mailbox, so that the
/// hand-over between the threads is in plain sight.
class QtHttpSession::Worker final : public QObject
{
public:
    explicit Worker(HttpSessionConfiguration configuration)
        : m_configuration(std::move(configuration))
    {
    }
    ~Worker() override
    {
        for (auto &parcel : takeMail())
            parcel.fail();
    }

    /// From any thread.
    void post(Parcel parcel)
    {
        {
            const std::scoped_lock lock(m_mutex);
            m_mail.push_back(std::move(parcel));
        }
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

protected:
    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        for (auto &parcel : takeMail())
            transferOf(std::move(parcel))->start();
        return true;
    }

private:
    HttpTransfer *transferOf(Parcel parcel)
    {
        if (auto *stream = std::get_if<HttpStreamOrder>(&parcel.order))
            return new HttpByteStream(std::move(parcel.request), std::move(*stream), network(),
                                      m_configuration, &m_transfers);
        return new HttpExchange(std::move(parcel.request),
                                std::get<QPromise<HttpResponse>>(std::move(parcel.order)), network(),
                                m_configuration, &m_transfers);
    }

    std::vector<Parcel> takeMail()
    {
        const std::scoped_lock lock(m_mutex);
        return std::exchange(m_mail, {});
    }

    QNetworkAccessManager &network()
    {
        if (m_network)
            return *m_network;
        m_network = std::make_unique<QNetworkAccessManager>();
        m_network->setProxyFactory(new SystemProxies); // owned by the manager
        if (m_configuration.diskCache) {
            auto *cache = new QNetworkDiskCache(m_network.get());
            cache->setCacheDirectory(m_configuration.diskCache->folder);
            cache->setMaximumCacheSize(m_configuration.diskCache->maximumSize);
            m_network->setCache(cache);
        }
        return *m_network;
    }

    HttpSessionConfiguration m_configuration;
    std::mutex m_mutex;
    std::vector<Parcel> m_mail;
    std::unique_ptr<QNetworkAccessManager> m_network;
    QObject m_transfers{this}; ///< parent of all that are under way; goes before the network
};

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
    close();
}

void QtHttpSession::close()
{
    {
        const std::scoped_lock lock(m_mutex);
        m_worker = nullptr;
    }
    m_thread.quit();
    m_thread.wait();
}

QFuture<HttpResponse> QtHttpSession::send(HttpRequest request)
{
    QPromise<HttpResponse> promise;
    promise.start();
    auto future = promise.future();
    post({std::move(request), std::move(promise)});
    return future;
}

QFuture<void> QtHttpSession::stream(HttpRequest request, std::shared_ptr<HttpByteSink> sink,
                                    std::stop_token stop)
{
    QPromise<void> promise;
    promise.start();
    auto future = promise.future();
    post({std::move(request), HttpStreamOrder{std::move(sink), std::move(stop), std::move(promise)}});
    return future;
}

void QtHttpSession::post(Parcel parcel)
{
    const std::scoped_lock lock(m_mutex);
    if (m_worker)
        m_worker->post(std::move(parcel));
    else
        parcel.fail();
}

} // namespace navorin
