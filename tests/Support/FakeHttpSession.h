#pragma once

#include "Platform/Http/HttpSession.h"

#include <QPromise>

#include <deque>
#include <memory>

namespace navorin {

/// A session that notes each request and answers when the test says so, in any order.
class FakeHttpSession final : public HttpSession
{
public:
    struct Exchange
    {
        HttpRequest request;
        std::shared_ptr<QPromise<HttpResponse>> promise;

        void answer(const QByteArray &body, int status = 200)
        {
            promise->addResult(HttpResponse{status, {}, body});
            promise->finish();
        }
        void fail(TransportError::Kind kind = TransportError::Kind::CannotConnect)
        {
            promise->setException(
                std::make_exception_ptr(TransportError(kind, QStringLiteral("made by a test"))));
            promise->finish();
        }
    };

    [[nodiscard]] QFuture<HttpResponse> send(HttpRequest request) override
    {
        auto promise = std::make_shared<QPromise<HttpResponse>>();
        promise->start();
        exchanges.push_back({std::move(request), promise});
        return promise->future();
    }

    /// The oldest request that was not taken yet.
    [[nodiscard]] Exchange take()
    {
        Exchange exchange = exchanges.front();
        exchanges.pop_front();
        return exchange;
    }

    std::deque<Exchange> exchanges;
};

} // namespace navorin
