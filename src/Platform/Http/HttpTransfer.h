#pragma once

#include "Platform/Http/HttpRules.h"
#include "Platform/Http/HttpSession.h"

#include <QNetworkReply>
#include <QObject>
#include <QPromise>
#include <QTimer>

#include <exception>
#include <optional>

class QNetworkAccessManager;

namespace navorin {

/// One request on the network thread, over all its redirects, up to its outcome; what becomes of the answer
/// is for the subclasses. It deletes itself when it is settled.
class HttpTransfer : public QObject
{
    Q_OBJECT

public:
    ~HttpTransfer() override;

    void start();

protected:
    HttpTransfer(HttpRequest request, QNetworkAccessManager &network,
                 const HttpSessionConfiguration &configuration, QObject *parent);

    /// A new reply is under way.
    virtual void prepareReply() = 0;
    /// The reply is whole and no redirect.
    virtual void completeAnswer() = 0;
    virtual void fail(const std::exception_ptr &error) = 0;
    /// A lost connection is the end of the answer, and not its failure.
    [[nodiscard]] virtual bool isWholeWhenCut() const { return false; }
    void fail(TransportError::Kind kind, const QString &detail);

    /// Lets go of the reply; false if the outcome is known already.
    [[nodiscard]] bool markSettled();

    [[nodiscard]] const HttpRequest &request() const { return m_request; }
    [[nodiscard]] const HttpSessionConfiguration &configuration() const { return m_configuration; }
    [[nodiscard]] QNetworkReply &reply() const { return *m_reply; }
    /// Absent if what answered does not speak HTTP.
    [[nodiscard]] std::optional<int> status() const;
    [[nodiscard]] Redirection nextRequest() const;

private:
    void handleFinished();
    void handleAnswer();
    void abandonReply();

    HttpRequest m_request;
    QNetworkAccessManager &m_network;
    const HttpSessionConfiguration &m_configuration;
    QTimer m_resourceTimer;
    QNetworkReply *m_reply = nullptr; ///< ours
    int m_redirectsLeft = 20;
    bool m_isSettled = false;
};

/// What those still waiting get when their session ends.
[[nodiscard]] std::exception_ptr endedSession();

template <typename T>
void failPromise(QPromise<T> &promise, const std::exception_ptr &error)
{
    if (!promise.isCanceled())
        promise.setException(error);
    promise.finish();
}

} // namespace navorin
