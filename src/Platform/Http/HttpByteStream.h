#pragma once

#include "Platform/Http/HttpTransfer.h"

#include <memory>
#include <stop_token>

namespace navorin {

/// Where a streamed answer goes, and what ends it early.
struct HttpStreamOrder
{
    std::shared_ptr<HttpByteSink> sink;
    std::stop_token stop;
    QPromise<void> promise;
};

/// A transfer whose answer goes to a sink piece by piece, so that no more than a piece is held here.
/// Destroyed before its end, its future fails as cancelled.
class HttpByteStream final : public HttpTransfer
{
    Q_OBJECT

public:
    HttpByteStream(HttpRequest request, HttpStreamOrder order, QNetworkAccessManager &network,
                   const HttpSessionConfiguration &configuration, QObject *parent);
    ~HttpByteStream() override;

private:
    using HttpTransfer::fail;
    void prepareReply() override;
    void completeAnswer() override;
    void fail(const std::exception_ptr &error) override;
    [[nodiscard]] bool isWholeWhenCut() const override { return m_hasBegun; }

    void passOn();
    void begin();

    struct Stopper
    {
        HttpByteStream *stream;
        void operator()() const;
    };

    const std::shared_ptr<HttpByteSink> m_sink;
    QPromise<void> m_promise;
    QByteArray m_piece;
    bool m_hasBegun = false;
    std::stop_callback<Stopper> m_stopper; ///< last, so that it goes first
};

} // namespace navorin
