#include "DemoProcess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

DemoProcess::DemoProcess(const QStringList &arguments)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(NAVORIN_DEMO_BACKEND), arguments);
    while (!m_process.canReadLine() && m_process.waitForReadyRead()) {
    }
    const QByteArray line = m_process.readLine().trimmed();
    m_port = line.startsWith("PORT ") ? line.mid(5).toUShort() : quint16(0);
}

int DemoProcess::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return m_process.exitCode();
    m_process.terminate();
    const bool ended = m_process.waitForFinished();
    return ended && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

QUrl DemoProcess::url(const QString &path) const
{
    return QUrl(u"http://127.0.0.1:"_s + QString::number(m_port) + path);
}

DemoProcess::Reply DemoProcess::send(const QString &path, const QByteArray &verb, const Headers &headers,
                                     const QByteArray &body)
{
    QNetworkRequest request(url(path));
    request.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json"_s);
    for (const auto &[name, value] : headers)
        request.setRawHeader(name, value);
    return Reply(verb == "HEAD" ? m_network.head(request) : m_network.sendCustomRequest(request, verb, body));
}

DemoProcess::Reply DemoProcess::fetch(const QString &path, const QByteArray &verb, const Headers &headers,
                                      const QByteArray &body)
{
    Reply reply = send(path, verb, headers, body);
    if (!QTest::qWaitFor([&reply] { return reply->isFinished(); }, 30'000))
        qFatal("no end of the answer to %s", qPrintable(path));
    return reply;
}

QJsonArray DemoProcess::data(const QString &path)
{
    return QJsonDocument::fromJson(fetch(path)->readAll()).object()["data"_L1].toArray();
}

void DemoProcess::setFault(const QString &fault, int times)
{
    if (fault.isEmpty()) {
        fetch(u"/demo/fault"_s, "DELETE");
        return;
    }
    const QJsonObject body{{u"fault"_s, fault}, {u"times"_s, times}};
    const Reply reply = fetch(u"/demo/fault"_s, "POST", {}, QJsonDocument(body).toJson());
    if (reply->error() != QNetworkReply::NoError)
        qFatal("fault refused: %s", qPrintable(fault));
}

} // namespace navorin
