#include "Support/ScriptedHttpServer.h"

#include <QTcpSocket>
#include <QTimer>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray headOf(const ScriptedAnswer &answer)
{
    QByteArray head = "HTTP/1.1 "_ba + QByteArray::number(answer.status) + " X\r\nContent-Length: "_ba +
                      QByteArray::number(answer.body.size()) + "\r\n"_ba;
    for (const auto &[name, value] : answer.headers)
        head += name + ": "_ba + value + "\r\n"_ba;
    return head + "\r\n"_ba;
}

void send(QTcpSocket *socket, const ScriptedAnswer &answer)
{
    using Ending = ScriptedAnswer::Ending;
    if (!answer.raw.isEmpty())
        socket->write(answer.raw);
    else if (answer.ending != Ending::Hangup)
        socket->write(headOf(answer) +
                      answer.body.first(answer.body.size() / (answer.ending == Ending::Complete ? 1 : 2)));
    if (!answer.raw.isEmpty() || answer.ending == Ending::Hangup || answer.ending == Ending::Cut)
        socket->disconnectFromHost();
}

} // namespace

ScriptedHttpServer::ScriptedHttpServer()
    : m_server(new QTcpServer)
{
    m_server->listen(QHostAddress::LocalHost);
    m_url = QUrl(u"http://127.0.0.1:"_s + QString::number(m_server->serverPort()));
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
    return QUrl(m_url.toString() + path);
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
    RecordedRequest request;
    auto lines = buffer.first(end).split('\n');
    const auto words = lines.takeFirst().split(' ');
    for (const auto &line : lines)
        request.headers.insert(line.first(line.indexOf(':')).toLower(),
                               line.sliced(line.indexOf(':') + 1).trimmed());
    const auto length = request.headers.value("content-length"_ba).toLongLong();
    if (buffer.size() < end + 4 + length)
        return;
    request.line = words.at(0) + ' ' + words.at(1);
    request.body = buffer.sliced(end + 4, length);
    buffer.remove(0, end + 4 + length);
    const auto answer = record(words.at(1), std::move(request));
    QTimer::singleShot(answer.delay, socket, [socket, answer] { send(socket, answer); });
}

ScriptedAnswer ScriptedHttpServer::record(const QByteArray &target, RecordedRequest request)
{
    const QMutexLocker lock(&m_mutex);
    m_requests.append(std::move(request));
    auto &answers = m_script[target];
    if (answers.isEmpty())
        return {.status = 404};
    return answers.size() > 1 ? answers.takeFirst() : answers.first();
}

} // namespace navorin
