#pragma once

#include "Platform/Http/HttpTransfer.h"

#include <QFutureWatcher>

namespace navorin {

/// A transfer whose answer is handed over whole. Destroyed before that, its future fails as cancelled.
class HttpExchange final : public HttpTransfer
{
    Q_OBJECT

public:
    HttpExchange(HttpRequest request, QPromise<HttpResponse> promise, QNetworkAccessManager &network,
                 const HttpSessionConfiguration &configuration, QObject *parent);
    ~HttpExchange() override;

private:
    using HttpTransfer::fail;
    void prepareReply() override;
    void completeAnswer() override;
    void fail(const std::exception_ptr &error) override;

    void refuseTooLarge();

    QPromise<HttpResponse> m_promise;
    QFutureWatcher<void> m_watcher;
};

} // namespace navorin
