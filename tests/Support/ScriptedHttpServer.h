#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMutex>
#include <QTcpServer>
#include <QThread>
#include <QUrl>

#include <chrono>
#include <utility>

namespace navorin {

struct ScriptedAnswer
{
    enum class Ending {
        Complete,
        Cut,   ///< the connection closes after half of the body
        Stall, ///< nothing more comes after half of the body
        Hangup ///< the connection closes without a word
    };

    int status = 200;
    QByteArray body;
    QList<std::pair<QByteArray, QByteArray>> headers;
    std::chrono::milliseconds delay{0};
    Ending ending = Ending::Complete;
    QByteArray raw; ///< if not empty, sent as it stands in place of all the above
};

struct RecordedRequest
{
    QByteArray line;                       ///< "GET /path"
    QHash<QByteArray, QByteArray> headers; ///< names in lower case
    QByteArray body;
};

/// A loopback HTTP server on a thread of its own that answers by script and records what it was asked. Its
/// members may be called from any thread.
class ScriptedHttpServer
{
public:
    ScriptedHttpServer();
    ~ScriptedHttpServer();

    [[nodiscard]] QUrl url(const QString &path = {}) const;
    /// Answers requests for `target` in the order scripted; the last answer repeats. Others get a 404.
    void script(const QByteArray &target, ScriptedAnswer answer);
    [[nodiscard]] QList<RecordedRequest> requests() const;
    [[nodiscard]] int openConnections() const;

private:
    void accept();
    void read(QTcpSocket *socket, QByteArray &buffer);
    ScriptedAnswer record(const QByteArray &target, RecordedRequest request);

    mutable QMutex m_mutex;
    QHash<QByteArray, QList<ScriptedAnswer>> m_script;
    QList<RecordedRequest> m_requests;
    int m_openConnections = 0;
    QTcpServer *m_server;
    QUrl m_url;
    QThread m_thread;
};

} // namespace navorin
