#pragma once

#include "Platform/Http/HttpSession.h"

#include <QFutureWatcher>
#include <QNetworkReply>
#include <QObject>
#include <QPromise>
#include <QTimer>

class QNetworkAccessManager;

namespace navorin {

/// One request and its answer on the network thread, over all its redirects. It deletes itself when its
/// future is settled; destroyed before that, the future fails as cancelled.
class HttpExchange final : public QObject
{
    Q_OBJECT

public:
    HttpExchange(HttpRequest request, QPromise<HttpResponse> promise, QNetworkAccessManager &network,
                 const HttpSessionConfiguration &configuration, QObject *parent);
    ~HttpExchange() override;

    void start();

    static void fail(QPromise<HttpResponse> &promise, TransportError::Kind kind, const QString &detail);

private:
    void handleProgress();
    void handleFinished();
    void handleAnswer(int status);
    void abandonReply();
    void settle(HttpResponse response);
    void fail(TransportError::Kind kind, const QString &detail);

    HttpRequest m_request;
    QPromise<HttpResponse> m_promise;
    QNetworkAccessManager &m_network;
    const HttpSessionConfiguration &m_configuration;
    QFutureWatcher<void> m_watcher;
    QTimer m_resourceTimer;
    QNetworkReply *m_reply = nullptr; ///< ours
    int m_redirectsLeft = 20;
    bool m_isSettled = false;
};

} // namespace navorin
