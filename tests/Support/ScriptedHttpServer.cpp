#include "Support/ScriptedHttpServer.h"

#include <QTcpSocket>
#include <QTimer>

#include <memory>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

RecordedRequest parsedHead(const QByteArray &head)
{
    auto lines = head.split('\n');
    const auto first = lines.takeFirst().trimmed().split(' ');
    RecordedRequest request{first.value(0), first.value(1), {}, {}};
    for (const auto &line : lines) {
        const auto colon = line.indexOf(':');
        request.headers.insert(line.first(colon).toLower(), line.sliced(colon + 1).trimmed());
    }
    return request;
}

QByteArray headOf(const ScriptedAnswer &answer)
{
    QByteArray head = "HTTP/1.1 "_ba + QByteArray::number(answer.status) + " X\r\nContent-Length: "_ba +
                      QByteArray::number(answer.body.size()) + "\r\n"_ba;
    for (const auto &[name, value] : answer.headers)
        head += name + ": "_ba + value + "\r\n"_ba;
    return head + "\r\n"_ba;
}

void drip(QTcpSocket *socket, const QByteArray &body)
{
    auto *timer = new QTimer(socket);
    QObject::connect(timer, &QTimer::timeout, socket, [socket, timer, body, sent = qsizetype(0)]() mutable {
        socket->write(body.sliced(sent, 1));
        if (++sent == body.size())
            timer->stop();
    });
    timer->start(20);
}

} // namespace

ScriptedHttpServer::ScriptedHttpServer()
    : m_server(new QTcpServer)
{
    m_server->listen(QHostAddress::LocalHost);
    m_port = m_server->serverPort();
    QObject::connect(m_server, &QTcpServer::newConnection, m_server, [this] { accept(); });
    QObject::connect(&m_thread, &QThread::finished, m_server, &QObject::deleteLater);
    m_server->moveToThread(&m_thread);
    m_thread.start();
}

ScriptedHttpServer::~ScriptedHttpServer()
{
    m_thread.quit();
    m_thread.wait();
    const QMutexLocker lastWord(&m_mutex); // what the thread recorded is ours now, for a race checker too
}

QUrl ScriptedHttpServer::url(const QString &path) const
{
    return QUrl(u"http://127.0.0.1:"_s + QString::number(m_port) + path);
}

void ScriptedHttpServer::script(const QByteArray &target, ScriptedAnswer answer)
{
    const QMutexLocker lock(&m_mutex);
    m_script[target].append(std::move(answer));
}

QList<RecordedRequest> ScriptedHttpServer::requests() const
{
    const QMutexLocker lock(&m_mutex);
    return m_requests;
}

int ScriptedHttpServer::openConnections() const
{
    const QMutexLocker lock(&m_mutex);
    return m_openConnections;
}

void ScriptedHttpServer::accept()
{
    auto *socket = m_server->nextPendingConnection();
    const auto count = [this](int change) {
        const QMutexLocker lock(&m_mutex);
        m_openConnections += change;
    };
    count(1);
    QObject::connect(socket, &QTcpSocket::disconnected, m_server, [count] { count(-1); });
    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    QObject::connect(socket, &QTcpSocket::readyRead, socket,
                     [this, socket, buffer = QByteArray()]() mutable { read(socket, buffer); });
}

void ScriptedHttpServer::read(QTcpSocket *socket, QByteArray &buffer)
{
    buffer += socket->readAll();
    const auto end = buffer.indexOf("\r\n\r\n");
    if (end < 0)
        return;
    auto request = parsedHead(buffer.first(end));
    const auto length = request.headers.value("content-length"_ba).toLongLong();
    if (buffer.size() < end + 4 + length)
        return;
    request.body = buffer.sliced(end + 4, length);
    buffer.remove(0, end + 4 + length);
    const auto answer = record(std::move(request));
    QTimer::singleShot(answer.delay, socket, [this, socket, answer] { send(socket, answer); });
}

ScriptedAnswer ScriptedHttpServer::record(RecordedRequest request)
{
    const QMutexLocker lock(&m_mutex);
    auto &answers = m_script[request.target];
    m_requests.append(std::move(request));
    if (answers.isEmpty())
        return {404, {}, {}, {}, {}, {}};
    return answers.size() > 1 ? answers.takeFirst() : answers.first();
}

void ScriptedHttpServer::send(QTcpSocket *socket, const ScriptedAnswer &answer)
{
    using Ending = ScriptedAnswer::Ending;
    if (answer.ending == Ending::Hangup)
        return socket->disconnectFromHost();
    if (!answer.raw.isEmpty()) {
        socket->write(answer.raw);
        return socket->disconnectFromHost();
    }
    socket->write(headOf(answer));
    if (answer.ending == Ending::Drip)
        return drip(socket, answer.body);
    socket->write(answer.ending == Ending::Complete ? answer.body
                                                    : answer.body.first(answer.body.size() / 2));
    if (answer.ending == Ending::Cut)
        socket->disconnectFromHost();
}

} // namespace navorin
