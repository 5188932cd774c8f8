#include "Platform/Http/HttpExchange.h"

#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

HttpExchange::HttpExchange(HttpRequest request, QPromise<HttpResponse> promise,
                           QNetworkAccessManager &network, const HttpSessionConfiguration &configuration,
                           QObject *parent)
    : HttpTransfer(std::move(request), network, configuration, parent)
    , m_promise(std::move(promise))
{
    connect(&m_watcher, &QFutureWatcherBase::canceled, this,
            [this] { fail(TransportError::Kind::Cancelled, u"cancelled by the caller"_s); });
    m_watcher.setFuture(QFuture<void>(m_promise.future()));
}

HttpExchange::~HttpExchange()
{
    HttpExchange::fail(endedSession());
}

void HttpExchange::prepareReply()
{
    connect(&reply(), &QNetworkReply::downloadProgress, this, &HttpExchange::refuseTooLarge);
}

void HttpExchange::refuseTooLarge()
{
    const auto limit = request().largestBody ? request().largestBody : configuration().largestBody;
    if (limit && reply().bytesAvailable() > *limit)
        fail(TransportError::Kind::Other, u"the body is too large"_s);
}

void HttpExchange::completeAnswer()
{
    HttpResponse response;
    response.status = status();
    if (response.status) {
        response.headers = reply().rawHeaderPairs();
        response.body = reply().readAll();
        if (isCutShort(reply().rawHeader("Content-Length"_ba), request(), response))
            return fail(TransportError::Kind::ConnectionLost, u"the body was cut short"_s);
    }
    if (!markSettled())
        return;
    m_promise.addResult(std::move(response));
    m_promise.finish();
}

void HttpExchange::fail(const std::exception_ptr &error)
{
    if (markSettled())
        failPromise(m_promise, error);
}

} // namespace navorin
