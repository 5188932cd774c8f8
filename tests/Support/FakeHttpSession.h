#pragma once

#include "Platform/Http/HttpSession.h"

#include <QMutex>
#include <QPromise>

#include <deque>
#include <functional>
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

    /// A streamed request. The test calls its sink as the network thread would; what that throws ends the
    /// stream, as does being stopped.
    struct Stream
    {
        HttpRequest request;
        std::shared_ptr<HttpByteSink> sink;
        std::shared_ptr<QPromise<void>> promise;
        std::shared_ptr<std::stop_callback<std::function<void()>>> stopper;

        void begin(qint64 expectedLength) const
        {
            guarded([&] { sink->begin(expectedLength); });
        }
        void receive(const QByteArray &bytes) const
        {
            guarded([&] { sink->receive(bytes); });
        }
        void finish() const { settle(*promise, nullptr); }
        void fail(TransportError::Kind kind = TransportError::Kind::ConnectionLost) const
        {
            fail(*promise, kind);
        }
        /// All of it at once.
        void answer(const QByteArray &body) const
        {
            begin(body.size());
            receive(body);
            finish();
        }

    private:
        friend FakeHttpSession;

        static void fail(QPromise<void> &promise, TransportError::Kind kind)
        {
            settle(promise, std::make_exception_ptr(TransportError(kind, QStringLiteral("made by a test"))));
        }
        /// A promise that is finished twice runs what follows twice.
        static void settle(QPromise<void> &promise, const std::exception_ptr &error)
        {
            if (promise.future().isFinished())
                return;
            if (error)
                promise.setException(error);
            promise.finish();
        }
        template <typename F>
        void guarded(F call) const
        {
            if (promise->future().isFinished())
                return;
            try {
                call();
            } catch (...) {
                settle(*promise, std::current_exception());
            }
        }
    };

    [[nodiscard]] QFuture<void> stream(HttpRequest request, std::shared_ptr<HttpByteSink> sink,
                                       std::stop_token stop) override
    {
        auto promise = std::make_shared<QPromise<void>>();
        promise->start();
        auto stopper = std::make_shared<std::stop_callback<std::function<void()>>>(
            std::move(stop), [promise] { Stream::fail(*promise, TransportError::Kind::Cancelled); });
        const QMutexLocker locker(&m_lock);
        m_streams.push_back({std::move(request), std::move(sink), promise, std::move(stopper)});
        return promise->future();
    }

    /// How many streamed requests were not taken yet.
    [[nodiscard]] std::size_t streamCount() const
    {
        const QMutexLocker locker(&m_lock);
        return m_streams.size();
    }
    /// The oldest of them.
    [[nodiscard]] Stream takeStream()
    {
        const QMutexLocker locker(&m_lock);
        if (m_streams.empty())
            qFatal("no streamed request is waiting");
        auto stream = m_streams.front();
        m_streams.pop_front();
        return stream;
    }

    /// The oldest request that was not taken yet.
    [[nodiscard]] Exchange take()
    {
        if (exchanges.empty())
            qFatal("no request is waiting");
        Exchange exchange = exchanges.front();
        exchanges.pop_front();
        return exchange;
    }

    std::deque<Exchange> exchanges;

private:
    mutable QMutex m_lock; ///< guards m_streams: those come from other threads too
    std::deque<Stream> m_streams;
};

} // namespace navorin
