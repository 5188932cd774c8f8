#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>

#include <memory>

namespace navorin {

/// The demo backend as a process of its own on a free port, and simple calls to it. Ended with SIGTERM.
class DemoProcess
{
public:
    explicit DemoProcess(const QStringList &arguments);
    ~DemoProcess() { stop(); }

    /// The exit code, or -1 when the end was not a clean one.
    int stop();
    [[nodiscard]] quint16 port() const { return m_port; }
    [[nodiscard]] QUrl url(const QString &path) const;

    using Reply = std::unique_ptr<QNetworkReply>;
    using Headers = QList<QPair<QByteArray, QByteArray>>;
    /// Sends a request without waiting.
    Reply send(const QString &path, const QByteArray &verb = "GET", const Headers &headers = {},
               const QByteArray &body = {});
    /// The same, finished.
    Reply fetch(const QString &path, const QByteArray &verb = "GET", const Headers &headers = {},
                const QByteArray &body = {});
    /// The "data" of a JSON answer.
    QJsonArray data(const QString &path);
    /// "/path=kind:argument"; an empty text clears all faults.
    void setFault(const QString &fault, int times = -1);

private:
    QProcess m_process;
    quint16 m_port = 0;
    QNetworkAccessManager m_network;
};

} // namespace navorin
